#include "lp/solve/driver.h"

#include <algorithm>
#include <cmath>

#include "lp/sifting/column_subset.h"
#include "lp/simplex/simplex_log.h"
#include "lp/solve/driver_log.h"
#include "lp/solve/first_order_start.h"
#include "lp/solve/presolved_lp.h"
#include "lp/solve/start_quality.h"
#include "lp/solve/trivial_lp.h"
#include "lp/solve/verify.h"

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
// A start basis with at most so many wrong variables, and this share of the rows, is kept as it is.
constexpr int kFewWrong = 10;
constexpr double kShareWrong = 0.01;
constexpr double kShareWrongOfFeasible = 0.1;  // of a primal or dual feasible one
// A fresh start after a singular basis factors with at least this pivot threshold.
constexpr double kCarefulThreshold = 0.5;
// So many directions of unboundedness that do not hold are blocked one after the other.
constexpr int kDirections = 10;

/// The result of one simplex run, judged on the model.
struct Judged {
  int status = kNonOptimal;
  bool trustworthy = false;  // nothing that another attempt could improve
  bool singular = false;
  bool superseded = false;  // by a better start; nothing else is valid
  Violations violations;
  Vector<double> direction;  // [num_vars] scaled, of an unboundedness that does not hold
  SolutionRecord record;
  StoredBasis basis;

  double worst(const SimplexSettings& settings) const {
    return std::max(violations.primal / settings.feasibility_tolerance,
                    violations.dual / settings.optimality_tolerance);
  }
};

/// Shows the rounds of a subset start as lines of the iteration log.
class SubsetLog final : public SubsetObserver {
 public:
  SubsetLog(const LpProblem& lp, const SimplexSettings& settings, MessageSink* sink) : log_(lp) {
    log_.write_to(sink);
    log_.begin_run(settings, 0);
  }
  void after_round(int iterations, double objective) override {
    log_.primal_iteration(iterations, 0, false, objective);
  }

 private:
  SimplexLog log_;
};

class Driver {
 public:
  /// `own_start`: the working LP is at the slack basis because no other was given.
  Driver(const Model& model, Owned<WorkingLp>& working, LpMethod method, bool own_start,
         const DriverSettings& settings, const CallContext& context)
      : model_(model),
        working_(working),
        method_(method),
        own_start_(own_start),
        settings_(settings),
        context_(context),
        log_(context.sink, settings.simplex.display) {}

  LpAnswer run();

 private:
  Judged first_attempt();
  /// Runs a method on a working LP and judges the outcome. `limit` counts all iterations of this
  /// driver. `rival` may be null.
  Judged attempt(WorkingLp& working, LpMethod method, const SimplexSettings& base, int limit,
                 Rival* rival = nullptr);
  SimplexOutcome run_from_subset(WorkingLp& working, SimplexSettings run,
                                 const RunContext& context);
  bool is_ordinary() const;
  void judge(WorkingLp& working, SimplexOutcome outcome, Judged& judged);
  void improve_optimum(Judged& judged);
  void recover(Judged& judged);
  void block_directions(Judged& judged);
  Owned<WorkingLp> unscaled_copy();
  bool stopped(const Judged& judged) const;

  const Model& model_;
  Owned<WorkingLp>& working_;
  const LpMethod method_;
  bool own_start_;  // until the first attempt
  const DriverSettings& settings_;
  const CallContext& context_;
  DriverLog log_;
  int iterations_ = 0;
  int phase_one_iterations_ = 0;
};

int status_of(SimplexOutcome outcome) {
  switch (outcome) {
    case SimplexOutcome::optimal:
      return kOptimal;
    case SimplexOutcome::infeasible:
      return kInfeasible;
    case SimplexOutcome::unbounded:
      return kUnbounded;
    case SimplexOutcome::iteration_limit:
      return kIterationLimit;
    case SimplexOutcome::time_limit:
      return kTimeLimit;
    case SimplexOutcome::aborted:
      return kUserAborted;
    case SimplexOutcome::objective_limit:
      return kObjectiveLimit;
    case SimplexOutcome::superseded:
    case SimplexOutcome::singular:
    case SimplexOutcome::non_optimal:
      return kNonOptimal;
  }
  return kNonOptimal;
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

/// The method from a start basis of its own making; the primal method takes such a basis over, as
/// it is primal feasible and next to an optimum.
SimplexOutcome Driver::run_from_subset(WorkingLp& working, SimplexSettings run,
                                       const RunContext& context) {
  Simplex& simplex = working.simplex();
  SubsetLog log(working.lp(), run, context.sink);
  ColumnSubset subset(working.lp(), context_.stop, context.hook, &log);
  const SubsetEnd end = subset.run(run);
  simplex.count_iterations(subset.iterations(), subset.phase_one_iterations());
  run.iteration_limit -= subset.iterations();
  if (end == SubsetEnd::given_up) return run_method(simplex, method_, run, context);
  simplex.set_basis(subset.status());
  if (end != SubsetEnd::stopped) return simplex.run_primal(run, context);
  run.iteration_limit = 0;
  const SimplexOutcome outcome = simplex.run_primal(run, context);
  return outcome == SimplexOutcome::iteration_limit ? subset.stop_outcome() : outcome;
}

Judged Driver::attempt(WorkingLp& working, LpMethod method, const SimplexSettings& base, int limit,
                       Rival* rival) {
  SimplexSettings run = base;
  run.iteration_limit = std::max(0, limit - iterations_);
  run.scaled = working.scaling().active();
  run.sense = model_.sense;
  Simplex& simplex = working.simplex();
  const int before = simplex.iterations();
  const int phase_one_before = simplex.phase_one_iterations();
  const RunContext context = context_.for_run(rival);
  const bool by_parts = own_start_ && is_ordinary() && ColumnSubset::pays(working.lp());
  const SimplexOutcome outcome =
      by_parts ? run_from_subset(working, run, context) : run_method(simplex, method, run, context);
  own_start_ = false;
  iterations_ += simplex.iterations() - before;
  phase_one_iterations_ += simplex.phase_one_iterations() - phase_one_before;
  Judged judged;
  judge(working, outcome, judged);
  return judged;
}

void Driver::judge(WorkingLp& working, SimplexOutcome outcome, Judged& judged) {
  judged.status = status_of(outcome);
  judged.singular = outcome == SimplexOutcome::singular;
  judged.superseded = outcome == SimplexOutcome::superseded;
  if (judged.singular || judged.superseded) return;
  SolutionRecord& record = judged.record;
  working.unscaled_x(record.x);
  working.unscaled_pi(model_, record.pi);
  record.has_primal = record.has_dual = record.has_basis = true;
  record.condition = working.simplex().condition_estimate();
  const Vector<int>& status = working.simplex().status();
  judged.violations = complete_and_measure(model_, status, record);
  record.primal_feasible = judged.violations.primal <= settings_.simplex.feasibility_tolerance;
  record.dual_feasible = judged.violations.dual <= settings_.simplex.optimality_tolerance;
  lp_to_stored_status(status, model_, judged.basis);
  switch (outcome) {
    case SimplexOutcome::optimal:
      judged.trustworthy = record.primal_feasible && record.dual_feasible;
      if (!judged.trustworthy) judged.status = kOptimalUnscaledInfeasible;
      break;
    case SimplexOutcome::infeasible:
      working.unscaled_farkas(record.farkas);
      judged.trustworthy = verify_farkas(model_, record.farkas);
      if (!judged.trustworthy) record.farkas.clear();
      break;
    case SimplexOutcome::unbounded:
      working.exact_direction(judged.direction);
      working.unscale_direction(judged.direction, record.ray);
      judged.trustworthy = record.primal_feasible && verify_ray(model_, record.ray);
      if (!judged.trustworthy) record.ray.clear();
      break;
    case SimplexOutcome::non_optimal:
      // The method gave up; its last basis may be optimal all the same.
      judged.trustworthy = record.primal_feasible && record.dual_feasible;
      if (judged.trustworthy) judged.status = kOptimal;
      break;
    case SimplexOutcome::iteration_limit:
    case SimplexOutcome::time_limit:
    case SimplexOutcome::aborted:
    case SimplexOutcome::objective_limit:
      judged.trustworthy = true;
      break;
    case SimplexOutcome::superseded:
    case SimplexOutcome::singular:
      break;
  }
}

bool Driver::stopped(const Judged& judged) const {
  return judged.status == kIterationLimit || judged.status == kTimeLimit ||
         judged.status == kUserAborted;
}

Owned<WorkingLp> Driver::unscaled_copy() {
  auto copy = make_owned<WorkingLp>(model_, ScalingMethod::none, context_.sink);
  copy->set_requested_scaling(settings_.scaling);
  copy->set_objective_constant(settings_.objective_constant);
  return copy;
}

void Driver::improve_optimum(Judged& judged) {
  if (!settings_.restart_passes) return;
  const double risk = judged.record.condition * (1.0 + std::fabs(judged.record.objective));
  int limit = settings_.simplex.iteration_limit;
  if (risk >= kIllConditioned) {
    const double few = std::trunc(kExtraIterationShare * iterations_) + kExtraIterations;
    if (few < limit) limit = static_cast<int>(few);
  }
  log_.new_phase(iterations_);
  const bool primal_wrong = !judged.record.primal_feasible;
  const bool dual_wrong = !judged.record.dual_feasible;
  const LpMethod method = primal_wrong && dual_wrong ? method_
                          : primal_wrong             ? LpMethod::dual
                                                     : LpMethod::primal;
  if (working_->scaling().active()) {
    Owned<WorkingLp> unscaled = unscaled_copy();
    unscaled->start_from(judged.basis, model_);
    Judged second = attempt(*unscaled, method, settings_.simplex, limit);
    const bool failed = stopped(second) || second.singular ||
                        (!second.trustworthy && second.status != kOptimalUnscaledInfeasible);
    const bool better =
        second.trustworthy || second.worst(settings_.simplex) < judged.worst(settings_.simplex);
    if (!failed && better) {
      judged = std::move(second);
      working_ = std::move(unscaled);
    }
    if (judged.trustworthy || !failed) return;
  }
  // The scaled state is untouched: the third pass goes on from it.
  log_.new_phase(iterations_);
  SimplexSettings tight = settings_.simplex;
  const double share = kTighteningMargin / judged.worst(settings_.simplex);
  tight.feasibility_tolerance = std::max(kLeastTolerance, tight.feasibility_tolerance * share);
  tight.optimality_tolerance = std::max(kLeastTolerance, tight.optimality_tolerance * share);
  Judged third = attempt(*working_, method, tight, settings_.simplex.iteration_limit);
  if (third.trustworthy ||
      (!third.singular && third.worst(settings_.simplex) < judged.worst(settings_.simplex))) {
    judged = std::move(third);
  }
}

void Driver::recover(Judged& judged) {
  const int limit = settings_.simplex.iteration_limit;
  SimplexSettings careful = settings_.simplex;
  careful.markowitz_threshold = std::max(careful.markowitz_threshold, kCarefulThreshold);
  log_.new_phase(iterations_);
  if (judged.singular) working_->start_afresh();
  Judged next = attempt(*working_, other(method_), careful, limit);
  if (next.trustworthy) {
    judged = std::move(next);
    return;
  }
  log_.new_phase(iterations_);
  // The multipliers of the primal's phase one are bounded by its unit costs, so that a proof of
  // infeasibility made from them survives where a nearly singular dual basis has none.
  const bool claimed = judged.status == kInfeasible || next.status == kInfeasible;
  Owned<WorkingLp> unscaled = unscaled_copy();
  Judged last = attempt(*unscaled, claimed ? LpMethod::primal : method_, careful, limit);
  working_ = std::move(unscaled);
  judged = std::move(last);
  block_directions(judged);
}

/// What blocks a refused direction moves so slowly along it that the methods pass such pivots over.
/// In a unit as small as that motion it is a pivot like any other; the primal method then goes on
/// to the optimum, past several such directions if need be.
void Driver::block_directions(Judged& judged) {
  const int limit = settings_.simplex.iteration_limit;
  SimplexSettings careful = settings_.simplex;
  careful.markowitz_threshold = std::max(careful.markowitz_threshold, kCarefulThreshold);
  for (int round = 0; round < kDirections && !judged.trustworthy; ++round) {
    if (judged.status != kUnbounded || judged.direction.empty()) return;
    log_.new_phase(iterations_);
    if (!working_->magnify_blocking(judged.direction)) return;
    judged = attempt(*working_, LpMethod::primal, careful, limit);
  }
}

/// A run that takes long gives way to one from a better start, unless it asks for something that
/// the better start does not keep.
Judged Driver::first_attempt() {
  const int limit = settings_.simplex.iteration_limit;
  SimplexSettings run = settings_.simplex;
  run.keep_optimal_start = !own_start_;
  if (!own_start_ || !is_ordinary()) return attempt(*working_, method_, run, limit);
  FirstOrderStart rival(model_, context_.stop);
  Judged judged = attempt(*working_, method_, run, limit, &rival);
  if (!judged.superseded) return judged;
  log_.first_order_start(iterations_);
  rival.give_basis(*working_);
  return attempt(*working_, LpMethod::primal, settings_.simplex, limit);
}

LpAnswer Driver::run() {
  Judged judged = first_attempt();
  if (!judged.trustworthy && judged.status != kOptimalUnscaledInfeasible) recover(judged);
  if (judged.status == kOptimalUnscaledInfeasible) improve_optimum(judged);
  LpAnswer answer;
  answer.status = judged.status;
  answer.singular = judged.singular;
  answer.record = std::move(judged.record);
  answer.basis = std::move(judged.basis);
  if (!judged.trustworthy && (answer.status == kInfeasible || answer.status == kUnbounded)) {
    answer.status = kNonOptimal;
  }
  answer.record.iterations = iterations_;
  answer.record.phase_one_iterations = phase_one_iterations_;
  return answer;
}

void log_start(const WorkingLp& working, const StoredBasis& start, const DriverSettings& settings,
               const CallContext& context) {
  const auto basic = [](const Vector<int>& status) {
    return static_cast<int>(std::count(status.begin(), status.end(), kBasic));
  };
  DriverLog(context.sink, settings.simplex.display)
      .start_basis(basic(start.col_status) + basic(start.row_status), working.lp().num_rows,
                   working.has_factor());
}

}  // namespace

void prepare_working_lp(const Model& model, Owned<WorkingLp>& working, const StoredBasis& start,
                        const DriverSettings& settings, const CallContext& context) {
  if (working != nullptr && working->fits(model, settings.scaling)) {
    working->refresh(model);
    if (!settings.use_basis || !start.present) working->start_afresh();
  } else {
    working.reset();
    working = make_owned<WorkingLp>(model, settings.scaling, context.sink);
  }
  working->set_objective_constant(settings.objective_constant);
  if (settings.use_basis && start.present) {
    working->start_from(start, model, start.x.empty() ? nullptr : start.x.data());
    working->give_norms(start);
  }
}

namespace {

/// What is to become of a start basis when presolve is on.
enum class StartPlan { none, as_it_stands, crush, crush_with_point };

StartPlan plan_start(const Model& model, Owned<WorkingLp>& working, const StoredBasis& start,
                     const DriverSettings& settings, const CallContext& context) {
  if (!settings.use_basis || !start.present) return StartPlan::none;
  if (start.has_norms() && !settings.always_crush) return StartPlan::as_it_stands;
  prepare_working_lp(model, working, start, settings, context);
  const StartQuality quality = judge_start(*working, settings.simplex, context.for_run());
  if (!quality.factored) return StartPlan::crush;
  const bool feasible = quality.primal_wrong == 0 || quality.dual_wrong == 0;
  const double share = feasible ? kShareWrongOfFeasible : kShareWrong;
  const int few = kFewWrong + static_cast<int>(share * model.num_rows);
  if (!settings.always_crush && quality.primal_wrong + quality.dual_wrong <= few) {
    return StartPlan::as_it_stands;
  }
  return quality.primal_wrong == 0 ? StartPlan::crush_with_point : StartPlan::crush;
}

}  // namespace

LpAnswer solve_lp(const Model& model, Owned<WorkingLp>& working, const StoredBasis& start,
                  LpMethod method, const DriverSettings& settings, const CallContext& context,
                  Owned<PresolvedLp>& presolved) {
  const bool presolving = settings.presolve.on && model.num_rows > 0 && model.num_cols > 0 &&
                          !has_empty_interval(model, settings.simplex.feasibility_tolerance);
  const StartPlan plan =
      presolving ? plan_start(model, working, start, settings, context) : StartPlan::as_it_stands;
  switch (plan) {
    case StartPlan::as_it_stands:
      return solve_without_presolve(model, working, start, method, settings, context);
    case StartPlan::crush_with_point: {
      StoredBasis at_point(start);
      working->unscaled_x(at_point.x);
      return solve_with_presolve(model, working, at_point, method, settings, context, presolved);
    }
    default:
      return solve_with_presolve(model, working, start, method, settings, context, presolved);
  }
}

LpAnswer solve_without_presolve(const Model& model, Owned<WorkingLp>& working,
                                const StoredBasis& start, LpMethod method,
                                const DriverSettings& settings, const CallContext& context) {
  LpAnswer answer;
  if (solve_trivial_lp(model, settings.simplex.feasibility_tolerance, answer)) {
    working.reset();
  } else {
    prepare_working_lp(model, working, start, settings, context);
    if (settings.use_basis && start.present) log_start(*working, start, settings, context);
    const bool own_start = !(settings.use_basis && start.present);
    answer = Driver(model, working, method, own_start, settings, context).run();
  }
  answer.record.method = method == LpMethod::primal ? kMethodPrimal : kMethodDual;
  return answer;
}

}  // namespace kelvo
