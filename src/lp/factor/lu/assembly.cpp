// The run as a whole, and the last step of a factorization: the columns of U in the nucleus are
// gathered, and both factors get their row-wise copies.
#include <algorithm>

#include "lp/factor/lu/kernel.h"

namespace kelvo {

KernelOutcome LuKernel::run(const SparseMatrix& matrix, const int* variables, int count,
                            const KernelSettings& settings, LuFactors& factors) {
  matrix_ = &matrix;
  variables_ = variables;
  num_rows_ = matrix.num_minor;
  num_positions_ = count;
  settings_ = settings;
  lu_ = &factors;
  work_ = 0.0;
  nonzeros_ = 0;
  factors.reset(num_rows_, count);
  pivot_logicals();
  if (!structurals_.empty()) {
    count_columns();
    factors.u_columns.reserve(std::min<long>(kMaxFileEntries, nonzeros_ + num_rows_));
    factors.l_columns.reserve(std::min<long>(kMaxFileEntries, nonzeros_));
    pivot_column_singletons();
    if (factors.num_pivots < std::min(num_rows_, count)) pivot_row_singletons();
  }
  factors.num_triangular = factors.num_pivots;
  u_span_.clear();
  if (factors.num_pivots < std::min(num_rows_, count)) {
    load_nucleus();
    const KernelOutcome sparse = eliminate_nucleus();
    if (sparse == KernelOutcome::stopped) return sparse;
    if (sparse == KernelOutcome::singular) {
      // Either the rest is dense, or nothing in it can be a pivot.
      if (worth_dense() && rows_left_ > 0 && positions_left_ > 0) {
        const KernelOutcome outcome = factor_dense();
        if (outcome == KernelOutcome::no_dense_memory || outcome == KernelOutcome::stopped) {
          return outcome;
        }
      }
    }
  }
  if (factors.num_pivots < num_rows_ || count != num_rows_) return KernelOutcome::singular;
  assemble();
  return KernelOutcome::ok;
}

namespace {

void scale_lines(const Vector<Span>& lines, const Vector<double>& factor, EntryFile& file) {
  for (std::size_t k = 0; k < lines.size(); ++k) {
    if (factor[k] == 1.0) continue;
    for (int e = lines[k].begin; e < lines[k].end; ++e) file.value[e] *= factor[k];
  }
}

}  // namespace

void LuKernel::release() {
  column_file_.release();
  u_file_.release();
  Vector<int>().swap(row_file_);
}

void LuKernel::assemble() {
  LuFactors& lu = *lu_;
  const int m = num_rows_;
  for (int k = 0; k < m; ++k) lu.sequence[k] = lu.place[k] = k;
  lu.sequence_size = m;
  assemble_nucleus_columns();
  lu.u_nonzeros = lu.u_columns.used;
  const int order = lu.dense.order;
  for (int k = 0; k < order; ++k) {
    const double factor = lu.inverse_diagonal[lu.block_begin() + k];
    double* column = lu.dense.column(k);
    for (int i = 0; i < k; ++i) column[i] *= factor;
  }
  build_rows(lu.u_columns, lu.u_column, lu.u_rows, lu.u_row);
  for (int k = 0; k < m; ++k) lu.u_row_limit[k] = lu.u_row[k].end;
  scale_lines(lu.u_column, lu.inverse_diagonal, lu.u_columns);
  scale_lines(lu.u_row, lu.inverse_diagonal, lu.u_rows);
  int* index = lu.l_columns.index.data();
  for (int e = 0; e < lu.l_columns.used; ++e) index[e] = lu.pivot_of_row[index[e]];
  build_rows(lu.l_columns, lu.l_column, lu.l_rows, lu.l_row);
}

void LuKernel::assemble_nucleus_columns() {
  LuFactors& lu = *lu_;
  const int first = lu.num_triangular;
  const int nucleus = static_cast<int>(u_span_.size());  // without the dense block
  if (first == lu.m) return;
  // Length of each nucleus column of U: entries of B in triangular rows, then those of u_file_.
  Vector<int>& next = scratch_;
  next.assign(num_rows_, 0);
  for (int e = 0; e < u_file_.used; ++e) {
    int& position = u_file_.index[e];
    position = lu.pivot_of_position[position];
    ++next[position];
  }
  EntryFile& file = lu.u_columns;
  long total = file.used;
  for (int k = first; k < lu.m; ++k) total += next[k] + column_of(lu.position_of_pivot[k]).size();
  file.reserve(total);
  for (int k = first; k < lu.m; ++k) {
    const Span column = column_of(lu.position_of_pivot[k]);
    const int begin = file.used;
    for (int e = column.begin; e < column.end; ++e) {
      const int row = lu.pivot_of_row[matrix_->index[e]];
      if (row >= first || matrix_->value[e] == 0.0) continue;
      file.index[file.used] = row;
      file.value[file.used++] = matrix_->value[e];
    }
    const int from = file.used;
    file.used += next[k];
    next[k] = from;
    lu.u_column[k] = {begin, file.used};
  }
  for (int k = 0; k < nucleus; ++k) {
    for (int e = u_span_[k].begin; e < u_span_[k].end; ++e) {
      const int to = next[u_file_.index[e]]++;
      file.index[to] = first + k;
      file.value[to] = u_file_.value[e];
    }
  }
  work_ += 2.0 * u_file_.used;
}

void LuKernel::build_rows(const EntryFile& from, const Vector<Span>& columns, EntryFile& to,
                          Vector<Span>& rows) {
  const int m = num_rows_;
  std::fill(rows.begin(), rows.end(), Span{});
  to.reserve(from.used);
  to.used = from.used;
  if (from.used == 0) return;
  Span* row = rows.data();
  for (int e = 0; e < from.used; ++e) ++row[from.index[e]].end;
  int total = 0;
  for (int k = 0; k < m; ++k) {
    const int size = row[k].end;
    row[k] = {total, total};
    total += size;
  }
  int* index = to.index.data();
  double* value = to.value.data();
  for (int k = 0; k < m; ++k) {
    const Span column = columns[k];
    for (int e = column.begin; e < column.end; ++e) {
      const int at = row[from.index[e]].end++;
      index[at] = k;
      value[at] = from.value[e];
    }
  }
  work_ += 2.0 * from.used;
}

}  // namespace kelvo
