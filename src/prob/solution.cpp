#include "prob/solution.h"

#include "prob/data/column_types.h"
#include "prob/model/row_limits.h"

namespace kelvo {

void StoredBasis::forget_norms() noexcept {
  col_norm.clear();
  row_norm.clear();
  head.clear();
  head_norm.clear();
  x.clear();
}

namespace {

double outside(double value, double lower, double upper) {
  if (value > upper) return value - upper;
  if (value < lower) return value - lower;
  return 0.0;
}

bool may_be_zero(const Model& model, int column) {
  return !model.column_type.empty() && is_semi_type(model.column_type[column]);
}

}  // namespace

void compute_row_activities(const Model& model, const double* x, Vector<double>& activity) {
  Vector<long double> sum(model.num_rows, 0.0L);
  const ColumnStore& matrix = model.matrix;
  for (int j = 0; j < model.num_cols; ++j) {
    const long double xj = x[j];
    if (xj == 0.0L) continue;
    const int end = matrix.start[j] + matrix.count[j];
    for (int k = matrix.start[j]; k < end; ++k) sum[matrix.index[k]] += matrix.value[k] * xj;
  }
  activity.resize(model.num_rows);
  for (int i = 0; i < model.num_rows; ++i) activity[i] = static_cast<double>(sum[i]);
}

double row_slack(const Model& model, int row, double activity) {
  const double slack = model.rhs[row] - activity;
  return model.row_sense[row] == 'R' ? -slack : slack;
}

double row_infeasibility(const Model& model, int row, double activity) {
  const RowLimits limits = row_limits(model, row);
  return outside(activity, limits.lower, limits.upper);
}

double column_infeasibility(const Model& model, int column, double value) {
  if (value == 0.0 && may_be_zero(model, column)) return 0.0;
  return outside(value, finite_or_infinite(model.lower[column]),
                 finite_or_infinite(model.upper[column]));
}

double objective_value(const Model& model, const double* x) {
  long double sum = 0.0L;
  for (int j = 0; j < model.num_cols; ++j) {
    sum += static_cast<long double>(model.objective[j]) * x[j];
  }
  return static_cast<double>(sum);
}

}  // namespace kelvo
