// Deleting rows and columns. Everything is compacted in place, so nothing can fail.
#include <algorithm>

#include "prob/model/model_edit.h"

namespace kelvo {
namespace {

/// Keeps the elements i with new_index[i] >= 0.
template <class T>
void keep(Vector<T>& values, const int* new_index) noexcept {
  if (values.empty()) return;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (new_index[i] >= 0) values[kept++] = std::move(values[i]);
  }
  values.erase(values.begin() + static_cast<std::ptrdiff_t>(kept), values.end());
}

/// Keeps the major lines with keep_line(line) and renumbers the minor indices, dropping entries of
/// deleted ones.
template <class KeepLine>
void compact(SparseMatrix& matrix, KeepLine keep_line, const int* new_index,
             int num_minor) noexcept {
  int lines = 0;
  int entries = 0;
  for (int line = 0; line < matrix.num_major; ++line) {
    const int from = matrix.start[line];
    const int to = matrix.start[line + 1];
    if (!keep_line(line)) continue;
    matrix.start[lines++] = entries;
    for (int p = from; p < to; ++p) {
      const int place = new_index[matrix.index[p]];
      if (place < 0) continue;
      matrix.index[entries] = place;
      matrix.value[entries++] = matrix.value[p];
    }
  }
  matrix.start[lines] = entries;
  matrix.start.resize(lines + 1);
  matrix.index.resize(entries);
  matrix.value.resize(entries);
  matrix.num_major = lines;
  matrix.num_minor = num_minor;
}

void delete_columns(QuadraticConstraint& constraint, const int* new_index) noexcept {
  int kept = 0;
  for (std::size_t p = 0; p < constraint.linear_index.size(); ++p) {
    const int j = new_index[constraint.linear_index[p]];
    if (j < 0) continue;
    constraint.linear_index[kept] = j;
    constraint.linear_value[kept++] = constraint.linear_value[p];
  }
  constraint.linear_index.resize(kept);
  constraint.linear_value.resize(kept);
  kept = 0;
  for (std::size_t p = 0; p < constraint.quad_row.size(); ++p) {
    const int i = new_index[constraint.quad_row[p]];
    const int j = new_index[constraint.quad_col[p]];
    if (i < 0 || j < 0) continue;
    constraint.quad_row[kept] = i;
    constraint.quad_col[kept] = j;
    constraint.quad_value[kept++] = constraint.quad_value[p];
  }
  constraint.quad_row.resize(kept);
  constraint.quad_col.resize(kept);
  constraint.quad_value.resize(kept);
}

/// The constraints whose binary column stays. Their names are filtered by the same marks, which are
/// kept in the `complemented` array meanwhile.
void delete_columns(IndicatorConstraints& indicators, const int* new_index, int num_cols) noexcept {
  constexpr char kGone = -1;
  const int old_size = indicators.size();
  for (int k = 0; k < old_size; ++k) {
    int& column = indicators.column[k];
    if (column < 0) continue;
    column = new_index[column];
    if (column < 0) indicators.complemented[k] = kGone;
  }
  const auto stays = [&](int k) { return indicators.complemented[k] != kGone; };
  compact(indicators.rows.rows, stays, new_index, num_cols);
  if (indicators.size() == old_size) return;
  int kept = 0;
  for (int k = 0; k < old_size; ++k) {
    if (!stays(k)) continue;
    indicators.column[kept] = indicators.column[k];
    indicators.relation[kept] = indicators.relation[k];
    indicators.rows.rhs[kept] = indicators.rows.rhs[k];
    indicators.rows.sense[kept++] = indicators.rows.sense[k];
  }
  indicators.column.resize(kept);
  indicators.relation.resize(kept);
  indicators.rows.rhs.resize(kept);
  indicators.rows.sense.resize(kept);
  if (indicators.rows.names.present()) indicators.rows.names.keep_if(stays);
  auto& marks = indicators.complemented;
  marks.erase(std::remove(marks.begin(), marks.end(), kGone), marks.end());
}

/// Makes a matrix empty without asking for memory.
void clear(SparseMatrix& matrix) noexcept {
  matrix.start.resize(1);
  matrix.start[0] = 0;
  matrix.index.clear();
  matrix.value.clear();
  matrix.num_major = matrix.num_minor = 0;
}

void delete_columns(PriorityOrder& order, const int* new_index) noexcept {
  int kept = 0;
  for (int k = 0; k < order.size(); ++k) {
    const int column = new_index[order.column[k]];
    if (column < 0) continue;
    order.column[kept] = column;
    order.priority[kept] = order.priority[k];
    order.direction[kept++] = order.direction[k];
  }
  order.column.resize(kept);
  order.priority.resize(kept);
  order.direction.resize(kept);
}

/// Keeps the elements k with keep[k] != 0.
template <class T>
void keep_marked(Vector<T>& values, const char* marks) noexcept {
  std::size_t kept = 0;
  for (std::size_t k = 0; k < values.size(); ++k) {
    if (marks[k] == 0) continue;
    if (kept != k) values[kept] = std::move(values[k]);  // moving onto itself would empty a vector
    ++kept;
  }
  values.erase(values.begin() + static_cast<std::ptrdiff_t>(kept), values.end());
}

/// Keeps the marked major lines as they are.
void keep_marked(SparseMatrix& matrix, const char* marks) noexcept {
  int lines = 0;
  int entries = 0;
  for (int line = 0; line < matrix.num_major; ++line) {
    const int from = matrix.start[line];
    const int to = matrix.start[line + 1];
    if (marks[line] == 0) continue;
    matrix.start[lines++] = entries;
    for (int p = from; p < to; ++p) {
      matrix.index[entries] = matrix.index[p];
      matrix.value[entries++] = matrix.value[p];
    }
  }
  matrix.start[lines] = entries;
  matrix.start.resize(lines + 1);
  matrix.index.resize(entries);
  matrix.value.resize(entries);
  matrix.num_major = lines;
}

}  // namespace

void clear(ExtraRows& rows) noexcept {
  rows.rhs.clear();
  rows.sense.clear();
  clear(rows.rows);
  rows.names.clear();
}

void clear(SosSets& sets) noexcept {
  sets.type.clear();
  clear(sets.members);
  sets.names.clear();
}

void clear(IndicatorConstraints& indicators) noexcept {
  indicators.column.clear();
  indicators.complemented.clear();
  indicators.relation.clear();
  clear(indicators.rows);
}

void clear(PriorityOrder& order) noexcept {
  order.column.clear();
  order.priority.clear();
  order.direction.clear();
}

void clear_quadratic(Model& model) noexcept {
  clear(model.quadratic);
}

void clear_integer_data(Model& model) noexcept {
  model.column_type.clear();
  clear(model.sos);
  clear(model.indicators);
  clear(model.order);
  clear(model.user_cuts);
  clear(model.lazy_constraints);
}

void keep_sets(SosSets& sets, const char* keep) noexcept {
  keep_marked(sets.type, keep);
  keep_marked(sets.members, keep);
  if (sets.names.present()) sets.names.keep_marked(keep);
}

void keep_indicators(IndicatorConstraints& indicators, const char* keep) noexcept {
  keep_marked(indicators.column, keep);
  keep_marked(indicators.complemented, keep);
  keep_marked(indicators.relation, keep);
  keep_marked(indicators.rows.rhs, keep);
  keep_marked(indicators.rows.sense, keep);
  keep_marked(indicators.rows.rows, keep);
  if (indicators.rows.names.present()) indicators.rows.names.keep_marked(keep);
}

void keep_quadratic_constraints(Model& model, const char* keep) noexcept {
  keep_marked(model.quadratic_constraints, keep);
  if (model.quadratic_names.present()) model.quadratic_names.keep_marked(keep);
}

void delete_rows(Model& model, const int* new_index) noexcept {
  model.matrix.delete_rows(new_index);
  keep(model.rhs, new_index);
  keep(model.row_sense, new_index);
  keep(model.range, new_index);
  if (model.row_names.present()) {
    model.row_names.keep_if([&](int i) { return new_index[i] >= 0; });
  }
  model.num_rows = static_cast<int>(model.rhs.size());
}

void delete_columns(Model& model, const int* new_index) noexcept {
  model.matrix.delete_columns(new_index);
  keep(model.objective, new_index);
  keep(model.lower, new_index);
  keep(model.upper, new_index);
  keep(model.column_type, new_index);
  const auto stays = [&](int j) { return new_index[j] >= 0; };
  if (model.col_names.present()) model.col_names.keep_if(stays);
  model.num_cols = static_cast<int>(model.objective.size());

  if (model.quadratic.num_major > 0) {
    compact(model.quadratic, stays, new_index, model.num_cols);
  }
  for (QuadraticConstraint& constraint : model.quadratic_constraints) {
    delete_columns(constraint, new_index);
  }
  compact(
      model.sos.members, [](int) { return true; }, new_index, model.num_cols);
  delete_columns(model.indicators, new_index, model.num_cols);
  delete_columns(model.order, new_index);
  clear(model.user_cuts);
  clear(model.lazy_constraints);
}

}  // namespace kelvo
