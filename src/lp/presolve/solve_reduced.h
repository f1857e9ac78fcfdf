// Reduced program, inner solve, postsolve: the same course for every optimizer.
#pragma once

#include <utility>

#include "lp/presolve/presolve.h"

namespace kelvo {

/// Solves the reduced program by `inner(reduced, solution)`, which is any optimizer: it fills a
/// solution of the reduced program with the layers that it has (a tree search x alone, an interior
/// point method x, y and z, a simplex method all), says whether there is one, and may keep what it
/// likes of its own outcome. `original` gets the solution of the original program with the same
/// layers. False, with `original` unchanged, when there is none.
template <class InnerSolve>
bool solve_reduced(const Presolve& presolve, const LpProblem& reduced, InnerSolve&& inner,
                   LpSolution& original) {
  LpSolution small;
  if (!std::forward<InnerSolve>(inner)(reduced, small)) return false;
  presolve.postsolve(small, original);
  return true;
}

}  // namespace kelvo
