// A run of the dual simplex: phases, clean-up and verified conclusions.
#include <algorithm>
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"
#include "lp/simplex/primal/primal_simplex.h"

namespace kelvo {
namespace {

// Degenerate steps in a row that are tolerated before the costs are perturbed.
constexpr int kSmallLimit = 50;
constexpr int kLargeLimit = 100;
constexpr int kSmallSize = 1000;
// A warm start with at most this many infeasibilities, or this share of the rows, is expected to
// need so few iterations that a perturbation would cost more than it saves.
constexpr int kFewInfeasibilities = 20;
constexpr double kFewInfeasibleShare = 0.02;
// Rounds of "solve, take the true costs, look again" before the primal method has to finish.
constexpr int kRoundLimit = 5;

}  // namespace

DualEngine::DualEngine(SimplexState& state)
    : s_(state), leaving_list_(state), ratio_test_(state), flip_column_(state.m) {}

void DualEngine::follow_shape() {
  leaving_list_.follow_shape();
  ratio_test_.follow_shape();
  flip_column_.clear();
  flip_column_.resize(s_.m);
}

void DualEngine::settle_superbasics() {
  int count = 0;
  for (int j = 0; j < s_.num_vars; ++j) {
    if (s_.basis.status[j] != kFreeSuper || s_.program.is_free(j)) continue;
    ++count;
    const bool upper_nearer =
        s_.program.upper[j] - s_.basis.value[j] <= s_.basis.value[j] - s_.program.lower[j];
    s_.basis.place(j, upper_nearer ? kAtUpper : kAtLower);
  }
  if (count > 0) s_.log.dual_start_superbasics(count);
}

bool DualEngine::worth_perturbing() {
  if (!perturbing_allowed_ || s_.run.settings.perturbation_limit >= 1) return false;
  if (!hot_ && count_dual_infeasibilities(false, s_.run.dual_tolerance) > 0) return true;
  if (!hot_) s_.compute_primals();
  leaving_list_.rebuild();
  leaving_list_ready_ = hot_;
  int count;
  leaving_list_.sum_infeasibilities(count);
  if (count == 0) return false;
  if (s_.run.settings.perturb_at_start) return true;
  const bool slack_basis = std::all_of(s_.basis.header.begin(), s_.basis.header.end(),
                                       [this](int j) { return j >= s_.n; });
  return slack_basis || count > std::max<double>(kFewInfeasibilities, kFewInfeasibleShare * s_.m);
}

// Takes the true costs and looks: optimal, or what is missing? Without a primal infeasibility the
// point stays: boxed variables whose reduced costs got the wrong sign are left to the primal
// method, for which flipping them would spoil a feasible start.
DualEngine::TrueProblem DualEngine::look_at_true_problem() {
  if (hot_ && !s_.program.costs_perturbed()) {
    if (s_.program.num_shifts() > 0) s_.log.shifts_removed(s_.program.num_shifts());
    s_.take_shifts_back();
    s_.release_held();
    if (s_.verify()) return TrueProblem::optimal;
  }
  hot_ = false;
  remove_perturbation();
  s_.release_held();
  if (no_factor(s_.refactorize())) return TrueProblem::dual_work;
  s_.compute_duals();
  s_.compute_primals();
  leaving_list_.rebuild();
  int infeasible;
  leaving_list_.sum_infeasibilities(infeasible);
  if (infeasible == 0) {
    const bool dual_feasible = count_dual_infeasibilities(true, s_.run.dual_tolerance) == 0;
    return dual_feasible ? TrueProblem::optimal : TrueProblem::primal_work;
  }
  flip_infeasible_boxed();
  const bool dual_feasible = count_dual_infeasibilities(false, s_.run.dual_tolerance) == 0;
  return dual_feasible ? TrueProblem::dual_work : TrueProblem::primal_work;
}

SimplexOutcome DualEngine::finish_with_primal() {
  remove_perturbation();
  return run_primal_simplex(s_);
}

SimplexOutcome DualEngine::solve() {
  for (int round = 0; round < kRoundLimit; ++round) {
    if (worth_perturbing()) {
      perturb_costs();
      s_.compute_duals();
      flip_infeasible_boxed();
    }
    if (!hot_ && count_dual_infeasibilities(false, s_.run.dual_tolerance) > 0) {
      if (run_phase_one()) return stop_outcome_;
    }
    switch (run_phase()) {
      case PhaseEnd::feasible: {
        const TrueProblem state = look_at_true_problem();
        if (state == TrueProblem::optimal) return SimplexOutcome::optimal;
        if (state == TrueProblem::primal_work) {
          const SimplexOutcome outcome = finish_with_primal();
          if (outcome != SimplexOutcome::non_optimal) return outcome;
        }
        break;
      }
      case PhaseEnd::no_entering:
        return SimplexOutcome::infeasible;
      case PhaseEnd::objective_limit:
        return SimplexOutcome::objective_limit;
      case PhaseEnd::stopped:
        return stop_outcome_;
      case PhaseEnd::stuck: {
        const SimplexOutcome outcome = finish_with_primal();
        if (outcome != SimplexOutcome::non_optimal) return outcome;
        s_.factor().raise_markowitz();
        break;
      }
    }
    // The next round starts next to the solution and must come to an end.
    perturbing_allowed_ = false;
    hot_ = started_hot_ = false;
  }
  return SimplexOutcome::non_optimal;
}

void DualEngine::begin() {
  choose_pricing();
  degenerate_limit_ = s_.run.settings.perturbation_limit >= 1 ? s_.run.settings.perturbation_limit
                      : s_.num_vars < kSmallSize              ? kSmallLimit
                                                              : kLargeLimit;
  phase_one_ = false;
  trouble_ = degenerate_steps_ = perturbations_ = restores_ = 0;
  perturbing_allowed_ = true;
  limit_refuted_ = false;
  leaving_list_ready_ = false;
  ratio_test_.lift_bans();
}

/// All that a run needs is there from the last one: no pass over all variables is necessary.
bool DualEngine::starts_hot() const {
  return s_.factor_current() && s_.basics.current() && s_.duals.current() && s_.duals.feasible() &&
         !s_.factor().should_refactor();
}

SimplexOutcome DualEngine::run() {
  begin();
  hot_ = started_hot_ = starts_hot();
  if (!hot_) settle_superbasics();
  SimplexOutcome outcome;
  if (!s_.factor_current() && no_factor(s_.refactorize())) {
    outcome = s_.outcome_without_factor();
  } else {
    initialize_weights();
    if (!hot_) {
      s_.compute_duals();
      flip_infeasible_boxed();
    }
    outcome = solve();
  }
  s_.release_held();
  s_.store_results();
  return outcome;
}

}  // namespace kelvo
