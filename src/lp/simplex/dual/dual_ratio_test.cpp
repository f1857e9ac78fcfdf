#include "lp/simplex/dual/dual_ratio_test.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "lp/simplex/simplex_tolerances.h"

namespace kelvo {
namespace {

using namespace simplex_tolerance;

// A Harris bound set by an entry this small beside the largest one is not trusted: the candidates
// are collected again with a filter raised by kFilterRaise.
constexpr double kWeakBound = 1e-10;
constexpr double kFilterRaise = 1000.0;
// A group is worth entering from when its best pivot reaches this share of the largest one, or
// kGoodPivot.
constexpr double kGroupPivotShare = 0.1;
constexpr double kGoodPivot = 1.0;
// Breakpoints are first narrowed down to those below a bound that grows by this factor.
constexpr double kReachGrowth = 10.0;
// Candidates are collected at once as far as kUsualReach times a running average of how far the
// last tests went (flips may take them far beyond the first bound). Where that is not enough the
// reach grows by kReachGrowth; after kReachAttempts of those everything is collected.
constexpr double kUsualReach = 2.0;
constexpr double kReachMemory = 0.25;  // weight of the newest test in the average
constexpr int kReachAttempts = 2;
// Groups found by scanning before the rest of the candidates is sorted: each scan costs as much as
// there are candidates, and most ratio tests need one or two.
constexpr int kScannedGroups = 4;
// One part in so many of the work space is left for rows and columns to come.
constexpr int kSpareShare = 8;

}  // namespace

DualRatioTest::DualRatioTest(SimplexState& state) : state_(state) {
  follow_shape();
}

void DualRatioTest::follow_shape() {
  lift_bans();
  const std::size_t size = state_.num_vars;
  banned_.resize(size, 0);
  if (candidates_.size() > size) return;
  // Some more than needed, so that a few more rows need no memory.
  const std::size_t room = candidates_.empty() ? size : size + size / kSpareShare;
  candidates_.resize(room + 1);
  bound_from_.resize(room);
  flips_.reserve(room);
  groups_.reserve(room);
  banned_list_.reserve(room);
}

void DualRatioTest::ban(int variable) {
  if (banned_[variable]) return;
  banned_[variable] = 1;
  banned_list_.push_back(variable);
}

void DualRatioTest::lift_bans() {
  for (int j : banned_list_) banned_[j] = 0;
  banned_list_.clear();
}

// Collects the candidates whose breakpoints may lie within the first reach, or all of them, and
// finds the Harris bound on the way: the bound falls quickly, so that few others are stored.
void DualRatioTest::collect(double direction, double filter, bool all) {
  const WorkVector& row = state_.pivot_row;
  const double* alpha = row.value.data();
  const double* dual = state_.duals.reduced_cost.data();
  const signed char* move = state_.basis.move.data();
  const double delta = state_.run.dual_tolerance;
  const bool bans = has_bans();
  Candidate* out = candidates_.data();
  int count = 0;
  double largest = 0.0;
  double bound = kInf, at_bound = 0.0, reach = kInf;
  const auto add = [&](int j, double rate, double d) {
    largest = std::max(largest, rate);
    // Most entries are out of reach. Of the others half have the wrong sign, at random: no branch,
    // the next one overwrites.
    if (d > reach * rate) return;
    const bool counts = rate > filter;
    out[count] = {j, rate, d, 0.0};
    count += counts;
    if (counts && d + delta < bound * rate) {
      bound = std::max(0.0, (d + delta) / rate);
      at_bound = rate;
      if (!all) reach = first_reach(bound);
    }
  };
  for (int k = 0; k < row.count; ++k) {
    const int j = row.index[k];
    const double a = direction * alpha[j];
    if (bans && banned_[j]) continue;
    if (move[j] == Basis::kAnywhere) {
      // A free variable blocks at once, whichever way its cost leans.
      add(j, std::fabs(a), std::min(a > 0.0 ? dual[j] : -dual[j], 0.0));
    } else {
      add(j, a * move[j], dual[j] * move[j]);
    }
  }
  if (largest <= filter) largest = 0.0;
  count_ = count;
  all_collected_ = all;
  largest_alpha_ = largest;
  bound_ = bound;
  alpha_at_bound_ = at_bound;
}

double DualRatioTest::first_reach(double bound) const {
  return std::max(kReachGrowth * bound, usual_reach_) + state_.run.dual_tolerance;
}

double DualRatioTest::harris_bound(int begin, int end) const {
  const double delta = state_.run.dual_tolerance;
  double bound = kInf;
  for (int k = begin; k < end; ++k) {
    const Candidate& c = candidates_[k];
    const double relaxed = c.dual + delta;
    if (relaxed < bound * c.alpha) bound = std::max(0.0, relaxed / c.alpha);
  }
  return bound;
}

double DualRatioTest::slope_loss(const Candidate& c) const {
  return c.alpha * (state_.program.upper[c.variable] - state_.program.lower[c.variable]);
}

bool DualRatioTest::better(const Candidate& a, const Candidate& b) const {
  if (a.alpha != b.alpha) return a.alpha > b.alpha;
  return state_.program.tie_key[a.variable] < state_.program.tie_key[b.variable];
}

// Moves to the front the candidates whose breakpoints can be reached with a positive slope, and
// possibly some more; returns their number, or -1 when that takes candidates not yet collected.
int DualRatioTest::limit_to_reachable(double slope) {
  const double end = all_collected_ ? kInf : first_reach(bound_);
  double reach = std::min(end, kReachGrowth * bound_ + state_.run.dual_tolerance);
  int front = 0;
  while (true) {
    double next = kInf;
    for (int k = front; k < count_; ++k) {
      const Candidate c = candidates_[k];
      if (c.dual <= reach * c.alpha) {
        slope -= slope_loss(c);
        std::swap(candidates_[k], candidates_[front]);
        ++front;
      } else {
        next = std::min(next, c.dual / c.alpha);
      }
    }
    if (slope < 0.0) break;
    if (reach == end && end < kInf) return -1;
    if (front == count_) {
      reach = end;
      if (end == kInf) break;
    } else {
      reach = std::min(end, kReachGrowth * std::max(reach, next));
    }
  }
  reach_ = reach;
  return front;
}

void DualRatioTest::form_groups(double slope, int reachable) {
  groups_.clear();
  int begin = 0;
  while (begin < reachable && slope >= 0.0) {
    if (static_cast<int>(groups_.size()) == kScannedGroups) {
      form_sorted_groups(slope, begin, reachable);
      return;
    }
    // Candidates out of reach have breakpoints beyond reach_ and must not be passed unseen.
    const double bound = std::min(reach_, harris_bound(begin, reachable));
    int end = begin;
    int best = begin;
    for (int k = begin; k < reachable; ++k) {
      if (candidates_[k].dual > bound * candidates_[k].alpha) continue;
      std::swap(candidates_[k], candidates_[end]);
      slope -= slope_loss(candidates_[end]);
      if (end > begin && better(candidates_[end], candidates_[best])) best = end;
      ++end;
    }
    groups_.push_back({end, best});
    begin = end;
  }
}

// The same groups as repeated scans would form, in one pass over the sorted breakpoints.
void DualRatioTest::form_sorted_groups(double slope, int begin, int reachable) {
  const double delta = state_.run.dual_tolerance;
  for (int k = begin; k < reachable; ++k) {
    candidates_[k].ratio = std::max(0.0, candidates_[k].dual) / candidates_[k].alpha;
  }
  std::sort(candidates_.begin() + begin, candidates_.begin() + reachable,
            [](const Candidate& a, const Candidate& b) {
              return a.ratio != b.ratio ? a.ratio < b.ratio : a.variable < b.variable;
            });
  double bound = reach_;
  for (int k = reachable - 1; k >= begin; --k) {
    const Candidate& c = candidates_[k];
    bound = std::min(bound, std::max(c.ratio, (c.dual + delta) / c.alpha));
    bound_from_[k] = bound;
  }
  while (begin < reachable && slope >= 0.0) {
    int end = begin;
    int best = begin;
    for (; end < reachable && candidates_[end].ratio <= bound_from_[begin]; ++end) {
      slope -= slope_loss(candidates_[end]);
      if (better(candidates_[end], candidates_[best])) best = end;
    }
    groups_.push_back({end, best});
    begin = end;
  }
}

bool DualRatioTest::choose_from_groups() {
  double largest = 0.0;
  for (const Group& group : groups_) largest = std::max(largest, candidates_[group.best].alpha);
  if (largest < kPivot) return false;
  const Candidate& last = candidates_[groups_.back().best];
  const double reached = kUsualReach * std::max(0.0, last.dual / last.alpha);
  usual_reach_ += kReachMemory * (reached - usual_reach_);
  const double enough = std::min(kGroupPivotShare * largest, kGoodPivot);
  int chosen = static_cast<int>(groups_.size()) - 1;
  while (candidates_[groups_[chosen].best].alpha < enough) --chosen;
  entering_ = candidates_[groups_[chosen].best].variable;
  const int passed = chosen > 0 ? groups_[chosen - 1].end : 0;
  for (int k = 0; k < passed; ++k) flips_.push_back(candidates_[k].variable);
  return true;
}

DualRatioTest::Outcome DualRatioTest::run(double infeasibility) {
  entering_ = -1;
  flips_.clear();
  const double direction = infeasibility < 0.0 ? -1.0 : 1.0;
  const double slope = std::fabs(infeasibility);
  double filter = kRatioEntry;
  collect(direction, filter, false);
  if (count_ == 0 || largest_alpha_ < kNoPivot) return Outcome::unbounded;
  if (alpha_at_bound_ <= kWeakBound * largest_alpha_) {
    // The largest entry passes the raised filter, so a candidate remains.
    filter = kFilterRaise * kRatioEntry * largest_alpha_;
    collect(direction, filter, false);
  }
  int reachable = limit_to_reachable(slope);
  for (int attempt = 1; reachable < 0; ++attempt) {
    usual_reach_ = kReachGrowth * first_reach(bound_);
    collect(direction, filter, attempt > kReachAttempts);
    reachable = limit_to_reachable(slope);
  }
  form_groups(slope, reachable);
  return choose_from_groups() ? Outcome::entering : Outcome::small_pivot;
}

}  // namespace kelvo
