// The last digits of an optimum.
//
// A basis is optimal within the working tolerance, but a bound that is violated by 1e-8 and has a
// dual of 1e3 moves the objective by 1e-5. So the dual method goes on, from the optimal basis and
// with few iterations allowed, until the basic values keep their bounds as closely as rounding
// lets one tell. Should it not get there, the basis that was optimal before is back.
#include <algorithm>
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"

namespace kelvo {
namespace {

// Violations up to this, and up to this share of the largest basic value, are rounding errors.
constexpr double kFinest = 1e-10;
constexpr double kRounding = 1e-15;
// Iterations allowed: a few and a share of the rows.
constexpr int kFewIterations = 20;
constexpr double kIterationShare = 0.05;

}  // namespace

bool DualEngine::polish(double finest) {
  const double working = s_.run.primal_tolerance;
  const Vector<int> optimal = s_.basis.status;
  const Vector<double> places = s_.basis.value;
  s_.materialize_results();
  const Vector<double> values = s_.results.values;
  const Vector<double> row_duals = s_.duals.row_duals;
  const Vector<double> reduced_costs = s_.duals.reduced_cost;
  const double objective = s_.results.objective;
  const int limit = s_.run.settings.iteration_limit;
  const double allowed =
      s_.run.run_iterations() + kFewIterations + kIterationShare * static_cast<double>(s_.m);
  s_.run.primal_tolerance = finest;
  s_.run.settings.iteration_limit = static_cast<int>(std::min<double>(limit, allowed));
  perturbing_allowed_ = false;
  hot_ = started_hot_ = false;
  choose_pricing();
  initialize_weights();
  const bool reached =
      run_phase() == PhaseEnd::feasible && look_at_true_problem() == TrueProblem::optimal;
  s_.run.settings.iteration_limit = limit;
  s_.run.primal_tolerance = working;
  if (reached) {
    s_.store_results();
    return true;
  }
  remove_perturbation();
  s_.release_held();
  s_.set_basis(optimal, places.data());
  // For the next run; the results are there in any case.
  static_cast<void>(s_.refactorize());
  s_.results.put(values, objective);
  s_.duals.row_duals = row_duals;
  s_.duals.reduced_cost = reduced_costs;
  return false;
}

bool DualEngine::polish_optimum() {
  const bool untouched = s_.run.run_iterations() == 0;
  if (untouched && s_.run.settings.keep_optimal_start) return false;
  double largest = 1.0;
  double violation = 0.0;
  for (int p = 0; p < s_.m; ++p) {
    const double x = s_.basics.value[p];
    largest = std::max(largest, std::fabs(x));
    violation = std::max({violation, s_.basics.lower[p] - x, x - s_.basics.upper[p]});
  }
  const double finest = std::max(kFinest, kRounding * largest);
  if (violation <= finest || finest >= s_.run.primal_tolerance) return true;
  for (int j = 0; j < s_.num_vars; ++j) {
    if (s_.basis.status[j] == kFreeSuper && !s_.program.is_free(j))
      return true;  // no start for the dual method
  }
  return polish(finest);
}

}  // namespace kelvo
