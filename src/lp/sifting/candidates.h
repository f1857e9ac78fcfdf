// Columns on their way into the work program.
#pragma once

#include <algorithm>

#include "lp/form/lp_problem.h"

namespace kelvo {

struct Candidate {
  int column;
  double merit;
};

/// Leaves the `count` candidates of highest merit.
inline void keep_best(Vector<Candidate>& list, int count) {
  if (count >= static_cast<int>(list.size())) return;
  std::nth_element(list.begin(), list.begin() + count, list.end(),
                   [](const Candidate& a, const Candidate& b) {
                     return a.merit != b.merit ? a.merit > b.merit : a.column < b.column;
                   });
  list.resize(count);
}

/// The bounds that nonbasic columns are at, by their statuses.
class ColumnSides {
 public:
  /// Both must outlive the object. `status` [num_vars].
  ColumnSides(const LpProblem& lp, const Vector<int>& status) : lp_(lp), status_(status) {}

  double place_of(int column) const {
    return status_[column] == kAtUpper ? lp_.upper[column] : lp_.lower[column];
  }
  /// The direction in which the column may move.
  double direction_of(int column) const { return status_[column] == kAtUpper ? -1.0 : 1.0; }
  bool is_free(int column) const { return status_[column] == kFreeSuper; }

 private:
  const LpProblem& lp_;
  const Vector<int>& status_;
};

}  // namespace kelvo
