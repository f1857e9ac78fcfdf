// The continuous model that is left of a mixed-integer one when its decisions are those of a given
// point: what the views of types 3, 8 and 13 show.
//
// With x the point, rounded where it has to be integer,
//   - integer columns are fixed at x, a semi-continuous column at 0 is fixed there, and members of
//     special ordered sets that are 0 in x are fixed at 0;
//   - the rows of indicator constraints that are active in x, and the lazy constraints, are
//   ordinary
//     rows behind those of the model (in this order);
//   - a row that x must violate ("row holds only if ...", and the column says no) cannot be
//     expressed; its columns are all fixed at x instead.
// So every point that is feasible for the result is feasible for the mixed-integer model.
// Objective, quadratic data and names are the same; user cuts, which follow from the rest, are left
// out.
#pragma once

#include "prob/model/model.h"

namespace kelvo {

/// `x` [columns]; values of magnitude up to `tolerance` count as 0. Throws std::bad_alloc.
Model fixed_model(const Model& model, const double* x, double tolerance);

}  // namespace kelvo
