// The dense kernel: what is left of the nucleus is copied to a dense array by columns and factored
// column by column (left-looking) with partial pivoting. A block that is the bulk of the factor
// stays in that form; otherwise its entries go to the sparse files without the zeros.
#include <algorithm>
#include <cmath>
#include <new>

#include "lp/factor/lu/kernel.h"

namespace kelvo {
namespace {

/// Keeps an empty active submatrix, and rounding of the product, from starting the dense kernel.
constexpr double kSwitchMargin = 1e-10;
/// A block stays dense when it has at least this order, this share of nonzeros, and when its cells
/// are at least this share of the entries of the sparse part of the factor.
constexpr int kBlockOrder = 24;
constexpr double kBlockDensity = 0.5;
constexpr double kBlockShare = 0.5;

/// Applies the first k pivots of the block to one of its columns.
void apply_pivots(const double* block, long rows, int k, double* x) {
  int g = 0;
  for (; g + 4 <= k; g += 4) {
    const double* group = block + g * rows;
    for (int c = 0; c < 3; ++c) {
      for (int i = c + 1; i < 4; ++i) x[g + i] -= group[c * rows + g + i] * x[g + c];
    }
    if (x[g] == 0.0 && x[g + 1] == 0.0 && x[g + 2] == 0.0 && x[g + 3] == 0.0) continue;
    subtract_four(x + g + 4, group + g + 4, rows, x + g, static_cast<int>(rows) - g - 4);
  }
  for (; g < k; ++g) {
    const double* column = block + g * rows;
    const double factor = x[g];
    if (factor == 0.0) continue;
    for (long i = g + 1; i < rows; ++i) x[i] -= factor * column[i];
  }
}

}  // namespace

bool LuKernel::worth_dense() const {
  const double cells = static_cast<double>(rows_left_) * positions_left_;
  return settings_.dense_density * cells + kSwitchMargin < static_cast<double>(active_nonzeros_);
}

bool LuKernel::load_dense() {
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
  Vector<double>& dense = lu_->dense.entries;
  try {
    dense.assign(dense_rows_.size() * dense_positions_.size(), 0.0);
  } catch (const std::bad_alloc&) {
    return false;
  }
  double* column = dense.data();
  for (int p : dense_positions_) {
    const Line& line = active_column_[p];
    for (int e = line.begin; e < line.begin + line.count; ++e) {
      column[scratch_[column_file_.index[e]]] = column_file_.value[e];
    }
    column += dense_rows_.size();
  }
  return true;
}

KernelOutcome LuKernel::factor_dense() {
  if (!load_dense()) return KernelOutcome::no_dense_memory;
  const int rows = static_cast<int>(dense_rows_.size());
  const int all_columns = static_cast<int>(dense_positions_.size());
  double* block = lu_->dense.entries.data();
  const auto column_at = [&](int j) { return block + static_cast<std::size_t>(j) * rows; };
  int columns = all_columns;
  int k = 0;
  while (k < columns && k < rows) {
    double* x = column_at(k);
    if (stop_asked()) return KernelOutcome::stopped;
    apply_pivots(block, rows, k, x);
    int at = k;
    for (int i = k + 1; i < rows; ++i) {
      if (std::fabs(x[i]) > std::fabs(x[at])) at = i;
    }
    work_ += 0.25 * static_cast<double>(rows) * k;
    if (std::fabs(x[at]) <= settings_.absolute_tolerance) {
      --columns;  // no pivot in this column: the last one takes its place
      std::swap_ranges(x, x + rows, column_at(columns));
      std::swap(dense_positions_[k], dense_positions_[columns]);
      continue;
    }
    if (at != k) {
      for (int j = 0; j < all_columns; ++j) std::swap(column_at(j)[k], column_at(j)[at]);
      std::swap(dense_rows_[k], dense_rows_[at]);
    }
    const double inverse = 1.0 / x[k];
    for (int i = k + 1; i < rows; ++i) x[i] *= inverse;
    ++k;
  }
  rows_left_ -= k;
  positions_left_ -= k;
  const bool complete = rows_left_ == 0 && positions_left_ == 0;
  if (complete && worth_block()) {
    for (int j = 0; j < k; ++j) record_pivot(dense_rows_[j], dense_positions_[j], column_at(j)[j]);
    lu_->dense.order = k;
  } else {
    for (int j = 0; j < k; ++j) store_dense_pivot(j, block, k);
  }
  return complete ? KernelOutcome::ok : KernelOutcome::singular;
}

bool LuKernel::worth_block() const {
  const Vector<double>& entries = lu_->dense.entries;
  const double order = static_cast<double>(dense_rows_.size());
  const double sparse =
      static_cast<double>(lu_->l_columns.used) + lu_->u_columns.used + u_file_.used + num_rows_;
  if (order < kBlockOrder || order * order < kBlockShare * sparse) return false;
  const auto zeros = std::count(entries.begin(), entries.end(), 0.0);
  return static_cast<double>(zeros) <= (1.0 - kBlockDensity) * order * order;
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
