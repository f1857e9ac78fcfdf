// A start basis of structural columns in place of the slack basis.
//
// The logical of a row that may move (one whose bounds differ) stays basic: it is cheap and helps
// any later exchange. The logicals of equations can only be infeasible or leave; columns take their
// rows, the most movable ones first, as long as the basis stays nearly triangular:
//
//  1. A column whose largest entry among the rows that no column of the basis touches is about as
//     large as any of its entries takes that row: the basis stays triangular.
//  2. Otherwise it takes the untaken row of its largest entry there, provided that its entries in
//     rows taken before are small against the pivots of these rows.
//
// Columns are compared after scaling each to a largest entry of 1. They come in the order free, one
// bound, two bounds; within a class by how much they may move, or by their costs, the cheapest
// first.
//
// Source: R. E. Bixby, Implementing the simplex method: the initial basis, ORSA Journal on
// Computing 4 (1992), 267-284.
#pragma once

#include "base/containers.h"
#include "lp/form/lp_problem.h"

namespace kelvo {

enum class CrashOrder { by_bounds, by_costs };

/// Statuses [num_vars] of the crash basis: as many basic variables as rows; nonbasic ones at the
/// bound nearer to 0, free ones at 0 (kFreeSuper).
Vector<int> crash_basis(const LpProblem& lp, CrashOrder order);

}  // namespace kelvo
