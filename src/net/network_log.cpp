#include "net/network_log.h"

#include "base/clock.h"

namespace kelvo {
namespace {

constexpr Channel kChannel = Channel::results;
constexpr int kTrueObjective = 1;  // a value of the display

/// Iterations between lines, by the number of arcs.
int log_interval(int num_arcs) {
  struct Step {
    int arcs_below;
    int interval;
  };
  constexpr Step kSteps[] = {{100, 10}, {1000, 100}, {10000, 1000}, {25000, 5000}};
  for (const Step& step : kSteps) {
    if (num_arcs < step.arcs_below) return step.interval;
  }
  return 10000;
}

}  // namespace

NetworkLog::NetworkLog(MessageSink& sink, int display, int num_arcs, double sense,
                       NetworkCallback* callback)
    : sink_(sink),
      display_(display),
      interval_(log_interval(num_arcs)),
      sense_(sense),
      callback_(callback),
      start_(wall_seconds()) {
  if (display_ != 0) sink_.send(kChannel, "Iteration log . . .\n");
}

int NetworkLog::iteration(int iteration, bool phase_one, double objective, double infeasibility) {
  if (display_ != 0) line(iteration, phase_one, objective, infeasibility);
  return callback_ != nullptr ? callback_->call() : 0;
}

void NetworkLog::line(int iteration, bool phase_one, double objective, double infeasibility) {
  constexpr int kLinesPerTime = 10;
  if (++lines_ % kLinesPerTime == 0) {
    sink_.print(kChannel, "Elapsed time = %7.2f\n", wall_seconds() - start_);
  }
  if (phase_one) {
    const double measure = display_ == kTrueObjective ? infeasibility : objective;
    sink_.print(kChannel, "Iteration:%6d   Infeasibility     = %20.6f (%g)\n", iteration,
                sense_ * measure, infeasibility);
  } else {
    sink_.print(kChannel, "Iteration:%6d   Objective         = %20.6f\n", iteration,
                sense_ * objective + 0.0);
  }
  sink_.flush(kChannel);
}

void NetworkLog::end(NetworkOutcome outcome) {
  if (outcome == NetworkOutcome::numerical) {
    sink_.send(kChannel, "Numerical difficulties encountered.\n");
  }
}

}  // namespace kelvo
