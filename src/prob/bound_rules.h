// How a bound change given by a caller becomes a stored bound.
//
// A value of magnitude 1e17 or more means "no bound": it is stored as infinite (1e20) on the side
// where that relaxes, and ignored with a warning on the other side. A value below 1e-10 in
// magnitude is stored as exactly 0.
#pragma once

#include "base/containers.h"
#include "base/messages.h"
#include "prob/problem.h"

namespace kelvo {

/// Input of this magnitude or more is infinite.
inline constexpr double kInfiniteBoundInput = 1e17;
/// Input below this magnitude is zero.
inline constexpr double kZeroBoundInput = 1e-10;

/// The changes to store for `count` entries with the codes 'L', 'U', 'B' (both); entries with other
/// codes change nothing. Ignored values are reported on the warning channel of `sink`. Throws
/// std::bad_alloc.
Vector<BoundChange> bound_changes(MessageSink& sink, const int* columns, const char* codes,
                                  const double* values, int count);

}  // namespace kelvo
