// Reduced-cost fixing.
//
// With reduced costs z and the bound of an LP, a column at its lower bound with z_j > 0 costs z_j
// for each unit that it leaves it, so that no better solution has  x_j > l_j + (cutoff - bound) /
// z_j; at its upper bound, with z_j < 0, alike from below.
//
// Dantzig, Fulkerson, Johnson (1954), Solution of a large-scale traveling-salesman problem.
// Operations Research 2.
#pragma once

#include "mip/domain/domain.h"

namespace kelvo {

/// Tightens what the reduced costs `z` [num_cols] of an LP over the domain's bounds imply, given
/// its objective `lp_bound` with the offset, at least as good as optimal. At level 0 for good;
/// elsewhere without explanation. Returns the number of tightened bounds; -1: there is no better
/// solution.
int fix_by_reduced_costs(Domain& domain, const Vector<double>& z, double lp_bound, double cutoff);

/// The same by propagating a bound_proof() over the local bounds, which relies on no tolerance of
/// the LP and explains its bounds.
int fix_by_proof(Domain& domain, LinearProof proof);

}  // namespace kelvo
