// A linear inequality that every solution better than the cutoff satisfies.
#pragma once

#include "base/containers.h"

namespace kelvo {

/// sum_k value[k] x_{index[k]} >= rhs over columns and, where rows have local limits, logicals.
/// Each variable at most once.
struct LinearProof {
  Vector<int> index;
  Vector<double> value;
  double rhs = 0.0;
};

}  // namespace kelvo
