#include "mip/solve/incumbent.h"

#include <cmath>

#include "lp/solve/solve_model.h"
#include "prob/data/column_types.h"
#include "prob/fixed_model.h"
#include "prob/solution.h"

namespace kelvo {

void IncumbentStore::round_integers(Vector<double>& x) const {
  for (std::size_t j = 0; j < model_.column_type.size(); ++j) {
    if (is_integer_type(model_.column_type[j])) x[j] = std::round(x[j]) + 0.0;
  }
}

bool IncumbentStore::make_feasible(Vector<double>& x) {
  round_integers(x);
  if (measure_on_model(model_, x.data(), tolerances_).within(tolerances_)) return true;
  // The integers as they are, the rest by the linear program that is left.
  const Model fixed = fixed_model(model_, x.data(), tolerances_.feasibility);
  SilentSink silent;
  const CallContext context{silent, stop_};
  KeptLps kept;
  SolveResult result;
  if (!solve_model(fixed, ModelChanges(), kept, StoredBasis(), algorithm_of(LpMethod::dual),
                   lp_settings_, context, result) ||
      result.status != kOptimal) {
    return false;
  }
  x = std::move(result.solution.x);
  round_integers(x);
  return measure_on_model(model_, x.data(), tolerances_).within(tolerances_);
}

bool IncumbentStore::offer(const Vector<double>& x, SolutionSource, double& objective) {
  Vector<double> point;
  map_->to_model(x, point);
  last_was_feasible_ = make_feasible(point);
  if (!last_was_feasible_) {
    sink_.send(Channel::results,
               "Integer feasible solution rejected --- infeasible on original model\n");
    return false;
  }
  objective = model_.sense * objective_value(model_, point.data());
  if (objective >= objective_) return false;
  objective_ = objective;
  x_ = std::move(point);
  ++solutions_;
  return true;
}

}  // namespace kelvo
