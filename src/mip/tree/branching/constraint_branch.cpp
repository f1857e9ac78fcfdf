#include "mip/tree/branching/constraint_branch.h"

#include <cmath>

namespace kelvo {
namespace {

/// Keeps the branch of the most violated requirement.
class Worst {
 public:
  /// True when a violation of this size is worth a branch and larger than what was seen.
  bool replaces(double violation) {
    if (violation <= largest_) return false;
    largest_ = violation;
    return true;
  }
  explicit Worst(double tolerance) : largest_(tolerance) {}

 private:
  double largest_;
};

void fix_at_zero(const NodeLp& lp, int column, Vector<Decision>& decisions) {
  if (lp.upper(column) > 0.0) decisions.push_back({column, true, 0.0});
  if (lp.lower(column) < 0.0) decisions.push_back({column, false, 0.0});
}

ConstraintBranch branch_on_semi(const SemiColumn& semi, const NodeLp& lp) {
  ConstraintBranch branch;
  branch.column = semi.column;
  // Down is towards 0 when the interval is above it.
  const bool above = semi.lower > 0.0;
  branch.direction = above ? 'D' : 'U';
  fix_at_zero(lp, semi.column, branch.down);
  if (semi.lower > lp.lower(semi.column)) {
    branch.up.push_back({semi.column, false, semi.lower});
  }
  if (semi.upper < lp.upper(semi.column)) branch.up.push_back({semi.column, true, semi.upper});
  if (!above) std::swap(branch.down, branch.up);
  return branch;
}

ConstraintBranch branch_on_indicator(const Indicator& indicator) {
  ConstraintBranch branch;
  branch.column = indicator.binary;
  branch.down.push_back({indicator.binary, true, 0.0});
  branch.up.push_back({indicator.binary, false, 1.0});
  return branch;
}

/// Splits between members, where the weighted mean of the values is. A set of type 2 keeps the
/// member at the split in both children.
ConstraintBranch branch_on_set(const OrderedSet& set, const NodeLp& lp, const Vector<double>& x,
                               double tolerance) {
  const int members = static_cast<int>(set.members.size());
  double sum = 0.0, moment = 0.0;
  int first = members, last = -1;  // members that are not 0
  for (int k = 0; k < members; ++k) {
    const double size = std::abs(x[set.members[k]]);
    if (size <= tolerance) continue;
    first = std::min(first, k);
    last = k;
    sum += size;
    moment += size * k;
  }
  // Both children must exclude x: some nonzero member is beyond the split on either side.
  const int shared = set.type - 1;
  const int split = std::clamp(static_cast<int>(moment / sum), first + shared, last - 1);
  ConstraintBranch branch;
  branch.column = set.members[split];
  for (int k = 0; k < members; ++k) {
    if (k > split) fix_at_zero(lp, set.members[k], branch.down);
    if (k <= split - shared) fix_at_zero(lp, set.members[k], branch.up);
  }
  return branch;
}

/// The sum of what would have to become 0, relative to the sum of all.
double set_violation(const OrderedSet& set, const Vector<double>& x, double tolerance) {
  const int members = static_cast<int>(set.members.size());
  double total = 0.0, kept = 0.0;
  for (int k = 0; k < members; ++k) {
    const auto size = [&](int m) {
      const double value = m < members ? std::abs(x[set.members[m]]) : 0.0;
      return value <= tolerance ? 0.0 : value;
    };
    total += size(k);
    kept = std::max(kept, size(k) + (set.type == 2 ? size(k + 1) : 0.0));
  }
  return total - kept;
}

}  // namespace

std::optional<ConstraintBranch> find_constraint_branch(const MipProblem& mip, const NodeLp& lp,
                                                       const Vector<double>& x,
                                                       const MipTolerances& tolerances) {
  std::optional<ConstraintBranch> branch;
  Worst worst(tolerances.feasibility);
  for (const SemiColumn& semi : mip.semis) {
    const double value = x[semi.column];
    const double outside = std::max(semi.lower - value, value - semi.upper);
    if (worst.replaces(std::min(std::abs(value), outside))) branch = branch_on_semi(semi, lp);
  }
  if (branch) return branch;
  Vector<double> activity;
  if (!mip.indicators.empty()) activity = row_activities(mip.lp, x);
  for (const Indicator& indicator : mip.indicators) {
    if (std::abs(x[indicator.binary] - indicator.active) > tolerances.integrality) continue;
    if (lp.lower(indicator.binary) == lp.upper(indicator.binary)) continue;
    const double value = activity[indicator.row];
    const double outside = std::max(indicator.lower - value, value - indicator.upper);
    if (worst.replaces(outside)) branch = branch_on_indicator(indicator);
  }
  if (branch) return branch;
  for (const OrderedSet& set : mip.sets) {
    if (worst.replaces(set_violation(set, x, tolerances.feasibility))) {
      branch = branch_on_set(set, lp, x, tolerances.feasibility);
    }
  }
  return branch;
}

}  // namespace kelvo
