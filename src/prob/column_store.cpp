#include "prob/column_store.h"

#include <utility>

namespace kelvo {

void ColumnStore::assign(SparseMatrix&& columns) {
  const int n = columns.num_major;
  Vector<int> new_count(n);
  for (int j = 0; j < n; ++j) new_count[j] = columns.start[j + 1] - columns.start[j];
  Vector<int> new_capacity(new_count);
  start = std::move(columns.start);
  start.resize(n);
  count = std::move(new_count);
  capacity = std::move(new_capacity);
  index = std::move(columns.index);
  value = std::move(columns.value);
}

SparseMatrix ColumnStore::compressed(int num_rows) const {
  SparseMatrix result;
  result.num_major = num_cols();
  result.num_minor = num_rows;
  result.start.resize(num_cols() + 1);
  int total = 0;
  for (int j = 0; j < num_cols(); ++j) total += count[j];
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

}  // namespace kelvo
