// Solving by way of the presolved program. An infeasible or unbounded reduced program is taken up
// on the full one from the basis that goes back, so that its proof is one for the program itself.
#include <algorithm>
#include <cmath>

#include "lp/crossover/dual_push.h"
#include "lp/form/verification.h"
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
  LpAnswer solve_reduced(const PresolvedLp& presolved);
  LpAnswer postsolve(const PresolvedLp& presolved, const LpAnswer& small) const;
  bool settle_basis(LpSolution& basic) const;
  LpAnswer finish(const LpAnswer& answer);

  const LpProblem& lp_;
  Owned<WorkingLp>& working_;
  const LpStart& start_;
  const LpAlgorithm& algorithm_;
  const DriverSettings& settings_;
  const CallContext& context_;
};

LpAnswer PresolvedSolve::solve_reduced(const PresolvedLp& presolved) {
  DriverSettings settings = settings_;
  Owned<WorkingLp> working;
  const LpProblem& reduced = presolved.reduced();
  if (settings.use_basis && start_.present) {
    // A start is one of the primal.
    DriverLog(context_.sink, settings.simplex.display).crushed_basis();
    return solve_without_presolve(reduced, working, presolved.crush(start_, lp_), algorithm_,
                                  settings, context_);
  }
  LpAnswer dual;
  if (prefers_dual_form(reduced, settings.presolve) &&
      solve_dual_form(reduced, algorithm_, settings, context_, dual)) {
    return dual;
  }
  int& limit = settings.simplex.iteration_limit;
  limit = std::max(0, limit - dual.iterations);
  LpAnswer primal =
      solve_without_presolve(reduced, working, LpStart(), algorithm_, settings, context_);
  primal.count_iterations_of(dual);
  return primal;
}

/// False when the values are no longer those of the basis.
bool PresolvedSolve::settle_basis(LpSolution& basic) const {
  if (basic.basis_is_settled) return true;
  return push_duals(with_rows(lp_), basic.y, basic.status, context_.stop);
}

LpAnswer PresolvedSolve::postsolve(const PresolvedLp& presolved, const LpAnswer& small) const {
  LpAnswer answer;
  LpSolution& solution = answer.solution;
  presolved.postsolve(small.solution, solution);
  const bool settled = settle_basis(solution);
  answer.outcome = small.outcome;
  answer.has_solution = true;
  const double feasibility = settings_.simplex.feasibility_tolerance;
  const double optimality = settings_.simplex.optimality_tolerance;
  const ProgramView view(lp_);
  const Violations violations = complete_and_measure(view, solution);
  answer.primal_feasible = violations.primal <= feasibility;
  // A reduced cost of the right sign proves nothing where the variable is not at its bound.
  const double apart = measure_complementarity(view, optimality, solution);
  answer.dual_feasible =
      settled && violations.dual <= optimality && apart <= largest_gap(solution, feasibility);
  answer.condition = small.condition;
  answer.count_iterations_of(small);
  return answer;
}

LpAnswer PresolvedSolve::finish(const LpAnswer& answer) {
  DriverSettings settings = settings_;
  settings.use_basis = true;
  int& limit = settings.simplex.iteration_limit;
  limit = std::max(0, limit - answer.iterations);
  const LpAlgorithm& method =
      algorithm_of(answer.primal_feasible ? LpMethod::primal : LpMethod::dual);
  LpStart start;
  start.present = true;
  start.status = answer.solution.status;
  LpAnswer full = solve_without_presolve(lp_, working_, start, method, settings, context_);
  full.count_iterations_of(answer);
  // What was proved of the reduced program holds, even when the full one resists.
  const bool proved =
      answer.outcome == LpOutcome::infeasible || answer.outcome == LpOutcome::unbounded;
  if (full.outcome == LpOutcome::non_optimal && proved) full.outcome = answer.outcome;
  return full;
}

LpAnswer PresolvedSolve::run(const PresolvedLp& presolved) {
  const LpAnswer small = solve_reduced(presolved);
  if (small.singular || !small.has_solution) {
    DriverSettings settings = settings_;
    settings.use_basis = false;
    return solve_without_presolve(lp_, working_, LpStart(), algorithm_, settings, context_);
  }
  LpAnswer answer = postsolve(presolved, small);
  switch (answer.outcome) {
    case LpOutcome::optimal:
    case LpOutcome::optimal_unscaled_infeasible:
    case LpOutcome::non_optimal:
      if (!answer.is_feasible()) return finish(answer);
      answer.outcome = LpOutcome::optimal;
      return answer;
    case LpOutcome::infeasible:
    case LpOutcome::unbounded:
      return finish(answer);
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
