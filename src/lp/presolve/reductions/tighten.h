// Bounds that the rows imply, without a reduced program: the strengthening part of presolve alone.
// All columns count as continuous, which is sound for integer ones, too.
#pragma once

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

struct StrengthenedBounds {
  Finding finding;                // kind `none` unless the program is infeasible
  Vector<double> lower, upper;    // [columns]
  Vector<char> row_is_redundant;  // [rows] 1: the bounds keep the row
};

StrengthenedBounds strengthen_bounds(const LpProblem& lp, const PresolveSettings& settings,
                                     StopCheck& stop);

}  // namespace kelvo
