// A few iterations under other bounds, after which everything is as before.
//
// From a dual feasible basis each iteration of the dual method only raises the dual objective, so
// that whatever ends a probe, the value it has reached bounds the objective from below. Costs are
// perturbed only when the iterations stall, and the bound makes up for it.
#include <algorithm>
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"

namespace kelvo {
namespace {

// Up to so many shifted costs are looked at one by one; beyond, a pass over all variables.
constexpr std::size_t kFewShifts = 64;

/// Puts the state back at the end of its life.
class Trial {
 public:
  explicit Trial(SimplexState& state) : state_(state) { state_.begin_trial(); }
  ~Trial() { state_.undo_trial(); }
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

 private:
  SimplexState& state_;
};

}  // namespace

// The row duals y bound the objective for any costs: the terms of a variable whose cost was shifted
// are replaced by the least value of (true reduced cost) * x over its box.
double DualEngine::true_bound() const {
  double bound = s_.duals.objective;
  const auto correct = [&](int j) {
    const double change = s_.problem.cost[j] - s_.program.cost[j];
    if (change == 0.0) return;
    const bool basic = s_.basis.status[j] == kBasic;
    const double d = (basic ? 0.0 : s_.duals.reduced_cost[j]) + change;
    if (!basic) bound -= s_.duals.reduced_cost[j] * s_.basis.value[j];
    const double at = d > 0.0 ? s_.program.lower[j] : s_.program.upper[j];
    if (std::isfinite(at)) {
      bound += d * at;
    } else if (std::fabs(d) > s_.run.settings.optimality_tolerance) {
      bound = -kInf;
    }
  };
  const Vector<int>& shifted = s_.program.shifted();
  if (s_.program.costs_perturbed() || shifted.size() > kFewShifts) {
    for (int j = 0; j < s_.num_vars; ++j) correct(j);
    return bound;
  }
  for (auto at = shifted.begin(); at != shifted.end(); ++at) {
    if (std::find(shifted.begin(), at, *at) == at) correct(*at);
  }
  return bound;
}

SimplexOutcome DualEngine::probe_phase(const Vector<VariableBounds>& changes) {
  s_.change_bounds(changes);
  s_.apply_moves();
  hot_ = s_.duals.feasible();
  if (!hot_) {
    s_.trail.note_everything(s_);
    correct_duals();
    s_.compute_primals();
    s_.duals.objective = s_.duals.working_objective();
    hot_ = true;
  }
  started_hot_ = true;
  switch (run_phase()) {
    case PhaseEnd::feasible:
      return SimplexOutcome::optimal;
    case PhaseEnd::no_entering:
      return SimplexOutcome::infeasible;
    case PhaseEnd::objective_limit:
      return SimplexOutcome::objective_limit;
    case PhaseEnd::stopped:
      return stop_outcome_;
    case PhaseEnd::stuck:
      break;
  }
  return SimplexOutcome::non_optimal;
}

ProbeResult DualEngine::probe(const Vector<VariableBounds>& changes) {
  ProbeResult result;
  const bool empty = std::any_of(changes.begin(), changes.end(),
                                 [](const VariableBounds& c) { return c.lower > c.upper; });
  if (empty) {
    result.outcome = SimplexOutcome::infeasible;
    result.bound = kInf;
    return result;
  }
  begin();
  const int iterations = s_.run.iterations;
  const double work = s_.work();
  if (!s_.factor_current() && no_factor(s_.refactorize())) {
    result.outcome = s_.outcome_without_factor();
    result.bound = -kInf;
    return result;
  }
  initialize_weights();
  if (!s_.duals.feasible() || !s_.basics.current()) {  // a given basis, or other costs
    s_.compute_duals();
    if (!s_.basics.current()) s_.compute_primals();
    s_.duals.objective = s_.duals.working_objective();
    s_.duals.set_feasible(count_dual_infeasibilities(true, s_.run.dual_tolerance) == 0);
  }
  {
    const Trial trial(s_);
    result.outcome = probe_phase(changes);
    result.bound = result.outcome == SimplexOutcome::infeasible ? kInf : true_bound();
  }
  result.iterations = s_.run.iterations - iterations;
  result.work = s_.work() - work;
  return result;
}

}  // namespace kelvo
