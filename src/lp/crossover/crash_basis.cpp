#include "lp/crossover/crash_basis.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// An entry this close to the largest of its column is as good a pivot.
constexpr double kNearlyLargest = 0.99;
// Entries in taken rows up to this share of the pivots there leave the basis nearly triangular.
constexpr double kSmallBesidePivot = 0.01;
// Costs break ties of an order by bounds: their influence on the key is at most this.
constexpr double kCostShare = 1e-3;

class Crash {
 public:
  explicit Crash(const LpProblem& lp)
      : lp_(lp), touched_(lp.num_rows, 0), pivot_(lp.num_rows, 0.0), taker_(lp.num_rows, -1) {
    for (int i = 0; i < lp.num_rows; ++i) {
      const int logical = lp.num_cols + i;
      if (lp.lower[logical] != lp.upper[logical]) take(i, logical, kInf);
    }
  }

  void offer(int column);
  Vector<int> statuses() const;

 private:
  bool is_taken(int row) const { return pivot_[row] != 0.0; }
  void take(int row, int variable, double pivot) {
    taker_[row] = variable;
    pivot_[row] = pivot;
    touched_[row] = 1;
  }
  void enter(int column, int row, double pivot);

  const LpProblem& lp_;
  Vector<char> touched_;  // [rows] some basic variable has an entry
  Vector<double> pivot_;  // [rows] magnitude of the scaled pivot, 0 while the row is not taken
  Vector<int> taker_;     // [rows] variable that took the row, or -1
};

void Crash::enter(int column, int row, double pivot) {
  for (int k = lp_.columns.start[column]; k < lp_.columns.start[column + 1]; ++k) {
    touched_[lp_.columns.index[k]] = 1;
  }
  take(row, column, pivot);
}

void Crash::offer(int column) {
  const int begin = lp_.columns.start[column], end = lp_.columns.start[column + 1];
  double largest = 0.0;
  for (int k = begin; k < end; ++k) largest = std::max(largest, std::fabs(lp_.columns.value[k]));
  if (largest == 0.0) return;
  double apart = 0.0, open = 0.0;  // largest entry in an untouched, in an untaken row
  int apart_row = -1, open_row = -1;
  bool triangular = true;
  for (int k = begin; k < end; ++k) {
    const int row = lp_.columns.index[k];
    const double entry = std::fabs(lp_.columns.value[k]) / largest;
    if (touched_[row] == 0 && entry > apart) {
      apart = entry;
      apart_row = row;
    }
    if (!is_taken(row) && entry > open) {
      open = entry;
      open_row = row;
    }
    if (is_taken(row) && entry > kSmallBesidePivot * pivot_[row]) triangular = false;
  }
  if (apart >= kNearlyLargest) {
    enter(column, apart_row, apart);
  } else if (triangular && open_row >= 0) {
    enter(column, open_row, open);
  }
}

int resting_place(double lower, double upper) {
  if (lower == -kInf && upper == kInf) return kFreeSuper;
  return std::fabs(upper) < std::fabs(lower) ? kAtUpper : kAtLower;
}

Vector<int> Crash::statuses() const {
  Vector<int> status(lp_.num_vars());
  for (int v = 0; v < lp_.num_vars(); ++v) status[v] = resting_place(lp_.lower[v], lp_.upper[v]);
  for (int i = 0; i < lp_.num_rows; ++i) {
    status[taker_[i] >= 0 ? taker_[i] : lp_.num_cols + i] = kBasic;
  }
  return status;
}

/// Free columns, those with one bound, boxed ones; fixed ones are not worth a place.
enum Class { kFree, kHalfBounded, kBoxed, kFixed };

Class class_of(double lower, double upper) {
  if (lower == upper) return kFixed;
  const int bounds = (lower > -kInf ? 1 : 0) + (upper < kInf ? 1 : 0);
  return bounds == 0 ? kFree : bounds == 1 ? kHalfBounded : kBoxed;
}

/// Small for a column that may move far: the lower bound, minus the upper bound, or minus their
/// distance.
double reach(double lower, double upper) {
  return (lower > -kInf ? lower : 0.0) - (upper < kInf ? upper : 0.0);
}

/// The columns in the order in which they are offered.
Vector<int> ordered_columns(const LpProblem& lp, CrashOrder order) {
  double largest_cost = 0.0;
  for (int j = 0; j < lp.num_cols; ++j)
    largest_cost = std::max(largest_cost, std::fabs(lp.cost[j]));
  const double weight = largest_cost > 0.0 ? kCostShare / largest_cost : 0.0;
  Vector<double> key(lp.num_cols);
  Vector<int> columns;
  for (int j = 0; j < lp.num_cols; ++j) {
    if (class_of(lp.lower[j], lp.upper[j]) == kFixed) continue;
    columns.push_back(j);
    key[j] = order == CrashOrder::by_costs ? lp.cost[j]
                                           : reach(lp.lower[j], lp.upper[j]) + weight * lp.cost[j];
  }
  std::sort(columns.begin(), columns.end(), [&](int a, int b) {
    const Class class_a = class_of(lp.lower[a], lp.upper[a]);
    const Class class_b = class_of(lp.lower[b], lp.upper[b]);
    if (class_a != class_b) return class_a < class_b;
    return key[a] != key[b] ? key[a] < key[b] : a < b;
  });
  return columns;
}

}  // namespace

Vector<int> crash_basis(const LpProblem& lp, CrashOrder order) {
  Crash crash(lp);
  for (const int j : ordered_columns(lp, order)) crash.offer(j);
  return crash.statuses();
}

}  // namespace kelvo
