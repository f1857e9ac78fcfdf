// Choice of the entering variable of the dual simplex: Harris' two passes over groups of
// breakpoints with bound flipping.
//
// The leaving variable violates a bound by `infeasibility`; the dual step t >= 0 lets reduced costs
// fall at the rates |alpha_j| of the pivot row. The dual objective is concave in t with slope
// |infeasibility| at 0, and each breakpoint d_j = t |alpha_j| of a boxed variable that is passed by
// flipping it costs |alpha_j| (upper_j - lower_j) of the slope. Groups are formed by Harris' rule
// (P. M. J. Harris, 1973) so that reduced costs never fall beyond the tolerance, and within a group
// the largest |alpha_j| is preferred; passing breakpoints follows Maros (2003).
#pragma once

#include "base/containers.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

class DualRatioTest {
 public:
  explicit DualRatioTest(SimplexState& state);
  /// To be called after the state has changed its shape.
  void follow_shape();

  enum class Outcome {
    entering,     // entering() and flips() are set
    unbounded,    // no candidate that could be a pivot: the row proves infeasibility
    small_pivot,  // candidates exist, but none above the pivot tolerance
  };

  /// `infeasibility` is x - bound of the leaving variable: negative below its lower bound, positive
  /// above the upper one. Reads state.pivot_row, move, reduced_cost and bounds.
  Outcome run(double infeasibility);

  int entering() const { return entering_; }
  /// Boxed variables whose breakpoints were passed.
  const Vector<int>& flips() const { return flips_; }

  /// A banned variable is no candidate until the bans are lifted.
  void ban(int variable);
  void lift_bans();
  bool has_bans() const { return !banned_list_.empty(); }

 private:
  struct Candidate {
    int variable;
    double alpha;  // > 0: rate at which the reduced cost falls
    double dual;   // reduced cost, sign-adjusted: >= 0 when feasible
    double ratio;  // dual / alpha; set when sort_reachable() needs it
  };
  struct Group {
    int end;   // candidates before this one belong to this group or an earlier one
    int best;  // the one with the largest alpha
  };

  void collect(double direction, double filter, bool all);
  double first_reach(double bound) const;
  double harris_bound(int begin, int end) const;
  int limit_to_reachable(double slope);
  void form_groups(double slope, int reachable);
  void form_sorted_groups(double slope, int begin, int reachable);
  bool choose_from_groups();
  double slope_loss(const Candidate& c) const;
  bool better(const Candidate& a, const Candidate& b) const;

  SimplexState& state_;
  Vector<Candidate> candidates_;  // [num_vars + 1] at least; the first count_ are valid
  int count_ = 0;
  bool all_collected_ = false;  // otherwise those within first_reach(bound_), and some more
  double largest_alpha_ = 0.0;  // of all candidates, collected or not
  double usual_reach_ = 0.0;    // how far the last tests went
  double bound_ = kInf;         // Harris bound of all candidates
  double alpha_at_bound_ = 0.0;
  double reach_ = kInf;  // no breakpoint of a candidate that was left out lies below this
  Vector<Group> groups_;
  Vector<double>
      bound_from_;  // [num_vars] at least; scratch: Harris bound of the candidates from here on
  int entering_ = -1;
  Vector<int> flips_;
  Vector<unsigned char> banned_;  // [num_vars]
  Vector<int> banned_list_;
};

}  // namespace kelvo
