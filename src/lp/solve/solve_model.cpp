#include "lp/solve/solve_model.h"

#include <algorithm>

#include "lp/simplex/simplex_log.h"
#include "lp/solve/driver_log.h"
#include "lp/solve/lp_solver.h"
#include "lp/solve/presolve_log.h"

namespace kelvo {

namespace {

class ModelSolve {
 public:
  ModelSolve(const Model& model, KeptLps& kept, const LpAlgorithm& algorithm,
             const DriverSettings& settings, const CallContext& context)
      : model_(model), kept_(kept), algorithm_(algorithm), settings_(settings), context_(context) {}

  LpAnswer run(LpStart&& start);

 private:
  LpAnswer run_cold(const LpStart& start);
  LpAnswer continue_or_crush(LpStart& start, const LpProblem* lp);

  const Model& model_;
  KeptLps& kept_;
  const LpAlgorithm& algorithm_;
  const DriverSettings& settings_;
  const CallContext& context_;
};

/// The working LP is at the start; `lp` is null while the model has not been converted.
LpAnswer ModelSolve::continue_or_crush(LpStart& start, const LpProblem* lp) {
  const StartPlan plan = settings_.presolve.on
                             ? plan_start(*kept_.working, start.has_norms(), settings_, context_)
                             : StartPlan::keep;
  if (plan == StartPlan::keep) {
    return solve_from_start(kept_.working, start, algorithm_, settings_, context_);
  }
  if (plan == StartPlan::crush_with_point) kept_.working->unscaled_x(start.x);
  LpProblem converted;
  if (lp == nullptr) {
    converted = make_lp(model_);
    lp = &converted;
  }
  return solve_with_presolve(*lp, kept_.working, start, algorithm_, settings_, context_,
                             kept_.presolved);
}

LpAnswer ModelSolve::run_cold(const LpStart& start) {
  LpProblem lp = make_lp(model_);
  if (!wants_presolve(lp, settings_)) {
    // Crossing bounds need neither presolve nor simplex; the reason is told all the same.
    PresolveLog(context_.sink, settings_.presolve)
        .empty_interval(lp, settings_.simplex.feasibility_tolerance);
    return solve_without_presolve(std::move(lp), kept_.working, start, algorithm_, settings_,
                                  context_);
  }
  if (!start.present) {
    return solve_with_presolve(lp, kept_.working, start, algorithm_, settings_, context_,
                               kept_.presolved);
  }
  kept_.working = make_working_lp(LpProblem(lp), settings_, context_.sink);
  put_at_start(*kept_.working, start, settings_);
  LpStart given(start);
  return continue_or_crush(given, &lp);
}

LpAnswer ModelSolve::run(LpStart&& start) {
  if (kept_.working == nullptr) return run_cold(start);
  if (start.present) {
    put_at_start(*kept_.working, start, settings_);
    return continue_or_crush(start, nullptr);
  }
  if (settings_.presolve.on) {
    kept_.working.reset();
    return run_cold(start);
  }
  kept_.working->start_afresh();
  put_at_start(*kept_.working, start, settings_);
  return solve_from_start(kept_.working, start, algorithm_, settings_, context_);
}

SolveResult finish_result(const Model& model, LpAnswer&& answer, const LpAlgorithm& algorithm,
                          const DriverSettings& settings,
                          Owned<MeasuredSolution>* measured = nullptr,
                          const ModelChanges& changes = {}) {
  SolveResult result = to_result(model, std::move(answer), settings.simplex, measured, changes);
  result.solution.method = algorithm.method;
  // A run that was stopped may leave columns between their bounds: the next one starts from there.
  const Vector<int>& status = result.basis.col_status;
  if (std::find(status.begin(), status.end(), kFreeSuper) != status.end()) {
    result.basis.x = result.solution.x;
  }
  return result;
}

/// Nothing that a run would do at an optimum but say so: no limit is in the way, no callback waits,
/// no perturbation or steepest-edge norms are requested.
bool needs_no_run(const SimplexSettings& settings, const CallContext& context) {
  const SimplexSettings ordinary;
  return settings.iteration_limit > 0 && context.hook == nullptr && !context.stop.requested() &&
         settings.dual_pricing == DualPricing::automatic &&
         settings.primal_pricing == PrimalPricing::automatic && !settings.perturb_at_start &&
         settings.objective_lower_limit <= ordinary.objective_lower_limit &&
         settings.objective_upper_limit >= ordinary.objective_upper_limit;
}

/// The header and the one line of a run that ends where it starts.
void log_optimum(const WorkingLp& working, const LpAlgorithm& algorithm,
                 const SimplexSettings& settings, MessageSink& sink) {
  SimplexLog log(working.lp());
  log.write_to(&sink);
  const int iterations = working.simplex().iterations();
  const double objective = working.simplex().objective();
  log.begin_run(settings, iterations);
  if (algorithm.method == kMethodDual) {
    log.dual_iteration(iterations, 0, false, objective);
  } else {
    log.primal_iteration(iterations, 0, false, objective);
  }
}

bool is_made_as_requested(const WorkingLp& working, const DriverSettings& settings) {
  return working.requested_scaling() == settings.scaling &&
         working.lp().compact == settings.compact_matrix;
}

}  // namespace

void update_working_lp(const Model& model, const ModelChanges& changes,
                       const DriverSettings& settings, Owned<WorkingLp>& working) {
  if (working == nullptr) return;
  const double tolerance = settings.simplex.feasibility_tolerance;
  if (changes.structure || !is_made_as_requested(*working, settings) ||
      !copy_changes(model, changes, tolerance, *working)) {
    working.reset();
  }
}

Reoptimized reoptimize(const Model& model, const ModelChanges& changes, Owned<WorkingLp>& working,
                       const LpAlgorithm& algorithm, const DriverSettings& settings,
                       const CallContext& context, SolveResult& result) {
  const bool few = !changes.structure && !changes.costs && !changes.row_limits &&
                   (!changes.column_bounds || changes.columns != nullptr);
  if (working == nullptr || !few || !working->ended_optimal(settings.simplex) ||
      !working->has_factor() || !settings.use_basis || settings.always_crush ||
      !is_made_as_requested(*working, settings)) {
    return Reoptimized::impossible;
  }
  Owned<MeasuredSolution> measured = working->take_measured();
  if (!copy_changes(model, changes, settings.simplex.feasibility_tolerance, *working)) {
    working.reset();
    return Reoptimized::impossible;
  }
  const int rows = model.num_rows;
  DriverLog(context.sink, settings.simplex.display).start_basis(rows, rows, true);
  if (!changes.any() && needs_no_run(settings.simplex, context)) {
    log_optimum(*working, algorithm, settings.simplex, context.sink);
    working->keep_measured(std::move(measured));
    return Reoptimized::unchanged;
  }
  LpAnswer answer = algorithm.run({working, false, true, settings, context});
  if (answer.singular) {
    working.reset();
    return Reoptimized::impossible;
  }
  const bool deferred = answer.outcome == LpOutcome::optimal && !answer.has_solution;
  if (deferred && !changes.any() && answer.iterations == 0) {
    working->keep_measured(std::move(measured));
    return Reoptimized::unchanged;
  }
  if (deferred) {
    working->get_solution(answer.solution);
    answer.has_solution = true;
  }
  LpAnswer counts;
  counts.count_iterations_of(answer);
  result = finish_result(model, std::move(answer), algorithm, settings, &measured, changes);
  if (result.status == kOptimal) {
    working->keep_measured(std::move(measured));
  } else if (deferred) {
    answer = algorithm.run({working, false, false, settings, context});
    answer.count_iterations_of(counts);
    result = finish_result(model, std::move(answer), algorithm, settings);
  }
  return Reoptimized::done;
}

void prepare_working_lp(const Model& model, const ModelChanges& changes, Owned<WorkingLp>& working,
                        const StoredBasis& start, const DriverSettings& settings,
                        const CallContext& context) {
  update_working_lp(model, changes, settings, working);
  const bool given = settings.use_basis && start.present;
  if (working == nullptr) {
    working = make_working_lp(make_lp(model), settings, context.sink);
  } else if (!given) {
    working->start_afresh();
  }
  if (given) put_at_start(*working, to_start(start, model), settings);
}

bool solve_model(const Model& model, const ModelChanges& changes, KeptLps& kept,
                 const StoredBasis& start, const LpAlgorithm& algorithm,
                 const DriverSettings& settings, const CallContext& context, SolveResult& result) {
  update_working_lp(model, changes, settings, kept.working);
  kept.presolved.reset();
  LpAnswer answer = ModelSolve(model, kept, algorithm, settings, context)
                        .run(settings.use_basis ? to_start(start, model) : LpStart());
  if (answer.singular) return false;
  result = finish_result(model, std::move(answer), algorithm, settings);
  return true;
}

}  // namespace kelvo
