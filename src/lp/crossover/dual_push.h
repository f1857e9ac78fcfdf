// From optimal values and a basis that does not quite go with them to an optimal basis.
//
// Given are an optimal pair x, y and statuses, m of them basic, such that the nonbasic variables
// stand where their multipliers z = (c, 0) - [A I]'y allow, while some basic variables have
// multipliers other than 0. These are pushed to 0 one at a time. With r = B^-T e_p for a variable
// at basis position p, moving y along r changes its multiplier and those of nonbasic variables
// only:
//
//     y + t r,   z_p - t,   z_j - t r'a_j   (j nonbasic).
//
// If t = z_p leaves every z_j its sign, the variable stays basic. Otherwise the first z_j that
// comes to 0 enters in its place, and the variable, which stands at a bound, leaves. Since x stays,
// the duals stay optimal all along.
//
// Method: N. Megiddo, "On finding primal- and dual-optimal bases", ORSA Journal on Computing 3
// (1991), the dual half.
#pragma once

#include "base/stop_check.h"
#include "lp/form/lp_problem.h"

namespace kelvo {

/// Pushes the multipliers of basic variables to 0, changing y [num_rows] and status [num_vars]. A
/// basic variable that has a multiplier must stand at the bound that goes with its sign. When the
/// basis is singular, the logicals of other rows that complete it take the place of fixed variables
/// or such with multipliers, as far as that is possible. False when it is not, or when the stop
/// check said so: nothing is changed then.
bool push_duals(const LpProblem& lp, Vector<double>& y, Vector<int>& status, StopCheck& stop);

}  // namespace kelvo
