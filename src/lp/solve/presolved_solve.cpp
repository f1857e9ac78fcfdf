// Solving by way of the presolved problem.
//
// The reduced model is solved and checked like any other. Its basic solution goes back to the
// caller's model, where it is measured again; when it does not hold there, the simplex method goes
// on from its basis. An infeasible or unbounded reduced model is taken up on the full one from the
// basis that goes back, so that its proof is one for the caller's model.
#include <algorithm>
#include <cmath>

#include "lp/crossover/dual_push.h"
#include "lp/solve/driver.h"
#include "lp/solve/driver_log.h"
#include "lp/solve/dual_solve.h"
#include "lp/solve/model_to_lp.h"
#include "lp/solve/presolve_log.h"
#include "lp/solve/presolved_lp.h"
#include "lp/solve/verify.h"

namespace kelvo {

namespace {

/// Distances from a bound are known to this share of the numbers they come from.
double largest_gap(const SolutionRecord& record, double tolerance) {
  constexpr double kShare = 1e-9;
  double size = 1.0;
  for (const double x : record.x) size = std::max(size, std::fabs(x));
  for (const double activity : record.activity) size = std::max(size, std::fabs(activity));
  return std::max(tolerance, kShare * size);
}

class PresolvedSolve {
 public:
  PresolvedSolve(const Model& model, Owned<WorkingLp>& working, const StoredBasis& start,
                 LpMethod method, const DriverSettings& settings, const CallContext& context)
      : model_(model),
        working_(working),
        start_(start),
        method_(method),
        settings_(settings),
        context_(context) {}

  LpAnswer run(const PresolvedLp& presolved);

 private:
  LpAnswer solve_reduced(const PresolvedLp& presolved);
  LpAnswer back_to_model(const PresolvedLp& presolved, const LpAnswer& small) const;
  bool settle_basis(LpSolution& basic) const;
  LpAnswer finish(LpAnswer&& answer);

  const Model& model_;
  Owned<WorkingLp>& working_;
  const StoredBasis& start_;
  const LpMethod method_;
  const DriverSettings& settings_;
  const CallContext& context_;
};

LpAnswer PresolvedSolve::solve_reduced(const PresolvedLp& presolved) {
  DriverSettings settings = settings_;
  settings.objective_constant = presolved.minimized_offset();
  Owned<WorkingLp> working;
  const Model& reduced = presolved.reduced_model();
  if (settings.use_basis && start_.present) {
    // A start is one of the primal.
    DriverLog(context_.sink, settings.simplex.display).crushed_basis();
    return solve_without_presolve(reduced, working, presolved.crush(start_, model_), method_,
                                  settings, context_);
  }
  LpAnswer dual;
  if (prefers_dual_form(reduced, settings.presolve) &&
      solve_dual_form(reduced, method_, settings, context_, dual)) {
    return dual;
  }
  int& limit = settings.simplex.iteration_limit;
  limit = std::max(0, limit - dual.record.iterations);
  LpAnswer primal =
      solve_without_presolve(reduced, working, StoredBasis(), method_, settings, context_);
  primal.record.iterations += dual.record.iterations;
  primal.record.phase_one_iterations += dual.record.phase_one_iterations;
  return primal;
}

/// False when the values are no longer those of the basis.
bool PresolvedSolve::settle_basis(LpSolution& basic) const {
  if (basic.basis_is_settled) return true;
  const LpProblem lp = make_lp_problem(model_);
  return push_duals(lp, basic.y, basic.status, context_.stop);
}

LpAnswer PresolvedSolve::back_to_model(const PresolvedLp& presolved, const LpAnswer& small) const {
  LpSolution basic;
  presolved.postsolve(small, basic);
  const bool settled = settle_basis(basic);
  LpAnswer answer;
  answer.status = small.status;
  SolutionRecord& record = answer.record;
  record.x = std::move(basic.x);
  record.pi = std::move(basic.y);
  for (double& pi : record.pi) pi = model_.sense * pi + 0.0;
  const Violations violations = complete_and_measure(model_, basic.status, record);
  record.has_primal = record.has_dual = record.has_basis = true;
  record.primal_feasible = violations.primal <= settings_.simplex.feasibility_tolerance;
  // A reduced cost of the right sign proves nothing where the variable is not at its bound.
  const double apart =
      measure_complementarity(model_, basic.status, settings_.simplex.optimality_tolerance, record);
  record.dual_feasible = settled && violations.dual <= settings_.simplex.optimality_tolerance &&
                         apart <= largest_gap(record, settings_.simplex.feasibility_tolerance);
  record.condition = small.record.condition;
  record.iterations = small.record.iterations;
  record.phase_one_iterations = small.record.phase_one_iterations;
  lp_to_stored_status(basic.status, model_, answer.basis);
  return answer;
}

LpAnswer PresolvedSolve::finish(LpAnswer&& answer) {
  DriverSettings settings = settings_;
  settings.use_basis = true;
  int& limit = settings.simplex.iteration_limit;
  limit = std::max(0, limit - answer.record.iterations);
  const LpMethod method = answer.record.primal_feasible ? LpMethod::primal : LpMethod::dual;
  LpAnswer full =
      solve_without_presolve(model_, working_, answer.basis, method, settings, context_);
  full.record.iterations += answer.record.iterations;
  full.record.phase_one_iterations += answer.record.phase_one_iterations;
  // What was proved of the reduced model holds, even when the full one resists.
  const bool proved = answer.status == kInfeasible || answer.status == kUnbounded;
  if (full.status == kNonOptimal && proved) full.status = answer.status;
  return full;
}

LpAnswer PresolvedSolve::run(const PresolvedLp& presolved) {
  LpAnswer small = solve_reduced(presolved);
  if (small.singular || !small.basis.present) {
    DriverSettings settings = settings_;
    settings.use_basis = false;
    return solve_without_presolve(model_, working_, StoredBasis(), method_, settings, context_);
  }
  LpAnswer answer = back_to_model(presolved, small);
  switch (answer.status) {
    case kOptimal:
    case kOptimalUnscaledInfeasible:
    case kNonOptimal:
      if (answer.record.primal_feasible && answer.record.dual_feasible) {
        answer.status = kOptimal;
        return answer;
      }
      return finish(std::move(answer));
    case kInfeasible:
    case kUnbounded:
      return finish(std::move(answer));
    default:
      return answer;  // stopped
  }
}

int status_of(PresolveOutcome outcome) {
  switch (outcome) {
    case PresolveOutcome::infeasible:
      return kInfeasible;
    case PresolveOutcome::dual_infeasible:
      return kInfeasibleOrUnbounded;
    case PresolveOutcome::time_limit:
      return kTimeLimit;
    default:
      return kUserAborted;
  }
}

/// Null when memory runs out.
Owned<PresolvedLp> try_presolve(const Model& model, const DriverSettings& settings,
                                const CallContext& context) {
  try {
    return make_owned<PresolvedLp>(model, settings.presolve, settings.protected_columns, context);
  } catch (const std::bad_alloc&) {
    context.sink.send(Channel::warning, "Insufficient memory for presolve.\n");
    return nullptr;
  }
}

}  // namespace

LpAnswer solve_with_presolve(const Model& model, Owned<WorkingLp>& working,
                             const StoredBasis& start, LpMethod method,
                             const DriverSettings& settings, const CallContext& context,
                             Owned<PresolvedLp>& presolved) {
  LpAnswer answer;
  PresolveLog log(context.sink, settings.presolve);
  presolved = try_presolve(model, settings, context);
  if (presolved != nullptr) log.time();
  if (presolved != nullptr && presolved->outcome() == PresolveOutcome::unchanged &&
      prefers_dual_form(model, settings.presolve) && !(settings.use_basis && start.present)) {
    presolved->keep_identity(model);
  }
  if (presolved == nullptr ||
      (presolved->outcome() == PresolveOutcome::unchanged && !presolved->has_reduced_model())) {
    return solve_without_presolve(model, working, start, method, settings, context);
  }
  if (presolved->has_reduced_model()) {
    working.reset();
    answer = PresolvedSolve(model, working, start, method, settings, context).run(*presolved);
  } else {
    answer.status = status_of(presolved->outcome());
  }
  answer.record.method = method == LpMethod::primal ? kMethodPrimal : kMethodDual;
  return answer;
}

}  // namespace kelvo
