// That the last run ended optimal, and how far its optimum serves later runs.
#pragma once

#include "lp/simplex/state/run_control.h"

namespace kelvo {

class OptimumRecord {
 public:
  void note(const RunControl& run, bool polished) {
    solved_ = true;
    polished_ = polished;
    primal_tolerance_ = run.primal_tolerance;
    dual_tolerance_ = run.dual_tolerance;
  }
  /// Something has changed.
  void forget() { solved_ = false; }
  bool solved() const { return solved_; }
  void set_solved(bool solved) { solved_ = solved; }
  /// The next run has nothing to do: neither data nor tolerances have changed since, the optimum
  /// need not be polished, and the objective limits of the run are kept.
  bool serves(const RunControl& run, double objective) const {
    return solved_ && (polished_ || run.settings.keep_optimal_start) &&
           run.primal_tolerance == primal_tolerance_ && run.dual_tolerance == dual_tolerance_ &&
           objective <= run.settings.objective_upper_limit &&
           objective >= run.settings.objective_lower_limit;
  }

 private:
  bool solved_ = false;
  bool polished_ = false;
  double primal_tolerance_ = 0.0;
  double dual_tolerance_ = 0.0;
};

}  // namespace kelvo
