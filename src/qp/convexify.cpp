#include "qp/convexify.h"

#include <algorithm>
#include <cmath>

#include "prob/data/quadratic_objective.h"
#include "qp/convexify_log.h"
#include "qp/definiteness.h"

namespace kelvo {
namespace {

// The bisection ends when the shift is known to this share: more than enough for a perturbation
// that is reported with two digits, and each step costs a factorization.
constexpr double kShiftAccuracy = 0.1;
// The shift found exceeds the least one by this share, lest the optimizer's own rounding undoes it.
constexpr double kShiftMargin = 1.01;

bool is_binary(const Model& model, int j) {
  if (model.column_type.empty()) return false;
  const char type = model.column_type[j];
  return type == 'B' || (type == 'I' && model.lower[j] == 0.0 && model.upper[j] == 1.0);
}

bool all_binary(const Model& model) {
  const SparseMatrix& q = model.quadratic;
  for (int j = 0; j < q.num_major; ++j) {
    if (q.start[j] < q.start[j + 1] && !is_binary(model, j)) return false;
  }
  return true;
}

/// True when an entry had the wrong sign.
bool repair_diagonal(double s, Vector<double>& cost, SparseMatrix& q) {
  bool changed = false;
  for (int j = 0; j < q.num_major; ++j) {
    for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
      if (s * q.value[k] >= 0.0) continue;
      cost[j] += 0.5 * (q.value[k] - s);
      q.value[k] = s;
      changed = true;
    }
  }
  return changed;
}

/// q + shift on the diagonal of the columns that have entries.
SparseMatrix shifted(const SparseMatrix& q, double shift) {
  Vector<Coefficient> changes;
  for (int j = 0; j < q.num_major; ++j) {
    if (q.start[j] == q.start[j + 1]) continue;
    changes.push_back({j, j, quadratic_coefficient(q, j, j) + shift});
  }
  SparseMatrix result = q;
  set_quadratic_coefficients(result, changes);
  return result;
}

/// The least shift that makes s Q diagonally dominant.
double dominant_shift(const SparseMatrix& q, double s) {
  double shift = 0.0;
  for (int j = 0; j < q.num_major; ++j) {
    double missing = 0.0;
    for (int k = q.start[j]; k < q.start[j + 1]; ++k) {
      missing += q.index[k] == j ? -s * q.value[k] : std::fabs(q.value[k]);
    }
    shift = std::max(shift, missing);
  }
  return shift;
}

/// How far the form falls in a direction, per unit of its squared length.
double fall(const SparseMatrix& q, double s, const Vector<double>& x) {
  double square = 0.0;
  for (const double v : x) square += v * v;
  return -s * quadratic_form(q, x.data()) / square;
}

double least_shift(const SparseMatrix& q, double s) {
  double enough = dominant_shift(q, s);
  double too_small = 0.0;
  Vector<double> x;
  if (find_indefinite_direction(q, s, x)) too_small = fall(q, s, x);
  while (too_small < (1.0 - kShiftAccuracy) * enough) {
    const double middle = too_small > 0.0 ? std::sqrt(too_small * enough) : kShiftAccuracy * enough;
    if (is_semidefinite(shifted(q, s * middle), s)) {
      enough = middle;
    } else {
      too_small = middle;
    }
  }
  return kShiftMargin * enough;
}

}  // namespace

Convexity make_convex(const Model& model, const ConvexifySettings& settings, MessageSink& sink,
                      Vector<double>& cost, SparseMatrix& q) {
  const double s = model.sense;
  if (is_semidefinite(model.quadratic, s)) return Convexity::convex;
  if (!settings.repair || !all_binary(model)) return Convexity::not_convex;
  cost = model.objective;
  q = model.quadratic;
  if (is_diagonal(q)) {
    repair_diagonal(s, cost, q);
    return Convexity::repaired;
  }
  ConvexifyLog log(sink);
  if (settings.announce) log.begins();
  const double shift = least_shift(q, s);
  q = shifted(q, s * shift);
  for (int j = 0; j < q.num_major; ++j) {
    if (q.start[j] < q.start[j + 1]) cost[j] -= 0.5 * s * shift;
  }
  log.shifted(shift);
  return Convexity::repaired;
}

}  // namespace kelvo
