// The run as a whole, and the last step of a factorization: the columns of U in the nucleus are
// gathered, and both factors get their row-wise copies.
#include <algorithm>

#include "lp/factor/lu_kernel.h"

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
    if (factors.sequence_size < std::min(num_rows_, count)) pivot_row_singletons();
  }
  factors.num_triangular = factors.sequence_size;
  u_span_.clear();
  if (factors.sequence_size < std::min(num_rows_, count)) {
    load_nucleus();
    if (!eliminate_nucleus()) {
      // Either the rest is dense, or nothing in it can be a pivot.
      if (worth_dense() && rows_left_ > 0 && positions_left_ > 0) {
        const KernelOutcome outcome = factor_dense();
        if (outcome == KernelOutcome::no_dense_memory) return outcome;
      }
    }
  }
  if (factors.sequence_size < num_rows_ || count != num_rows_) return KernelOutcome::singular;
  assemble();
  return KernelOutcome::ok;
}

void LuKernel::release() {
  column_file_.release();
  u_file_.release();
  Vector<int>().swap(row_file_);
}

void LuKernel::assemble() {
  LuFactors& lu = *lu_;
  assemble_nucleus_columns();
  lu.u_nonzeros = lu.u_columns.used;
  build_rows(lu.u_columns, lu.u_column, lu.sequence, lu.u_rows, lu.u_row);
  for (int i = 0; i < lu.m; ++i) lu.u_row_limit[i] = lu.u_row[i].end;
  build_rows(lu.l_columns, lu.l_column, lu.sequence, lu.l_rows, lu.l_row);
  if (lu.l_columns.used == 0) return;
  for (int k = 0; k < lu.m; ++k) {
    const int i = lu.sequence[k];
    if (lu.l_row[i].size() > 0) lu.l_row_order.push_back(i);
  }
}

void LuKernel::assemble_nucleus_columns() {
  LuFactors& lu = *lu_;
  const int first = lu.num_triangular;
  const int nucleus = static_cast<int>(u_span_.size());
  if (nucleus == 0) return;
  // Length of each nucleus column of U: entries of B in triangular rows, then those of u_file_.
  Vector<int>& next = scratch_;
  next.resize(num_rows_);
  for (int k = first; k < lu.m; ++k) next[lu.sequence[k]] = 0;
  for (int e = 0; e < u_file_.used; ++e) ++next[lu.row_of_position[u_file_.index[e]]];
  EntryFile& file = lu.u_columns;
  long total = file.used;
  for (int k = first; k < lu.m; ++k) {
    const int row = lu.sequence[k];
    total += next[row] + column_of(lu.position_of_row[row]).size();
  }
  file.reserve(total);
  for (int k = first; k < lu.m; ++k) {
    const int row = lu.sequence[k];
    const Span column = column_of(lu.position_of_row[row]);
    const int begin = file.used;
    for (int e = column.begin; e < column.end; ++e) {
      const int i = matrix_->index[e];
      if (lu.place[i] >= first || matrix_->value[e] == 0.0) continue;
      file.index[file.used] = i;
      file.value[file.used++] = matrix_->value[e];
    }
    const int from = file.used;
    file.used += next[row];
    next[row] = from;
    lu.u_column[row] = {begin, file.used};
  }
  for (int k = 0; k < nucleus; ++k) {
    const int row = lu.sequence[first + k];
    for (int e = u_span_[k].begin; e < u_span_[k].end; ++e) {
      const int to = next[lu.row_of_position[u_file_.index[e]]]++;
      file.index[to] = row;
      file.value[to] = u_file_.value[e];
    }
  }
  work_ += 2.0 * u_file_.used;
}

void LuKernel::build_rows(const EntryFile& from, const Vector<Span>& columns,
                          const Vector<int>& order, EntryFile& to, Vector<Span>& rows) {
  const int m = num_rows_;
  std::fill(rows.begin(), rows.end(), Span{});
  to.reserve(from.used);
  to.used = from.used;
  if (from.used == 0) return;
  for (int e = 0; e < from.used; ++e) ++rows[from.index[e]].end;
  int total = 0;
  for (int k = 0; k < m; ++k) {
    Span& row = rows[order[k]];
    const int size = row.end;
    row = {total, total};
    total += size;
  }
  for (int k = 0; k < m; ++k) {
    const int j = order[k];
    const Span column = columns[j];
    for (int e = column.begin; e < column.end; ++e) {
      const int at = rows[from.index[e]].end++;
      to.index[at] = j;
      to.value[at] = from.value[e];
    }
  }
  work_ += 2.0 * from.used;
}

}  // namespace kelvo
