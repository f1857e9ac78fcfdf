// A start basis from values alone.
//
// An optimal point, its duals or both, without a basis, determine one: what is strictly between its
// bounds is basic, and so is what has no multiplier when only multipliers are known. At a
// nondegenerate vertex that is the basis itself. Where there are more candidates than rows (a point
// that is no vertex), slacks come first, then the columns farthest from their bounds; the columns
// left over are superbasic and keep their values. Where there are fewer, slacks complete the basis
// when it is used. What a point violates counts as being at the bound.
#pragma once

#include <limits>

#include "lp/form/lp_problem.h"
#include "lp/form/lp_start.h"

namespace kelvo {

/// A place or multiplier that is not known: no comparison with it is true.
inline constexpr double kUnknownValue = std::numeric_limits<double>::quiet_NaN();

/// What is known of the variables of a linear program, each vector [num_vars] or empty. Multipliers
/// are those of the minimization.
struct VariableValues {
  Vector<double> place;
  Vector<double> multiplier;
};

/// Moves places into the bounds.
void clamp_places(const LpProblem& lp, Vector<double>& place);

/// The places of all variables when the columns are at x [num_cols], which is taken over.
Vector<double> places_at(const LpProblem& lp, Vector<double>&& x);

/// `tolerance`: distances from bounds, relative to the numbers, and multipliers below it are 0. The
/// row-wise matrix is not looked at.
LpStart basis_from_values(const LpProblem& lp, const VariableValues& values, double tolerance);

}  // namespace kelvo
