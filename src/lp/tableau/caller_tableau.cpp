#include "lp/tableau/caller_tableau.h"

#include <algorithm>

#include "prob/model/row_limits.h"

namespace kelvo {

CallerTableau::CallerTableau(const Model& model, WorkingLp& working)
    : model_(model),
      scaling_(working.scaling()),
      lp_(working.lp()),
      simplex_(working.simplex()),
      tableau_(working.simplex()),
      header_(simplex_.header().data()),
      m_(lp_.num_rows),
      n_(lp_.num_cols),
      values_(simplex_.values().data()) {}

int CallerTableau::position_of(int v) const {
  if (simplex_.status()[v] != kBasic) return -1;
  return static_cast<int>(std::find(header_, header_ + m_, v) - header_);
}

int CallerTableau::status(int v) const {
  const int code = simplex_.status()[v];
  if (sign(v) > 0.0 || (code != kAtLower && code != kAtUpper)) return code;
  return code == kAtLower ? kAtUpper : kAtLower;
}

double CallerTableau::lower(int v) const {
  if (!is_slack(v)) return finite_or_infinite(model_.lower[v]);
  const int row = v - n_;
  switch (model_.row_sense[row]) {
    case 'G':
      return -kInf;
    case 'R':
      return model_.range.empty() ? 0.0 : std::min(0.0, finite_or_infinite(model_.range[row]));
    default:
      return 0.0;
  }
}

double CallerTableau::upper(int v) const {
  if (!is_slack(v)) return finite_or_infinite(model_.upper[v]);
  const int row = v - n_;
  switch (model_.row_sense[row]) {
    case 'L':
      return kInf;
    case 'R':
      return model_.range.empty() ? 0.0 : std::max(0.0, finite_or_infinite(model_.range[row]));
    default:
      return 0.0;
  }
}

double CallerTableau::value(int v) const {
  const double unscaled = values_[v] / scaling_.variable_factor(v, n_);
  if (!is_slack(v)) return unscaled;
  // A nonbasic slack stands exactly at its bound, which the rounding of rhs - a x would blur.
  const int code = status(v);
  if (code == kAtLower) return lower(v);
  if (code == kAtUpper) return upper(v);
  return sign(v) * (model_.rhs[v - n_] + unscaled);
}

double CallerTableau::reduced_cost(int v) const {
  return simplex_.status()[v] == kBasic ? 0.0 : simplex_.reduced_costs()[v] * factor(v);
}

const WorkVector& CallerTableau::solve_column(WorkVector& x) {
  constexpr double kUnknownDensity = 0.1;
  tableau_.ftran(x, kUnknownDensity);
  const int count = x.is_dense() ? m_ : x.count;
  for (int k = 0; k < count; ++k) {
    const int p = x.is_dense() ? k : x.index[k];
    if (x.value[p] != 0.0) x.value[p] /= factor(header_[p]);
  }
  return x;
}

const WorkVector& CallerTableau::column(int v) {
  WorkVector& x = tableau_.empty_column();
  if (simplex_.status()[v] == kBasic) {
    x.insert(position_of(v), 1.0);
    return x;
  }
  tableau_.load_column(v, x);
  const double f = factor(v);
  for (int k = 0; k < x.count; ++k) x.value[x.index[k]] *= f;
  return solve_column(x);
}

const WorkVector& CallerTableau::inverse_column(int row) {
  WorkVector& x = tableau_.empty_column();
  x.insert(row, 1.0 / scaling_.row_factor(row));
  return solve_column(x);
}

const WorkVector& CallerTableau::inverse_row(int position) {
  WorkVector& y = tableau_.inverse_row(position);
  const double f = factor(header_[position]);
  for (int k = 0; k < y.count; ++k) {
    const int i = y.index[k];
    y.value[i] /= f * scaling_.row_factor(i);
  }
  return y;
}

void CallerTableau::structural_row(int position, double* row) {
  const WorkVector& y = tableau_.inverse_row(position);
  std::fill(row, row + n_, 0.0);
  const SparseMatrix& rows = lp_.rows;
  for (int k = 0; k < y.count && lp_.has_rows(); ++k) {
    const int i = y.index[k];
    for (int e = rows.start[i]; e < rows.start[i + 1]; ++e) {
      row[rows.index[e]] += y.value[i] * rows.value[e];
    }
  }
  const SparseMatrix& columns = lp_.columns;
  for (int j = 0; j < n_ && !lp_.has_rows(); ++j) {
    for (int e = columns.start[j]; e < columns.start[j + 1]; ++e) {
      row[j] += y.value[columns.index[e]] * columns.value[e];
    }
  }
  const double divisor = factor(header_[position]);
  const Vector<int>& status = simplex_.status();
  for (int j = 0; j < n_; ++j) {
    row[j] = status[j] == kBasic ? 0.0 : row[j] * factor(j) / divisor;
  }
  if (header_[position] < n_) row[header_[position]] = 1.0;
}

void CallerTableau::ftran(double* x) {
  WorkVector& work = tableau_.empty_vector();
  for (int i = 0; i < m_; ++i) {
    if (x[i] != 0.0) work.insert(i, x[i] / scaling_.row_factor(i));
  }
  tableau_.ftran(work);
  for (int p = 0; p < m_; ++p) x[p] = work.value[p] / factor(header_[p]);
  work.clear();
}

void CallerTableau::btran(double* y) {
  WorkVector& work = tableau_.empty_vector();
  for (int p = 0; p < m_; ++p) {
    if (y[p] != 0.0) work.insert(p, y[p] / factor(header_[p]));
  }
  tableau_.btran(work);
  for (int i = 0; i < m_; ++i) y[i] = work.value[i] / scaling_.row_factor(i);
  work.clear();
}

}  // namespace kelvo
