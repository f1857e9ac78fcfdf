#include "lp/tableau/kept_basis.h"

#include "lp/solve/verify.h"

namespace kelvo {

namespace {

bool stands_at_stored_basis(const WorkingLp& working, const Problem& problem) {
  return working.agrees_with() == problem.revisions() && working.has_factor() &&
         problem.basis.factored && working.has_basic_variables_of(problem.basis);
}

}  // namespace

WorkingLp* hold_basis(Problem& problem, const DriverSettings& settings, MessageSink& sink,
                      bool allow_repair) {
  if (auto* const kept = static_cast<WorkingLp*>(problem.working_lp.get());
      kept != nullptr && stands_at_stored_basis(*kept, problem)) {
    return kept;
  }
  const Model& model = problem.model();
  Owned<WorkingLp> working = take_working_lp(problem);
  if (working != nullptr && working->fits(model, settings.scaling)) {
    working->refresh(model);
    if (!problem.basis.present) working->start_afresh();
  } else {
    working.reset();
    working = make_owned<WorkingLp>(model, settings.scaling, sink);
  }
  if (problem.basis.present) {
    const SolutionRecord& solution = problem.solution;
    const bool has_x = solution.has_primal && solution.has_basis;
    working->start_from(problem.basis, model, has_x ? solution.x.data() : nullptr);
  }
  // A look at a basis does not stop half-way: one factorization is all it takes.
  if (!working->compute_basic_solution(settings.simplex, {.sink = &sink})) return nullptr;
  if (!allow_repair && problem.basis.present && !working->has_basic_variables_of(problem.basis)) {
    return nullptr;
  }
  if (problem.basis.present && working->has_basic_variables_of(problem.basis)) {
    problem.basis.factored = true;
  }
  working->set_agrees_with(problem.revisions());
  WorkingLp* const held = working.get();
  problem.working_lp = std::move(working);
  return held;
}

void store_basic_solution(Problem& problem, const WorkingLp& working,
                          const SimplexSettings& settings) {
  const Model& model = problem.model();
  SolutionRecord record;
  StoredBasis basis;
  working.unscaled_x(record.x);
  working.unscaled_pi(model, record.pi);
  const Vector<int>& status = working.simplex().status();
  const Violations violations = complete_and_measure(model, status, record);
  lp_to_stored_status(status, model, basis);
  basis.factored = true;
  const SolutionRecord& last = problem.solution;
  record.has_primal = record.has_dual = record.has_basis = true;
  record.primal_feasible = violations.primal <= settings.feasibility_tolerance;
  record.dual_feasible = violations.dual <= settings.optimality_tolerance;
  record.condition = working.simplex().condition_estimate();
  record.method = last.method == kMethodDual ? kMethodDual : kMethodPrimal;
  record.iterations = last.iterations;
  record.phase_one_iterations = last.phase_one_iterations;
  record.barrier_iterations = last.barrier_iterations;
  problem.solution_status = record.primal_feasible && record.dual_feasible ? kOptimal : kNonOptimal;
  problem.solution = std::move(record);
  problem.basis = std::move(basis);
}

}  // namespace kelvo
