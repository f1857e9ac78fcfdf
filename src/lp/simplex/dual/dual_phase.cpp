// A phase of the dual simplex: refactorizations, limits, and iterations until no choice is left.
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"

namespace kelvo {
namespace {

constexpr int kTroubleLimit = 3;   // pivots that disagree before the Markowitz threshold is raised
constexpr int kRestoreLimit = 20;  // returns to an older basis before the phase is given up
constexpr double kNoStep = 1e-12;  // dual steps of this size or less count as degenerate

}  // namespace

// Everything from scratch with a fresh factor. False when there is none; stop_outcome_ says why.
bool DualEngine::rebuild() {
  hot_ = false;
  if (trouble_ >= kTroubleLimit) {
    s_.factor().raise_markowitz();
    trouble_ = 0;
  }
  const Refactored result = s_.refactorize();
  if (no_factor(result)) {
    stop_outcome_ = s_.outcome_without_factor();
    return false;
  }
  if (result == Refactored::restored) {
    // The same costs would lead to the same singular basis again.
    if (++restores_ > kRestoreLimit) {
      stop_outcome_ = SimplexOutcome::singular;
      return false;
    }
    perturb_costs();
  }
  if (result != Refactored::ok) initialize_weights();
  s_.compute_duals();
  correct_duals();
  s_.compute_primals();
  s_.duals.objective = s_.duals.working_objective();
  hot_ = started_hot_ && result == Refactored::ok && !s_.program.costs_perturbed();
  start_choices();
  return true;
}

void DualEngine::start_choices() {
  if (!leaving_list_ready_) leaving_list_.rebuild();
  leaving_list_ready_ = false;
  ratio_test_.lift_bans();
  limit_refuted_ = false;
  if (s_.log.line_due(s_.factor().statistics().factorizations)) log_phase_line();
}

double DualEngine::dual_infeasibility_sum() const {
  double sum = 0.0;
  for (int j = 0; j < s_.num_vars; ++j) {
    if (s_.basis.status[j] == kBasic || s_.basis.held[j]) continue;
    const double lower = s_.problem.lower[j];
    const double upper = s_.problem.upper[j];
    const double d = s_.duals.reduced_cost[j];
    if (lower == -kInf && upper == kInf) {
      sum += std::fabs(d);
    } else if (upper == kInf && d < 0.0) {
      sum -= d;
    } else if (lower == -kInf && d > 0.0) {
      sum += d;
    }
  }
  return sum;
}

void DualEngine::log_phase_line() {
  s_.log.dual_iteration(s_.run.iterations, s_.factor().statistics().factorizations, phase_one_,
                        phase_one_ ? dual_infeasibility_sum() : s_.duals.objective);
}

// Counts steps without progress; true when the costs should be perturbed before going on.
bool DualEngine::stalls(double dual_step) {
  if (std::fabs(dual_step) > kNoStep) {
    degenerate_steps_ = 0;
    return false;
  }
  if (++degenerate_steps_ <= degenerate_limit_ || !perturbing_allowed_) return false;
  degenerate_steps_ = 0;
  degenerate_limit_ *= 2;
  return true;
}

DualEngine::PhaseEnd DualEngine::run_phase() {
  for (bool first = true;; first = false) {
    if (hot_ && first) {
      start_choices();
    } else if (!rebuild()) {
      return PhaseEnd::stopped;
    }
    Step step = Step::done;
    while (step == Step::done) {
      if (const auto stop = s_.interrupted(true, phase_one_)) {
        stop_outcome_ = *stop;
        return PhaseEnd::stopped;
      }
      if (!phase_one_ && !limit_refuted_ &&
          s_.duals.objective > s_.run.settings.objective_upper_limit) {
        if (prove_objective_limit()) return PhaseEnd::objective_limit;
        limit_refuted_ = true;
      }
      step = iterate();
      s_.log.elapsed(s_.run.iterations, false);
      // Conclusions are drawn from freshly computed values only, or verified.
      if (step == Step::refactor || (!hot_ && !s_.freshly_factored())) continue;
      if (step == Step::no_leaving) {
        return leaving_list_.banned_any() ? PhaseEnd::stuck : PhaseEnd::feasible;
      }
      if (step == Step::no_entering) {
        if (!phase_one_ && prove_infeasibility()) return PhaseEnd::no_entering;
        if (!s_.freshly_factored()) continue;
        leaving_list_.ban(leaving_);
        step = Step::done;
      }
    }
  }
}

}  // namespace kelvo
