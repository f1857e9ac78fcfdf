// Bound perturbation of the primal simplex method, against stalling at degenerate vertices.
//
// When a run makes many steps in a row without progress, the bounds of the basic variables are
// moved outwards by small random amounts, so that ties of the ratio test are broken. Bounds that
// the ratio test had to move to keep steps non-negative ("shifts") are noted here too. At the
// optimum of the working problem the true bounds come back and the method goes on from there.
#pragma once

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

class PrimalPerturbation {
 public:
  explicit PrimalPerturbation(SimplexState& state) : state_(state) {}

  /// Sets the detector up from the run's settings.
  void begin();
  /// Before the first step: true when the settings ask to perturb at the start, which has then been
  /// done. A limit of stalled iterations has precedence. Values must be computed again.
  bool due_at_start();
  /// Bounds are perturbed now.
  bool active() const { return active_; }
  /// The working feasibility tolerance, lowered while small perturbations are in force.
  double feasibility_tolerance() const { return tolerance_; }
  /// Counts an iteration that improved the objective by `gain`.
  void observe(double gain);
  /// The run has stalled: true once, after perturbing. Values must be computed anew.
  bool due();
  /// Makes room when a leaving variable stands beyond its bound: the bound moves to it.
  void shift_leaving_bound(int variable, BasisStatus at, double value);
  /// True bounds again. Values must be computed anew.
  void remove();

 private:
  double next_magnitude() const;
  void perturb();

  SimplexState& state_;
  bool active_ = false;
  bool stalled_ = false;
  bool at_start_ = false;
  int perturbations_ = 0;
  int removals_ = 0;
  int shifts_ = 0;
  int degenerate_ = 0;  // iterations without progress since the last one with
  int limit_ = 0;       // tolerated number of them
  double magnitude_ = 0.0;
  double tolerance_ = 0.0;
};

}  // namespace kelvo
