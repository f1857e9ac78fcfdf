#include "lp/solve/dual_solve.h"

#include "lp/form/dual_form.h"
#include "lp/solve/lp_solver.h"

namespace kelvo {

namespace {

// The dual is taken without being requested when the program has so many times more rows than
// columns.
constexpr double kTallProgram = 3.0;

/// The objective runs the other way; the log shows that of the primal.
DriverSettings settings_for_dual(const DriverSettings& settings) {
  DriverSettings dual = settings;
  dual.simplex.sense = -settings.simplex.sense;
  dual.simplex.objective_lower_limit = -settings.simplex.objective_upper_limit;
  dual.simplex.objective_upper_limit = -settings.simplex.objective_lower_limit;
  return dual;
}

}  // namespace

bool prefers_dual_form(const LpProblem& lp, const PresolveSettings& settings) {
  if (lp.num_rows == 0 || lp.num_cols == 0) return false;  // nothing is left to solve
  if (settings.dual_form != 0) return settings.dual_form > 0;
  return lp.num_rows > kTallProgram * lp.num_cols;
}

bool solve_dual_form(const LpProblem& lp, const LpAlgorithm& algorithm,
                     const DriverSettings& settings, const CallContext& context, LpAnswer& answer) {
  LpProblem primal = with_rows(lp);
  close_crossed_bounds(primal);
  const DualForm form(primal);
  if (settings.presolve.progress) {
    context.sink.send(Channel::results, "DUAL formed by presolve\n");
  }
  Owned<WorkingLp> working;
  const LpAnswer found = solve_without_presolve(form.program(), working, LpStart(), algorithm,
                                                settings_for_dual(settings), context);
  answer.iterations = found.iterations;
  answer.phase_one_iterations = found.phase_one_iterations;
  answer.condition = found.condition;
  const bool decided = found.outcome == LpOutcome::infeasible ||
                       found.outcome == LpOutcome::unbounded ||
                       found.outcome == LpOutcome::infeasible_or_unbounded;
  if (decided || found.singular || !found.has_solution) return false;
  form.recover(primal, found.solution, answer.solution);
  answer.outcome = found.outcome;
  answer.has_solution = true;
  return true;
}

}  // namespace kelvo
