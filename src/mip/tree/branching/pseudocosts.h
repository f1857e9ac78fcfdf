// Pseudocosts: what a branch has cost so far, per unit by which it moved its column.
//
// Source: M. Bénichou et al., "Experiments in mixed-integer linear programming" (1971); the use
// before enough is known about a column after T. Achterberg, T. Koch and A. Martin, "Branching
// rules revisited" (2005).
#pragma once

#include "base/containers.h"

namespace kelvo {

class Pseudocosts {
 public:
  explicit Pseudocosts(int num_cols) : sides_{Vector<Side>(num_cols), Vector<Side>(num_cols)} {}

  /// A branch moved the column by `distance` > 0, and the bound by `gain` >= 0.
  void observe(int column, bool up, double gain, double distance);
  /// A branch had no point below the cutoff.
  void observe_cutoff(int column, bool up) { ++sides_[up][column].cutoffs; }

  int count(int column, bool up) const { return sides_[up][column].count; }
  /// Gain per unit; the average of all columns for one that was never seen, 1 when none was.
  double per_unit(int column, bool up) const;
  /// The gain to expect from moving the column by `distance`.
  double gain(int column, bool up, double distance) const {
    return per_unit(column, up) * distance;
  }
  /// Share of branches of the column that were cut off, both sides.
  double cutoff_rate(int column) const;

 private:
  struct Side {
    double sum = 0.0;
    int count = 0;
    int cutoffs = 0;
  };
  Vector<Side> sides_[2];  // by direction, [num_cols]
  double total_[2] = {0.0, 0.0};
  int observations_[2] = {0, 0};
};

/// What two gains are worth together: their product, each at least a little.
double branching_score(double down_gain, double up_gain);

}  // namespace kelvo
