// A direction of unboundedness with all the digits that doubles can hold.
#pragma once

#include "lp/form/lp_problem.h"

namespace kelvo {

/// Improves a direction r [num_vars], A r_x + r_s = 0, whose nonbasic part is exact: steps of
/// iterative refinement on its basic part, with residuals in extended precision (C. B. Moler,
/// "Iterative refinement in floating point", Journal of the ACM 14, 1967), make each row's sum as
/// small as the rounding of its own terms. What errors of the simplex method had hidden then shows
/// as entries of the wrong sign. Leaves `ray` unchanged when the basis cannot be factored.
/// `status` [num_vars]: BasisStatus codes.
void refine_ray(const LpProblem& lp, const Vector<int>& status, Vector<double>& ray);

}  // namespace kelvo
