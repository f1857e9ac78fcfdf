#include "lp/presolve/linked_matrix.h"

namespace kelvo {

LinkedMatrix::LinkedMatrix(const SparseMatrix& columns)
    : row_first_(columns.num_minor, -1),
      col_first_(columns.num_major, -1),
      row_count_(columns.num_minor, 0),
      col_count_(columns.num_major, 0),
      num_nonzeros_(columns.num_nonzeros()) {
  // Entries keep their places in the column-wise matrix, and all lists ascend.
  entries_.resize(columns.num_nonzeros());
  Vector<int> last(columns.num_minor, -1);  // of each row so far
  for (int j = 0; j < columns.num_major; ++j) {
    const int begin = columns.start[j], end = columns.start[j + 1];
    if (begin < end) col_first_[j] = begin;
    col_count_[j] = end - begin;
    for (int e = begin; e < end; ++e) {
      const int i = columns.index[e];
      entries_[e] = {columns.value[e],      i, j, -1, last[i], e + 1 < end ? e + 1 : -1,
                     e > begin ? e - 1 : -1};
      if (last[i] >= 0) {
        entries_[last[i]].row_next = e;
      } else {
        row_first_[i] = e;
      }
      last[i] = e;
      ++row_count_[i];
    }
  }
}

int LinkedMatrix::find(int i, int j) const {
  if (row_count_[i] < col_count_[j]) {
    for (int e = row_first_[i]; e >= 0; e = entries_[e].row_next) {
      if (entries_[e].col == j) return e;
    }
    return -1;
  }
  for (int e = col_first_[j]; e >= 0; e = entries_[e].col_next) {
    if (entries_[e].row == i) return e;
  }
  return -1;
}

int LinkedMatrix::insert(int i, int j, double value) {
  int e = free_;
  if (e >= 0) {
    free_ = entries_[e].row_next;
  } else {
    e = static_cast<int>(entries_.size());
    entries_.emplace_back();
  }
  entries_[e] = {value, i, j, row_first_[i], -1, col_first_[j], -1};
  if (row_first_[i] >= 0) entries_[row_first_[i]].row_prev = e;
  if (col_first_[j] >= 0) entries_[col_first_[j]].col_prev = e;
  row_first_[i] = col_first_[j] = e;
  ++row_count_[i];
  ++col_count_[j];
  ++num_nonzeros_;
  return e;
}

void LinkedMatrix::erase(int e) {
  const MatrixEntry entry = entries_[e];
  if (entry.row_prev >= 0) {
    entries_[entry.row_prev].row_next = entry.row_next;
  } else {
    row_first_[entry.row] = entry.row_next;
  }
  if (entry.row_next >= 0) entries_[entry.row_next].row_prev = entry.row_prev;
  if (entry.col_prev >= 0) {
    entries_[entry.col_prev].col_next = entry.col_next;
  } else {
    col_first_[entry.col] = entry.col_next;
  }
  if (entry.col_next >= 0) entries_[entry.col_next].col_prev = entry.col_prev;
  --row_count_[entry.row];
  --col_count_[entry.col];
  --num_nonzeros_;
  entries_[e].row_next = free_;
  free_ = e;
}

int LinkedMatrix::add_row() {
  row_first_.push_back(-1);
  row_count_.push_back(0);
  return static_cast<int>(row_first_.size()) - 1;
}

}  // namespace kelvo
