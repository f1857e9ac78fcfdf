#include "lp/simplex/state/run_results.h"

#include <algorithm>

namespace kelvo {

RunResults::RunResults(const LpProblem& problem)
    : values(problem.num_vars(), 0.0),
      farkas(problem.num_rows, 0.0),
      ray(problem.num_vars(), 0.0) {}

void RunResults::materialize(const LpProblem& problem, const Basis& basis,
                             const BasicValues& basics) {
  if (!stale_) return;
  stale_ = false;
  std::copy(basis.value.begin(), basis.value.end(), values.begin());
  for (std::size_t p = 0; p < basics.value.size(); ++p) values[basis.header[p]] = basics.value[p];
  objective = problem.offset;
  for (int j = 0; j < problem.num_vars(); ++j) {
    if (problem.cost[j] != 0.0) objective += problem.cost[j] * values[j];
  }
}

void RunResults::put(const Vector<double>& solution_values, double solution_objective) {
  values = solution_values;
  objective = solution_objective;
  stale_ = false;
}

void RunResults::resize(const LpProblem& problem) {
  values.resize(problem.num_vars(), 0.0);
  farkas.resize(problem.num_rows, 0.0);
  ray.resize(problem.num_vars(), 0.0);
}

}  // namespace kelvo
