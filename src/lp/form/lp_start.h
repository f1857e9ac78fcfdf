// Where a solve of an LpProblem starts: a basis, with what is known beside it.
#pragma once

#include "base/containers.h"

namespace kelvo {

struct LpStart {
  bool present = false;
  Vector<int> status;  // [num_vars] BasisStatus; the number of basic variables may be wrong
  Vector<double> x;    // [num_cols] where superbasic columns are; or empty
  // Squared steepest-edge norms of this basis in the program's units, 0 where none is known; each
  // [num_vars] or empty: dual ones of basic variables, primal ones of all.
  Vector<double> dual_norm;
  Vector<double> primal_norm;

  bool has_norms() const { return !dual_norm.empty() || !primal_norm.empty(); }
};

}  // namespace kelvo
