#include "mip/solve/mip_solver.h"

#include <cmath>

#include "base/clock.h"
#include "mip/solve/mip_log.h"
#include "mip/solve/searched_program.h"
#include "mip/tree/search.h"
#include "prob/data/column_types.h"
#include "prob/data/generated_order.h"

namespace kelvo {
namespace {

/// Rounds the bounds of integer columns inwards; true when one of them moved.
bool round_bounds(MipProblem& mip) {
  bool moved = false;
  const auto round = [&](double& lower, double& upper) {
    const double low = std::ceil(lower - kIntegralBoundTolerance);
    const double high = std::floor(upper + kIntegralBoundTolerance);
    moved |= std::isfinite(lower) && low - lower > kIntegralBoundTolerance;
    moved |= std::isfinite(upper) && upper - high > kIntegralBoundTolerance;
    lower = low;
    upper = high;
  };
  for (int j = 0; j < mip.num_cols(); ++j) {
    if (mip.is_integer[j]) round(mip.lp.lower[j], mip.lp.upper[j]);
  }
  for (SemiColumn& semi : mip.semis) {
    if (mip.is_integer[semi.column]) round(semi.lower, semi.upper);
  }
  return moved;
}

struct StatusPair {
  int with_incumbent;
  int without;
};

StatusPair status_of(SearchEnd end) {
  switch (end) {
    case SearchEnd::exhausted:
      return {kMipOptimal, kMipInfeasible};
    case SearchEnd::gap:
      return {kMipOptimalTolerance, kMipInfeasible};
    case SearchEnd::solution_limit:
      return {kMipSolutionLimit, kMipNodeLimitNone};
    case SearchEnd::node_limit:
      return {kMipNodeLimit, kMipNodeLimitNone};
    case SearchEnd::iteration_limit:
      return {kMipIterationLimit, kMipIterationLimitNone};
    case SearchEnd::time_limit:
      return {kMipTimeLimit, kMipTimeLimitNone};
    case SearchEnd::memory_limit:
      return {kMipMemoryLimit, kMipMemoryLimitNone};
    case SearchEnd::aborted:
      return {kMipAborted, kMipAbortedNone};
    case SearchEnd::failed:
      break;
  }
  return {kMipError, kMipErrorNone};
}

/// Writes the log as the search goes.
class LoggingObserver final : public SearchObserver {
 public:
  LoggingObserver(NodeLog& log, const IncumbentStore& store, double (*clock)(), double start)
      : log_(log), store_(store), clock_(clock), start_(start) {}

  int incumbent_node() const { return incumbent_node_; }

  void on_incumbent(const SearchState& state, const NodeResult& result, bool heuristic,
                    const NodeOrigin& origin) override {
    log_.incumbent(state, result, heuristic, origin);
    if (incumbent_node_ < 0) log_.first_solution(seconds(), state.nodes, state.incumbent);
    incumbent_node_ = state.nodes;
  }
  void on_node(const SearchState& state, const NodeResult& result,
               const NodeOrigin& origin) override {
    log_.node(state, result, origin);
    log_.progress(state.nodes, seconds(), static_cast<double>(state.tree_bytes),
                  store_.solutions());
  }

 private:
  double seconds() const { return clock_() - start_; }

  NodeLog& log_;
  const IncumbentStore& store_;
  double (*clock_)();
  const double start_;
  int incumbent_node_ = -1;
};

/// What the rows of a program say about its binary columns.
struct RowTables {
  explicit RowTables(const MipProblem& mip) : cliques(mip), implications(mip) {}
  CliqueTable cliques;
  ImplicationTable implications;
};

class MipSolver {
 public:
  MipSolver(const Model& model, const MipSolverSettings& settings, const CallContext& context)
      : model_(model),
        settings_(settings),
        context_(context),
        log_(context.sink, settings.log.display),
        clock_(settings.log.processor_time ? cpu_seconds : wall_seconds),
        start_(clock_()),
        store_(model, {settings.search.feasibility, settings.search.integrality}, settings.lp,
               context.sink, context.stop) {}

  MipAnswer run();

 private:
  bool prepare(MipProblem& mip);
  PriorityOrder order() const;
  bool presolve(SearchedProgram& program);
  bool solve_root(const MipProblem& mip, Owned<WorkingLp>& working);
  void search(const SearchedProgram& program, Owned<WorkingLp> working);
  void decide_unbounded(const MipProblem& mip);
  void end_early(SearchEnd end) { answer_.status = status_of(end).without; }
  SearchEnd stopped();
  SimplexSettings node_settings(const MipProblem& mip);
  void finish();

  const Model& model_;
  const MipSolverSettings& settings_;
  const CallContext& context_;
  MipLog log_;
  double (*clock_)();
  const double start_;
  IncumbentStore store_;
  MipAnswer answer_;
};

PriorityOrder MipSolver::order() const {
  if (!settings_.use_order) return {};
  if (model_.order.size() > 0) return model_.order;
  const auto rule = static_cast<OrderRule>(settings_.generated_order);
  return rule == OrderRule::none ? PriorityOrder() : generate_order(model_, rule);
}

/// False when the solve has ended.
bool MipSolver::prepare(MipProblem& mip) {
  if (round_bounds(mip)) log_.bounds_rounded();
  for (int j = 0; j < mip.num_cols(); ++j) {
    if (mip.lp.lower[j] <= mip.lp.upper[j] + settings_.search.feasibility) continue;
    const SearchedProgram names(MipProblem(), model_);
    log_.crossing_bounds(names.column_name(j));
    answer_.status = kMipInfeasible;
    return false;
  }
  close_crossed_bounds(mip.lp);
  return true;
}

SearchEnd MipSolver::stopped() {
  return context_.stop.check() == StopReason::user_abort ? SearchEnd::aborted
                                                         : SearchEnd::time_limit;
}

bool MipSolver::presolve(SearchedProgram& program) {
  if (!settings_.lp.presolve.on) return true;
  const double start = clock_();
  const PresolveOutcome outcome =
      program.presolve(settings_.presolve, {context_.sink, context_.stop});
  answer_.presolve_seconds = clock_() - start;
  log_.presolve_time(answer_.presolve_seconds);
  switch (outcome) {
    case PresolveOutcome::reduced:
    case PresolveOutcome::unchanged:
      return true;
    case PresolveOutcome::infeasible:
      answer_.status = kMipInfeasible;
      return false;
    case PresolveOutcome::dual_infeasible:
      answer_.status = kMipInfeasibleOrUnbounded;
      return false;
    case PresolveOutcome::time_limit:
    case PresolveOutcome::aborted:
      break;
  }
  end_early(stopped());
  return false;
}

bool MipSolver::solve_root(const MipProblem& mip, Owned<WorkingLp>& working) {
  const double start = clock_();
  DriverSettings settings = settings_.lp;
  settings.presolve.on = false;
  settings.use_basis = false;
  const LpAlgorithm* algorithm = find_algorithm(settings_.root_algorithm);
  if (algorithm == nullptr) algorithm = &algorithm_of(LpMethod::dual);
  LpAnswer root =
      solve_without_presolve(mip.lp, working, LpStart(), *algorithm, settings, context_);
  answer_.iterations += root.iterations;
  answer_.root_seconds = clock_() - start;
  log_.root_time(answer_.root_seconds);
  switch (root.outcome) {
    case LpOutcome::optimal:
    case LpOutcome::optimal_unscaled_infeasible:
    case LpOutcome::non_optimal:
      break;
    case LpOutcome::infeasible:
      answer_.status = kMipInfeasible;
      return false;
    case LpOutcome::unbounded:
    case LpOutcome::infeasible_or_unbounded:
      decide_unbounded(mip);
      return false;
    case LpOutcome::iteration_limit:
      end_early(SearchEnd::iteration_limit);
      return false;
    case LpOutcome::objective_limit:
      answer_.status = kMipInfeasible;
      return false;
    case LpOutcome::time_limit:
    case LpOutcome::aborted:
      end_early(stopped());
      return false;
  }
  if (working == nullptr) {
    working = make_working_lp(LpProblem(mip.lp), settings_.lp, context_.sink);
  }
  return true;
}

SimplexSettings MipSolver::node_settings(const MipProblem& mip) {
  SimplexSettings simplex = settings_.lp.simplex;
  if (simplex.dual_pricing == DualPricing::automatic) {
    const bool wide = 10.0 * mip.num_rows() < mip.num_cols();
    simplex.dual_pricing = wide ? DualPricing::steepest : DualPricing::devex;
    if (wide) log_.steepest_edge_selected();
  }
  return simplex;
}

void MipSolver::search(const SearchedProgram& program, Owned<WorkingLp> working) {
  const double start = clock_();
  const MipProblem& mip = program.mip();
  NodeLp lp(std::move(working), node_settings(mip));
  NodeLog node_log(context_.sink, settings_.log, program);
  LoggingObserver observer(node_log, store_, clock_, start_);
  Cutoff cutoff(mip, settings_.search);
  const RowTables tables(mip);
  NodeBounds bounds(mip, tables.cliques, tables.implications);
  Search search(mip, settings_.search, lp, bounds, cutoff, store_, observer, store_.objective());
  const SearchEnd end = search.run(context_.stop);
  answer_.nodes = search.nodes();
  answer_.nodes_left = search.nodes_left();
  answer_.iterations += search.iterations();
  answer_.best_bound = search.best_bound();
  answer_.cutoff = cutoff.value();
  answer_.incumbent_node = std::max(observer.incumbent_node(), 0);
  answer_.tree_seconds = clock_() - start;
  const StatusPair status = status_of(end);
  answer_.status = store_.present() ? status.with_incumbent : status.without;
  if (answer_.status == kMipOptimalTolerance &&
      relative_gap(store_.objective(), answer_.best_bound) == 0.0) {
    answer_.status = kMipOptimal;
  }
}

/// The relaxation is unbounded. With rational data the program is then unbounded, too, if it has a
/// point at all: a multiple of the direction keeps integers whole. Sets and the like can forbid
/// that.
void MipSolver::decide_unbounded(const MipProblem& mip) {
  answer_.best_bound = -kNoValue;
  answer_.status = kMipInfeasibleOrUnbounded;
  if (mip.has_constraint_branches()) return;
  MipProblem feasibility = mip;
  feasibility.lp.cost.assign(mip.lp.cost.size(), 0.0);
  MipSolverSettings settings = settings_;
  settings.search.solution_limit = 1;
  settings.search.cutoff = kNoValue;
  settings.log.silent = true;
  SilentSink silent;
  const CallContext context{silent, context_.stop};
  MipSolver solver(model_, settings, context);
  SearchedProgram program(std::move(feasibility), model_);
  // The searched program need not be the model: points are only counted.
  struct Counter final : SolutionSink {
    bool offer(const Vector<double>&, SolutionSource, double& objective) override {
      objective = 0.0;
      return found = true;
    }
    bool last_was_feasible() const override { return true; }
    bool found = false;
  } counter;
  Owned<WorkingLp> working;
  if (!solver.solve_root(program.mip(), working)) {
    answer_.status = solver.answer_.status;
    return;
  }
  NodeLp lp(std::move(working), node_settings(mip));
  NodeLog node_log(silent, settings.log, program);
  LoggingObserver observer(node_log, store_, clock_, start_);
  Cutoff cutoff(program.mip(), settings.search);
  const RowTables tables(program.mip());
  NodeBounds bounds(program.mip(), tables.cliques, tables.implications);
  Search search(program.mip(), settings.search, lp, bounds, cutoff, counter, observer, kNoValue);
  const SearchEnd end = search.run(context_.stop);
  answer_.nodes = search.nodes();
  answer_.iterations += solver.answer_.iterations + search.iterations();
  answer_.status = counter.found ? kMipUnbounded : status_of(end).without;
}

void MipSolver::finish() {
  answer_.has_incumbent = store_.present();
  answer_.solutions = store_.solutions();
  if (store_.present()) {
    answer_.x = store_.x();
    answer_.objective = model_.sense * store_.objective();
  }
  answer_.best_bound *= model_.sense;
  answer_.cutoff *= model_.sense;
}

MipAnswer MipSolver::run() {
  const MipTolerances tolerances{settings_.search.feasibility, settings_.search.integrality};
  const PriorityOrder branching_order = order();
  if (model_.order.size() == 0 && branching_order.size() > 0) {
    log_.generated_order(settings_.generated_order);
  }
  MipProblem mip = make_mip(model_, branching_order, tolerances);
  answer_.best_bound = -kNoValue;
  if (prepare(mip)) {
    SearchedProgram program(std::move(mip), model_);
    store_.set_map(&program);
    Owned<WorkingLp> working;
    if (presolve(program) && solve_root(program.mip(), working)) {
      log_.banner(settings_.search, settings_.threads, false);
      search(program, std::move(working));
    }
  }
  finish();
  return std::move(answer_);
}

}  // namespace

MipAnswer solve_mip(const Model& model, const MipSolverSettings& settings,
                    const CallContext& context) {
  return MipSolver(model, settings, context).run();
}

}  // namespace kelvo
