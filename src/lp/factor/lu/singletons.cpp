// The triangular part of a basis: logicals, column singletons, row singletons. Everything here is
// linear in the nonzeros of the columns, and a logical costs a few instructions.
#include <cmath>

#include "lp/factor/lu/kernel.h"

namespace kelvo {

Span LuKernel::column_of(int position) const {
  const int variable = variables_[position];
  return {matrix_->start[variable], matrix_->start[variable + 1]};
}

void LuKernel::record_pivot(int row, int position, double value) {
  LuFactors& lu = *lu_;
  const int k = lu.num_pivots++;
  lu.row_of_pivot[k] = row;
  lu.position_of_pivot[k] = position;
  lu.pivot_of_row[row] = k;
  lu.pivot_of_position[position] = k;
  lu.diagonal[k] = value;
  lu.inverse_diagonal[k] = 1.0 / value;
}

void LuKernel::pivot_logicals() {
  structurals_.clear();
  const int num_columns = matrix_->num_major;
  for (int p = 0; p < num_positions_; ++p) {
    const int variable = variables_[p];
    if (variable < num_columns) {
      structurals_.push_back(p);
      continue;
    }
    const int row = variable - num_columns;
    ++nonzeros_;
    // A logical that occurs twice stays unpivoted the second time and is repaired away.
    if (lu_->pivot_of_row[row] < 0) record_pivot(row, p, 1.0);
  }
  lu_->num_logical = lu_->num_pivots;
  work_ += num_positions_;
}

void LuKernel::count_columns() {
  const int* pivoted = lu_->pivot_of_row.data();
  const int* index = matrix_->index.data();
  row_count_.assign(num_rows_, 0);
  column_count_.resize(num_positions_);
  column_sum_.resize(num_positions_);
  int* row_count = row_count_.data();
  for (int p : structurals_) {
    const Span column = column_of(p);
    int count = 0;
    unsigned sum = 0;
    for (int e = column.begin; e < column.end; ++e) {
      const int i = index[e];
      if (pivoted[i] >= 0) continue;
      ++row_count[i];
      ++count;
      sum += static_cast<unsigned>(i);
    }
    column_count_[p] = count;
    column_sum_[p] = static_cast<int>(sum);
    nonzeros_ += column.size();
  }
  row_begin_.resize(num_rows_ + 1);
  int total = 0;
  for (int i = 0; i < num_rows_; ++i) {
    row_begin_[i] = total;
    total += row_count[i];
  }
  row_begin_[num_rows_] = total;
  if (static_cast<int>(row_positions_.size()) < total) row_positions_.resize(total);
  scratch_.assign(row_begin_.begin(), row_begin_.end() - 1);
  int* next = scratch_.data();
  for (int p : structurals_) {
    const Span column = column_of(p);
    for (int e = column.begin; e < column.end; ++e) {
      const int i = index[e];
      if (pivoted[i] < 0) row_positions_[next[i]++] = p;
    }
  }
  work_ += 2.0 * static_cast<double>(nonzeros_) + num_rows_;
}

void LuKernel::store_singleton_column(int position, int row, double value) {
  LuFactors& lu = *lu_;
  const Span column = column_of(position);
  const int* pivot_of_row = lu.pivot_of_row.data();
  const double inverse = 1.0 / value;
  int u_end = lu.u_columns.used, l_end = lu.l_columns.used;
  const int u_begin = u_end, l_begin = l_end;
  for (int e = column.begin; e < column.end; ++e) {
    const int i = matrix_->index[e];
    const double x = matrix_->value[e];
    if (i == row || x == 0.0) continue;
    if (pivot_of_row[i] >= 0) {
      lu.u_columns.index[u_end] = pivot_of_row[i];
      lu.u_columns.value[u_end++] = x;
    } else {
      lu.l_columns.index[l_end] = i;
      lu.l_columns.value[l_end++] = x * inverse;
    }
  }
  const int k = lu.num_pivots;
  lu.u_column[k] = {u_begin, u_end};
  lu.u_columns.used = u_end;
  if (l_end > l_begin) {
    lu.l_column[k] = {l_begin, l_end};
    lu.l_columns.used = l_end;
    lu.l_pivots.push_back(k);
  }
  work_ += column.size();
  record_pivot(row, position, value);
}

void LuKernel::pivot_column_singletons() {
  queue_.clear();
  for (int p : structurals_) {
    if (column_count_[p] == 1) queue_.push_back(p);
  }
  const int* index = matrix_->index.data();
  const double* value = matrix_->value.data();
  while (!queue_.empty()) {
    const int p = queue_.back();
    queue_.pop_back();
    if (column_count_[p] != 1) continue;
    const int row = column_sum_[p];
    int e = column_of(p).begin;
    while (index[e] != row) ++e;
    if (std::fabs(value[e]) <= settings_.absolute_tolerance) continue;
    store_singleton_column(p, row, value[e]);
    for (int k = row_begin_[row]; k < row_begin_[row + 1]; ++k) {
      const int q = row_positions_[k];
      column_sum_[q] =
          static_cast<int>(static_cast<unsigned>(column_sum_[q]) - static_cast<unsigned>(row));
      if (--column_count_[q] == 1) queue_.push_back(q);
    }
    work_ += row_begin_[row + 1] - row_begin_[row];
  }
}

void LuKernel::pivot_row_singletons() {
  const LuFactors& lu = *lu_;
  queue_.clear();
  for (int i = 0; i < num_rows_; ++i) {
    if (row_count_[i] == 1 && lu.pivot_of_row[i] < 0) queue_.push_back(i);
  }
  const int* index = matrix_->index.data();
  const double* value = matrix_->value.data();
  while (!queue_.empty()) {
    const int i = queue_.back();
    queue_.pop_back();
    if (row_count_[i] != 1) continue;
    int k = row_begin_[i];
    while (lu.pivot_of_position[row_positions_[k]] >= 0) ++k;
    const int p = row_positions_[k];
    const Span column = column_of(p);
    int at = column.begin;
    while (index[at] != i) ++at;
    if (std::fabs(value[at]) <= settings_.absolute_tolerance) continue;
    store_singleton_column(p, i, value[at]);
    for (int e = column.begin; e < column.end; ++e) {
      if (--row_count_[index[e]] == 1 && lu.pivot_of_row[index[e]] < 0) {
        queue_.push_back(index[e]);
      }
    }
    work_ += column.size() + (k - row_begin_[i]);
  }
}

}  // namespace kelvo
