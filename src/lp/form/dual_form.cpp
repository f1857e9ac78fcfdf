#include "lp/form/dual_form.h"

#include <cmath>

#include "lp/form/verification.h"

namespace kelvo {

namespace {

/// Limits of the activity of a row.
double activity_lower(const LpProblem& lp, int i) {
  return -lp.upper[lp.num_cols + i];
}
double activity_upper(const LpProblem& lp, int i) {
  return -lp.lower[lp.num_cols + i];
}

bool is_fixed(const LpProblem& lp, int j) {
  return lp.lower[j] == lp.upper[j];
}

/// Numbers of the model, so that sums of them keep what doubles would lose.
double row_at(const LpProblem& lp, int i, const Vector<double>& x) {
  long double sum = 0.0L;
  for (int k = lp.rows.start[i]; k < lp.rows.start[i + 1]; ++k) {
    sum += static_cast<long double>(lp.rows.value[k]) * x[lp.rows.index[k]];
  }
  return static_cast<double>(sum);
}

}  // namespace

DualForm::DualForm(const LpProblem& primal) {
  dual_.columns.start.assign(1, 0);
  place_columns(primal);
  add_row_columns(primal);
  add_bound_columns(primal);
  dual_.num_cols = static_cast<int>(columns_.size());
  dual_.num_rows = static_cast<int>(rows_.size());
  dual_.columns.num_major = dual_.num_cols;
  dual_.columns.num_minor = dual_.num_rows;
  dual_.rows = transpose(dual_.columns);
  // Limits of the rows, as bounds of their logicals.
  for (const int j : rows_) {
    const bool bounded = std::isfinite(primal.lower[j]) || std::isfinite(primal.upper[j]);
    dual_.cost.push_back(0.0);
    dual_.lower.push_back(bounded && !std::isfinite(primal.lower[j]) ? -kInf : -primal.cost[j]);
    dual_.upper.push_back(std::isfinite(primal.lower[j]) ? kInf : -primal.cost[j]);
  }
}

void DualForm::place_columns(const LpProblem& primal) {
  row_of_column_.assign(primal.num_cols, -1);
  long double constant = primal.offset;
  for (int j = 0; j < primal.num_cols; ++j) {
    const double low = primal.lower[j], high = primal.upper[j];
    const double p = std::isfinite(low) ? low : std::isfinite(high) ? high : 0.0;
    point_.push_back(p);
    constant += static_cast<long double>(primal.cost[j]) * p;
    if (is_fixed(primal, j)) continue;
    row_of_column_[j] = static_cast<int>(rows_.size());
    rows_.push_back(j);
  }
  dual_.offset = static_cast<double>(-constant);
}

void DualForm::append(ColumnOrigin origin, double cost, double lower, double upper) {
  columns_.push_back(origin);
  dual_.cost.push_back(cost + 0.0);
  dual_.lower.push_back(lower);
  dual_.upper.push_back(upper);
}

void DualForm::append_row_entries(const LpProblem& primal, int row, double sign) {
  for (int k = primal.rows.start[row]; k < primal.rows.start[row + 1]; ++k) {
    const int at = row_of_column_[primal.rows.index[k]];
    if (at < 0) continue;
    dual_.columns.index.push_back(at);
    dual_.columns.value.push_back(sign * primal.rows.value[k]);
  }
  dual_.columns.start.push_back(static_cast<int>(dual_.columns.index.size()));
}

void DualForm::add_row_columns(const LpProblem& primal) {
  for (int i = 0; i < primal.num_rows; ++i) {
    const double low = activity_lower(primal, i), high = activity_upper(primal, i);
    const bool has_low = std::isfinite(low), has_high = std::isfinite(high);
    if (!has_low && !has_high) continue;
    const double shift = row_at(primal, i, point_);
    const bool ranged = has_low && has_high && low != high;
    const double limit = (has_low ? low : high) - shift;
    append({ColumnKind::row, i}, -limit, has_low && (ranged || !has_high) ? 0.0 : -kInf,
           has_low ? kInf : 0.0);
    append_row_entries(primal, i, 1.0);
    if (!ranged) continue;
    append({ColumnKind::row_upper, i}, high - shift, 0.0, kInf);
    append_row_entries(primal, i, -1.0);
  }
}

void DualForm::add_bound_columns(const LpProblem& primal) {
  for (const int j : rows_) {
    if (!std::isfinite(primal.lower[j]) || !std::isfinite(primal.upper[j])) continue;
    append({ColumnKind::column_bound, j}, primal.upper[j] - primal.lower[j], 0.0, kInf);
    dual_.columns.index.push_back(row_of_column_[j]);
    dual_.columns.value.push_back(-1.0);
    dual_.columns.start.push_back(static_cast<int>(dual_.columns.index.size()));
  }
}

void DualForm::recover(const LpProblem& primal, const LpSolution& dual,
                       LpSolution& solution) const {
  solution.layers = dual.layers;
  solution.x = point_;
  solution.y.assign(primal.num_rows, 0.0);
  for (int j = 0; j < primal.num_cols; ++j) {
    if (row_of_column_[j] >= 0) solution.x[j] -= dual.y[row_of_column_[j]];
  }
  for (int k = 0; k < dual_.num_cols; ++k) {
    const ColumnOrigin& origin = columns_[k];
    if (origin.kind == ColumnKind::column_bound) continue;
    const bool upper = origin.kind == ColumnKind::row_upper;
    solution.y[origin.line] += upper ? -dual.x[k] : dual.x[k];
  }
  solution.z = reduced_costs(ProgramView(primal), solution.y);
  if (dual.layers.basis) recover_basis(primal, dual, solution);
}

/// The complementary basis; what is nonbasic in it is exactly at its bound.
void DualForm::recover_basis(const LpProblem& primal, const LpSolution& dual,
                             LpSolution& solution) const {
  const int n = primal.num_cols;
  solution.status.assign(primal.num_vars(), kBasic);
  for (int j = 0; j < n; ++j) {
    const int row = row_of_column_[j];
    if (row >= 0 && dual.status[dual_.num_cols + row] != kBasic) continue;
    solution.status[j] = std::isfinite(primal.lower[j])   ? kAtLower
                         : std::isfinite(primal.upper[j]) ? kAtUpper
                                                          : kFreeSuper;
    solution.x[j] = point_[j];
  }
  for (int k = 0; k < dual_.num_cols; ++k) {
    const ColumnOrigin& origin = columns_[k];
    if (dual.status[k] != kBasic) continue;
    if (origin.kind == ColumnKind::column_bound) {
      solution.status[origin.line] = kAtUpper;
      solution.x[origin.line] = primal.upper[origin.line];
      continue;
    }
    // The logical of a row at its upper limit is at its lower bound.
    const bool at_upper =
        origin.kind == ColumnKind::row_upper || !std::isfinite(activity_lower(primal, origin.line));
    solution.status[n + origin.line] = at_upper ? kAtLower : kAtUpper;
  }
}

}  // namespace kelvo
