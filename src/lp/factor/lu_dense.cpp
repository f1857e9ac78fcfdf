// The dense kernel: what is left of the nucleus is copied to a dense array by columns and factored
// with partial pivoting. Multipliers and rows of U go back to the sparse files without their zeros.
#include <algorithm>
#include <cmath>
#include <new>

#include "lp/factor/lu_kernel.h"

namespace kelvo {
namespace {

/// Keeps an empty active submatrix, and rounding of the product, from starting the dense kernel.
constexpr double kSwitchMargin = 1e-10;

/// column[i] -= factor * pivot_column[i] for i in from..end-1.
void subtract_multiple(double* __restrict column, const double* __restrict pivot_column,
                       double factor, int from, int end) {
  for (int i = from; i < end; ++i) column[i] -= factor * pivot_column[i];
}

}  // namespace

bool LuKernel::worth_dense() const {
  const double cells = static_cast<double>(rows_left_) * positions_left_;
  return settings_.dense_density * cells + kSwitchMargin < static_cast<double>(active_nonzeros_);
}

KernelOutcome LuKernel::factor_dense() {
  dense_rows_.clear();
  dense_positions_.clear();
  scratch_.resize(num_rows_);
  for (int i = 0; i < num_rows_; ++i) {
    if (lu_->pivot_of_row[i] >= 0) continue;
    scratch_[i] = static_cast<int>(dense_rows_.size());
    dense_rows_.push_back(i);
  }
  for (int p : structurals_) {
    if (lu_->pivot_of_position[p] < 0) dense_positions_.push_back(p);
  }
  const int rows = static_cast<int>(dense_rows_.size());
  int columns = static_cast<int>(dense_positions_.size());
  Vector<double> dense;
  try {
    dense.assign(static_cast<std::size_t>(rows) * columns, 0.0);
  } catch (const std::bad_alloc&) {
    return KernelOutcome::no_dense_memory;
  }
  const auto column_at = [&](int k) { return dense.data() + static_cast<std::size_t>(k) * rows; };
  for (int k = 0; k < columns; ++k) {
    const Line& line = active_column_[dense_positions_[k]];
    double* column = column_at(k);
    for (int e = line.begin; e < line.begin + line.count; ++e) {
      column[scratch_[column_file_.index[e]]] = column_file_.value[e];
    }
  }
  int k = 0;
  while (k < columns && k < rows) {
    double* pivot_column = column_at(k);
    int at = k;
    for (int i = k + 1; i < rows; ++i) {
      if (std::fabs(pivot_column[i]) > std::fabs(pivot_column[at])) at = i;
    }
    if (std::fabs(pivot_column[at]) <= settings_.absolute_tolerance) {
      --columns;  // no pivot in this column: the last one takes its place
      std::swap_ranges(pivot_column, pivot_column + rows, column_at(columns));
      std::swap(dense_positions_[k], dense_positions_[columns]);
      continue;
    }
    if (at != k) {
      for (int j = 0; j < static_cast<int>(dense_positions_.size()); ++j) {
        std::swap(column_at(j)[k], column_at(j)[at]);
      }
      std::swap(dense_rows_[k], dense_rows_[at]);
    }
    const double inverse = 1.0 / pivot_column[k];
    for (int i = k + 1; i < rows; ++i) pivot_column[i] *= inverse;
    for (int j = k + 1; j < columns; ++j) {
      double* column = column_at(j);
      if (column[k] != 0.0) subtract_multiple(column, pivot_column, column[k], k + 1, rows);
    }
    work_ += 0.25 * static_cast<double>(rows - k) * (columns - k);
    ++k;
  }
  for (int j = 0; j < k; ++j) store_dense_pivot(j, dense.data(), k);
  rows_left_ -= k;
  positions_left_ -= k;
  return rows_left_ == 0 && positions_left_ == 0 ? KernelOutcome::ok : KernelOutcome::singular;
}

void LuKernel::store_dense_pivot(int k, const double* dense, int order) {
  LuFactors& lu = *lu_;
  const int rows = static_cast<int>(dense_rows_.size());
  const double* column = dense + static_cast<std::size_t>(k) * rows;
  const int pivot = lu.num_pivots;
  record_pivot(dense_rows_[k], dense_positions_[k], column[k]);
  EntryFile& l_file = lu.l_columns;
  l_file.make_room(rows - k);
  const int l_begin = l_file.used;
  for (int i = k + 1; i < rows; ++i) {
    if (column[i] == 0.0) continue;
    l_file.index[l_file.used] = dense_rows_[i];
    l_file.value[l_file.used++] = column[i];
  }
  if (l_file.used > l_begin) {
    lu.l_column[pivot] = {l_begin, l_file.used};
    lu.l_pivots.push_back(pivot);
  }
  u_file_.make_room(order - k);
  const int u_begin = u_file_.used;
  for (int j = k + 1; j < order; ++j) {
    const double x = dense[static_cast<std::size_t>(j) * rows + k];
    if (x == 0.0) continue;
    u_file_.index[u_file_.used] = dense_positions_[j];
    u_file_.value[u_file_.used++] = x;
  }
  u_span_.push_back({u_begin, u_file_.used});
}

}  // namespace kelvo
