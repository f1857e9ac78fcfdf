// What sifting says.
#pragma once

#include "lp/simplex/simplex_log.h"

namespace kelvo {

/// Shows passes as lines of the iteration log.
class SiftingLog {
 public:
  /// `sink` may be null. The program must outlive the object.
  SiftingLog(const LpProblem& whole, const SimplexSettings& settings, MessageSink* sink)
      : log_(whole) {
    log_.write_to(sink);
    log_.begin_run(settings, 0);
  }
  /// A pass whose work program had a feasible point, with its objective, which is that of a point
  /// of the whole program.
  void pass(int iterations, double objective) {
    log_.primal_iteration(iterations, 0, false, objective);
  }

 private:
  SimplexLog log_;
};

}  // namespace kelvo
