// Choice of the leaving variable of the dual simplex: the basis position of largest
// infeasibility^2 / weight, found without a loop over all positions.
//
// A short list holds every position whose merit reaches `cutoff_`; whoever changes a value or a
// weight calls update(), which adds the position when it has come up to the cutoff. As long as the
// list holds a position that reaches the cutoff, its best one is the best of all. When it is used
// up, or has grown long, one pass over all positions makes a new list. Of many positions that are
// equal to the cutoff it takes a few.
#pragma once

#include "base/containers.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

class LeavingList {
 public:
  explicit LeavingList(SimplexState& state);

  /// To be called after the state has changed its shape, before rebuild().
  void follow_shape();
  /// Squared infeasibilities of all positions from the current basic values; forgets the bans.
  void rebuild();
  /// To be called after the value, the bounds or the weight of a position has changed.
  void update(int p) {
    const double x = value_[p];
    double violation = lower_[p] - x;
    if (violation < x - upper_[p]) violation = x - upper_[p];
    const double square = violation > tolerance_ ? violation * violation : 0.0;
    infeasibility_[p] = square;
    if (square > 0.0 && square >= cutoff_ * weight_[p] && !listed_[p]) add(p);
  }
  /// The position to leave, -1 when none is infeasible.
  int choose();
  /// Leaves a position out until the next rebuild() or change of its value.
  void ban(int p) {
    infeasibility_[p] = 0.0;
    banned_any_ = true;
  }
  /// True when a position was banned since the last rebuild().
  bool banned_any() const { return banned_any_; }
  /// Sum and number of infeasibilities above the tolerance; a loop over all positions.
  double sum_infeasibilities(int& count) const;

 private:
  void add(int p) {
    list_[size_++] = p;
    listed_[p] = 1;
  }
  void relist();

  const SimplexState& state_;
  int m_ = 0;
  const double* value_ = nullptr;  // these four belong to the state
  const double* lower_ = nullptr;
  const double* upper_ = nullptr;
  const double* weight_ = nullptr;
  double tolerance_ = 0.0;
  double cutoff_ = 0.0;  // merits below this are not listed; 0: every infeasible position is
  int size_ = 0;
  long scanned_ = 0;  // list entries looked at since the last relist()
  bool banned_any_ = false;
  Vector<double> infeasibility_;  // [m] squared, 0 within the tolerance
  Vector<int> list_;              // [m]; the first size_ are valid
  Vector<unsigned char> listed_;  // [m]
  Vector<double> merits_;         // [m] scratch of relist()
};

}  // namespace kelvo
