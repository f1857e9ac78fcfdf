// The optimizers of linear problems.
#include "api/frame/basis_frame.h"
#include "env/params/param_numbers.h"
#include "lp/solve/presolved_problem.h"
#include "lp/solve/solve_model.h"
#include "lp/solve/start_quality.h"

namespace kelvo {
namespace {

/// Values of KLV_PARAM_LPMETHOD.
enum MethodChoice : int {
  kChooseAutomatic = 0,
  kChoosePrimal = 1,
  kChooseDual = 2,
  kChooseNetwork = 3,
  kChooseBarrier = 4,
  kChooseSifting = 5
};

/// Calls the caller's LP callback before each iteration.
class CallbackHook final : public IterationHook {
 public:
  CallbackHook(Environment& environment, Problem& problem)
      : environment_(environment),
        problem_(problem),
        callback_(environment.settings().callback(CallbackKind::lp)) {}

  bool active() const { return callback_.function != nullptr; }

  int before_iteration(bool dual, bool) override {
    constexpr int kFromPrimal = 1, kFromDual = 2;
    return callback_.function(to_handle(&environment_), &problem_, dual ? kFromDual : kFromPrimal,
                              callback_.handle);
  }

 private:
  Environment& environment_;
  Problem& problem_;
  const Callback callback_;
};

Status run_algorithm(Environment& environment, Problem& problem, const LpAlgorithm& algorithm) {
  DriverSettings settings = read_driver_settings(environment.settings(), problem.objective_sense());
  settings.protected_columns = protection_marks(problem);
  CallbackHook hook(environment, problem);
  const CallContext context{environment.messages(), environment.stop_check(),
                            hook.active() ? &hook : nullptr};
  const TimeLimitScope time_limit(environment);
  const ModelChanges changes = changes_for(problem, problem.working_lp.get());
  KeptLps kept{problem.working_lp.take(), nullptr};
  SolveResult result;
  Reoptimized again = Reoptimized::impossible;
  if (problem.basis.factored && !problem.basis.has_norms() && problem.basis.x.empty() &&
      (changes.any() || problem.solution_status == kOptimal)) {
    again =
        reoptimize(problem.model(), changes, kept.working, algorithm, settings, context, result);
  }
  if (again == Reoptimized::unchanged) {
    problem.working_lp.put(std::move(kept.working));
    problem.presolve.reset();
    problem.solution.method = algorithm.method;
    problem.solution.iterations = problem.solution.phase_one_iterations = 0;
    return Status();
  }
  if (again == Reoptimized::impossible &&
      !solve_model(problem.model(), changes, kept, problem.basis, algorithm, settings, context,
                   result)) {
    return Status::failure(error::kBasisSingular);
  }
  Owned<PresolvedProblem> presolved;
  if (kept.presolved != nullptr) {
    presolved = make_owned<PresolvedProblem>(std::move(kept.presolved), problem);
  }
  if (kept.working != nullptr) {
    kept.working->set_agrees_with(problem.revisions());
    kept.working->forget_basic_solution();
    kept.working->set_ended_optimal(result.status == kOptimal, settings.simplex);
  }
  problem.working_lp.put(std::move(kept.working));
  problem.presolve.put(std::move(presolved));
  problem.presolve_follows_costs = false;
  problem.store_result(std::move(result));
  return Status();
}

/// Primal simplex for a start basis that is primal feasible, else dual simplex.
LpMethod choose_simplex(Environment& environment, Problem& problem) {
  const Model& model = problem.model();
  const DriverSettings settings = read_driver_settings(environment.settings(), model.sense);
  if (!settings.use_basis || !problem.basis.present) return LpMethod::dual;
  if (model.num_rows == 0 || model.num_cols == 0) return LpMethod::dual;
  const CallContext context{environment.messages(), environment.stop_check()};
  const ModelChanges changes = changes_for(problem, problem.working_lp.get());
  Owned<WorkingLp> working = problem.working_lp.take();
  prepare_working_lp(model, changes, working, problem.basis, settings, context);
  const bool feasible = is_primal_feasible(*working, settings.simplex);
  working->set_agrees_with(problem.revisions());
  working->forget_basic_solution();
  problem.working_lp.put(std::move(working));
  return feasible ? LpMethod::primal : LpMethod::dual;
}

/// Automatic choice. With several threads the concurrent optimizer would be the choice, were it
/// there; where results must be repeatable it never is, and the user hears why.
Status run_automatic(Environment& environment, Problem& problem) {
  constexpr int kOpportunistic = -1;
  if (environment.get_int(param::THREADS) > 1 &&
      environment.get_int(param::PARALLELMODE) != kOpportunistic &&
      environment.get_int(param::SIMDISPLAY) != 0) {
    environment.messages().send(
        Channel::warning, "concurrent optimizer may be non-deterministic; using Simplex instead\n");
  }
  return run_algorithm(environment, problem, algorithm_of(choose_simplex(environment, problem)));
}

/// The optimizer with this value of KLV_PARAM_LPMETHOD.
Status run_choice(Environment& environment, Problem& problem, int choice) {
  if (choice == kChooseAutomatic) return run_automatic(environment, problem);
  const LpAlgorithm* const algorithm = find_algorithm(choice);
  if (algorithm == nullptr) return Status::failure(error::kBadMethodChoice);
  return run_algorithm(environment, problem, *algorithm);
}

int optimize(KLVenv env, KLVprob lp, int choice) {
  return on_linear(env, lp, [choice](Environment& environment, Problem& problem) {
    return run_choice(environment, problem, choice);
  });
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVlpopt(KLVenv env, KLVprob lp) {
  return on_linear(env, lp, [](Environment& environment, Problem& problem) {
    return run_choice(environment, problem, environment.get_int(param::LPMETHOD));
  });
}

int KLVprimopt(KLVenv env, KLVprob lp) {
  return optimize(env, lp, kChoosePrimal);
}

int KLVdualopt(KLVenv env, KLVprob lp) {
  return optimize(env, lp, kChooseDual);
}

int KLVhybnetopt(KLVenv env, KLVprob lp, int) {
  return optimize(env, lp, kChooseNetwork);
}

int KLVhybbaropt(KLVenv env, KLVprob lp, int) {
  return optimize(env, lp, kChooseBarrier);
}

int KLVsiftopt(KLVenv env, KLVprob lp) {
  return optimize(env, lp, kChooseSifting);
}
