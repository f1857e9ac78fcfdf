#include "lp/solve/model_to_lp.h"

#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

const char* model_column_name(const void* context, int column) {
  return static_cast<const Model*>(context)->col_names[column];
}

const char* model_row_name(const void* context, int row) {
  return static_cast<const Model*>(context)->row_names[row];
}

void set_names(LpProblem& lp, const Model& model) {
  lp.column_name = model.col_names.present() ? model_column_name : nullptr;
  lp.row_name = model.row_names.present() ? model_row_name : nullptr;
  lp.name_context = &model;
}

/// Stores a value, noting whether it differs from what was there.
void put(double& slot, double value, bool& changed) {
  if (slot == value) return;
  slot = value;
  changed = true;
}

/// Appends column j without its zeros; entries of the same row, which an unordered column may hold
/// several times, are added up.
void append_column(const ColumnStore& matrix, int j, SparseMatrix& columns, Vector<int>& place) {
  const int begin = columns.start[j];
  const int end = matrix.start[j] + matrix.count[j];
  for (int k = matrix.start[j]; k < end; ++k) {
    if (matrix.value[k] == 0.0) continue;
    const int row = matrix.index[k];
    if (place[row] >= begin) {
      columns.value[place[row]] += matrix.value[k];
      continue;
    }
    place[row] = static_cast<int>(columns.index.size());
    columns.index.push_back(row);
    columns.value.push_back(matrix.value[k]);
  }
  columns.start.push_back(static_cast<int>(columns.index.size()));
}

int slack_at_end(const Model& model, int row, int logical_status) {
  // The slack of a ranged row runs against its logical.
  if (model.row_sense[row] == 'R') return logical_status == kAtLower ? kAtUpper : kAtLower;
  return kAtLower;
}

int logical_at_end(const Model& model, int row, int slack_status) {
  switch (model.row_sense[row]) {
    case 'R':
      return slack_status == kAtUpper ? kAtLower : kAtUpper;
    case 'G':
      return kAtUpper;
    default:
      return kAtLower;
  }
}

}  // namespace

LpProblem make_columnwise_lp(const Model& model) {
  LpProblem lp;
  lp.num_rows = model.num_rows;
  lp.num_cols = model.num_cols;
  const ColumnStore& matrix = model.matrix;
  int nonzeros = 0;
  for (int j = 0; j < model.num_cols; ++j) nonzeros += matrix.count[j];

  SparseMatrix& columns = lp.columns;
  columns.num_major = model.num_cols;
  columns.num_minor = model.num_rows;
  columns.start.reserve(model.num_cols + 1);
  columns.index.reserve(nonzeros);
  columns.value.reserve(nonzeros);
  Vector<int> place(model.num_rows, -1);  // of the row's last entry seen
  for (int j = 0; j < model.num_cols; ++j) append_column(matrix, j, columns, place);
  lp.cost.assign(lp.num_vars(), 0.0);
  lp.lower.assign(lp.num_vars(), 0.0);
  lp.upper.assign(lp.num_vars(), 0.0);
  refresh_costs_and_bounds(lp, Scaling(), model);
  return lp;
}

LpProblem make_lp_problem(const Model& model) {
  LpProblem lp = make_columnwise_lp(model);
  lp.rows = transpose(lp.columns);
  return lp;
}

bool has_matrix_of(const LpProblem& lp, const Scaling& scaling, const Model& model) {
  if (lp.num_rows != model.num_rows || lp.num_cols != model.num_cols) return false;
  const ColumnStore& matrix = model.matrix;
  for (int j = 0; j < model.num_cols; ++j) {
    const double factor = scaling.variable_factor(j, lp.num_cols);
    int at = lp.columns.start[j];
    const int at_end = lp.columns.start[j + 1];
    const int end = matrix.start[j] + matrix.count[j];
    for (int k = matrix.start[j]; k < end; ++k) {
      if (matrix.value[k] == 0.0) continue;
      const int row = matrix.index[k];
      if (at == at_end || lp.columns.index[at] != row ||
          lp.columns.value[at] != matrix.value[k] / scaling.row_factor(row) / factor) {
        return false;
      }
      ++at;
    }
    if (at != at_end) return false;
  }
  return true;
}

LpChanges refresh_costs_and_bounds(LpProblem& lp, const Scaling& scaling, const Model& model) {
  set_names(lp, model);
  LpChanges changes;
  for (int j = 0; j < lp.num_cols; ++j) {
    const double factor = scaling.variable_factor(j, lp.num_cols);
    put(lp.cost[j], model.sense * model.objective[j] / factor, changes.costs);
    put(lp.lower[j], finite_or_infinite(model.lower[j]) * factor, changes.bounds);
    put(lp.upper[j], finite_or_infinite(model.upper[j]) * factor, changes.bounds);
  }
  for (int i = 0; i < lp.num_rows; ++i) {
    const int v = lp.num_cols + i;
    const double factor = scaling.variable_factor(v, lp.num_cols);
    const RowLimits limits = row_limits(model, i);
    put(lp.lower[v], -limits.upper * factor, changes.bounds);
    put(lp.upper[v], -limits.lower * factor, changes.bounds);
  }
  return changes;
}

void close_crossed_bounds(LpProblem& lp) {
  for (int v = 0; v < lp.num_vars(); ++v) {
    if (lp.lower[v] > lp.upper[v]) {
      lp.lower[v] = lp.upper[v] = 0.5 * lp.lower[v] + 0.5 * lp.upper[v];
    }
  }
}

void stored_to_lp_status(const StoredBasis& basis, const Model& model, Vector<int>& status) {
  status.assign(basis.col_status.begin(), basis.col_status.end());
  status.reserve(model.num_cols + model.num_rows);
  for (int i = 0; i < model.num_rows; ++i) {
    const int code = basis.row_status[i];
    status.push_back(code == kAtLower || code == kAtUpper ? logical_at_end(model, i, code) : code);
  }
}

void lp_to_stored_status(const Vector<int>& status, const Model& model, StoredBasis& basis) {
  const int n = model.num_cols;
  basis.col_status.assign(status.begin(), status.begin() + n);
  basis.row_status.resize(model.num_rows);
  for (int i = 0; i < model.num_rows; ++i) {
    const int code = status[n + i];
    basis.row_status[i] =
        code == kAtLower || code == kAtUpper ? slack_at_end(model, i, code) : code;
  }
  basis.present = true;
}

}  // namespace kelvo
