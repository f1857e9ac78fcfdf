// What a solve of an LpProblem ends with.
#pragma once

#include "lp/form/lp_solution.h"

namespace kelvo {

enum class LpOutcome {
  optimal,
  unbounded,
  infeasible,
  infeasible_or_unbounded,
  optimal_unscaled_infeasible,  // optimal for the scaled program only
  non_optimal,                  // numerical trouble
  iteration_limit,
  time_limit,
  objective_limit,
  aborted,
};

/// Everything is in the units of the program and of its minimization.
struct LpAnswer {
  LpOutcome outcome = LpOutcome::non_optimal;
  bool singular = false;      // no basis could be factored, not even after a fresh start
  bool has_solution = false;  // `solution` is valid and complete
  LpSolution solution;
  bool primal_feasible = false;  // within the tolerance
  bool dual_feasible = false;
  double condition = 0.0;  // estimate for the final basis; 0 when there is none
  int iterations = 0;
  int phase_one_iterations = 0;
  Vector<double> farkas;  // [num_rows] proof of infeasibility; or empty
  Vector<double> ray;     // [num_cols] direction of unboundedness; or empty

  bool is_feasible() const { return primal_feasible && dual_feasible; }
  /// Adds the iterations of an earlier part of the same solve.
  void count_iterations_of(const LpAnswer& earlier) {
    iterations += earlier.iterations;
    phase_one_iterations += earlier.phase_one_iterations;
  }
};

}  // namespace kelvo
