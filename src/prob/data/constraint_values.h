// Sets, indicator constraints and quadratic constraints at a point x [columns].
//
// The slack of a constraint is its right-hand side minus its activity. Its infeasibility is 0 when
// it is satisfied; otherwise the amount by which the activity lies above its limit (positive) or
// below it (negative).
#pragma once

#include "prob/model/model.h"

namespace kelvo {

/// The least sum of |x_j| over members that have to become 0 for the set to be satisfied: a set of
/// type 1 may keep one member, a set of type 2 two that are neighbours by weight. Values of
/// magnitude up to `tolerance` count as 0. Throws std::bad_alloc.
double set_infeasibility(const SosSets& sets, int set, const double* x, double tolerance);

/// Activity of the linear row of an indicator constraint.
double indicator_activity(const IndicatorConstraints& indicators, int k, const double* x);

struct IndicatorTolerances {
  double integrality = 1e-5;  // the binary column is inactive within this
  double feasibility = 1e-6;  // the row holds within this
};

/// Infeasibility of the row where it has to hold. Where it must not hold (the relation says that it
/// holds only while the column is active) but does: the distance of the column from activity.
double indicator_infeasibility(const IndicatorConstraints& indicators, int k, const double* x,
                               const IndicatorTolerances& tolerances);

/// Linear plus quadratic part, a'x + x'Qx as the terms were given.
double quadratic_activity(const QuadraticConstraint& constraint, const double* x);

double quadratic_infeasibility(const QuadraticConstraint& constraint, const double* x);

}  // namespace kelvo
