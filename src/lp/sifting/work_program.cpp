#include "lp/sifting/work_program.h"

#include "lp/sifting/candidates.h"

namespace kelvo {

void WorkProgram::copy_columns() {
  const SparseMatrix& a = whole_.columns;
  lp_.num_rows = whole_.num_rows;
  lp_.num_cols = static_cast<int>(columns_.size());
  lp_.cost.assign(lp_.num_vars(), 0.0);
  lp_.lower.assign(lp_.num_vars(), 0.0);
  lp_.upper.assign(lp_.num_vars(), 0.0);
  lp_.offset = whole_.offset;
  SparseMatrix& b = lp_.columns;
  b.num_major = lp_.num_cols;
  b.num_minor = lp_.num_rows;
  b.start.assign(1, 0);
  b.index.clear();
  b.value.clear();
  for (int k = 0; k < lp_.num_cols; ++k) {
    const int j = columns_[k];
    b.index.insert(b.index.end(), a.index.begin() + a.start[j], a.index.begin() + a.start[j + 1]);
    b.value.insert(b.value.end(), a.value.begin() + a.start[j], a.value.begin() + a.start[j + 1]);
    b.start.push_back(static_cast<int>(b.index.size()));
    lp_.cost[k] = whole_.cost[j];
    lp_.lower[k] = whole_.lower[j];
    lp_.upper[k] = whole_.upper[j];
  }
  lp_.rows = transpose(b);
}

void WorkProgram::shift_limits(const Vector<char>& marks, const Vector<int>& status) {
  const SparseMatrix& a = whole_.columns;
  const ColumnSides sides(whole_, status);
  double* const lower = lp_.lower.data() + lp_.num_cols;
  double* const upper = lp_.upper.data() + lp_.num_cols;
  std::copy(whole_.lower.begin() + whole_.num_cols, whole_.lower.end(), lower);
  std::copy(whole_.upper.begin() + whole_.num_cols, whole_.upper.end(), upper);
  for (int j = 0; j < whole_.num_cols; ++j) {
    const double x = marks[j] != 0 ? 0.0 : sides.place_of(j);
    if (x == 0.0) continue;
    lp_.offset += whole_.cost[j] * x;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      lower[a.index[k]] += a.value[k] * x;
      upper[a.index[k]] += a.value[k] * x;
    }
  }
}

void WorkProgram::take(const Vector<char>& marks, const Vector<int>& status) {
  simplex_.reset();
  columns_.clear();
  for (int j = 0; j < whole_.num_cols; ++j) {
    if (marks[j] != 0) columns_.push_back(j);
  }
  copy_columns();
  shift_limits(marks, status);
  simplex_ = make_owned<Simplex>(lp_);
  Vector<int> start(lp_.num_vars());
  for (int k = 0; k < lp_.num_cols; ++k) start[k] = status[columns_[k]];
  std::copy(status.begin() + whole_.num_cols, status.end(), start.begin() + lp_.num_cols);
  simplex_->set_basis(start);
}

void WorkProgram::copy_statuses(Vector<int>& status) const {
  const Vector<int>& found = simplex_->status();
  for (int k = 0; k < lp_.num_cols; ++k) status[columns_[k]] = found[k];
  std::copy(found.begin() + lp_.num_cols, found.end(), status.begin() + whole_.num_cols);
}

}  // namespace kelvo
