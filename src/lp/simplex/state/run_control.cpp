#include "lp/simplex/state/run_control.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr double kOwnTolerance = 1e-8;  // working tolerances are not looser than this

NeverStop never_stop;  // has no state

}  // namespace

RunControl::RunControl() : stop_(&never_stop) {}

void RunControl::set_context(const RunContext& context) {
  context_ = context;
  stop_ = context.stop != nullptr ? context.stop : &never_stop;
}

void RunControl::begin(const SimplexSettings& run_settings, double work) {
  settings = run_settings;
  primal_tolerance = std::min(settings.feasibility_tolerance, kOwnTolerance);
  dual_tolerance = std::min(settings.optimality_tolerance, kOwnTolerance);
  start_iteration_ = iterations;
  start_work_ = work;
}

std::optional<SimplexOutcome> RunControl::interrupted(bool dual, bool phase_one,
                                                      double work) const {
  if (run_iterations() >= settings.iteration_limit) return SimplexOutcome::iteration_limit;
  if (work - start_work_ >= settings.work_limit) return SimplexOutcome::work_limit;
  const StopReason reason = stop_->check();
  if (reason != StopReason::none) return outcome_of_stop(reason);
  IterationHook* const hook = context_.hook;
  if (hook != nullptr && hook->before_iteration(dual, phase_one) != 0) {
    return SimplexOutcome::aborted;
  }
  Rival* const rival = context_.rival;
  if (rival != nullptr && work >= rival->due() && rival->take_turn()) {
    return SimplexOutcome::superseded;
  }
  return std::nullopt;
}

}  // namespace kelvo
