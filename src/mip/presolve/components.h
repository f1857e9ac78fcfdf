// Parts of a program that have nothing in common: no row, set or indicator joins their columns.
#pragma once

#include "mip/form/mip_problem.h"

namespace kelvo {

/// Ascending.
struct Component {
  Vector<int> cols;
  Vector<int> rows;
};

/// The components, those with the fewest columns first; empty when the program is all of one
/// piece. Rows without entries belong to none.
Vector<Component> find_components(const MipProblem& mip);

}  // namespace kelvo
