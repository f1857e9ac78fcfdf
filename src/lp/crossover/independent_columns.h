// A nonsingular basis out of variables that may be too many, too few or dependent.
#pragma once

#include "base/containers.h"
#include "lp/form/lp_problem.h"

namespace kelvo {

/// Chooses from the variables offered (columns j, or n + i for the slack of row i), those first
/// that come first, as many as the factorization finds independent, and slacks for the rows that
/// are left. Returns a mark [columns + rows] per variable: 1 for basic.
Vector<char> choose_independent(const LpProblem& lp, const Vector<int>& offered);

}  // namespace kelvo
