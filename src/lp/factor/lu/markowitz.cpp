// Sparse elimination of the nucleus: the search for a pivot and the update of the active submatrix.
#include <algorithm>
#include <cmath>
#include <limits>

#include "lp/factor/lu/kernel.h"

namespace kelvo {
namespace {

/// Lines examined once a candidate exists.
constexpr int kSearchLimit = 2;
/// Counts beyond this one are not searched.
constexpr int kLongestSearched = 32767;
/// Share of an active file that must be free after a compression; else it grows.
constexpr double kFreeShare = 0.2;
/// An entry this much smaller than the operands it was computed from is rounding noise.
constexpr double kCancellation = 1e-14;
/// Fill of this magnitude or less can neither become a pivot nor matter beside one.
constexpr double kNegligible = 1e-14;
/// Room that a line which had to move gets beyond its need: a quarter and a few entries.
int with_slack(int entries) {
  return entries + entries / 4 + 4;
}

// Pivots between two looks at the clock.
constexpr int kPivotsPerCheck = 64;

}  // namespace

void LuKernel::CountLists::setup(int lines, int longest) {
  head.assign(longest + 1, -1);
  next.resize(lines);
  previous.resize(lines);
  lowest = 1;
}

void LuKernel::CountLists::link(int line, int count) {
  const int first = head[count];
  next[line] = first;
  previous[line] = -1 - count;
  if (first >= 0) previous[first] = line;
  head[count] = line;
  if (count < lowest && count > 0) lowest = count;
}

void LuKernel::CountLists::unlink(int line) {
  const int after = next[line], before = previous[line];
  if (before >= 0) {
    next[before] = after;
  } else {
    head[-1 - before] = after;
  }
  if (after >= 0) previous[after] = before;
}

void LuKernel::load_nucleus() {
  const LuFactors& lu = *lu_;
  active_row_.assign(num_rows_, Line{});
  active_column_.assign(num_positions_, Line{});
  rows_left_ = positions_left_ = 0;
  int row_total = 0;
  for (int i = 0; i < num_rows_; ++i) {
    if (lu.pivot_of_row[i] >= 0) continue;
    active_row_[i] = {row_total, 0, row_count_[i]};
    row_total += row_count_[i];
    ++rows_left_;
  }
  const auto row_capacity = static_cast<std::size_t>(
      std::min<double>(kMaxFileEntries, settings_.row_multiplier * row_total + 1.0));
  if (row_file_.size() < row_capacity) row_file_.resize(row_capacity);
  column_file_.used = 0;
  column_file_.reserve(static_cast<long>(
      std::min<double>(kMaxFileEntries, settings_.column_multiplier * row_total + 1.0)));
  row_used_ = row_total;
  row_lists_.setup(num_rows_, num_positions_);
  column_lists_.setup(num_positions_, num_rows_);
  for (int p : structurals_) {
    if (lu.pivot_of_position[p] >= 0) continue;
    ++positions_left_;
    const Span column = column_of(p);
    const int begin = column_file_.used;
    int end = begin;
    for (int e = column.begin; e < column.end; ++e) {
      const int i = matrix_->index[e];
      if (lu.pivot_of_row[i] >= 0 || matrix_->value[e] == 0.0) continue;
      column_file_.index[end] = i;
      column_file_.value[end++] = matrix_->value[e];
      Line& row = active_row_[i];
      row_file_[row.begin + row.count++] = p;
    }
    column_file_.used = end;
    active_column_[p] = {begin, end - begin, end - begin};
    put_maximum_first(p);
    column_lists_.link(p, end - begin);
  }
  active_nonzeros_ = column_file_.used;
  for (int i = 0; i < num_rows_; ++i) {
    if (lu.pivot_of_row[i] < 0) row_lists_.link(i, active_row_[i].count);
  }
  multiplier_.assign(num_rows_, 0.0);
  touched_.assign(num_rows_, 0);
  stamp_ = 0;
  u_file_.used = 0;
  u_file_.reserve(active_nonzeros_);
  u_span_.clear();
  work_ += 2.0 * row_total;
}

// `ok` when every pivot was found, `singular` when the rest is dense or has none.
KernelOutcome LuKernel::eliminate_nucleus() {
  int until_check = kPivotsPerCheck;
  while (rows_left_ > 0 && positions_left_ > 0) {
    if (--until_check == 0) {
      if (stop_asked()) return KernelOutcome::stopped;
      until_check = kPivotsPerCheck;
    }
    if (worth_dense() || !find_pivot()) return KernelOutcome::singular;
    eliminate_pivot();
  }
  return KernelOutcome::ok;
}

bool LuKernel::find_singleton() {
  for (int p = column_lists_.head[1]; p >= 0;) {
    const int after = column_lists_.next[p];
    const int at = active_column_[p].begin;
    if (std::fabs(column_file_.value[at]) > settings_.absolute_tolerance) {
      pivot_position_ = p;
      pivot_row_ = column_file_.index[at];
      return true;
    }
    column_lists_.unlink(p);
    column_lists_.link(p, 0);
    p = after;
  }
  for (int i = row_lists_.head[1]; i >= 0;) {
    const int after = row_lists_.next[i];
    const int p = row_file_[active_row_[i].begin];
    int at = active_column_[p].begin;
    while (column_file_.index[at] != i) ++at;
    if (std::fabs(column_file_.value[at]) > settings_.absolute_tolerance) {
      pivot_position_ = p;
      pivot_row_ = i;
      return true;
    }
    row_lists_.unlink(i);
    row_lists_.link(i, 0);
    i = after;
  }
  return false;
}

void LuKernel::consider(int row, int position, double merit, double value) {
  if (merit > best_merit_ || (merit == best_merit_ && value <= best_value_)) return;
  best_merit_ = merit;
  best_value_ = value;
  pivot_row_ = row;
  pivot_position_ = position;
}

bool LuKernel::search_row(int row) {
  const Line line = active_row_[row];
  const double others = line.count - 1;
  bool acceptable = false;
  for (int k = line.begin; k < line.begin + line.count; ++k) {
    const int p = row_file_[k];
    const Line& column = active_column_[p];
    const double merit = others * (column.count - 1);
    if (merit > best_merit_) {
      acceptable = true;  // not looked at, so it may be one
      continue;
    }
    const int* index = column_file_.index.data() + column.begin;
    const double* value = column_file_.value.data() + column.begin;
    int at = 0;
    while (index[at] != row) ++at;
    work_ += at;
    const double magnitude = std::fabs(value[at]);
    if (magnitude <= settings_.absolute_tolerance) continue;
    if (magnitude < settings_.threshold * std::fabs(value[0])) continue;
    acceptable = true;
    consider(row, p, merit, magnitude);
  }
  work_ += line.count;
  return acceptable;
}

bool LuKernel::search_column(int position) {
  const Line line = active_column_[position];
  const double others = line.count - 1;
  const int* index = column_file_.index.data() + line.begin;
  const double* value = column_file_.value.data() + line.begin;
  const double least =
      std::max(settings_.threshold * std::fabs(value[0]),
               std::nextafter(settings_.absolute_tolerance, std::numeric_limits<double>::max()));
  bool acceptable = false;
  for (int k = 0; k < line.count; ++k) {
    const double magnitude = std::fabs(value[k]);
    if (magnitude < least) continue;
    acceptable = true;
    consider(index[k], position, others * (active_row_[index[k]].count - 1), magnitude);
  }
  work_ += line.count;
  return acceptable;
}

bool LuKernel::find_pivot() {
  pivot_row_ = pivot_position_ = -1;
  if (find_singleton()) return true;
  best_merit_ = std::numeric_limits<double>::max();
  best_value_ = 0.0;
  int examined = 0;
  const int rows_longest = static_cast<int>(row_lists_.head.size()) - 1;
  const int columns_longest = static_cast<int>(column_lists_.head.size()) - 1;
  row_lists_.skip_empty();
  column_lists_.skip_empty();
  const int longest = std::min(std::max(rows_longest, columns_longest), kLongestSearched);
  for (int k = std::max(2, std::min(row_lists_.lowest, column_lists_.lowest)); k <= longest; ++k) {
    const double shorter = k - 1;
    for (int i = k <= rows_longest ? row_lists_.head[k] : -1; i >= 0;) {
      const int after = row_lists_.next[i];
      if (!search_row(i)) {
        row_lists_.unlink(i);
        row_lists_.link(i, 0);
      }
      ++examined;
      if (best_merit_ <= shorter * shorter) return true;
      if (examined >= kSearchLimit && pivot_row_ >= 0) return true;
      i = after;
    }
    for (int p = k <= columns_longest ? column_lists_.head[k] : -1; p >= 0;) {
      const int after = column_lists_.next[p];
      if (!search_column(p)) {
        column_lists_.unlink(p);
        column_lists_.link(p, 0);
      }
      ++examined;
      if (best_merit_ <= shorter * k) return true;
      if (examined >= kSearchLimit && pivot_row_ >= 0) return true;
      p = after;
    }
  }
  return pivot_row_ >= 0;
}

void LuKernel::put_maximum_first(int position) {
  const Line& column = active_column_[position];
  if (column.count == 0) return;
  int* index = column_file_.index.data() + column.begin;
  double* value = column_file_.value.data() + column.begin;
  int at = 0;
  for (int k = 1; k < column.count; ++k) {
    if (std::fabs(value[k]) > std::fabs(value[at])) at = k;
  }
  std::swap(index[0], index[at]);
  std::swap(value[0], value[at]);
}

void LuKernel::remove_from_row(int row, int position) {
  Line& line = active_row_[row];
  int* entry = row_file_.data() + line.begin;
  int at = 0;
  while (entry[at] != position) ++at;
  entry[at] = entry[--line.count];
  work_ += at;
}

double LuKernel::take_out_of_column(int position, int row) {
  Line& column = active_column_[position];
  int* index = column_file_.index.data() + column.begin;
  double* value = column_file_.value.data() + column.begin;
  int at = 0;
  while (index[at] != row) ++at;
  work_ += at;
  const double result = value[at];
  --column.count;
  index[at] = index[column.count];
  value[at] = value[column.count];
  if (at == 0 && pivot_rows_.empty()) put_maximum_first(position);
  return result;
}

void LuKernel::make_room_in_column(int position, int more) {
  const Line line = active_column_[position];
  const int needed = line.count + more;
  if (needed <= line.room) return;
  const int room = with_slack(needed);
  if (column_file_.used + room > column_file_.capacity()) {
    compress_active_columns();
    const double free = column_file_.capacity() - column_file_.used - room;
    if (free < kFreeShare * column_file_.capacity()) column_file_.enlarge(room);
  }
  Line& moved = active_column_[position];
  const int to = column_file_.used;
  std::copy_n(column_file_.index.begin() + moved.begin, moved.count,
              column_file_.index.begin() + to);
  std::copy_n(column_file_.value.begin() + moved.begin, moved.count,
              column_file_.value.begin() + to);
  column_file_.used += room;
  moved.begin = to;
  moved.room = room;
  work_ += moved.count;
}

void LuKernel::make_room_in_row(int row, int more) {
  const Line line = active_row_[row];
  const int needed = line.count + more;
  if (needed <= line.room) return;
  const int room = with_slack(needed);
  const auto capacity = static_cast<double>(row_file_.size());
  if (row_used_ + static_cast<double>(room) > capacity) {
    compress_active_rows();
    if (capacity - row_used_ - room < kFreeShare * capacity) {
      const double wanted = std::max(static_cast<double>(row_used_) + room, kFileGrowth * capacity);
      if (static_cast<double>(row_used_) + room > kMaxFileEntries) throw std::bad_alloc();
      row_file_.resize(static_cast<std::size_t>(std::min<double>(kMaxFileEntries, wanted)));
    }
  }
  Line& moved = active_row_[row];
  std::copy_n(row_file_.begin() + moved.begin, moved.count, row_file_.begin() + row_used_);
  moved.begin = row_used_;
  moved.room = room;
  row_used_ += room;
  work_ += moved.count;
}

void LuKernel::sort_lines_by_place(const Vector<Line>& lines) {
  scratch_.clear();
  for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
    if (lines[i].count > 0) scratch_.push_back(i);
  }
  std::sort(scratch_.begin(), scratch_.end(),
            [&](int a, int b) { return lines[a].begin < lines[b].begin; });
}

void LuKernel::compress_active_columns() {
  sort_lines_by_place(active_column_);
  int to = 0;
  for (int p : scratch_) {
    Line& line = active_column_[p];
    std::copy_n(column_file_.index.begin() + line.begin, line.count,
                column_file_.index.begin() + to);
    std::copy_n(column_file_.value.begin() + line.begin, line.count,
                column_file_.value.begin() + to);
    line.begin = to;
    line.room = line.count;
    to += line.count;
  }
  column_file_.used = to;
  work_ += to;
}

void LuKernel::compress_active_rows() {
  sort_lines_by_place(active_row_);
  int to = 0;
  for (int i : scratch_) {
    Line& line = active_row_[i];
    std::copy_n(row_file_.begin() + line.begin, line.count, row_file_.begin() + to);
    line.begin = to;
    line.room = line.count;
    to += line.count;
  }
  row_used_ = to;
  work_ += to;
}

void LuKernel::store_pivot_column() {
  LuFactors& lu = *lu_;
  const Line column = active_column_[pivot_position_];
  EntryFile& l_file = lu.l_columns;
  l_file.make_room(column.count);
  const int* index = column_file_.index.data() + column.begin;
  const double* value = column_file_.value.data() + column.begin;
  int at = 0;
  while (index[at] != pivot_row_) ++at;
  const double pivot = value[at];
  const double inverse = 1.0 / pivot;
  record_pivot(pivot_row_, pivot_position_, pivot);
  pivot_rows_.clear();
  const int begin = l_file.used;
  int end = begin;
  for (int k = 0; k < column.count; ++k) {
    if (k == at) continue;
    const int i = index[k];
    remove_from_row(i, pivot_position_);
    row_lists_.unlink(i);
    pivot_rows_.push_back(i);
    const double multiplier = value[k] * inverse;
    multiplier_[i] = multiplier;
    l_file.index[end] = i;
    l_file.value[end++] = multiplier;
  }
  if (end > begin) {
    lu.l_column[lu.num_pivots - 1] = {begin, end};
    l_file.used = end;
    lu.l_pivots.push_back(lu.num_pivots - 1);
  }
  active_nonzeros_ -= column.count;
  active_column_[pivot_position_] = Line{};
  work_ += column.count;
}

void LuKernel::store_pivot_row() {
  const Line row = active_row_[pivot_row_];
  u_file_.make_room(row.count);
  const int begin = u_file_.used;
  int end = begin;
  for (int k = row.begin; k < row.begin + row.count; ++k) {
    const int p = row_file_[k];
    if (p == pivot_position_) continue;
    column_lists_.unlink(p);
    u_file_.index[end] = p;
    u_file_.value[end++] = take_out_of_column(p, pivot_row_);
  }
  u_file_.used = end;
  u_span_.push_back({begin, end});
  active_nonzeros_ -= end - begin;
  active_row_[pivot_row_] = Line{};
  work_ += row.count;
}

void LuKernel::eliminate_pivot() {
  row_lists_.unlink(pivot_row_);
  column_lists_.unlink(pivot_position_);
  store_pivot_column();
  store_pivot_row();
  --rows_left_;
  --positions_left_;
  const Span u_row = u_span_.back();
  if (!pivot_rows_.empty()) {
    for (int e = u_row.begin; e < u_row.end; ++e) {
      update_column(u_file_.index[e], u_file_.value[e]);
    }
  }
  for (int e = u_row.begin; e < u_row.end; ++e) {
    const int p = u_file_.index[e];
    column_lists_.link(p, active_column_[p].count);
  }
  for (int i : pivot_rows_) {
    multiplier_[i] = 0.0;
    row_lists_.link(i, active_row_[i].count);
  }
}

void LuKernel::update_column(int position, double u) {
  const int num_pivot_rows = static_cast<int>(pivot_rows_.size());
  make_room_in_column(position, num_pivot_rows);
  Line& column = active_column_[position];
  int* index = column_file_.index.data() + column.begin;
  double* value = column_file_.value.data() + column.begin;
  const double* multiplier = multiplier_.data();
  int* touched = touched_.data();
  const int stamp = ++stamp_;
  const int count_before = column.count;
  int met = 0, maximum_at = 0, count = column.count;
  double maximum = 0.0;
  for (int k = 0; k < count;) {
    const int i = index[k];
    if (multiplier[i] != 0.0) {
      touched[i] = stamp;
      ++met;
      const double change = multiplier[i] * u;
      const double old = value[k];
      const double x = old - change;
      if (std::fabs(x) <= kCancellation * std::max(std::fabs(old), std::fabs(change)) ||
          std::fabs(x) <= kNegligible) {
        --count;
        index[k] = index[count];
        value[k] = value[count];
        remove_from_row(i, position);
        continue;
      }
      value[k] = x;
    }
    const double magnitude = std::fabs(value[k]);
    if (magnitude > maximum) {
      maximum = magnitude;
      maximum_at = k;
    }
    ++k;
  }
  if (met < num_pivot_rows) {
    for (int i : pivot_rows_) {
      if (touched[i] == stamp) continue;
      const double x = -multiplier[i] * u;
      const double magnitude = std::fabs(x);
      if (magnitude <= kNegligible) continue;
      if (magnitude > maximum) {
        maximum = magnitude;
        maximum_at = count;
      }
      index[count] = i;
      value[count++] = x;
      Line& row = active_row_[i];
      if (row.count == row.room) make_room_in_row(i, 1);
      row_file_[row.begin + row.count++] = position;
    }
  }
  column.count = count;
  if (count > 0) {
    std::swap(index[0], index[maximum_at]);
    std::swap(value[0], value[maximum_at]);
  }
  active_nonzeros_ += count - count_before;
  work_ += count_before + num_pivot_rows;
}

}  // namespace kelvo
