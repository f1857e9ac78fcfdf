// The linear part of a model as the program the engines solve, and values on the way back.
//
// A maximization becomes the minimization of the negated objective; a row  L <= a x <= U  gets the
// logical bounds [-U, -L]; an infinite number of the model becomes an IEEE infinity; stored zeros
// of the matrix are dropped. Column types, sets, quadratic data and the like are not looked at.
#pragma once

#include "lp/form/lp_problem.h"
#include "lp/form/scaling.h"
#include "prob/model/model.h"
#include "prob/solution.h"

namespace kelvo {

/// Builds the unscaled program. Its name context is the model, which must outlive the names' use.
LpProblem make_lp_problem(const Model& model);

/// The same with an empty row-wise matrix.
LpProblem make_columnwise_lp(const Model& model);

/// True when `lp`, scaled by `scaling`, has the dimensions and the matrix of the model.
bool has_matrix_of(const LpProblem& lp, const Scaling& scaling, const Model& model);

struct LpChanges {
  bool costs = false;
  bool bounds = false;
};

/// Copies costs and bounds of the model, whose matrix is that of `lp`, into the scaled program and
/// says whether anything was different.
LpChanges refresh_costs_and_bounds(LpProblem& lp, const Scaling& scaling, const Model& model);

/// Closes intervals whose bounds cross: both become their mean. For crossings within the
/// feasibility tolerance; anything wider is infeasible and never comes here.
void close_crossed_bounds(LpProblem& lp);

/// Status codes of all variables of the program from a stored basis, and back.
void stored_to_lp_status(const StoredBasis& basis, const Model& model, Vector<int>& status);
void lp_to_stored_status(const Vector<int>& status, const Model& model, StoredBasis& basis);

}  // namespace kelvo
