// The basis that values of a linear program determine.
//
// What stands strictly between its bounds is basic, and so is what has no multiplier when only
// multipliers are known. At a nondegenerate vertex that is the basis itself. Where there are more
// candidates than rows (a point that is no vertex), slacks come first, then the columns farthest
// from their bounds; what is left over is superbasic and stands at its value. Where there are
// fewer, slacks complete the basis.
#pragma once

#include "lp/lp_problem.h"

namespace kelvo {

/// What is known of the variables, each vector [columns + rows] or empty; NaN where a single value
/// is unknown. Multipliers are those of the minimization.
struct VariableValues {
  Vector<double> place;
  Vector<double> multiplier;
};

/// Status codes [columns + rows]. `tolerance`: distances from bounds, relative to the numbers, and
/// multipliers below it are 0.
Vector<int> basis_of_values(const LpProblem& lp, const VariableValues& values, double tolerance);

}  // namespace kelvo
