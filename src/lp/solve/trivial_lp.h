// Linear programs that need no simplex: without rows or without columns, or with an empty interval.
#pragma once

#include "lp/form/lp_problem.h"
#include "lp/solve/lp_answer.h"

namespace kelvo {

/// Fills the answer when the program is such a one; false otherwise. `tolerance` is the feasibility
/// tolerance.
bool solve_trivial_lp(const LpProblem& lp, double tolerance, LpAnswer& answer);

}  // namespace kelvo
