// Special ordered sets.
//
// Members fixed at 0 leave a set of type 1. A member that cannot be 0 fixes the others at 0, of
// type 2 those that are not its neighbours. A set is redundant when it has no more members than may
// differ from 0, when it is part of another one of its type, or when a row lets only one of its
// members, all of them binary, be 1.
//
// A member of type 2 that is fixed at 0 still separates its neighbours; only those at the ends
// leave.
#include "lp/presolve/presolve_tolerances.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

bool is_zero(const PresolveLp& lp, int j) {
  return lp.is_fixed(j) && lp.lower[j] == 0.0;
}

bool cannot_be_zero(const PresolveLp& lp, int j) {
  return lp.lower[j] > lp.settings.feasibility_tolerance ||
         lp.upper[j] < -lp.settings.feasibility_tolerance;
}

void drop_zero_members(PresolveMip& mip, OrderedSet& set) {
  for (int k = static_cast<int>(set.members.size()) - 1; k >= 0; --k) {
    if (is_zero(mip.lp, set.members[k])) {
      mip.remove_member(set, k);
    } else if (set.type != 1) {
      break;
    }
  }
  while (set.type != 1 && !set.members.empty() && is_zero(mip.lp, set.members[0])) {
    mip.remove_member(set, 0);
  }
}

/// Fixes what members that cannot be 0 leave no room for; true when nothing is left to decide.
bool fix_members(PresolveMip& mip, const OrderedSet& set) {
  PresolveLp& lp = mip.lp;
  const int count = static_cast<int>(set.members.size());
  int first = -1, last = -1;  // that cannot be 0
  for (int k = 0; k < count; ++k) {
    if (!cannot_be_zero(lp, set.members[k])) continue;
    if (first < 0) first = k;
    last = k;
  }
  if (first < 0) return false;
  if (last - first >= set.type) {
    lp.fail(FindingKind::inconsistent_sets, 0);
    return true;
  }
  for (int k = 0; k < count && !mip.ended(); ++k) {
    if (last - k >= set.type || k - first >= set.type) lp.intersect_bounds(set.members[k], 0, 0);
  }
  return last - first + 1 == set.type;
}

// Members looked at in comparisons of sets in pairs; then rows alone are looked at.
constexpr std::int64_t kMostCompared = 5000000;

/// Finds rows that let one member only be 1, and sets that contain another one.
class RedundantSets {
 public:
  explicit RedundantSets(PresolveMip& mip) : mip_(mip), mark_(mip.lp.num_cols(), 0) {}

  bool is_redundant(int k) {
    const OrderedSet& set = mip_.sets[k];
    for (const int j : set.members) mark_[j] = 1;
    const bool redundant = row_holds_it(set) || is_contained(k);
    for (const int j : set.members) mark_[j] = 0;
    return redundant;
  }

 private:
  /// Whether a row  a x <= U  with terms >= 0 allows no two of the members beside 0.
  bool excludes_pairs(int i, double sign, int members) const;
  bool row_holds_it(const OrderedSet& set) const;
  bool is_contained(int k);

  PresolveMip& mip_;
  Vector<char> mark_;  // [columns] 1: a member
  std::int64_t compared_ = 0;
};

bool RedundantSets::excludes_pairs(int i, double sign, int members) const {
  const PresolveLp& lp = mip_.lp;
  const double limit = sign > 0.0 ? lp.row_upper[i] : -lp.row_lower[i];
  if (limit == kInf) return false;
  double least = kInf, second = kInf, rest = 0.0;  // of the members; least activity of the others
  int found = 0;
  for (int e = lp.matrix.row_first(i); e >= 0; e = lp.matrix[e].row_next) {
    const int j = lp.matrix[e].col;
    const double a = sign * lp.matrix[e].value;
    if (!mark_[j]) {
      const double bound = a > 0.0 ? lp.lower[j] : lp.upper[j];
      if (!std::isfinite(bound)) return false;
      rest += a * bound;
      continue;
    }
    if (a <= 0.0) return false;
    ++found;
    if (a < least) {
      second = least;
      least = a;
    } else {
      second = std::min(second, a);
    }
  }
  return found == members && rest + least + second > limit + lp.settings.feasibility_tolerance;
}

bool RedundantSets::row_holds_it(const OrderedSet& set) const {
  PresolveLp& lp = mip_.lp;
  const int members = static_cast<int>(set.members.size());
  int shortest = set.members[0];
  for (const int j : set.members) {
    if (!mip_.is_binary(j)) return false;
    if (lp.matrix.col_count(j) < lp.matrix.col_count(shortest)) shortest = j;
  }
  for (int e = lp.matrix.col_first(shortest); e >= 0; e = lp.matrix[e].col_next) {
    const int i = lp.matrix[e].row;
    if (lp.matrix.row_count(i) < members) continue;
    lp.work += lp.matrix.row_count(i);
    if (excludes_pairs(i, lp.matrix[e].value > 0.0 ? 1.0 : -1.0, members)) return true;
  }
  return false;
}

bool RedundantSets::is_contained(int k) {
  const OrderedSet& set = mip_.sets[k];
  if (set.type != 1 || compared_ > kMostCompared) return false;
  for (int other = 0; other < static_cast<int>(mip_.sets.size()); ++other) {
    const OrderedSet& larger = mip_.sets[other];
    if (other == k || larger.type != 1 || larger.members.size() < set.members.size()) continue;
    compared_ += static_cast<std::int64_t>(larger.members.size());
    std::size_t shared = 0;
    for (const int j : larger.members) shared += mark_[j];
    if (shared == set.members.size()) return true;
  }
  return false;
}

}  // namespace

void reduce_sets(PresolveMip& mip, int) {
  if (mip.sets.empty()) return;
  RedundantSets redundant(mip);
  for (int k = static_cast<int>(mip.sets.size()) - 1; k >= 0 && !mip.ended(); --k) {
    OrderedSet& set = mip.sets[k];
    const bool settled = fix_members(mip, set);
    if (mip.ended()) return;
    drop_zero_members(mip, set);
    if (settled || static_cast<int>(set.members.size()) <= set.type || redundant.is_redundant(k)) {
      mip.remove_set(k);
    }
    mip.lp.poll();
  }
}

}  // namespace kelvo
