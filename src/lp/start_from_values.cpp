#include "lp/start_from_values.h"

#include <algorithm>
#include <limits>

#include "lp/basis_of_values.h"
#include "lp/model_to_lp.h"
#include "prob/row_limits.h"

namespace kelvo {

namespace {

// A place or multiplier that nobody gave: no comparison with it is true.
constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

/// Places of the columns and of the logicals s = -(activity).
Vector<double> places(const Model& model, const LpProblem& lp, const StartValues& values) {
  Vector<double> place;
  if (values.x == nullptr && values.slack == nullptr) return place;
  const int n = lp.num_cols;
  for (int j = 0; j < n; ++j) {
    place.push_back(values.x == nullptr
                        ? kUnknown
                        : std::clamp(values.x[j], lp.lower[j], std::max(lp.lower[j], lp.upper[j])));
  }
  Vector<double> activity;
  if (values.slack == nullptr) compute_row_activities(model, values.x, activity);
  for (int i = 0; i < lp.num_rows; ++i) {
    if (values.slack == nullptr) {
      place.push_back(-activity[i]);
    } else {
      const double slack = values.slack[i];
      place.push_back(model.row_sense[i] == 'R' ? -model.rhs[i] - slack : slack - model.rhs[i]);
    }
  }
  return place;
}

/// Multipliers of the minimization.
Vector<double> multipliers(const Model& model, const LpProblem& lp, const StartValues& values) {
  Vector<double> multiplier;
  if (values.dj == nullptr && values.pi == nullptr) return multiplier;
  for (int j = 0; j < lp.num_cols; ++j) {
    double dj = values.dj != nullptr ? values.dj[j] : model.objective[j];
    const int end = values.dj != nullptr ? 0 : lp.columns.start[j + 1];
    for (int k = lp.columns.start[j]; k < end; ++k) {
      dj -= lp.columns.value[k] * values.pi[lp.columns.index[k]];
    }
    multiplier.push_back(model.sense * dj);
  }
  for (int i = 0; i < lp.num_rows; ++i) {
    multiplier.push_back(values.pi != nullptr ? -model.sense * values.pi[i] : kUnknown);
  }
  return multiplier;
}

}  // namespace

StoredBasis basis_from_values(const Model& model, const StartValues& values, double tolerance) {
  const LpProblem lp = make_columnwise_lp(model);
  VariableValues known;
  known.place = places(model, lp, values);
  known.multiplier = multipliers(model, lp, values);
  StoredBasis basis;
  lp_to_stored_status(basis_of_values(lp, known, tolerance), model, basis);
  if (values.x != nullptr) basis.x.assign(known.place.begin(), known.place.begin() + lp.num_cols);
  return basis;
}

}  // namespace kelvo
