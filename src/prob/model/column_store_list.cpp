// Setting a list of coefficients: the list is brought into column order, by counting when it is
// long compared with the matrix and by comparison otherwise, and each column then takes its part in
// one merge of two sorted sequences.
#include <algorithm>
#include <numeric>

#include "prob/model/column_store.h"

namespace kelvo {
namespace {

/// Columns with fewer changes than this take them one by one.
constexpr int kFewChanges = 8;

using Order = Vector<const Coefficient*>;

/// Stable counting sort of `from` by key(coefficient) in 0..keys-1.
template <class Key>
void counting_sort(const Order& from, Order& to, int keys, Key key) {
  Vector<int> place(keys + 1, 0);
  for (const Coefficient* c : from) ++place[key(*c) + 1];
  std::partial_sum(place.begin(), place.end(), place.begin());
  for (const Coefficient* c : from) to[place[key(*c)]++] = c;
}

/// The coefficients of the list by column, within a column by row, within a place as given.
Order sorted_by_column(const Vector<Coefficient>& list, int num_rows, int num_cols) {
  Order order;
  order.reserve(list.size());
  for (const Coefficient& c : list) order.push_back(&c);
  if (list.size() >= (static_cast<std::size_t>(num_rows) + num_cols) / 4) {
    Order by_row(order.size());
    counting_sort(order, by_row, num_rows, [](const Coefficient& c) { return c.row; });
    counting_sort(by_row, order, num_cols, [](const Coefficient& c) { return c.column; });
    return order;
  }
  std::sort(order.begin(), order.end(), [](const Coefficient* a, const Coefficient* b) {
    if (a->column != b->column) return a->column < b->column;
    if (a->row != b->row) return a->row < b->row;
    return a < b;
  });
  return order;
}

}  // namespace

void ColumnStore::set_list(const Vector<Coefficient>& list, int num_rows) {
  if (list.size() == 1) {
    set(list[0].row, list[0].column, list[0].value);
    return;
  }
  const Order order = sorted_by_column(list, num_rows, num_cols());
  for (std::size_t first = 0; first < order.size();) {
    const int column = order[first]->column;
    std::size_t last = first + 1;
    while (last < order.size() && order[last]->column == column) ++last;
    const int changes = static_cast<int>(last - first);
    if (changes >= kFewChanges && ordered[column] == 0) sort_column(column);
    if (changes < kFewChanges || ordered[column] == 0) {
      for (; first < last; ++first) set(order[first]->row, column, order[first]->value);
    } else {
      merge_sorted(column, order.data() + first, changes);
    }
    first = last;
  }
}

void ColumnStore::merge_sorted(int column, const Coefficient* const* changes, int num_changes) {
  const int old_count = count[column];
  Vector<int> rows;
  Vector<double> values;
  rows.reserve(old_count + num_changes);
  values.reserve(old_count + num_changes);
  int position = start[column];
  const int end = position + old_count;
  for (int k = 0; k < num_changes; ++k) {
    const int row = changes[k]->row;
    if (k + 1 < num_changes && changes[k + 1]->row == row) continue;  // a later one wins
    for (; position < end && index[position] < row; ++position) {
      rows.push_back(index[position]);
      values.push_back(value[position]);
    }
    if (position < end && index[position] == row) ++position;
    if (changes[k]->value == 0.0) continue;
    rows.push_back(row);
    values.push_back(changes[k]->value);
  }
  rows.insert(rows.end(), index.begin() + position, index.begin() + end);
  values.insert(values.end(), value.begin() + position, value.begin() + end);
  const int new_count = static_cast<int>(rows.size());
  if (new_count > old_count) make_room_in(column, new_count - old_count);
  std::copy(rows.begin(), rows.end(), index.begin() + start[column]);
  std::copy(values.begin(), values.end(), value.begin() + start[column]);
  count[column] = new_count;
}

void ColumnStore::sort_column(int column) {
  const int entries = count[column];
  const int first = start[column];
  Vector<int> position(entries);
  std::iota(position.begin(), position.end(), first);
  std::sort(position.begin(), position.end(),
            [&](int p, int q) { return index[p] != index[q] ? index[p] < index[q] : p < q; });
  Vector<int> rows(entries);
  Vector<double> values(entries);
  for (int k = 0; k < entries; ++k) {
    rows[k] = index[position[k]];
    values[k] = value[position[k]];
  }
  std::copy(rows.begin(), rows.end(), index.begin() + first);
  std::copy(values.begin(), values.end(), value.begin() + first);
  ordered[column] = std::adjacent_find(rows.begin(), rows.end()) == rows.end() ? 1 : 0;
}

}  // namespace kelvo
