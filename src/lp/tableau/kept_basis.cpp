#include "lp/tableau/kept_basis.h"

#include "lp/solve/conversion.h"
#include "lp/solve/lp_solver.h"
#include "lp/solve/solve_model.h"

namespace kelvo {

WorkingLp* hold_basis(Problem& problem, const DriverSettings& settings, MessageSink& sink,
                      bool allow_repair) {
  const Model& model = problem.model();
  LpStart start = to_start(problem.basis, model);
  const auto is_at_start = [&start](const WorkingLp& working) {
    return working.has_basic_variables_of(start.status);
  };
  if (const WorkingLp* const kept = problem.working_lp.get();
      kept != nullptr && kept->agrees_with() == problem.revisions() && kept->has_basic_solution() &&
      problem.basis.factored && is_at_start(*kept)) {
    return problem.working_lp.get();
  }
  Owned<WorkingLp> working = problem.working_lp.take();
  update_working_lp(model, changes_for(problem, working.get()), settings, working);
  if (working == nullptr) {
    working = make_working_lp(make_lp(model), settings, sink);
  } else if (!start.present) {
    working->start_afresh();
  }
  if (start.present) {
    const SolutionRecord& solution = problem.solution;
    start.x = solution.has_primal && solution.has_basis ? solution.x : Vector<double>();
    working->start_from(start);
  }
  // A look at a basis does not stop half-way: one factorization is all it takes.
  if (!working->compute_basic_solution(settings.simplex, {.sink = &sink})) return nullptr;
  const bool repaired = start.present && !is_at_start(*working);
  if (repaired && !allow_repair) return nullptr;
  if (start.present && !repaired) problem.basis.factored = true;
  working->set_agrees_with(problem.revisions());
  problem.working_lp.put(std::move(working));
  return problem.working_lp.get();
}

void store_basic_solution(Problem& problem, const WorkingLp& working,
                          const SimplexSettings& settings) {
  LpAnswer answer;
  working.get_solution(answer.solution);
  answer.has_solution = answer.primal_feasible = answer.dual_feasible = true;
  answer.condition = working.simplex().condition_estimate();
  SolveResult result = to_result(problem.model(), std::move(answer), settings);
  SolutionRecord& record = result.solution;
  const SolutionRecord& last = problem.solution;
  record.method = last.method == kMethodDual ? kMethodDual : kMethodPrimal;
  record.iterations = last.iterations;
  record.phase_one_iterations = last.phase_one_iterations;
  record.barrier_iterations = last.barrier_iterations;
  result.status = record.primal_feasible && record.dual_feasible ? kOptimal : kNonOptimal;
  problem.store_result(std::move(result));
}

}  // namespace kelvo
