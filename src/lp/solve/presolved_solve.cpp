// Solving by way of the presolved program. An infeasible or unbounded reduced program is taken up
// on the full one from the basis that goes back, so that its proof is one for the program itself.
#include <algorithm>
#include <cmath>

#include "lp/crossover/dual_push.h"
#include "lp/form/verification.h"
#include "lp/presolve/solve_reduced.h"
#include "lp/solve/driver_log.h"
#include "lp/solve/dual_solve.h"
#include "lp/solve/lp_solver.h"
#include "lp/solve/presolve_log.h"

namespace kelvo {

namespace {

/// Distances from a bound are known to this share of the numbers they come from.
double largest_gap(const LpSolution& solution, double tolerance) {
  constexpr double kShare = 1e-9;
  double size = 1.0;
  for (const double x : solution.x) size = std::max(size, std::fabs(x));
  for (const double activity : solution.activity) size = std::max(size, std::fabs(activity));
  return std::max(tolerance, kShare * size);
}

class PresolvedSolve {
 public:
  PresolvedSolve(const LpProblem& lp, Owned<WorkingLp>& working, const LpStart& start,
                 const LpAlgorithm& algorithm, const DriverSettings& settings,
                 const CallContext& context)
      : lp_(lp),
        working_(working),
        start_(start),
        algorithm_(algorithm),
        settings_(settings),
        context_(context) {}

  LpAnswer run(const PresolvedLp& presolved);

 private:
  LpAnswer solve_inner(const PresolvedLp& presolved, const LpProblem& reduced) const;
  bool settle_basis(LpSolution& basic) const;
  void judge(LpAnswer& answer) const;
  LpAnswer conclude(LpAnswer&& answer, bool proved);
  LpAnswer continue_from(const LpStart& start, const LpAnswer& earlier,
                         const LpAlgorithm& algorithm);
  /// The settings for what follows a part of the solve: the iteration limit counts both.
  DriverSettings settings_after(const LpAnswer& earlier) const;

  const LpProblem& lp_;
  Owned<WorkingLp>& working_;
  const LpStart& start_;
  const LpAlgorithm& algorithm_;
  const DriverSettings& settings_;
  const CallContext& context_;
};

DriverSettings PresolvedSolve::settings_after(const LpAnswer& earlier) const {
  DriverSettings settings = settings_;
  int& limit = settings.simplex.iteration_limit;
  limit = std::max(0, limit - earlier.iterations);
  return settings;
}

LpAnswer PresolvedSolve::solve_inner(const PresolvedLp& presolved, const LpProblem& reduced) const {
  Owned<WorkingLp> working;
  if (settings_.use_basis && start_.present) {
    // A start is one of the primal.
    DriverLog(context_.sink, settings_.simplex.display).crushed_basis();
    return solve_without_presolve(reduced, working, presolved.crush(start_, lp_), algorithm_,
                                  settings_, context_);
  }
  LpAnswer dual;
  if (prefers_dual_form(reduced, settings_.presolve) &&
      solve_dual_form(reduced, algorithm_, settings_, context_, dual)) {
    return dual;
  }
  LpAnswer primal = solve_without_presolve(reduced, working, LpStart(), algorithm_,
                                           settings_after(dual), context_);
  primal.count_iterations_of(dual);
  return primal;
}

/// False when the values are no longer those of the basis.
bool PresolvedSolve::settle_basis(LpSolution& basic) const {
  if (!basic.layers.basis || basic.basis_is_settled) return true;
  return push_duals(with_rows(lp_), basic.y, basic.status, context_.stop);
}

/// Measures a solution that has come from the reduced program on the program itself.
void PresolvedSolve::judge(LpAnswer& answer) const {
  LpSolution& solution = answer.solution;
  const bool settled = settle_basis(solution);
  const double feasibility = settings_.simplex.feasibility_tolerance;
  const double optimality = settings_.simplex.optimality_tolerance;
  const ProgramView view(lp_);
  const Violations violations = complete_and_measure(view, solution);
  answer.has_solution = true;
  answer.primal_feasible = violations.primal <= feasibility;
  answer.dual_feasible = settled && violations.dual <= optimality && violations.gap <= optimality;
  if (!solution.layers.basis) return;
  // A reduced cost of the right sign proves nothing where the variable is not at its bound.
  const double apart = measure_complementarity(view, optimality, solution);
  answer.dual_feasible = answer.dual_feasible && apart <= largest_gap(solution, feasibility);
}

LpAnswer PresolvedSolve::continue_from(const LpStart& start, const LpAnswer& earlier,
                                       const LpAlgorithm& algorithm) {
  DriverSettings settings = settings_after(earlier);
  settings.use_basis = start.present;
  LpAnswer full = solve_without_presolve(lp_, working_, start, algorithm, settings, context_);
  full.count_iterations_of(earlier);
  return full;
}

/// What a judged answer lacks is a matter of the simplex method from its basis. `proved`: the
/// reduced program is infeasible or unbounded.
LpAnswer PresolvedSolve::conclude(LpAnswer&& answer, bool proved) {
  if (!proved && answer.is_feasible()) {
    answer.outcome = LpOutcome::optimal;
    return std::move(answer);
  }
  if (!answer.solution.layers.basis) {
    if (answer.outcome == LpOutcome::optimal) {
      answer.outcome = LpOutcome::optimal_unscaled_infeasible;
    }
    return std::move(answer);
  }
  LpStart start;
  start.present = true;
  start.status = answer.solution.status;
  LpAnswer full = continue_from(
      start, answer, algorithm_of(answer.primal_feasible ? LpMethod::primal : LpMethod::dual));
  // What was proved of the reduced program holds, even when the full one resists.
  if (full.outcome == LpOutcome::non_optimal && proved) full.outcome = answer.outcome;
  return full;
}

LpAnswer PresolvedSolve::run(const PresolvedLp& presolved) {
  LpAnswer small, answer;
  const bool solved = solve_reduced(
      presolved.presolve(), presolved.reduced(),
      [&](const LpProblem& reduced, LpSolution& solution) {
        small = solve_inner(presolved, reduced);
        solution = std::move(small.solution);
        return !small.singular && small.has_solution;
      },
      answer.solution);
  if (!solved) return continue_from(LpStart(), small, algorithm_);
  answer.outcome = small.outcome;
  answer.condition = small.condition;
  answer.count_iterations_of(small);
  judge(answer);
  switch (answer.outcome) {
    case LpOutcome::optimal:
    case LpOutcome::optimal_unscaled_infeasible:
    case LpOutcome::non_optimal:
      return conclude(std::move(answer), false);
    case LpOutcome::infeasible:
    case LpOutcome::unbounded:
      return conclude(std::move(answer), true);
    case LpOutcome::infeasible_or_unbounded:
    case LpOutcome::iteration_limit:
    case LpOutcome::time_limit:
    case LpOutcome::objective_limit:
    case LpOutcome::aborted:
      break;  // stopped
  }
  return answer;
}

LpOutcome outcome_of(PresolveOutcome outcome) {
  switch (outcome) {
    case PresolveOutcome::infeasible:
      return LpOutcome::infeasible;
    case PresolveOutcome::dual_infeasible:
      return LpOutcome::infeasible_or_unbounded;
    case PresolveOutcome::time_limit:
      return LpOutcome::time_limit;
    case PresolveOutcome::aborted:
    case PresolveOutcome::reduced:
    case PresolveOutcome::unchanged:
      break;
  }
  return LpOutcome::aborted;
}

/// Null when memory runs out.
Owned<PresolvedLp> try_presolve(const LpProblem& lp, const DriverSettings& settings,
                                const CallContext& context) {
  PresolveLog log(context.sink, settings.presolve);
  try {
    auto presolved =
        make_owned<PresolvedLp>(lp, settings.presolve, settings.protected_columns, context, log);
    log.time();
    return presolved;
  } catch (const std::bad_alloc&) {
    context.sink.send(Channel::warning, "Insufficient memory for presolve.\n");
    return nullptr;
  }
}

}  // namespace

LpAnswer solve_with_presolve(const LpProblem& lp, Owned<WorkingLp>& working, const LpStart& start,
                             const LpAlgorithm& algorithm, const DriverSettings& settings,
                             const CallContext& context, Owned<PresolvedLp>& presolved) {
  presolved = try_presolve(lp, settings, context);
  const bool unchanged = presolved != nullptr && presolved->outcome() == PresolveOutcome::unchanged;
  if (unchanged && prefers_dual_form(lp, settings.presolve) &&
      !(settings.use_basis && start.present)) {
    presolved->keep_identity(lp);
  }
  if (presolved == nullptr || (unchanged && !presolved->has_reduced())) {
    return solve_without_presolve(lp, working, start, algorithm, settings, context);
  }
  if (presolved->has_reduced()) {
    working.reset();
    return PresolvedSolve(lp, working, start, algorithm, settings, context).run(*presolved);
  }
  LpAnswer answer;
  answer.outcome = outcome_of(presolved->outcome());
  return answer;
}

}  // namespace kelvo
