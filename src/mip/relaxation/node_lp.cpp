#include "mip/relaxation/node_lp.h"

namespace kelvo {

NodeLp::NodeLp(Owned<WorkingLp> working, const SimplexSettings& settings)
    : working_(std::move(working)), settings_(settings) {
  settings_.display = 0;
  settings_.keep_optimal_start = true;
  settings_.scaled = working_->scaling().active();
  x_.resize(num_cols());
  reduced_costs_.resize(num_cols());
}

void NodeLp::start_from(const BasisSnapshot& basis) {
  working_->finish_changes();
  working_->simplex().start_from(basis);
}

NodeLpOutcome NodeLp::run(bool dual, const SimplexSettings& settings, const RunContext& context) {
  Simplex& simplex = working_->simplex();
  const int before = simplex.iterations();
  const SimplexOutcome outcome =
      dual ? simplex.run_dual(settings, context) : simplex.run_primal(settings, context);
  iterations_ += simplex.iterations() - before;
  switch (outcome) {
    case SimplexOutcome::optimal:
      return NodeLpOutcome::optimal;
    case SimplexOutcome::infeasible:
      return NodeLpOutcome::infeasible;
    case SimplexOutcome::unbounded:
      return NodeLpOutcome::unbounded;
    case SimplexOutcome::objective_limit:
      return NodeLpOutcome::cutoff;
    case SimplexOutcome::iteration_limit:
    case SimplexOutcome::work_limit:
      return NodeLpOutcome::iteration_limit;
    case SimplexOutcome::time_limit:
      return NodeLpOutcome::time_limit;
    case SimplexOutcome::aborted:
      return NodeLpOutcome::aborted;
    case SimplexOutcome::superseded:
    case SimplexOutcome::singular:
    case SimplexOutcome::non_optimal:
      break;
  }
  return NodeLpOutcome::failed;
}

NodeLpOutcome NodeLp::solve(double cutoff, int iteration_limit, const RunContext& context) {
  working_->finish_changes();
  SimplexSettings settings = settings_;
  settings.objective_upper_limit = cutoff;
  settings.iteration_limit = iteration_limit;
  NodeLpOutcome outcome = run(true, settings, context);
  if (outcome == NodeLpOutcome::failed || outcome == NodeLpOutcome::unbounded) {
    working_->start_afresh();
    outcome = run(true, settings, context);
  }
  if (outcome == NodeLpOutcome::failed) {
    settings.objective_upper_limit = settings_.objective_upper_limit;
    outcome = run(false, settings, context);
  }
  if (outcome != NodeLpOutcome::optimal) return outcome;
  take_solution();
  return objective_ >= cutoff ? NodeLpOutcome::cutoff : NodeLpOutcome::optimal;
}

void NodeLp::take_solution() {
  const Simplex& simplex = working_->simplex();
  objective_ = simplex.objective();
  const Vector<double>& values = simplex.values();
  const Vector<double>& reduced_costs = simplex.reduced_costs();
  for (int j = 0; j < num_cols(); ++j) {
    // Bounds hold exactly in what branching looks at: it could not repair what the method leaves.
    x_[j] = std::clamp(values[j] / factor(j), lower(j), upper(j));
    reduced_costs_[j] = reduced_costs[j] * factor(j);
  }
}

bool NodeLp::infeasibility_proof(Vector<double>& y) {
  if (working_->simplex().farkas_dual().empty()) return false;
  working_->unscaled_farkas(y);
  return true;
}

ProbedSide NodeLp::probe(int column, double lower, double upper, double cutoff, int iteration_limit,
                         const RunContext& context) {
  probed_.assign(1, VariableBounds{column, lower * factor(column), upper * factor(column)});
  SimplexSettings settings = settings_;
  settings.objective_upper_limit = cutoff;
  settings.iteration_limit = iteration_limit;
  const ProbeResult result = working_->simplex().probe(probed_, settings, context);
  iterations_ += result.iterations;
  ProbedSide side;
  side.iterations = result.iterations;
  side.bound = std::max(result.bound, objective_);
  side.infeasible = result.outcome == SimplexOutcome::infeasible ||
                    result.outcome == SimplexOutcome::objective_limit || side.bound >= cutoff;
  side.solved = result.outcome == SimplexOutcome::optimal;
  return side;
}

}  // namespace kelvo
