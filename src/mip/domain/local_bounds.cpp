#include "mip/domain/local_bounds.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

/// Reasons whose consequences may come in endless sequences of small steps.
bool is_gradual(ReasonKind kind) {
  return kind == ReasonKind::kRow || kind == ReasonKind::kProof || kind == ReasonKind::kImplication;
}

double round_inwards(int bound, double value) {
  return is_upper(bound) ? std::floor(value + kWholeTolerance) : std::ceil(value - kWholeTolerance);
}

}  // namespace

LocalBounds::LocalBounds(const MipProblem& mip)
    : num_vars_(mip.lp.num_vars()),
      bound_(2 * static_cast<std::size_t>(num_vars_)),
      latest_(bound_.size(), -1),
      steps_(bound_.size(), 0),
      is_integer_(num_vars_, 0),
      is_changed_(num_vars_, 0) {
  for (int v = 0; v < num_vars_; ++v) {
    double lower = mip.lp.lower[v], upper = mip.lp.upper[v];
    if (v < mip.num_cols() && mip.is_integer[v]) {
      is_integer_[v] = 1;
      lower = round_inwards(lower_of(v), lower);
      upper = round_inwards(upper_of(v), upper);
    }
    if (lower > upper && (is_integer_[v] || lower > upper + outward_shift(upper))) {
      set_conflict({lower_of(v), lower, kGloballyTrue});
    }
    bound_[lower_of(v)] = lower;
    bound_[upper_of(v)] = std::max(lower, upper);
  }
  global_ = bound_;
}

// Whether a change is worth its consequences. Binary columns always are.
bool LocalBounds::is_worthwhile(int bound, double value, double old) const {
  const bool integer = is_integer_[variable_of(bound)];
  if (integer && steps_[bound] < kFreeIntegerSteps) return std::abs(value) <= kLargestIntegerBound;
  if (std::abs(value) > (integer ? kLargestIntegerBound : kLargestContinuousBound)) return false;
  if (std::isinf(old)) return true;
  const double range = std::abs(old - bound_[opposite(bound)]);
  return std::abs(value - old) >=
         kSmallestGain * std::max(std::min(range, std::abs(old)), kSmallestRange);
}

Tightening LocalBounds::tighten(int bound, double value, Reason reason) {
  const int v = variable_of(bound);
  if (is_integer_[v]) value = round_inwards(bound, value);
  const double old = bound_[bound];
  if (!is_tighter(bound, value, old)) return Tightening::kNone;
  const double other = bound_[opposite(bound)];
  if (is_tighter(bound, value, other)) {
    if (is_integer_[v] || std::abs(value - other) > outward_shift(other)) {
      set_conflict({bound, value, reason});
      return Tightening::kConflict;
    }
    value = other;
    if (value == old) return Tightening::kNone;
  }
  if (is_gradual(reason.kind) && !is_worthwhile(bound, value, old)) return Tightening::kNone;
  const int position = size();
  trail_.push_back({old, value, bound, latest_[bound], reason});
  latest_[bound] = position;
  ++steps_[bound];
  bound_[bound] = value;
  if (level_start_.empty()) global_[bound] = value;
  if (!is_changed_[v]) {
    changed_.push_back(v);
    is_changed_[v] = 1;
  }
  return Tightening::kDone;
}

Tightening LocalBounds::tighten_globally(int bound, double value) {
  const Tightening result = tighten(bound, value, kGloballyTrue);
  if (is_integer_[variable_of(bound)]) value = round_inwards(bound, value);
  if (result != Tightening::kConflict && is_tighter(bound, value, global_[bound])) {
    // Bounds that cross within the tolerance became equal: never beyond the other one.
    global_[bound] = is_upper(bound) ? std::max(value, global_[opposite(bound)])
                                     : std::min(value, global_[opposite(bound)]);
  }
  return result;
}

void LocalBounds::undo_last() {
  const DomainChange& entry = trail_.back();
  const int v = variable_of(entry.bound);
  bound_[entry.bound] = entry.old_value;
  latest_[entry.bound] = entry.previous;
  --steps_[entry.bound];
  if (!is_changed_[v]) {
    changed_.push_back(v);
    is_changed_[v] = 1;
  }
  trail_.pop_back();
}

void LocalBounds::drop_levels(int level) {
  if (level_start_.empty()) return;
  level_start_.resize(std::min<std::size_t>(level, level_start_.size()));
  in_conflict_ = false;
}

int LocalBounds::level_of(int position) const {
  return static_cast<int>(std::upper_bound(level_start_.begin(), level_start_.end(), position) -
                          level_start_.begin());
}

double LocalBounds::value_before(int bound, int position) const {
  double value = bound_[bound];
  for (int p = latest_[bound]; p >= position; p = trail_[p].previous) value = trail_[p].old_value;
  return value;
}

int LocalBounds::position_of(const BoundLiteral& literal, int before) const {
  const int b = literal.bound;
  if (is_as_tight(b, global_[b], literal.value)) return -1;
  int p = latest_[b];
  while (p >= before) p = trail_[p].previous;
  while (p >= 0 && is_as_tight(b, trail_[p].old_value, literal.value)) p = trail_[p].previous;
  return p;
}

void LocalBounds::take_changed(Vector<int>& variables) {
  variables.swap(changed_);
  changed_.clear();
  for (const int v : variables) is_changed_[v] = 0;
}

}  // namespace kelvo
