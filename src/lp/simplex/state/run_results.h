// What a run leaves for its caller beside the basis and the duals.
//
// Values and objective are those of the last stored basic solution under the true costs; they are
// put together when they are first looked at.
#pragma once

#include "lp/simplex/state/basic_values.h"

namespace kelvo {

class RunResults {
 public:
  explicit RunResults(const LpProblem& problem);

  Vector<double> values;   // [N] see materialize()
  double objective = 0.0;  // of the minimization; see materialize()
  Vector<double> farkas;   // [m] proof of the last infeasible end
  Vector<double> ray;      // [N] direction of the last unbounded end

  /// The present basic solution is the result from now on.
  void note_solution() { stale_ = true; }
  /// values and objective belong to the last results.
  void materialize(const LpProblem& problem, const Basis& basis, const BasicValues& basics);
  /// Takes over another solution.
  void put(const Vector<double>& solution_values, double solution_objective);
  void resize(const LpProblem& problem);

 private:
  bool stale_ = false;
};

}  // namespace kelvo
