// A run's settings, its counters, and what may stop it.
#pragma once

#include <optional>

#include "lp/simplex/run_context.h"
#include "lp/simplex/simplex.h"

namespace kelvo {

class RunControl {
 public:
  RunControl();

  SimplexSettings settings;
  // Tolerances the dual method works with: never looser than the settings', and tight enough that
  // the objective of an accepted basis is right to more digits than any caller needs.
  double primal_tolerance = 0.0;
  double dual_tolerance = 0.0;
  int iterations = 0;  // of all runs
  int phase_one_iterations = 0;

  /// What a call lends to the engine; empty between calls (LentContext).
  void set_context(const RunContext& context);
  StopCheck& stop() const { return *stop_; }

  /// Takes the settings over; limits count from here on. `work` is that of all runs so far.
  void begin(const SimplexSettings& run_settings, double work);
  /// Of this run.
  int run_iterations() const { return iterations - start_iteration_; }
  /// What stops the run before the next iteration: a limit, the hook or the stop check.
  std::optional<SimplexOutcome> interrupted(bool dual, bool phase_one, double work) const;
  static SimplexOutcome outcome_of_stop(StopReason reason) {
    return reason == StopReason::time_limit ? SimplexOutcome::time_limit : SimplexOutcome::aborted;
  }

 private:
  RunContext context_;
  StopCheck* stop_;  // that of the context, or one that never stops
  int start_iteration_ = 0;
  double start_work_ = 0.0;
};

}  // namespace kelvo
