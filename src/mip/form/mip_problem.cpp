#include "mip/form/mip_problem.h"

#include <cmath>

namespace kelvo {
namespace {

double outside(double value, double lower, double upper) {
  return std::max({0.0, lower - value, value - upper});
}

/// The largest |x_j| over members that have to become 0, where those stay that make it least.
double set_residual(const OrderedSet& set, const Vector<double>& x) {
  const int members = static_cast<int>(set.members.size());
  if (members <= set.type) return 0.0;
  Vector<double> behind(members + 1, 0.0);  // the largest from a member on
  for (int k = members - 1; k >= 0; --k) {
    behind[k] = std::max(behind[k + 1], std::abs(x[set.members[k]]));
  }
  double least = kInf;
  double before = 0.0;
  for (int first = 0; first + set.type <= members; ++first) {
    least = std::min(least, std::max(before, behind[first + set.type]));
    before = std::max(before, std::abs(x[set.members[first]]));
  }
  return least;
}

}  // namespace

MipResiduals measure_point(const MipProblem& mip, const Vector<double>& x,
                           const MipTolerances& tolerances) {
  const LpProblem& lp = mip.lp;
  MipResiduals residuals;
  for (int j = 0; j < lp.num_cols; ++j) {
    residuals.bound = std::max(residuals.bound, outside(x[j], lp.lower[j], lp.upper[j]));
    if (!mip.is_integer[j]) continue;
    residuals.integrality = std::max(residuals.integrality, std::abs(x[j] - std::round(x[j])));
  }
  for (const SemiColumn& semi : mip.semis) {
    const double value = x[semi.column];
    residuals.bound = std::max(residuals.bound,
                               std::min(std::abs(value), outside(value, semi.lower, semi.upper)));
  }
  const Vector<double> activity = row_activities(lp, x);
  for (int i = 0; i < lp.num_rows; ++i) {
    const int logical = lp.num_cols + i;
    residuals.row =
        std::max(residuals.row, outside(-activity[i], lp.lower[logical], lp.upper[logical]));
  }
  for (const Indicator& indicator : mip.indicators) {
    if (std::abs(x[indicator.binary] - indicator.active) > tolerances.integrality) continue;
    residuals.row =
        std::max(residuals.row, outside(activity[indicator.row], indicator.lower, indicator.upper));
  }
  for (const OrderedSet& set : mip.sets) {
    residuals.set = std::max(residuals.set, set_residual(set, x));
  }
  return residuals;
}

}  // namespace kelvo
