// The basis a problem stores, factored in the working LP that the problem keeps.
//
// What works on the basis of a solved problem (solves with the basis matrix, ratio tests,
// sensitivity, single pivots) asks here for a working LP that agrees with the model, is at the
// stored basis and holds its factor. After an optimization all of that is there already, and the
// order of the basis positions stays what it was; otherwise it is made again, which costs one
// factorization, and kept.
#pragma once

#include "lp/solve/driver.h"
#include "prob/problem.h"

namespace kelvo {

/// Puts the problem's working LP at the stored basis (the slack basis when it stores none)
/// with a valid factor, primal values and reduced costs. Null when the stored basis is singular,
/// unless `allow_repair`: then slacks replace dependent columns.
WorkingLp* hold_basis(Problem& problem, const DriverSettings& settings, MessageSink& sink,
                      bool allow_repair = false);

/// Stores the basic solution that the working LP is at, with its basis, in the problem: status
/// optimal or non-optimal as it comes out on the model. The counts of iterations stay those of the
/// last optimization.
void store_basic_solution(Problem& problem, const WorkingLp& working,
                          const SimplexSettings& settings);

}  // namespace kelvo
