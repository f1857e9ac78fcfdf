#include "prob/model/model_edit.h"

#include <cmath>

#include "prob/model/default_names.h"

namespace kelvo {
namespace {

/// Adds `count` elements to a vector that has the room: the given ones, or the default.
template <class T>
void append_values(Vector<T>& to, const T* given, int count, T default_value) {
  if (given != nullptr) {
    to.insert(to.end(), given, given + count);
  } else {
    to.insert(to.end(), count, default_value);
  }
}

bool has_ranged_row(const RowBlock& block) {
  if (block.sense == nullptr) return false;
  for (int k = 0; k < block.count; ++k) {
    if (block.sense[k] == 'R') return true;
  }
  return false;
}

void append_ranges(Model& model, const RowBlock& block) {
  for (int k = 0; k < block.count; ++k) {
    const bool ranged = block.sense != nullptr && block.sense[k] == 'R' && block.range != nullptr;
    model.range.push_back(ranged ? block.range[k] : 0.0);
  }
}

void zero_small(Vector<double>& values, double eps) noexcept {
  for (double& v : values) {
    if (std::fabs(v) < eps) v = 0.0;
  }
}

}  // namespace

void append_rows(Model& model, const RowBlock& block) {
  NameStore fresh_names;
  const bool named = prepare_names(model.row_names, fresh_names, NameKind::row, model.num_rows,
                                   block.names, block.count);
  const bool with_ranges = !model.range.empty() || has_ranged_row(block);
  make_room(model.rhs, block.count);
  make_room(model.row_sense, block.count);
  if (with_ranges) {
    make_room(model.range, model.rhs.size() - model.range.size() + block.count);
  }
  model.matrix.append_rows(model.num_rows, block.count, block.begin, block.entries, block.columns,
                           block.values);
  // From here on nothing throws.
  append_values(model.rhs, block.rhs, block.count, 0.0);
  append_values(model.row_sense, block.sense, block.count, 'E');
  if (with_ranges) {
    model.range.resize(model.num_rows, 0.0);
    append_ranges(model, block);
  }
  if (named) {
    append_prepared_names(model.row_names, fresh_names, NameKind::row, model.num_rows, block.names,
                          block.count);
  }
  model.num_rows += block.count;
}

void append_columns(Model& model, const ColumnBlock& block) {
  NameStore fresh_names;
  const bool named = prepare_names(model.col_names, fresh_names, NameKind::column, model.num_cols,
                                   block.names, block.count);
  const bool typed = !model.column_type.empty() || block.type != nullptr;
  make_room(model.objective, block.count);
  make_room(model.lower, block.count);
  make_room(model.upper, block.count);
  if (typed) {
    make_room(model.column_type, model.objective.size() - model.column_type.size() + block.count);
  }
  const bool quadratic = model.quadratic.num_major > 0;
  if (quadratic) make_room(model.quadratic.start, block.count);
  model.matrix.append_columns(block.count, block.begin, block.entries, block.rows, block.values);
  // From here on nothing throws.
  append_values(model.objective, block.objective, block.count, 0.0);
  append_values(model.lower, block.lower, block.count, 0.0);
  append_values(model.upper, block.upper, block.count, kInfiniteBound);
  if (typed) {
    model.column_type.resize(model.num_cols, 'C');
    append_values(model.column_type, block.type, block.count, 'C');
  }
  if (quadratic) {
    model.quadratic.start.insert(model.quadratic.start.end(), block.count,
                                 model.quadratic.start.back());
    model.quadratic.num_major += block.count;
    model.quadratic.num_minor += block.count;
  }
  if (named) {
    append_prepared_names(model.col_names, fresh_names, NameKind::column, model.num_cols,
                          block.names, block.count);
  }
  model.num_cols += block.count;
}

void ensure_ranges(Model& model) {
  model.range.resize(model.num_rows, 0.0);
}

void change_sense(Model& model, int row, char sense) noexcept {
  model.row_sense[row] = sense;
  if (sense != 'R' && !model.range.empty()) model.range[row] = 0.0;
}

void remove_negligible(Model& model, double eps) noexcept {
  model.matrix.remove_small(eps);
  zero_small(model.objective, eps);
  zero_small(model.rhs, eps);
  zero_small(model.range, eps);
  zero_small(model.lower, eps);
  zero_small(model.upper, eps);
}

}  // namespace kelvo
