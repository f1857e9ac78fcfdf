// A start basis from values alone.
//
// Somebody who knows an optimal point, its duals or both, but no basis, gets the basis that these
// determine: what stands strictly between its bounds is basic, and so is what has no multiplier
// when only multipliers are known. At a nondegenerate vertex that is the basis itself. Where there
// are more candidates than rows (a point that is no vertex), slacks come first, then the columns
// farthest from their bounds; the columns left over are superbasic and stand at their values. Where
// there are fewer, slacks complete the basis when it is used. What a point violates counts as
// standing at the bound.
#pragma once

#include "prob/model/model.h"
#include "prob/solution.h"

namespace kelvo {

/// What is known of a start, in the model's units and signs; each pointer may be null, and what is
/// missing beside another part of the same side is computed from it.
struct StartValues {
  const double* x = nullptr;      // [columns]
  const double* slack = nullptr;  // [rows] of the slack variables, see solution.h
  const double* dj = nullptr;     // [columns]
  const double* pi = nullptr;     // [rows]

  bool any() const { return x || slack || dj || pi; }
};

/// `tolerance`: distances from bounds, relative to the numbers, and multipliers below it are 0.
StoredBasis basis_from_values(const Model& model, const StartValues& values, double tolerance);

}  // namespace kelvo
