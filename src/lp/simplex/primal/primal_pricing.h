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
//
// Reduced-cost pricing, and automatic pricing at first, do not keep reduced costs at all but look
// at sections of the variables (primal_sections.h): an iteration then computes no pivot row.
// Automatic pricing counts the work of its choices and takes up steepest edge, from the norms of a
// slack basis, when these have become dearer than a pivot row or too many iterations were made
// with them; and it drops the norms for devex weights when their upkeep does not pay beside the
// factorizations.
#pragma once

#include "base/containers.h"
#include "lp/simplex/primal/primal_sections.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

class PrimalPricer {
 public:
  explicit PrimalPricer(SimplexState& state);

  /// Sets the weights up for the run's rule.
  void begin();
  /// After a basis repair: the weights anew.
  void reinitialize();
  /// Automatic pricing may change its rule. To be called at a fresh factorization, before reduced
  /// costs are computed.
  void review_rule();
  /// True while the caller keeps row duals up to date instead of reduced costs.
  bool sectional() const { return sectional_; }
  /// After reduced costs were computed anew: candidates from scratch, bans lifted.
  void rebuild();
  /// Candidates violate optimality by more than this; from the settings until said otherwise. Takes
  /// effect at the next rebuild().
  void set_tolerance(double tolerance) { tolerance_ = tolerance; }
  double tolerance() const { return tolerance_; }
  /// w_j of a nonbasic variable that may move.
  double weight(int variable) const { return weight_[variable]; }
  /// The best candidate, or -1.
  int choose() { return sectional_ ? choose_in_sections() : choose_from_candidates(); }
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
  int choose_from_candidates();
  int choose_in_sections();
  void scan();
  bool take_given_weights();
  void slack_norms();
  void exact_norms();
  void exact_norms_rowwise();
  void exact_norms_columnwise();
  int sample_size() const;
  void switch_to_steepest();
  void switch_to_devex();
  bool sections_too_dear() const;
  bool norms_too_dear() const;
  void update_devex(int entering, int leaving, double pivot);
  void update_steepest(int entering, int leaving, double pivot);

  SimplexState& state_;
  SectionPricer sections_;
  PrimalPricing rule_ = PrimalPricing::devex;
  bool automatic_ = false;  // the rule may still change
  bool sectional_ = false;
  int samples_ = 0;            // choices or updates since the rule was taken up
  int section_choices_ = 0;    // choices made in sections
  double sampled_work_ = 0.0;  // their work, in nonzeros
  Vector<double> weight_;      // [num_vars] of nonbasic variables
  Vector<int> candidates_;     // candidates in no order
  Vector<int> place_;          // [num_vars] place in candidates_, -1 when not a candidate
  Vector<int> hot_;            // variables above the cut-off; may hold stale ones and duplicates
  Vector<double> merits_;      // scratch of scan()
  double tolerance_ = 0.0;
  double cutoff_ = 0.0;
  bool scanned_ = false;  // hot_ and cutoff_ are valid
  int inaccurate_ = 0;    // devex weights that have grown too large since the last reset
  Vector<int> banned_;
  WorkVector tau_;      // [m] B^-T (B^-1 a_q) of steepest edge, by row
  WorkVector tau_row_;  // [num_vars]
};

}  // namespace kelvo
