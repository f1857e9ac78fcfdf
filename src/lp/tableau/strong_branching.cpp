#include "lp/tableau/strong_branching.h"

#include <cmath>

#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

// Values this close to a whole number are that number.
constexpr double kIntegrality = 1e-9;
// The objective of a side that no point satisfies.
constexpr double kWorstObjective = 1e75;

}  // namespace

StrongBranching::StrongBranching(const Model& model, WorkingLp& working,
                                 const SimplexSettings& settings, int iteration_limit,
                                 const RunContext& context)
    : model_(model), working_(working), settings_(settings), context_(context) {
  settings_.iteration_limit = iteration_limit;
  settings_.display = 0;
  settings_.objective_lower_limit = -kWorstObjective;
  settings_.objective_upper_limit = kWorstObjective;
  settings_.perturb_at_start = false;
  working_.simplex().state().copy_basis(optimal_);
}

BranchingStop StrongBranching::run_side(int j, double lower, double upper, double& objective) {
  objective = model_.sense * kWorstObjective;
  if (lower > upper) return BranchingStop::none;
  working_.change_bounds(j, lower, upper);
  Simplex& simplex = working_.simplex();
  const SimplexOutcome outcome = simplex.run_dual(settings_, context_);
  if (outcome != SimplexOutcome::infeasible) {
    objective = model_.sense * (simplex.objective() - working_.lp().offset);
  }
  working_.change_bounds(j, finite_or_infinite(model_.lower[j]),
                         finite_or_infinite(model_.upper[j]));
  simplex.state().restore_basis(optimal_);
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
    case SimplexOutcome::objective_limit:
    case SimplexOutcome::superseded:
    case SimplexOutcome::non_optimal:
      break;
  }
  return BranchingStop::none;
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

bool StrongBranching::restore() {
  working_.simplex().state().restore_basis(optimal_);
  return working_.compute_basic_solution(settings_, {});
}

}  // namespace kelvo
