#include "prob/model/column_store.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kelvo {
namespace {

/// Room of a column that gets its first entry after it was stored.
constexpr int kSmallestRoom = 4;

bool ascends(const int* rows, int count) {
  for (int p = 1; p < count; ++p) {
    if (rows[p - 1] >= rows[p]) return false;
  }
  return true;
}

/// Positions are 32-bit integers: a matrix beyond them counts as out of memory.
void check_positions(std::int64_t positions) {
  if (positions > std::numeric_limits<int>::max()) throw std::bad_alloc();
}

}  // namespace

std::int64_t ColumnStore::num_nonzeros() const {
  std::int64_t total = 0;
  for (const int entries : count) total += entries;
  return total;
}

void ColumnStore::assign(SparseMatrix&& columns) {
  const int n = columns.num_major;
  Vector<int> new_count(n);
  Vector<char> new_ordered(n);
  for (int j = 0; j < n; ++j) {
    new_count[j] = columns.start[j + 1] - columns.start[j];
    new_ordered[j] = ascends(columns.index.data() + columns.start[j], new_count[j]) ? 1 : 0;
  }
  Vector<int> new_capacity(new_count);
  start = std::move(columns.start);
  start.resize(n);
  count = std::move(new_count);
  capacity = std::move(new_capacity);
  ordered = std::move(new_ordered);
  index = std::move(columns.index);
  value = std::move(columns.value);
}

SparseMatrix ColumnStore::compressed(int num_rows) const {
  SparseMatrix result;
  result.num_major = num_cols();
  result.num_minor = num_rows;
  result.start.resize(num_cols() + 1);
  const std::int64_t total = num_nonzeros();
  result.index.reserve(total);
  result.value.reserve(total);
  for (int j = 0; j < num_cols(); ++j) {
    result.index.insert(result.index.end(), index.begin() + start[j],
                        index.begin() + start[j] + count[j]);
    result.value.insert(result.value.end(), value.begin() + start[j],
                        value.begin() + start[j] + count[j]);
    result.start[j + 1] = static_cast<int>(result.index.size());
  }
  return result;
}

int ColumnStore::find(int row, int column) const {
  const int* const first = index.data() + start[column];
  const int* const last = first + count[column];
  const int* const place =
      ordered[column] != 0 ? std::lower_bound(first, last, row) : std::find(first, last, row);
  return place != last && *place == row ? static_cast<int>(place - index.data()) : -1;
}

double ColumnStore::coefficient(int row, int column) const {
  const int position = find(row, column);
  return position < 0 ? 0.0 : value[position];
}

void ColumnStore::repack(std::int64_t extra) {
  std::int64_t owned = 0;
  for (const int room : capacity) owned += room;
  check_positions(owned + extra);
  Vector<int> new_index;
  Vector<double> new_value;
  const std::int64_t room =
      std::min<std::int64_t>(2 * owned + extra, std::numeric_limits<int>::max());
  new_index.reserve(room);
  new_value.reserve(room);
  for (int j = 0; j < num_cols(); ++j) {
    const int old_start = start[j];
    start[j] = static_cast<int>(new_index.size());
    new_index.insert(new_index.end(), index.begin() + old_start,
                     index.begin() + old_start + count[j]);
    new_value.insert(new_value.end(), value.begin() + old_start,
                     value.begin() + old_start + count[j]);
    new_index.resize(start[j] + capacity[j]);
    new_value.resize(start[j] + capacity[j]);
  }
  index.swap(new_index);
  value.swap(new_value);
}

void ColumnStore::make_room_in(int column, int extra) {
  const std::int64_t needed = std::int64_t{count[column]} + extra;
  if (needed <= capacity[column]) return;
  const std::int64_t room = std::max<std::int64_t>({needed, 2 * count[column], kSmallestRoom});
  if (index.size() + room > std::min(index.capacity(), value.capacity()) ||
      static_cast<std::int64_t>(index.size()) + room > std::numeric_limits<int>::max()) {
    repack(room);
  }
  const int end = static_cast<int>(index.size());
  if (start[column] + capacity[column] == end) {
    index.resize(start[column] + room);
    value.resize(start[column] + room);
  } else {
    index.resize(end + room);
    value.resize(end + room);
    std::copy_n(index.begin() + start[column], count[column], index.begin() + end);
    std::copy_n(value.begin() + start[column], count[column], value.begin() + end);
    start[column] = end;
  }
  capacity[column] = static_cast<int>(room);
}

void ColumnStore::set(int row, int column, double new_value) {
  const int position = find(row, column);
  if (position < 0) {
    if (new_value == 0.0) return;
    make_room_in(column, 1);
    const int end = start[column] + count[column];
    int place = end;
    if (ordered[column] != 0) {
      const auto first = index.begin() + start[column];
      place = static_cast<int>(std::lower_bound(first, index.begin() + end, row) - index.begin());
      std::copy_backward(index.begin() + place, index.begin() + end, index.begin() + end + 1);
      std::copy_backward(value.begin() + place, value.begin() + end, value.begin() + end + 1);
    }
    index[place] = row;
    value[place] = new_value;
    ++count[column];
    return;
  }
  value[position] = new_value;
  // The entry itself goes when the value is 0, further entries of the same row go in any case.
  if (new_value != 0.0 && ordered[column] != 0) return;
  int kept = new_value == 0.0 ? position : position + 1;
  const int end = start[column] + count[column];
  for (int p = position + 1; p < end; ++p) {
    if (index[p] == row) continue;
    index[kept] = index[p];
    value[kept++] = value[p];
  }
  count[column] = kept - start[column];
}

void ColumnStore::append_columns(int columns, const int* begin, int entries, const int* rows,
                                 const double* values) {
  make_room(start, columns);
  make_room(count, columns);
  make_room(capacity, columns);
  make_room(ordered, columns);
  if (begin == nullptr) entries = 0;
  if (index.size() + entries > std::min(index.capacity(), value.capacity())) repack(entries);
  check_positions(static_cast<std::int64_t>(index.size()) + entries);
  const int base = static_cast<int>(index.size());
  for (int k = 0; k < columns; ++k) {
    const int from = begin == nullptr ? 0 : begin[k];
    const int to = begin == nullptr ? 0 : (k + 1 < columns ? begin[k + 1] : entries);
    start.push_back(base + from);
    count.push_back(to - from);
    capacity.push_back(to - from);
    ordered.push_back(ascends(rows + from, to - from) ? 1 : 0);
  }
  index.insert(index.end(), rows, rows + entries);
  value.insert(value.end(), values, values + entries);
}

void ColumnStore::append_entry(int row, int column, double new_value) {
  make_room_in(column, 1);
  const int end = start[column] + count[column];
  if (count[column] > 0 && index[end - 1] >= row) ordered[column] = 0;
  index[end] = row;
  value[end] = new_value;
  ++count[column];
}

void ColumnStore::append_rows(int first_row, int rows, const int* begin, int entries,
                              const int* columns, const double* values) {
  if (begin == nullptr || entries == 0) return;
  // Rebuilding the matrix costs one pass over it: worth it when that pass is paid by the entries.
  const std::int64_t pass = static_cast<std::int64_t>(index.size()) + num_cols();
  if (4 * std::int64_t{entries} >= pass) {
    append_many_rows(first_row, rows, begin, entries, columns, values);
    return;
  }
  int done = begin[0];
  try {
    for (int k = 0; k < rows; ++k) {
      const int to = k + 1 < rows ? begin[k + 1] : entries;
      for (; done < to; ++done) append_entry(first_row + k, columns[done], values[done]);
    }
  } catch (const std::bad_alloc&) {
    while (done > begin[0]) --count[columns[--done]];
    throw;
  }
}

void ColumnStore::append_many_rows(int first_row, int rows, const int* begin, int entries,
                                   const int* columns, const double* values) {
  const int n = num_cols();
  Vector<int> new_count(count);
  for (int p = begin[0]; p < entries; ++p) ++new_count[columns[p]];
  Vector<int> new_start(n);
  std::int64_t total = 0;
  for (int j = 0; j < n; ++j) {
    check_positions(total);
    new_start[j] = static_cast<int>(total);
    total += new_count[j];
  }
  check_positions(total);
  Vector<int> new_index(total);
  Vector<double> new_value(total);
  Vector<int> new_capacity(new_count);
  // From here on nothing throws.
  for (int j = 0; j < n; ++j) {
    std::copy_n(index.begin() + start[j], count[j], new_index.begin() + new_start[j]);
    std::copy_n(value.begin() + start[j], count[j], new_value.begin() + new_start[j]);
  }
  for (int k = 0; k < rows; ++k) {
    const int to = k + 1 < rows ? begin[k + 1] : entries;
    for (int p = begin[k]; p < to; ++p) {
      const int j = columns[p];
      const int place = new_start[j] + count[j]++;
      if (place > new_start[j] && new_index[place - 1] >= first_row + k) ordered[j] = 0;
      new_index[place] = first_row + k;
      new_value[place] = values[p];
    }
  }
  start.swap(new_start);
  count.swap(new_count);
  capacity.swap(new_capacity);
  index.swap(new_index);
  value.swap(new_value);
}

void ColumnStore::delete_columns(const int* new_index) noexcept {
  int kept = 0;
  for (int j = 0; j < num_cols(); ++j) {
    if (new_index[j] < 0) continue;
    start[kept] = start[j];
    count[kept] = count[j];
    capacity[kept] = capacity[j];
    ordered[kept++] = ordered[j];
  }
  start.resize(kept);
  count.resize(kept);
  capacity.resize(kept);
  ordered.resize(kept);
}

void ColumnStore::delete_rows(const int* new_index) noexcept {
  for (int j = 0; j < num_cols(); ++j) {
    int kept = start[j];
    for (int p = start[j]; p < start[j] + count[j]; ++p) {
      const int row = new_index[index[p]];
      if (row < 0) continue;
      index[kept] = row;
      value[kept++] = value[p];
    }
    count[j] = kept - start[j];
  }
}

void ColumnStore::remove_small(double eps) noexcept {
  for (int j = 0; j < num_cols(); ++j) {
    int kept = start[j];
    for (int p = start[j]; p < start[j] + count[j]; ++p) {
      if (std::fabs(value[p]) < eps) continue;
      index[kept] = index[p];
      value[kept++] = value[p];
    }
    count[j] = kept - start[j];
  }
}

}  // namespace kelvo
