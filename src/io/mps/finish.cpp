// From what was read to the model: lines that are no plain rows move to their own places.
#include <algorithm>

#include "io/mps/parser.h"

namespace kelvo {
namespace {

/// Gives unused room back when it is more than what is used.
template <class T>
void trim(Vector<T>& vector) {
  if (vector.capacity() > 2 * vector.size()) vector.shrink_to_fit();
}

}  // namespace

void MpsParser::finish() {
  name_unnamed_sets();
  model_.sos.members.num_minor = model_.num_cols;
  column_start_.push_back(static_cast<int>(entry_line_.size()));
  const auto is_row = [](MpsLineKind kind) { return kind == MpsLineKind::row; };
  if (!std::all_of(line_kind_.begin(), line_kind_.end(), is_row)) move_special_lines();

  model_.num_rows = static_cast<int>(model_.rhs.size());
  row_names_.keep_if([&](int row) {
    return rows_[row].line >= 0 && line_kind_[rows_[row].line] == MpsLineKind::row;
  });
  row_names_.create();
  model_.row_names = std::move(row_names_);

  const bool continuous = std::all_of(model_.column_type.begin(), model_.column_type.end(),
                                      [](char type) { return type == 'C'; });
  if (continuous) model_.column_type.clear();
  trim(model_.column_type);
  trim(model_.objective);
  trim(model_.row_sense);
  trim(column_start_);
  trim(entry_line_);
  trim(entry_value_);
  SparseMatrix columns;
  columns.num_major = model_.num_cols;
  columns.num_minor = model_.num_rows;
  columns.start = std::move(column_start_);
  columns.index = std::move(entry_line_);
  columns.value = std::move(entry_value_);
  model_.matrix.assign(std::move(columns));
}

/// Takes cuts, indicator rows and quadratic rows out of the rows.
void MpsParser::move_special_lines() {
  const int lines = static_cast<int>(line_kind_.size());
  Vector<int> new_line(lines, kNone);  // index among the rows, kNone for the others
  int rows = 0;
  for (int line = 0; line < lines; ++line) {
    if (line_kind_[line] == MpsLineKind::row) new_line[line] = rows++;
  }
  const SparseMatrix special = split_matrix(new_line);

  Vector<int> indicator_line(model_.indicators.column.size());
  for (int line = 0; line < lines; ++line) {
    switch (line_kind_[line]) {
      case MpsLineKind::user_cut:
        append_extra_row(line, special, model_.user_cuts);
        break;
      case MpsLineKind::lazy_constraint:
        append_extra_row(line, special, model_.lazy_constraints);
        break;
      case MpsLineKind::indicator:
        indicator_line[record_of_[line]] = line;
        break;
      case MpsLineKind::quadratic: {
        QuadraticConstraint& constraint = model_.quadratic_constraints[record_of_[line]];
        const int begin = special.start[line], end = special.start[line + 1];
        constraint.linear_index.assign(special.index.data() + begin, special.index.data() + end);
        constraint.linear_value.assign(special.value.data() + begin, special.value.data() + end);
        break;
      }
      case MpsLineKind::row:
      case MpsLineKind::dropped:
        break;
    }
  }
  for (const int line : indicator_line) append_extra_row(line, special, model_.indicators.rows);

  for (int line = 0; line < lines; ++line) {
    if (new_line[line] == kNone) continue;
    model_.rhs[new_line[line]] = model_.rhs[line];
    model_.row_sense[new_line[line]] = model_.row_sense[line];
    if (!model_.range.empty()) model_.range[new_line[line]] = model_.range[line];
  }
  model_.rhs.resize(rows);
  model_.row_sense.resize(rows);
  if (!model_.range.empty()) model_.range.resize(rows);
}

/// Renumbers the entries of the rows and returns those of the other lines, by line.
SparseMatrix MpsParser::split_matrix(const Vector<int>& new_line) {
  const int columns = model_.num_cols;
  SparseMatrix special;  // by column
  special.num_major = columns;
  special.num_minor = static_cast<int>(new_line.size());
  special.start.reserve(columns + 1);
  int kept = 0;
  for (int column = 0; column < columns; ++column) {
    const int begin = column_start_[column];
    column_start_[column] = kept;
    for (int k = begin; k < column_start_[column + 1]; ++k) {
      const int line = entry_line_[k];
      if (new_line[line] == kNone) {
        special.index.push_back(line);
        special.value.push_back(entry_value_[k]);
      } else {
        entry_line_[kept] = new_line[line];
        entry_value_[kept++] = entry_value_[k];
      }
    }
    special.start.push_back(static_cast<int>(special.index.size()));
  }
  column_start_[columns] = kept;
  entry_line_.resize(kept);
  entry_value_.resize(kept);
  return transpose(special);
}

void MpsParser::append_extra_row(int line, const SparseMatrix& by_line, ExtraRows& rows) {
  for (int k = by_line.start[line]; k < by_line.start[line + 1]; ++k) {
    rows.rows.index.push_back(by_line.index[k]);
    rows.rows.value.push_back(by_line.value[k]);
  }
  rows.rows.start.push_back(static_cast<int>(rows.rows.index.size()));
  ++rows.rows.num_major;
  rows.rows.num_minor = model_.num_cols;
  rows.rhs.push_back(model_.rhs[line]);
  rows.sense.push_back(model_.row_sense[line]);
  rows.names.append(row_names_.view(declared_[line]));
}

}  // namespace kelvo
