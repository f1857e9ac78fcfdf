// Bounds that the rows imply, without a reduced program: the strengthening part of presolve alone.
// All columns count as continuous, which is sound for integer ones, too.
#pragma once

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

struct StrengthenedBounds {
  Finding finding;  // kind `none` unless the program is infeasible
  // [columns]. Those of a column that may be 0 beside hold where it is not 0; when it can only be
  // 0, both are.
  Vector<double> lower, upper;
  Vector<char> row_is_redundant;  // [rows] 1: the bounds keep the row
};

/// `may_be_zero` [columns] or empty; 1: the column (a semi-continuous one) is 0 or within its
/// bounds. The program has its rows.
StrengthenedBounds strengthen_bounds(const LpProblem& lp, const Vector<char>& may_be_zero,
                                     const PresolveSettings& settings, StopCheck& stop);

}  // namespace kelvo
