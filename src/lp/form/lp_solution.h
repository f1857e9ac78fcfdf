// A solution of an LpProblem in the units of that program, and of its minimization.
#pragma once

#include "base/containers.h"

namespace kelvo {

/// The layers that a solution has; without a basis it has no statuses, without duals neither.
struct Layers {
  bool values = true, duals = true, basis = true;
};

/// As many layers as it has: a point alone, with duals, or a basic solution. The arrays of layers
/// that it does not have are not looked at.
struct LpSolution {
  Layers layers;
  Vector<double> x;    // [num_cols]
  Vector<double> y;    // [num_rows]
  Vector<double> z;    // [num_cols] reduced costs c - A'y; 0 for basic columns
  Vector<int> status;  // [num_cols + num_rows] BasisStatus, logicals after the columns
  // Filled by complete_and_measure() in verification.h, which also computes z.
  Vector<double> activity;  // [num_rows] A x
  double objective = 0.0;   // c'x, without the offset
  // False: x and y belong together, but the logicals of some equations that are basic should not
  // be, and may have duals other than 0; push_duals() says what is basic in their place.
  bool basis_is_settled = true;
};

}  // namespace kelvo
