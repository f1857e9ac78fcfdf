// What a caller lends to a run of a simplex method: where messages go, what may stop the run, and
// who takes part in it. Nothing of it is kept when the run ends.
#pragma once

#include "base/messages.h"
#include "base/stop_check.h"

namespace kelvo {

/// Called before each iteration; non-zero stops the run as aborted. `phase_one` tells the phase.
class IterationHook {
 public:
  virtual ~IterationHook() = default;
  virtual int before_iteration(bool dual, bool phase_one) = 0;
};

/// Works at a better start than the basis of a run that takes long. Work is counted in nonzeros
/// touched, so that runs repeat exactly.
class Rival {
 public:
  virtual ~Rival() = default;
  /// The work of the run at which the next turn is due.
  virtual double due() const = 0;
  /// Works for a while; true ends the run as superseded.
  virtual bool take_turn() = 0;
};

/// Any part may be null: no messages, no stop, no hook, no rival.
struct RunContext {
  MessageSink* sink = nullptr;
  StopCheck* stop = nullptr;
  IterationHook* hook = nullptr;
  Rival* rival = nullptr;
};

}  // namespace kelvo
