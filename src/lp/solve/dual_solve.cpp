#include "lp/solve/dual_solve.h"

#include "lp/solve/dual_form.h"
#include "lp/solve/presolved_lp.h"

namespace kelvo {

namespace {

// The dual is taken without being asked for when the model has so many times more rows than
// columns.
constexpr double kTallModel = 3.0;

DriverSettings settings_for(const DualForm& form, const DriverSettings& settings) {
  DriverSettings dual = settings;
  dual.use_basis = false;
  dual.objective_constant = form.program().offset;
  // The objective runs the other way.
  dual.simplex.objective_lower_limit = -settings.simplex.objective_upper_limit;
  dual.simplex.objective_upper_limit = -settings.simplex.objective_lower_limit;
  return dual;
}

/// The answer about the dual's model as a basic solution of its program.
LpSolution basic_solution(const Model& dual_model, const LpAnswer& answer) {
  LpSolution basic;
  basic.x = answer.record.x;
  basic.y.reserve(answer.record.pi.size());
  for (const double pi : answer.record.pi) basic.y.push_back(dual_model.sense * pi);
  stored_to_lp_status(answer.basis, dual_model, basic.status);
  return basic;
}

}  // namespace

bool prefers_dual_form(const Model& model, const PresolveSettings& settings) {
  if (model.num_rows == 0 || model.num_cols == 0) return false;  // nothing is left to solve
  if (settings.dual_form != 0) return settings.dual_form > 0;
  return model.num_rows > kTallModel * model.num_cols;
}

bool solve_dual_form(const Model& model, LpMethod method, const DriverSettings& settings,
                     const CallContext& context, LpAnswer& answer) {
  LpProblem primal = make_lp_problem(model);
  close_crossed_bounds(primal);
  primal.offset = settings.objective_constant;
  const DualForm form(primal);
  // Of the other sense: the log shows the objective of the model.
  const Model dual_model = make_model(form.program(), -model.sense);
  if (settings.presolve.progress) {
    context.sink.send(Channel::results, "DUAL formed by presolve\n");
  }
  Owned<WorkingLp> working;
  LpAnswer found = solve_without_presolve(dual_model, working, StoredBasis(), method,
                                          settings_for(form, settings), context);
  answer.record.iterations = found.record.iterations;
  answer.record.phase_one_iterations = found.record.phase_one_iterations;
  answer.record.condition = found.record.condition;
  const bool decided = found.status == kInfeasible || found.status == kUnbounded ||
                       found.status == kInfeasibleOrUnbounded;
  if (decided || found.singular || !found.basis.present) return false;
  LpSolution solution;
  Vector<double> z;
  form.recover(primal, basic_solution(dual_model, found), solution, z);
  answer.status = found.status;
  answer.record.x = std::move(solution.x);
  for (const double y : solution.y) answer.record.pi.push_back(model.sense * y + 0.0);
  for (const double d : z) answer.record.dj.push_back(model.sense * d + 0.0);
  answer.record.has_primal = answer.record.has_dual = answer.record.has_basis = true;
  lp_to_stored_status(solution.status, model, answer.basis);
  return true;
}

}  // namespace kelvo
