// Column types: 'C' continuous, 'I' integer, 'B' binary, 'S' semi-continuous (0 or within its
// bounds), 'N' semi-integer (the same, and integer).
#pragma once

#include "prob/model/model.h"

namespace kelvo {

/// A bound this near to an integer counts as that integer.
inline constexpr double kIntegralBoundTolerance = 1e-9;

/// True for types whose values are integers: all but 'C' and 'S'.
constexpr bool is_integer_type(char type) {
  return type != 'C' && type != 'S';
}

/// True for types whose columns may be 0 whatever their bounds say.
constexpr bool is_semi_type(char type) {
  return type == 'S' || type == 'N';
}

/// Rounds the finite bounds of all integer columns inward. Returns whether one of them moved by
/// more than the tolerance.
bool round_integer_bounds(Model& model) noexcept;

}  // namespace kelvo
