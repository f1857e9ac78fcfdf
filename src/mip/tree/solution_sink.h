// Where the search brings the points it finds.
#pragma once

#include "base/containers.h"

namespace kelvo {

/// Who found a point.
enum class SolutionSource { node_lp, heuristic, start, user };

class SolutionSink {
 public:
  virtual ~SolutionSink() = default;
  /// A point [num_cols] of the searched program whose integer columns are whole within the
  /// tolerance. True when it became the incumbent; `objective` is then that of the searched
  /// program at the point that was kept.
  virtual bool offer(const Vector<double>& x, SolutionSource source, double& objective) = 0;
  /// False when the last point that was refused failed a check, rather than being no improvement.
  virtual bool last_was_feasible() const = 0;
};

}  // namespace kelvo
