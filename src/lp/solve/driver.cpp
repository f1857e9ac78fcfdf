#include "lp/solve/driver.h"

#include <algorithm>
#include <cmath>

#include "lp/first_order/first_order_log.h"
#include "lp/first_order/first_order_rival.h"
#include "lp/form/verification.h"
#include "lp/sifting/sifting.h"
#include "lp/solve/driver_log.h"
#include "lp/solve/point_start.h"

namespace kelvo {

namespace {

// A second pass gets few iterations when condition * (1 + |objective|) reaches this.
constexpr double kIllConditioned = 1e11;
// Those few: this share of the iterations so far, and a handful more.
constexpr double kExtraIterationShare = 1.025;
constexpr int kExtraIterations = 20;
// The third pass aims at this share of what the tolerance allows, above the least tolerance that
// double precision supports.
constexpr double kTighteningMargin = 0.5;
constexpr double kLeastTolerance = 1e-9;
// A fresh start after a singular basis factors with at least this pivot threshold.
constexpr double kCarefulThreshold = 0.5;
// So many directions of unboundedness that do not hold are blocked one after the other.
constexpr int kDirections = 10;

/// The verified result of one simplex run.
struct Verified {
  LpAnswer answer;
  bool trustworthy = false;  // nothing that another attempt could improve
  bool superseded = false;   // by a better start; nothing else is valid
  Violations violations;
  Vector<double> direction;  // [num_vars] scaled, of an unboundedness that does not hold

  double worst(const SimplexSettings& settings) const {
    return std::max(violations.primal / settings.feasibility_tolerance,
                    violations.dual / settings.optimality_tolerance);
  }
  bool is(LpOutcome outcome) const { return answer.outcome == outcome; }
};

class Driver {
 public:
  /// `own_start`: the working LP is at the slack basis because no other was given.
  Driver(Owned<WorkingLp>& working, LpMethod method, bool own_start, bool defer_check,
         const DriverSettings& settings, const CallContext& context)
      : working_(working),
        method_(method),
        own_start_(own_start),
        defer_check_(defer_check),
        settings_(settings),
        context_(context),
        log_(context.sink, settings.simplex.display) {}

  LpAnswer run();

 private:
  Verified first_attempt();
  /// Runs a method on a working LP and verifies the outcome. `limit` counts all iterations of this
  /// driver. `rival` may be null.
  Verified attempt(WorkingLp& working, LpMethod method, const SimplexSettings& base, int limit,
                   Rival* rival = nullptr);
  SimplexOutcome run_after_sifting(WorkingLp& working, SimplexSettings run,
                                   const RunContext& context);
  bool is_ordinary() const;
  void verify(const WorkingLp& working, SimplexOutcome outcome, Verified& found);
  void improve_optimum(Verified& found);
  void recover(Verified& found);
  void block_directions(Verified& found);
  Owned<WorkingLp> unscaled_copy();
  bool stopped(const Verified& found) const;

  Owned<WorkingLp>& working_;
  const LpMethod method_;
  bool own_start_;    // until the first attempt
  bool defer_check_;  // likewise
  const DriverSettings& settings_;
  const CallContext& context_;
  DriverLog log_;
  int iterations_ = 0;
  int phase_one_iterations_ = 0;
};

LpOutcome outcome_of(SimplexOutcome outcome) {
  switch (outcome) {
    case SimplexOutcome::optimal:
      return LpOutcome::optimal;
    case SimplexOutcome::infeasible:
      return LpOutcome::infeasible;
    case SimplexOutcome::unbounded:
      return LpOutcome::unbounded;
    case SimplexOutcome::iteration_limit:
    case SimplexOutcome::work_limit:  // never set here
      return LpOutcome::iteration_limit;
    case SimplexOutcome::time_limit:
      return LpOutcome::time_limit;
    case SimplexOutcome::aborted:
      return LpOutcome::aborted;
    case SimplexOutcome::objective_limit:
      return LpOutcome::objective_limit;
    case SimplexOutcome::superseded:
    case SimplexOutcome::singular:
    case SimplexOutcome::non_optimal:
      break;
  }
  return LpOutcome::non_optimal;
}

LpStart start_at(const LpAnswer& answer) {
  LpStart start;
  start.present = true;
  start.status = answer.solution.status;
  return start;
}

LpMethod other(LpMethod method) {
  return method == LpMethod::dual ? LpMethod::primal : LpMethod::dual;
}

SimplexOutcome run_method(Simplex& simplex, LpMethod method, const SimplexSettings& run,
                          const RunContext& context) {
  return method == LpMethod::dual ? simplex.run_dual(run, context)
                                  : simplex.run_primal(run, context);
}

/// Runs that ask for something special take the way they ask for.
bool Driver::is_ordinary() const {
  const SimplexSettings& asked = settings_.simplex;
  const SimplexSettings ordinary;
  return asked.dual_pricing == DualPricing::automatic &&
         asked.primal_pricing == PrimalPricing::automatic && !asked.perturb_at_start &&
         asked.objective_lower_limit <= ordinary.objective_lower_limit &&
         asked.objective_upper_limit >= ordinary.objective_upper_limit;
}

/// The method from the basis that sifting ends with; the primal method takes such a basis over, as
/// it is primal feasible and next to an optimum.
SimplexOutcome Driver::run_after_sifting(WorkingLp& working, SimplexSettings run,
                                         const RunContext& context) {
  Simplex& simplex = working.simplex();
  SiftingSettings settings = settings_.sifting;
  settings.simplex = run;
  Sifting sifting(working.lp(), settings, context);
  const SiftingEnd end = sifting.run();
  simplex.count_iterations(sifting.iterations(), sifting.phase_one_iterations());
  run.iteration_limit -= sifting.iterations();
  if (end == SiftingEnd::given_up) return run_method(simplex, method_, run, context);
  simplex.set_basis(sifting.status());
  if (end != SiftingEnd::stopped) return simplex.run_primal(run, context);
  run.iteration_limit = 0;
  const SimplexOutcome outcome = simplex.run_primal(run, context);
  return outcome == SimplexOutcome::iteration_limit ? sifting.stop_outcome() : outcome;
}

Verified Driver::attempt(WorkingLp& working, LpMethod method, const SimplexSettings& base,
                         int limit, Rival* rival) {
  SimplexSettings run = base;
  run.iteration_limit = std::max(0, limit - iterations_);
  run.scaled = working.scaling().active();
  Simplex& simplex = working.simplex();
  const int before = simplex.iterations();
  const int phase_one_before = simplex.phase_one_iterations();
  const RunContext context = context_.for_run(rival);
  const bool sifts = own_start_ && is_ordinary() && Sifting::pays(working.lp(), settings_.sifting);
  const SimplexOutcome outcome =
      sifts ? run_after_sifting(working, run, context) : run_method(simplex, method, run, context);
  own_start_ = false;
  iterations_ += simplex.iterations() - before;
  phase_one_iterations_ += simplex.phase_one_iterations() - phase_one_before;
  Verified found;
  verify(working, outcome, found);
  return found;
}

void Driver::verify(const WorkingLp& working, SimplexOutcome outcome, Verified& found) {
  LpAnswer& answer = found.answer;
  answer.outcome = outcome_of(outcome);
  answer.singular = outcome == SimplexOutcome::singular;
  found.superseded = outcome == SimplexOutcome::superseded;
  if (answer.singular || found.superseded) return;
  answer.condition = working.simplex().condition_estimate();
  if (defer_check_ && outcome == SimplexOutcome::optimal) {
    answer.primal_feasible = answer.dual_feasible = found.trustworthy = true;
    return;
  }
  defer_check_ = false;
  working.get_solution(answer.solution);
  answer.has_solution = true;
  found.violations = complete_and_measure(working.unscaled(), answer.solution);
  answer.primal_feasible = found.violations.primal <= settings_.simplex.feasibility_tolerance;
  answer.dual_feasible = found.violations.dual <= settings_.simplex.optimality_tolerance;
  switch (outcome) {
    case SimplexOutcome::optimal:
      found.trustworthy = answer.is_feasible();
      if (!found.trustworthy) answer.outcome = LpOutcome::optimal_unscaled_infeasible;
      break;
    case SimplexOutcome::infeasible:
      working.unscaled_farkas(answer.farkas);
      found.trustworthy = verify_farkas(working.unscaled(), answer.farkas);
      if (!found.trustworthy) answer.farkas.clear();
      break;
    case SimplexOutcome::unbounded:
      working.exact_direction(found.direction);
      working.unscale_direction(found.direction, answer.ray);
      found.trustworthy = answer.primal_feasible && verify_ray(working.unscaled(), answer.ray);
      if (!found.trustworthy) answer.ray.clear();
      break;
    case SimplexOutcome::non_optimal:
      // The method gave up; its last basis may be optimal all the same.
      found.trustworthy = answer.is_feasible();
      if (found.trustworthy) answer.outcome = LpOutcome::optimal;
      break;
    case SimplexOutcome::iteration_limit:
    case SimplexOutcome::work_limit:
    case SimplexOutcome::time_limit:
    case SimplexOutcome::aborted:
    case SimplexOutcome::objective_limit:
    case SimplexOutcome::superseded:
    case SimplexOutcome::singular:
      found.trustworthy = true;
  }
}

bool Driver::stopped(const Verified& found) const {
  return found.is(LpOutcome::iteration_limit) || found.is(LpOutcome::time_limit) ||
         found.is(LpOutcome::aborted);
}

Owned<WorkingLp> Driver::unscaled_copy() {
  auto copy = make_owned<WorkingLp>(working_->unscaled_copy(), ScalingMethod::none, context_.sink);
  copy->set_requested_scaling(settings_.scaling);
  return copy;
}

void Driver::improve_optimum(Verified& found) {
  if (!settings_.restart_passes) return;
  const double risk = found.answer.condition * (1.0 + std::fabs(found.answer.solution.objective));
  int limit = settings_.simplex.iteration_limit;
  if (risk >= kIllConditioned) {
    const double few = std::trunc(kExtraIterationShare * iterations_) + kExtraIterations;
    if (few < limit) limit = static_cast<int>(few);
  }
  log_.new_phase(iterations_);
  const bool primal_wrong = !found.answer.primal_feasible;
  const bool dual_wrong = !found.answer.dual_feasible;
  const LpMethod method = primal_wrong && dual_wrong ? method_
                          : primal_wrong             ? LpMethod::dual
                                                     : LpMethod::primal;
  if (working_->scaling().active()) {
    Owned<WorkingLp> unscaled = unscaled_copy();
    unscaled->start_from(start_at(found.answer));
    Verified second = attempt(*unscaled, method, settings_.simplex, limit);
    const bool failed = stopped(second) || second.answer.singular ||
                        (!second.trustworthy && !second.is(LpOutcome::optimal_unscaled_infeasible));
    const bool better =
        second.trustworthy || second.worst(settings_.simplex) < found.worst(settings_.simplex);
    if (!failed && better) {
      found = std::move(second);
      working_ = std::move(unscaled);
    }
    if (found.trustworthy || !failed) return;
  }
  // The scaled state is untouched: the third pass goes on from it.
  log_.new_phase(iterations_);
  SimplexSettings tight = settings_.simplex;
  const double share = kTighteningMargin / found.worst(settings_.simplex);
  tight.feasibility_tolerance = std::max(kLeastTolerance, tight.feasibility_tolerance * share);
  tight.optimality_tolerance = std::max(kLeastTolerance, tight.optimality_tolerance * share);
  Verified third = attempt(*working_, method, tight, settings_.simplex.iteration_limit);
  if (third.trustworthy ||
      (!third.answer.singular && third.worst(settings_.simplex) < found.worst(settings_.simplex))) {
    found = std::move(third);
  }
}

void Driver::recover(Verified& found) {
  const int limit = settings_.simplex.iteration_limit;
  SimplexSettings careful = settings_.simplex;
  careful.markowitz_threshold = std::max(careful.markowitz_threshold, kCarefulThreshold);
  log_.new_phase(iterations_);
  if (found.answer.singular) working_->start_afresh();
  Verified next = attempt(*working_, other(method_), careful, limit);
  if (next.trustworthy) {
    found = std::move(next);
    return;
  }
  log_.new_phase(iterations_);
  // The multipliers of the primal's phase one are bounded by its unit costs, so that a proof of
  // infeasibility made from them survives where a nearly singular dual basis has none.
  const bool claimed = found.is(LpOutcome::infeasible) || next.is(LpOutcome::infeasible);
  Owned<WorkingLp> unscaled = unscaled_copy();
  Verified last = attempt(*unscaled, claimed ? LpMethod::primal : method_, careful, limit);
  working_ = std::move(unscaled);
  found = std::move(last);
  block_directions(found);
}

/// What blocks a refused direction moves so slowly along it that the methods pass such pivots over.
/// In a unit as small as that motion it is a pivot like any other; the primal method then goes on
/// to the optimum, past several such directions if need be.
void Driver::block_directions(Verified& found) {
  const int limit = settings_.simplex.iteration_limit;
  SimplexSettings careful = settings_.simplex;
  careful.markowitz_threshold = std::max(careful.markowitz_threshold, kCarefulThreshold);
  for (int round = 0; round < kDirections && !found.trustworthy; ++round) {
    if (!found.is(LpOutcome::unbounded)) return;
    log_.new_phase(iterations_);
    if (!working_->magnify_blocking(found.direction)) return;
    found = attempt(*working_, LpMethod::primal, careful, limit);
  }
}

/// A run that takes long is replaced by one from a better start, unless it asks for something that
/// the better start does not keep.
Verified Driver::first_attempt() {
  const int limit = settings_.simplex.iteration_limit;
  SimplexSettings run = settings_.simplex;
  run.keep_optimal_start = !own_start_;
  if (!own_start_ || !is_ordinary()) return attempt(*working_, method_, run, limit);
  FirstOrderSettings first_order = settings_.first_order;
  first_order.display = settings_.simplex.display;
  FirstOrderRival rival(working_->lp(), working_->scaling(), first_order, context_.stop);
  Verified found = attempt(*working_, method_, run, limit, &rival);
  if (!found.superseded) return found;
  log_.new_phase(iterations_);
  FirstOrderLog(first_order, context_.sink).restart();
  start_from_point(*working_, rival.take_point().x);
  return attempt(*working_, LpMethod::primal, settings_.simplex, limit);
}

LpAnswer Driver::run() {
  Verified found = first_attempt();
  if (!found.trustworthy && !found.is(LpOutcome::optimal_unscaled_infeasible)) recover(found);
  if (found.is(LpOutcome::optimal_unscaled_infeasible)) improve_optimum(found);
  LpAnswer answer = std::move(found.answer);
  if (!found.trustworthy &&
      (answer.outcome == LpOutcome::infeasible || answer.outcome == LpOutcome::unbounded)) {
    answer.outcome = LpOutcome::non_optimal;
  }
  answer.iterations = iterations_;
  answer.phase_one_iterations = phase_one_iterations_;
  return answer;
}

}  // namespace

LpAnswer solve_working_lp(Owned<WorkingLp>& working, LpMethod method, bool own_start,
                          bool defer_check, const DriverSettings& settings,
                          const CallContext& context) {
  return Driver(working, method, own_start, defer_check, settings, context).run();
}

}  // namespace kelvo
