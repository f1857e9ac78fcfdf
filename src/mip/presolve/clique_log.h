// What the building of the clique table says.
#pragma once

#include "base/clock.h"
#include "base/messages.h"

namespace kelvo {

/// A phase that may take long: "merging" or "growth".
class CliquePhaseLog {
 public:
  CliquePhaseLog(const char* phase, MessageSink& sink, bool reports)
      : phase_(phase), sink_(sink), reports_(reports) {}

  /// `share` of the phase is done.
  void progress(double share) {
    constexpr double kSecondsBetween = 10.0;
    const double now = wall_seconds();
    if (!reports_ || now - last_report_ <= kSecondsBetween) return;
    last_report_ = now;
    sink_.print(Channel::results, "Elapsed time %7.2f sec. for %.0f%% of clique %s\n", now - start_,
                100.0 * share, phase_);
  }
  /// The end of merging, where it was long.
  void merging_end() {
    if (last_report_ == start_) return;
    sink_.print(Channel::results, "Clique merging time = %7.2f sec.\n", wall_seconds() - start_);
  }

 private:
  const char* const phase_;
  MessageSink& sink_;
  const bool reports_;
  const double start_ = wall_seconds();
  double last_report_ = start_;
};

}  // namespace kelvo
