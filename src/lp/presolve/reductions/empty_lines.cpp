// Rows and columns without entries.
//
// Integrality: a column goes to a bound or 0, which are whole.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

bool remove_empty_row(PresolveLp& lp, int i) {
  const double tolerance = lp.settings.feasibility_tolerance;
  if (lp.row_lower[i] > tolerance || lp.row_upper[i] < -tolerance) {
    const bool too_low = lp.row_lower[i] > tolerance;
    lp.fail(FindingKind::empty_row, i);
    lp.finding.sense = lp.is_equation(i) ? '=' : too_low ? '>' : '<';
    lp.finding.rhs = too_low ? lp.row_lower[i] : lp.row_upper[i];
    return false;
  }
  lp.remove_row(i, kRemovedEmptyRow);
  return true;
}

bool remove_empty_column(PresolveLp& lp, int j) {
  if (!lp.may_remove(j)) return false;
  const double low = lp.lower[j], high = lp.upper[j];
  const double cost = lp.cost[j];
  if ((cost > 0.0 && low == -kInf) || (cost < 0.0 && high == kInf)) {
    // A cost that is nothing but rounding is not worth a verdict.
    if (std::fabs(cost) <= lp.settings.optimality_tolerance) {
      lp.cost[j] = 0.0;
      return remove_empty_column(lp, j);
    }
    lp.fail(FindingKind::empty_column, j);
    return false;
  }
  if (cost > 0.0) {
    lp.fix_column(j, low, kAtLower);
  } else if (cost < 0.0) {
    lp.fix_column(j, high, kAtUpper);
  } else if (low > -kInf && (high == kInf || std::fabs(low) <= std::fabs(high))) {
    lp.fix_column(j, low, kAtLower);
  } else if (high < kInf) {
    lp.fix_column(j, high, kAtUpper);
  } else {
    lp.fix_column(j, 0.0, kFreeSuper);
  }
  return true;
}

}  // namespace kelvo
