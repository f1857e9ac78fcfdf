#include "prob/solution_quality.h"

#include <algorithm>
#include <cmath>

#include "prob/data/column_types.h"
#include "prob/data/constraint_values.h"
#include "prob/model/model.h"
#include "prob/model/row_limits.h"

namespace kelvo {
namespace {

void raise(double& largest, double value) {
  largest = std::max(largest, std::fabs(value));
}

double largest_magnitude(const Vector<double>& values) {
  double largest = 0.0;
  for (const double value : values) raise(largest, value);
  return largest;
}

/// Collects what a multiplier (of a minimization) of a value between two limits contributes.
class MultiplierCheck {
 public:
  explicit MultiplierCheck(DualQuality& quality) : quality_(quality) {}

  /// `status`: a BasisStatus, or -1 when there is no basis.
  void add(double multiplier, double value, double lower, double upper, int status) {
    const double limit = multiplier > 0.0 ? lower : upper;
    if (multiplier != 0.0 && std::isfinite(limit)) {
      raise(quality_.complementarity, multiplier * (value - limit));
      dual_objective_ += static_cast<long double>(multiplier) * limit;
    }
    if (wrong_sign(multiplier, lower, upper, status)) raise(quality_.infeasibility, multiplier);
  }
  long double dual_objective() const { return dual_objective_; }

 private:
  static bool wrong_sign(double multiplier, double lower, double upper, int status) {
    if (status == kBasic) return true;
    if (lower == upper) return false;
    if (status == kAtLower && std::isfinite(lower)) return multiplier < 0.0;
    if (status == kAtUpper && std::isfinite(upper)) return multiplier > 0.0;
    return !std::isfinite(multiplier > 0.0 ? lower : upper);
  }

  DualQuality& quality_;
  long double dual_objective_ = 0.0L;
};

/// (Qx)_j; the matrix is symmetric.
long double quadratic_gradient(const SparseMatrix& q, int j, const Vector<double>& x) {
  if (q.num_major == 0) return 0.0L;
  long double sum = 0.0L;
  for (int p = q.start[j]; p < q.start[j + 1]; ++p) {
    sum += static_cast<long double>(q.value[p]) * x[q.index[p]];
  }
  return sum;
}

}  // namespace

PrimalQuality primal_quality(const Model& model, const double* x, const double* activity) {
  PrimalQuality quality;
  for (int j = 0; j < model.num_cols; ++j) {
    raise(quality.x, x[j]);
    raise(quality.infeasibility, column_infeasibility(model, j, x[j]));
    if (!model.column_type.empty() && is_integer_type(model.column_type[j])) {
      raise(quality.integer_infeasibility, x[j] - std::round(x[j]));
    }
  }
  Vector<double> computed;
  compute_row_activities(model, x, computed);
  for (int i = 0; i < model.num_rows; ++i) {
    const double stored = activity != nullptr ? activity[i] : computed[i];
    raise(quality.residual, computed[i] - stored);
    raise(quality.slack, row_slack(model, i, stored));
    raise(quality.infeasibility, row_infeasibility(model, i, stored));
  }
  for (const QuadraticConstraint& constraint : model.quadratic_constraints) {
    raise(quality.quadratic_slack, constraint.rhs - quadratic_activity(constraint, x));
    raise(quality.quadratic_infeasibility, quadratic_infeasibility(constraint, x));
  }
  return quality;
}

DualQuality dual_quality(const Model& model, const SolutionRecord& record,
                         const StoredBasis* basis) {
  DualQuality quality;
  quality.pi = largest_magnitude(record.pi);
  quality.dj = largest_magnitude(record.dj);
  MultiplierCheck check(quality);
  const ColumnStore& matrix = model.matrix;
  long double half_curvature = 0.0L;  // x'Qx / 2
  for (int j = 0; j < model.num_cols; ++j) {
    const long double curvature = quadratic_gradient(model.quadratic, j, record.x);
    half_curvature += curvature * record.x[j] / 2;
    long double residual = model.objective[j] + curvature - record.dj[j];
    const int end = matrix.start[j] + matrix.count[j];
    for (int p = matrix.start[j]; p < end; ++p) {
      residual -= static_cast<long double>(matrix.value[p]) * record.pi[matrix.index[p]];
    }
    raise(quality.residual, static_cast<double>(residual));
    check.add(model.sense * record.dj[j], record.x[j], finite_or_infinite(model.lower[j]),
              finite_or_infinite(model.upper[j]), basis != nullptr ? basis->col_status[j] : -1);
  }
  for (int i = 0; i < model.num_rows; ++i) {
    // The slack of a row that is not ranged carries either code of its only bound.
    const RowLimits limits = row_limits(model, i);
    int status = basis != nullptr ? basis->row_status[i] : -1;
    if (status == kAtLower && !std::isfinite(limits.lower)) status = kAtUpper;
    if (status == kAtUpper && !std::isfinite(limits.upper)) status = kAtLower;
    check.add(model.sense * record.pi[i], record.activity[i], limits.lower, limits.upper, status);
  }
  const long double dual = model.sense * check.dual_objective() - half_curvature;
  quality.gap = static_cast<double>(record.objective - dual);
  return quality;
}

}  // namespace kelvo
