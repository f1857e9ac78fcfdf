// Appending what is not plain rows and columns: sets, indicators, cuts, quadratic constraints, and
// the priority order. Each makes room for everything first, which may throw, and then fills it in.
#include "prob/model/model_edit.h"

namespace kelvo {
namespace {

/// Appends lines to a matrix that has the room. Line k has the entries begin[k] .. begin[k + 1] - 1
/// (null: none), the last one those up to `entries`.
void append_lines(SparseMatrix& matrix, int count, const int* begin, int entries, const int* index,
                  const double* value) {
  const int first = begin != nullptr && count > 0 ? begin[0] : 0;
  const int base = matrix.num_nonzeros() - first;
  for (int k = 0; k < count; ++k) {
    const bool last = k + 1 == count;
    const int end = begin == nullptr ? first : (last ? entries : begin[k + 1]);
    matrix.start.push_back(base + end);
  }
  if (begin != nullptr && count > 0) {
    matrix.index.insert(matrix.index.end(), index + first, index + entries);
    matrix.value.insert(matrix.value.end(), value + first, value + entries);
  }
  matrix.num_major += count;
}

void make_room_for_lines(SparseMatrix& matrix, int count, int entries) {
  make_room(matrix.start, count);
  make_room(matrix.index, entries);
  make_room(matrix.value, entries);
}

template <class T>
void assign_entries(Vector<T>& to, const T* from, int count) {
  if (count > 0) to.assign(from, from + count);
}

}  // namespace

void append_sets(SosSets& sets, const SetBlock& block, int num_cols) {
  const int size = sets.size();
  NameStore fresh;
  const bool named =
      prepare_names(sets.names, fresh, NameKind::set, size, block.names, block.count);
  make_room(sets.type, block.count);
  make_room_for_lines(sets.members, block.count, block.entries);
  // From here on nothing throws.
  sets.type.insert(sets.type.end(), block.type, block.type + block.count);
  append_lines(sets.members, block.count, block.begin, block.entries, block.columns, block.weights);
  sets.members.num_minor = num_cols;
  if (named) {
    append_prepared_names(sets.names, fresh, NameKind::set, size, block.names, block.count);
  }
}

void append_extra_rows(ExtraRows& rows, NameKind kind, const RowBlock& block, int num_cols) {
  const int size = rows.size();
  NameStore fresh;
  const bool named = prepare_names(rows.names, fresh, kind, size, block.names, block.count);
  make_room(rows.rhs, block.count);
  make_room(rows.sense, block.count);
  make_room_for_lines(rows.rows, block.count, block.entries);
  // From here on nothing throws.
  for (int k = 0; k < block.count; ++k) {
    rows.rhs.push_back(block.rhs != nullptr ? block.rhs[k] : 0.0);
    rows.sense.push_back(block.sense != nullptr ? block.sense[k] : 'E');
  }
  append_lines(rows.rows, block.count, block.begin, block.entries, block.columns, block.values);
  rows.rows.num_minor = num_cols;
  if (named) append_prepared_names(rows.names, fresh, kind, size, block.names, block.count);
}

void append_indicator(IndicatorConstraints& indicators, const IndicatorRow& row, int num_cols) {
  constexpr int kImplies = 1;  // the relation "->"
  constexpr int kFirstEntry = 0;
  RowBlock block;
  block.count = 1;
  block.rhs = &row.rhs;
  block.sense = &row.sense;
  block.names = &row.name;
  block.entries = row.entries;
  block.begin = &kFirstEntry;
  block.columns = row.columns;
  block.values = row.values;
  make_room(indicators.column, 1);
  make_room(indicators.complemented, 1);
  make_room(indicators.relation, 1);
  append_extra_rows(indicators.rows, NameKind::indicator, block, num_cols);
  // From here on nothing throws.
  indicators.column.push_back(row.column);
  indicators.complemented.push_back(row.complemented ? 1 : 0);
  indicators.relation.push_back(kImplies);
}

void append_quadratic_constraint(Model& model, const QuadraticRow& row) {
  const int size = static_cast<int>(model.quadratic_constraints.size());
  QuadraticConstraint constraint;
  constraint.rhs = row.rhs;
  constraint.sense = row.sense;
  assign_entries(constraint.linear_index, row.linear_columns, row.linear_entries);
  assign_entries(constraint.linear_value, row.linear_values, row.linear_entries);
  assign_entries(constraint.quad_row, row.quadratic_rows, row.quadratic_entries);
  assign_entries(constraint.quad_col, row.quadratic_columns, row.quadratic_entries);
  assign_entries(constraint.quad_value, row.quadratic_values, row.quadratic_entries);
  NameStore fresh;
  const bool named =
      prepare_names(model.quadratic_names, fresh, NameKind::quadratic, size, &row.name, 1);
  make_room(model.quadratic_constraints, 1);
  // From here on nothing throws.
  model.quadratic_constraints.push_back(std::move(constraint));
  if (named) {
    append_prepared_names(model.quadratic_names, fresh, NameKind::quadratic, size, &row.name, 1);
  }
}

void assign_order(PriorityOrder& order, const OrderBlock& block, int num_cols) {
  PriorityOrder fresh;
  fresh.column.reserve(block.count);
  fresh.priority.reserve(block.count);
  fresh.direction.reserve(block.count);
  Vector<int> place(num_cols, -1);  // of each column in the new order
  for (int k = 0; k < block.count; ++k) {
    int& at = place[block.columns[k]];
    if (at < 0) {
      at = fresh.size();
      fresh.column.push_back(block.columns[k]);
      fresh.priority.push_back(0);
      fresh.direction.push_back(0);
    }
    fresh.priority[at] = block.priorities != nullptr ? block.priorities[k] : 0;
    fresh.direction[at] = block.directions != nullptr ? block.directions[k] : 0;
  }
  order = std::move(fresh);
}

}  // namespace kelvo
