// Permutations of the columns that map a program onto itself.
//
// The search individualizes nodes until the refined partition is discrete, and takes this path back
// level by level. At each level it looks for an automorphism that maps the node chosen there to
// each other node of its cell that is not in its orbit yet: two copies of the partition
// individualize the one and the other and are refined side by side, with further pairs where they
// still differ, until what is left is the same in both. Then single cells facing each other make a
// permutation, which is verified against the graph. There is no backtracking over the further
// pairs, so that symmetries may be missed, but none is made up.
//
// The generators found at a level and above fix the nodes chosen before it, so that the product of
// the orbits' sizes is the number of permutations. (B. D. McKay, "Practical graph isomorphism",
// Congressus Numerantium 30, 1981; P. T. Darga, K. A. Sakallah and I. L. Markov, "Faster symmetry
// discovery using sparsity of symmetries", DAC 2008.)
#pragma once

#include "base/stop_check.h"
#include "mip/form/mip_problem.h"

namespace kelvo {

struct ColumnMove {
  int from, to;
};

struct Symmetry {
  /// Each a permutation of the columns, by the columns that it moves.
  Vector<Vector<ColumnMove>> generators;
  Vector<int> orbit;  // [num_cols] a representative of the column's orbit; empty without any
  // The number of permutations, the identity included; infinite when too large, and its logarithm.
  double order = 1.0, log10_order = 0.0;
  bool is_complete = true;  // false: the search ended before its end
};

/// Is told now and then that the search goes on.
class SymmetryProgress {
 public:
  virtual ~SymmetryProgress() = default;
  virtual void in_progress() = 0;
};

/// `effort` 1 to 5 multiplies the work allowed. `progress` may be null.
Symmetry find_symmetry(const MipProblem& mip, int effort, StopCheck& stop,
                       SymmetryProgress* progress = nullptr);

}  // namespace kelvo
