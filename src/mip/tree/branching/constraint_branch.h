// Branches on what is not an integer column: semi-continuous columns, indicators, sets.
#pragma once

#include <optional>

#include "mip/form/mip_problem.h"
#include "mip/relaxation/node_lp.h"
#include "mip/tree/node.h"

namespace kelvo {

/// Two ways to go on, of which every point of the node takes one; the point at hand takes none.
struct ConstraintBranch {
  int column = -1;       // the column that the first decisions are about
  char direction = 'C';  // of the node records; D and U when the branch is about a single column
  Vector<Decision> down, up;
};

/// The branch on the requirement that the point x [num_cols] of the node's LP misses most, relative
/// to its kind; none when x meets them all. Integer columns are whole in x.
std::optional<ConstraintBranch> find_constraint_branch(const MipProblem& mip, const NodeLp& lp,
                                                       const Vector<double>& x,
                                                       const MipTolerances& tolerances);

}  // namespace kelvo
