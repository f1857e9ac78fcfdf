// Other costs for a program that has been presolved.
//
// Reductions that argue from rows and bounds alone hold for every objective; what they pass on from
// the objective is computed anew, record by record. The few that looked at the costs (an empty
// column goes to the bound it prefers, multiples of columns merge when they cost the same, ...) are
// asked whether they would have done the same.
#include <algorithm>
#include <cmath>

#include "lp/presolve/presolve.h"

namespace kelvo {

namespace {

class Repricing {
 public:
  Repricing(const PostsolveStack& stack, const Vector<double>& cost) : stack_(stack), cost_(cost) {}

  /// False when the reduction of this record does not hold for the new costs.
  bool follow(const UndoRecord& record);

  const Vector<double>& cost() const { return cost_; }
  double offset() const { return static_cast<double>(offset_); }

 private:
  /// x_j = (rhs - sum of the entries begin..end-1) / a in the objective.
  void substitute(const UndoRecord& record, double rhs, int end);
  bool fix(const UndoRecord& record);
  bool merges_as_before(const UndoRecord& record);

  const PostsolveStack& stack_;
  Vector<double> cost_;
  long double offset_ = 0.0L;
};

void Repricing::substitute(const UndoRecord& record, double rhs, int end) {
  const double share = cost_[record.col] / record.a;
  cost_[record.col] = 0.0;
  if (share == 0.0) return;
  offset_ += static_cast<long double>(share) * rhs;
  for (int k = record.begin; k < end; ++k) {
    cost_[stack_.entry(k).index] -= share * stack_.entry(k).value;
  }
}

bool Repricing::fix(const UndoRecord& record) {
  double& cost = cost_[record.col];
  const bool was_empty = record.begin == record.end;
  const bool prefers = (cost >= 0.0 && record.flag == kAtLower) ||
                       (cost <= 0.0 && record.flag == kAtUpper) || cost == 0.0;
  if (was_empty && !prefers) return false;
  offset_ += static_cast<long double>(cost) * record.a;
  cost = 0.0;
  return true;
}

bool Repricing::merges_as_before(const UndoRecord& record) {
  constexpr double kSameCost = 1e-13;
  const double priced = record.a * cost_[record.other], own = cost_[record.col];
  if (std::fabs(own - priced) > kSameCost * std::max(std::fabs(own), std::fabs(priced))) {
    return false;
  }
  cost_[record.col] = 0.0;
  return true;
}

bool Repricing::follow(const UndoRecord& record) {
  switch (record.kind) {
    case UndoKind::fixed_column:
      return fix(record);
    case UndoKind::substituted_column: {
      // Without a cost a column may be taken out of an inequality, with one only out of an
      // equation.
      const bool alone = record.middle == record.end;
      if (alone && record.cost == 0.0 && cost_[record.col] != 0.0) return false;
      substitute(record, record.lower, record.middle);
      return true;
    }
    case UndoKind::doubleton: {
      const double share = cost_[record.col] / record.a;
      cost_[record.col] = 0.0;
      cost_[record.other] -= share * record.b;
      offset_ += static_cast<long double>(share) * record.lower;
      return true;
    }
    case UndoKind::slack_column:
      if (cost_[record.col] != 0.0 && record.low2 != record.upp2) return false;
      substitute(record, record.low2, record.end);
      return true;
    case UndoKind::free_direction:
      return cost_[record.col] == 0.0;
    case UndoKind::duplicate_column:
      return merges_as_before(record);
    case UndoKind::row_side:
      return false;  // it is an argument from the duals
    default:
      return true;  // rows and bounds alone
  }
}

bool keeps_a_cost(UndoKind kind) {
  return kind == UndoKind::fixed_column || kind == UndoKind::substituted_column ||
         kind == UndoKind::doubleton || kind == UndoKind::slack_column;
}

}  // namespace

bool Presolve::reprice(const Vector<double>& cost, Vector<double>& reduced_cost, double& offset) {
  Repricing repricing(stack_, cost);
  Vector<double> kept(stack_.size(), 0.0);
  for (int k = 0; k < stack_.size(); ++k) {
    const UndoRecord& record = static_cast<const PostsolveStack&>(stack_).record(k);
    if (keeps_a_cost(record.kind)) kept[k] = repricing.cost()[record.col];
    if (!repricing.follow(record)) return false;
  }
  reduced_cost.clear();
  reduced_cost.reserve(kept_cols_.size());
  for (const int j : kept_cols_) reduced_cost.push_back(repricing.cost()[j]);
  offset = repricing.offset();
  for (int k = 0; k < stack_.size(); ++k) {
    UndoRecord& record = stack_.record(k);
    if (keeps_a_cost(record.kind)) record.cost = kept[k];
  }
  return true;
}

}  // namespace kelvo
