#include "lp/tableau/strong_branching.h"

#include <cmath>

#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

// Values this close to a whole number are that number.
constexpr double kIntegrality = 1e-9;
// The objective of a side that no point satisfies.
constexpr double kWorstObjective = 1e75;

BranchingStop stop_of(SimplexOutcome outcome) {
  switch (outcome) {
    case SimplexOutcome::time_limit:
      return BranchingStop::time_limit;
    case SimplexOutcome::aborted:
    case SimplexOutcome::singular:
      return BranchingStop::aborted;
    case SimplexOutcome::optimal:
    case SimplexOutcome::infeasible:
    case SimplexOutcome::unbounded:
    case SimplexOutcome::iteration_limit:
    case SimplexOutcome::work_limit:
    case SimplexOutcome::objective_limit:
    case SimplexOutcome::superseded:
    case SimplexOutcome::non_optimal:
      break;
  }
  return BranchingStop::none;
}

}  // namespace

StrongBranching::StrongBranching(const Model& model, WorkingLp& working,
                                 const SimplexSettings& settings, int iteration_limit,
                                 const RunContext& context)
    : model_(model), working_(working), settings_(settings), context_(context) {
  settings_.iteration_limit = iteration_limit;
  settings_.display = 0;
  settings_.objective_lower_limit = -kWorstObjective;
  settings_.objective_upper_limit = kWorstObjective;
}

BranchingStop StrongBranching::run_side(int j, double lower, double upper, double& objective) {
  const double factor = working_.scaling().variable_factor(j, model_.num_cols);
  const ProbeResult result =
      working_.simplex().probe({{j, lower * factor, upper * factor}}, settings_, context_);
  objective = model_.sense *
              (result.outcome == SimplexOutcome::infeasible ? kWorstObjective : result.bound);
  return stop_of(result.outcome);
}

BranchingStop StrongBranching::probe(int j, double x, double& down, double& up) {
  const double whole = std::round(x);
  const bool integral = std::fabs(x - whole) <= kIntegrality;
  const double lower = finite_or_infinite(model_.lower[j]);
  const double upper = finite_or_infinite(model_.upper[j]);
  const BranchingStop stop = run_side(j, lower, integral ? whole : std::floor(x), down);
  if (stop != BranchingStop::none) return stop;
  return run_side(j, integral ? whole : std::ceil(x), upper, up);
}

}  // namespace kelvo
