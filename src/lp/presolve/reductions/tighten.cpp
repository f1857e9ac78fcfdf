#include "lp/presolve/reductions/tighten.h"

#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// A bound is taken when it shrinks the interval by this share: sequences of ever smaller steps
// would converge without end.
constexpr double kWorthwhile = 1e-3;
constexpr std::int64_t kWorkPerNonzero = 20;

bool is_better(double gain, double width, double bound) {
  const double scale = std::isfinite(width) ? width : std::max(1.0, std::fabs(bound));
  return gain > kWorthwhile * scale;
}

void tighten_columns_of(PresolveLp& lp, int i) {
  for (int e = lp.matrix.row_first(i); e >= 0 && !lp.ended(); e = lp.matrix[e].row_next) {
    if (std::fabs(lp.matrix[e].value) < tol::kSmallPivot) continue;
    const int j = lp.matrix[e].col;
    const Interval implied = lp.implied_bounds(e);
    const double width = lp.upper[j] - lp.lower[j];
    double low = lp.lower[j], high = lp.upper[j];
    if (std::fabs(implied.lower) < tol::kHugeBound &&
        is_better(implied.lower - low, width, implied.lower)) {
      low = implied.lower;
    }
    if (std::fabs(implied.upper) < tol::kHugeBound &&
        is_better(high - implied.upper, width, implied.upper)) {
      high = implied.upper;
    }
    if (low != lp.lower[j] || high != lp.upper[j]) lp.intersect_bounds(j, low, high);
  }
}

/// Every column may take all the values that it has, without a gap.
LpProblem without_gaps(const LpProblem& lp, const Vector<char>& may_be_zero) {
  LpProblem hull(lp);
  for (int j = 0; j < lp.num_cols && !may_be_zero.empty(); ++j) {
    if (!may_be_zero[j]) continue;
    hull.lower[j] = std::min(hull.lower[j], 0.0);
    hull.upper[j] = std::max(hull.upper[j], 0.0);
  }
  return hull;
}

/// Bounds without the gap, tightened to [low, high], as bounds beside 0; false when nothing is
/// left.
bool restore_gap(double lower, double upper, double tolerance, double& low, double& high) {
  const double least = std::max(low, lower), most = std::min(high, upper);
  if (least <= most + tolerance) {
    low = std::min(least, most);
    high = most;
    return true;
  }
  if (low > tolerance || high < -tolerance) return false;
  low = high = 0.0;
  return true;
}

}  // namespace

StrengthenedBounds strengthen_bounds(const LpProblem& caller_lp, const Vector<char>& may_be_zero,
                                     const PresolveSettings& settings, StopCheck& stop) {
  const LpProblem lp_problem = without_gaps(caller_lp, may_be_zero);
  PresolveLp lp(lp_problem, settings, ColumnMarks(), stop);
  const std::int64_t limit = 10000 + kWorkPerNonzero * lp.matrix.num_nonzeros();
  while (!lp.row_list.empty() && !lp.ended() && lp.work < limit) {
    const int i = lp.row_list.take();
    ++lp.work;
    const Activity& activity = lp.activity(i);
    const auto beyond = [&settings](double bound) {
      return settings.feasibility_tolerance * std::max(1.0, std::fabs(bound));
    };
    const double low = lp.row_lower[i], high = lp.row_upper[i];
    if (activity.least() > high + beyond(high) + activity.min_error ||
        activity.greatest() < low - beyond(low) - activity.max_error) {
      lp.fail(FindingKind::implied_bounds, i);
      break;
    }
    tighten_columns_of(lp, i);
    lp.poll();
  }
  for (int j = 0; j < lp.num_cols() && !may_be_zero.empty() && !lp.ended(); ++j) {
    if (may_be_zero[j] && !restore_gap(caller_lp.lower[j], caller_lp.upper[j],
                                       settings.feasibility_tolerance, lp.lower[j], lp.upper[j])) {
      lp.fail(FindingKind::column_bounds, j);
    }
  }
  StrengthenedBounds result;
  result.finding = lp.finding;
  result.row_is_redundant.assign(lp.num_rows(), 0);
  for (int i = 0; i < lp.num_rows(); ++i) {
    // A bound that the row itself implied does not make it redundant: the caller's bounds count.
    double least = 0.0, greatest = 0.0;
    for (int k = lp_problem.rows.start[i]; k < lp_problem.rows.start[i + 1]; ++k) {
      const double a = lp_problem.rows.value[k];
      const int j = lp_problem.rows.index[k];
      least += a * (a > 0.0 ? lp_problem.lower[j] : lp_problem.upper[j]);
      greatest += a * (a > 0.0 ? lp_problem.upper[j] : lp_problem.lower[j]);
    }
    result.row_is_redundant[i] = least >= lp.row_lower[i] && greatest <= lp.row_upper[i];
  }
  result.lower = std::move(lp.lower);
  result.upper = std::move(lp.upper);
  return result;
}

}  // namespace kelvo
