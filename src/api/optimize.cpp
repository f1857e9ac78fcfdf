// The optimizers of linear problems.
#include <algorithm>

#include "api/frame/basis_frame.h"
#include "env/params/param_numbers.h"
#include "lp/solve/presolve_log.h"
#include "lp/solve/presolved_lp.h"
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
  kChooseSifting = 5,
  kChooseConcurrent = 6
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

/// A run that was stopped may leave columns between their bounds: the next one goes on from there.
void keep_places(LpAnswer& answer) {
  const Vector<int>& status = answer.basis.col_status;
  const bool between = std::find(status.begin(), status.end(), kFreeSuper) != status.end();
  if (between && answer.record.has_primal) answer.basis.x = answer.record.x;
}

Status run_simplex(Environment& environment, Problem& problem, LpMethod method) {
  DriverSettings settings = read_driver_settings(environment.settings(), problem.objective_sense());
  settings.protected_columns = protection_marks(problem);
  CallbackHook hook(environment, problem);
  const CallContext context{environment.messages(), environment.stop_check(),
                            hook.active() ? &hook : nullptr};
  const TimeLimitScope time_limit(environment);
  Owned<WorkingLp> working = take_working_lp(problem);
  Owned<PresolvedLp> presolved;
  LpAnswer answer =
      solve_lp(problem.model(), working, problem.basis, method, settings, context, presolved);
  if (answer.singular) return Status::failure(error::kBasisSingular);
  if (answer.status == kInfeasible) {
    // Crossing bounds need neither presolve nor simplex; the reason is told all the same.
    PresolveLog(context.sink, settings.presolve)
        .empty_interval(problem.model(), settings.simplex.feasibility_tolerance);
  }
  keep_places(answer);
  // The answer may have come another way: what the working LP stands at must be looked at again.
  if (working != nullptr) working->agree_with_nothing();
  problem.working_lp = std::move(working);
  problem.presolve = std::move(presolved);
  problem.solution_status = answer.status;
  problem.solution = std::move(answer.record);
  if (answer.basis.present) {
    problem.basis = std::move(answer.basis);
    problem.basis.factored = true;
  }
  return Status();
}

/// Primal simplex for a start basis that is primal feasible, else dual simplex.
LpMethod choose_simplex(Environment& environment, Problem& problem) {
  const Model& model = problem.model();
  const DriverSettings settings = read_driver_settings(environment.settings(), model.sense);
  if (!settings.use_basis || !problem.basis.present) return LpMethod::dual;
  if (model.num_rows == 0 || model.num_cols == 0) return LpMethod::dual;
  const CallContext context{environment.messages(), environment.stop_check()};
  Owned<WorkingLp> working = take_working_lp(problem);
  prepare_working_lp(model, working, problem.basis, settings, context);
  const bool feasible = is_primal_feasible(*working, settings.simplex);
  problem.working_lp = std::move(working);
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
  return run_simplex(environment, problem, choose_simplex(environment, problem));
}

Status not_available() {
  return Status::failure(error::kBadMethodChoice);
}

Status run_by_choice(Environment& environment, Problem& problem) {
  switch (environment.get_int(param::LPMETHOD)) {
    case kChooseAutomatic:
      return run_automatic(environment, problem);
    case kChoosePrimal:
      return run_simplex(environment, problem, LpMethod::primal);
    case kChooseDual:
      return run_simplex(environment, problem, LpMethod::dual);
    default:
      return not_available();
  }
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVlpopt(KLVenv env, KLVprob lp) {
  return on_linear(env, lp, run_by_choice);
}

int KLVprimopt(KLVenv env, KLVprob lp) {
  return on_linear(env, lp, [](Environment& environment, Problem& problem) {
    return run_simplex(environment, problem, LpMethod::primal);
  });
}

int KLVdualopt(KLVenv env, KLVprob lp) {
  return on_linear(env, lp, [](Environment& environment, Problem& problem) {
    return run_simplex(environment, problem, LpMethod::dual);
  });
}

int KLVhybnetopt(KLVenv env, KLVprob lp, int) {
  return on_linear(env, lp, [](Environment&, Problem&) { return not_available(); });
}

int KLVhybbaropt(KLVenv env, KLVprob lp, int) {
  return on_linear(env, lp, [](Environment&, Problem&) { return not_available(); });
}

int KLVsiftopt(KLVenv env, KLVprob lp) {
  return on_linear(env, lp, [](Environment&, Problem&) { return not_available(); });
}
