#include "mip/domain/row_system.h"

#include <cmath>

namespace kelvo {
namespace {

/// Rounding errors below this are not worth a pass over the row.
constexpr double kErrorWorthSumming = 1e-9;
/// How often the error of a fresh sum may have multiplied before the row is summed again.
constexpr double kErrorGrowth = 8.0;

}  // namespace

RowSystem::RowSystem(const MipProblem& mip, const LocalBounds& bounds)
    : lp_(mip.lp), bounds_(bounds), state_(mip.lp.num_rows), column_head_(mip.lp.num_cols, -1) {
  queue_.reserve(2 * static_cast<std::size_t>(lp_.num_rows) + 16);
  for (int i = 0; i < lp_.num_rows; ++i) {
    RowState& row = state_[i];
    row.flags = 0;
    row.lower = -bounds.upper(lp_.num_cols + i);
    row.upper = -bounds.lower(lp_.num_cols + i);
    sum(i);
  }
  enqueue_all();
}

RowView RowSystem::view(int row) const {
  if (row < lp_.num_rows) {
    const int start = lp_.rows.start[row];
    return {lp_.rows.index.data() + start, lp_.rows.value.data() + start,
            lp_.rows.start[row + 1] - start};
  }
  const AddedRow& added = added_[row - lp_.num_rows];
  return {entry_column_.data() + added.start, entry_value_.data() + added.start, added.length};
}

void RowSystem::sum(int row) {
  const RowView entries = view(row);
  RowState& state = state_[row];
  double minimum = 0.0, maximum = 0.0, error = 0.0, reach = 0.0;
  int min_infinite = 0, max_infinite = 0;
  for (int k = 0; k < entries.length; ++k) {
    const int j = entries.index[k];
    const double a = entries.value[k];
    const int low = a > 0.0 ? lower_of(j) : upper_of(j);
    const double at_min = bounds_.bound(low), at_max = bounds_.bound(opposite(low));
    if (std::isinf(at_min)) {
      ++min_infinite;
    } else {
      minimum += a * at_min;
      error += kRoundoff * (std::abs(minimum) + std::abs(a * at_min));
    }
    if (std::isinf(at_max)) {
      ++max_infinite;
    } else {
      maximum += a * at_max;
      error += kRoundoff * (std::abs(maximum) + std::abs(a * at_max));
    }
    reach =
        std::max(reach, std::abs(a) * (bounds_.global(upper_of(j)) - bounds_.global(lower_of(j))));
  }
  state.min_activity = minimum;
  state.max_activity = maximum;
  state.min_infinite = min_infinite;
  state.max_infinite = max_infinite;
  state.error = error;
  state.error_limit = static_cast<float>(std::max(kErrorWorthSumming, kErrorGrowth * error));
  // A row without room in any entry still notices that it is violated.
  state.reach = std::max(reach, kRowSlack);
  work_ += entries.length;
}

template <bool kQueue>
inline void RowSystem::move_row(int row, double coefficient, bool upper, double shift,
                                int infinite) {
  RowState& state = state_[row];
  const double delta = coefficient * shift;
  if ((coefficient > 0.0) != upper) {
    state.min_activity += delta;
    state.min_infinite += infinite;
    state.error += kRoundoff * (std::abs(state.min_activity) + std::abs(delta));
    if constexpr (kQueue) {
      const double slack = state.upper - state.min_activity;
      const bool due = state.min_infinite == 0 ? slack < state.reach
                                               : state.min_infinite == 1 && state.upper < kInf;
      if (due || (state.flags & kRowOfIndicator)) enqueue(row, kRowAtMostDue);
    }
  } else {
    state.max_activity += delta;
    state.max_infinite += infinite;
    state.error += kRoundoff * (std::abs(state.max_activity) + std::abs(delta));
    if constexpr (kQueue) {
      const double slack = state.max_activity - state.lower;
      const bool due = state.max_infinite == 0 ? slack < state.reach
                                               : state.max_infinite == 1 && state.lower > -kInf;
      if (due || (state.flags & kRowOfIndicator)) enqueue(row, kRowAtLeastDue);
    }
  }
}

template <bool kQueue>
void RowSystem::move(int bound, double from, double to) {
  const int v = variable_of(bound);
  if (v >= lp_.num_cols) {
    set_limit(v - lp_.num_cols, is_upper(bound), to, kQueue);
    return;
  }
  double shift = to - from;
  int infinite = 0;
  if (std::isinf(from)) {
    shift = to;
    infinite = -1;
  } else if (std::isinf(to)) {
    shift = -from;
    infinite = 1;
  }
  const bool upper = is_upper(bound);
  const SparseMatrix& columns = lp_.columns;
  const int end = columns.start[v + 1];
  for (int k = columns.start[v]; k < end; ++k) {
    move_row<kQueue>(columns.index[k], columns.value[k], upper, shift, infinite);
  }
  work_ += end - columns.start[v];
  for (int e = column_head_[v]; e >= 0; e = entry_next_[e]) {
    move_row<kQueue>(entry_row_[e], entry_value_[e], upper, shift, infinite);
    work_ += 1.0;
  }
}

void RowSystem::apply(const DomainChange& change) {
  move<true>(change.bound, change.old_value, change.new_value);
}

void RowSystem::undo(const DomainChange& change) {
  move<false>(change.bound, change.new_value, change.old_value);
}

// The bounds of a logical are the limits of its row, negated.
void RowSystem::set_limit(int row, bool upper_bound, double value, bool queue) {
  RowState& state = state_[row];
  (upper_bound ? state.lower : state.upper) = -value;
  if (queue) enqueue(row, upper_bound ? kRowAtLeastDue : kRowAtMostDue);
}

void RowSystem::link(int entry, int column) {
  const int head = column_head_[column];
  entry_next_[entry] = head;
  entry_previous_[entry] = -1;
  if (head >= 0) entry_previous_[head] = entry;
  column_head_[column] = entry;
}

void RowSystem::unlink(int entry) {
  const int next = entry_next_[entry], previous = entry_previous_[entry];
  if (next >= 0) entry_previous_[next] = previous;
  (previous >= 0 ? entry_next_[previous] : column_head_[entry_column_[entry]]) = next;
}

int RowSystem::add(const int* index, const double* value, int length, double lower, double upper) {
  int row = num_rows();
  if (free_rows_.empty()) {
    make_room(added_, 1);
    make_room(removed_, added_.size() + 1);
    make_room(free_rows_, added_.size() + 1);
    state_.push_back({});
    added_.push_back({});
  } else {
    row = free_rows_.back();
    free_rows_.pop_back();
  }
  const int start = static_cast<int>(entry_column_.size());
  added_[row - lp_.num_rows] = {start, length};
  entry_column_.insert(entry_column_.end(), index, index + length);
  entry_value_.insert(entry_value_.end(), value, value + length);
  entry_row_.resize(start + length, row);
  entry_next_.resize(start + length);
  entry_previous_.resize(start + length);
  for (int e = start; e < start + length; ++e) link(e, entry_column_[e]);
  RowState& state = state_[row];
  state.flags = 0;
  state.lower = lower;
  state.upper = upper;
  sum(row);
  enqueue(row, kRowAtMostDue | kRowAtLeastDue);
  return row;
}

void RowSystem::remove(int row) {
  const AddedRow& added = added_[row - lp_.num_rows];
  for (int e = added.start; e < added.start + added.length; ++e) unlink(e);
  // Entries and limits stay for the explanation of what the row has implied.
  state_[row].flags |= kRowRemoved;
  removed_.push_back(row);
}

void RowSystem::recycle() {
  for (const int row : removed_) {
    AddedRow& added = added_[row - lp_.num_rows];
    num_unused_entries_ += added.length;
    added.length = 0;
    free_rows_.push_back(row);
  }
  removed_.clear();
  if (2 * static_cast<std::size_t>(num_unused_entries_) <= entry_column_.size()) return;
  // Entries of the living rows move together, rows in the order of their entries.
  Vector<int> order;
  for (int k = 0; k < static_cast<int>(added_.size()); ++k) {
    if (added_[k].length > 0) order.push_back(k);
  }
  std::sort(order.begin(), order.end(),
            [&](int a, int b) { return added_[a].start < added_[b].start; });
  std::fill(column_head_.begin(), column_head_.end(), -1);
  int end = 0;
  for (const int k : order) {
    AddedRow& added = added_[k];
    const int from = added.start;
    added.start = end;
    for (int e = from; e < from + added.length; ++e, ++end) {
      entry_column_[end] = entry_column_[e];
      entry_value_[end] = entry_value_[e];
      entry_row_[end] = entry_row_[e];
      link(end, entry_column_[end]);
    }
  }
  entry_column_.resize(end);
  entry_value_.resize(end);
  entry_row_.resize(end);
  entry_next_.resize(end);
  entry_previous_.resize(end);
  num_unused_entries_ = 0;
}

void RowSystem::lower_limit(int row, double upper) {
  state_[row].upper = std::min(state_[row].upper, upper);
  enqueue(row, kRowAtMostDue);
}

void RowSystem::enqueue(int row, unsigned sides) {
  RowState& state = state_[row];
  if (!(state.flags & kRowQueued)) queue_.push_back(row);
  state.flags |= sides | kRowQueued;
}

void RowSystem::enqueue_all() {
  for (int row = 0; row < num_rows(); ++row) {
    if (!(state_[row].flags & kRowRemoved)) enqueue(row, kRowAtMostDue | kRowAtLeastDue);
  }
}

int RowSystem::pop() {
  if (queue_head_ == queue_.size()) {
    queue_.clear();
    queue_head_ = 0;
    return -1;
  }
  // What was popped is forgotten now and then, so that a long run does not grow the queue.
  if (queue_head_ > queue_.size() / 2 && queue_.size() == queue_.capacity()) {
    queue_.erase(queue_.begin(), queue_.begin() + static_cast<std::ptrdiff_t>(queue_head_));
    queue_head_ = 0;
  }
  const int row = queue_[queue_head_++];
  state_[row].flags &= ~static_cast<unsigned>(kRowQueued);
  return row;
}

void RowSystem::clear_queue() {
  constexpr unsigned kDue = kRowQueued | kRowAtMostDue | kRowAtLeastDue;
  for (; queue_head_ < queue_.size(); ++queue_head_) state_[queue_[queue_head_]].flags &= ~kDue;
  queue_.clear();
  queue_head_ = 0;
}

}  // namespace kelvo
