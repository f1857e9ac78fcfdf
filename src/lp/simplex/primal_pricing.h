// Choice of the entering variable of the primal simplex method.
//
// A nonbasic variable is a candidate while its reduced cost violates optimality by more than the
// tolerance. The candidate of largest merit d_j^2 / w_j enters, where w_j is
//   1                              with reduced-cost and full pricing,
//   the devex reference weight     (Forrest and Goldfarb 1992, "Steepest-edge simplex algorithms",
//                                   section 5; Harris 1973),
//   1 + |B^-1 a_j|^2               with steepest edge (Goldfarb and Reid 1977).
//
// Candidates are kept incrementally. Between two full scans of them the largest merit is found in a
// short list of "hot" candidates: those above the cut-off of the last scan, and those that came
// above it since. As long as the best hot merit is above the cut-off it is the best of all, so the
// choice never differs from that of a full scan.
#pragma once

#include "base/containers.h"
#include "lp/simplex/simplex_state.h"

namespace kelvo {

class PrimalPricer {
 public:
  explicit PrimalPricer(SimplexState& state);

  /// Sets the weights up for the run's rule.
  void begin();
  /// After reduced costs were computed anew: candidates from scratch, bans lifted.
  void rebuild();
  /// Candidates violate optimality by more than this; from the settings until said otherwise. Takes
  /// effect at the next rebuild().
  void set_tolerance(double tolerance) { tolerance_ = tolerance; }
  double tolerance() const { return tolerance_; }
  /// The best candidate, or -1.
  int choose();
  /// Takes a variable out of the choice until the next rebuild().
  void ban(int variable);
  /// After a change of a variable's reduced cost, weight or movement.
  void refresh(int variable);
  /// Weights after an exchange; call it before SimplexState::exchange with entering, pivot row and
  /// entering column of the pivot in the state. `pivot` is the pivot row's entry of the entering
  /// variable.
  void update_weights(int entering, int position, double pivot);

 private:
  double merit(int j) const;
  bool attractive(int j) const;
  void scan();
  void slack_norms();
  void exact_norms();
  void update_devex(int entering, int leaving, double pivot);
  void update_steepest(int entering, int leaving, double pivot);

  SimplexState& state_;
  PrimalPricing rule_ = PrimalPricing::devex;
  Vector<double> weight_;   // [num_vars] of nonbasic variables
  Vector<int> candidates_;  // candidates in no order
  Vector<int> place_;       // [num_vars] place in candidates_, -1 when not a candidate
  Vector<int> hot_;         // variables above the cut-off; may hold stale ones and duplicates
  Vector<double> merits_;   // scratch of scan()
  double tolerance_ = 0.0;
  double cutoff_ = 0.0;
  bool scanned_ = false;  // hot_ and cutoff_ are valid
  int inaccurate_ = 0;    // devex weights found far too small since the last reset
  Vector<int> banned_;
  WorkVector tau_;      // [m] B^-T (B^-1 a_q) of steepest edge, by row
  WorkVector tau_row_;  // [num_vars]
};

}  // namespace kelvo
