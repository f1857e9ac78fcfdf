// The sections QMATRIX, QUADOBJ, QCMATRIX and INDICATORS.
#include <limits>
#include <utility>

#include "io/mps/parser.h"

namespace kelvo {
namespace {

constexpr std::size_t kMostTerms = std::numeric_limits<int>::max() - 2;

/// Adds up equal indices, which are adjacent, and drops entries that are zero.
void add_up_neighbours(SparseMatrix& matrix) {
  int kept = 0;
  for (int j = 0; j < matrix.num_major; ++j) {
    const int begin = matrix.start[j], end = matrix.start[j + 1];
    matrix.start[j] = kept;
    for (int k = begin; k < end;) {
      const int index = matrix.index[k];
      double sum = 0.0;
      for (; k < end && matrix.index[k] == index; ++k) sum += matrix.value[k];
      if (sum == 0.0) continue;
      matrix.index[kept] = index;
      matrix.value[kept++] = sum;
    }
  }
  matrix.start[matrix.num_major] = kept;
  matrix.index.resize(kept);
  matrix.value.resize(kept);
}

}  // namespace

/// Two column names and a value.
Status MpsParser::read_quadratic_columns(int& first, int& second, double& value) {
  KELVO_TRY(require_column(fields_.name(0), first));
  KELVO_TRY(require_column(fields_.name(1), second));
  return fields_.number(2, value);
}

Status MpsParser::read_quadratic_objective(bool one_triangle) {
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) return {};
    int row, column;
    double value;
    KELVO_TRY(read_quadratic_columns(row, column, value));
    if (value == 0.0) continue;
    if (quadratic_terms_.size() >= kMostTerms) {
      return messages_.error(error::kTooManyCoefficients);
    }
    quadratic_terms_.push_back({row, column, value});
    if (one_triangle && row != column) quadratic_terms_.push_back({column, row, value});
  }
}

/// Makes the symmetric matrix of the terms, adding up those of the same place. Error: 5012 one
/// triangle differs from the other.
Status MpsParser::build_quadratic() {
  if (quadratic_terms_.empty()) return {};
  const int columns = model_.num_cols;
  SparseMatrix q;
  q.num_major = q.num_minor = columns;
  q.start.assign(columns + 1, 0);
  for (const QuadraticTerm& term : quadratic_terms_) ++q.start[term.column + 1];
  for (int j = 0; j < columns; ++j) q.start[j + 1] += q.start[j];
  q.index.resize(quadratic_terms_.size());
  q.value.resize(quadratic_terms_.size());
  Vector<int> next(q.start);
  for (const QuadraticTerm& term : quadratic_terms_) {
    const int at = next[term.column]++;
    q.index[at] = term.row;
    q.value[at] = term.value;
  }
  // Two transpositions sort the columns, which brings equal places together.
  q = transpose(transpose(q));
  add_up_neighbours(q);
  const SparseMatrix by_row = transpose(q);
  if (q.start != by_row.start || q.index != by_row.index || q.value != by_row.value) {
    return messages_.error(error::kNotSymmetric, "objective");
  }
  model_.quadratic = std::move(q);
  return {};
}

/// The header names the row, which becomes a quadratic constraint.
Status MpsParser::read_quadratic_constraint() {
  const std::string_view name = fields_.name(1);
  int row;
  KELVO_TRY(require_row(name, row));
  const int line = rows_[row].line;
  if (line == kObjective) return messages_.error(error::kNotARow, line_number(), name);
  const bool used = line >= 0;
  if (used) {
    if (line_kind_[line] == MpsLineKind::quadratic || line_kind_[line] == MpsLineKind::dropped) {
      return messages_.error(error::kRowRepeats, name);
    }
    if (line_kind_[line] != MpsLineKind::row) {
      return messages_.error(error::kIllegalCut, line_number());
    }
    if (model_.row_sense[line] == 'R') {
      return messages_.error(error::kQuadraticConstraintSense, line_number());
    }
  }
  const bool kept = used && settings_.quadratic_constraints;
  if (used && !kept) line_kind_[line] = MpsLineKind::dropped;
  if (!settings_.quadratic_constraints && !constraints_ignored_) {
    messages_.quadratic_constraints_ignored();
    constraints_ignored_ = true;
  }
  QuadraticConstraint constraint;
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) break;
    int first, second;
    double value;
    KELVO_TRY(read_quadratic_columns(first, second, value));
    constraint.quad_row.push_back(first);
    constraint.quad_col.push_back(second);
    constraint.quad_value.push_back(value);
  }
  if (!kept) return {};
  constraint.rhs = model_.rhs[line];
  constraint.sense = model_.row_sense[line];
  line_kind_[line] = MpsLineKind::quadratic;
  record_of_[line] = static_cast<int>(model_.quadratic_constraints.size());
  model_.quadratic_names.append(row_names_.view(row));
  model_.quadratic_constraints.push_back(std::move(constraint));
  return {};
}

Status MpsParser::read_indicators() {
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) return {};
    KELVO_TRY(read_indicator());
  }
}

/// One line: a code for the relation, a row, a column and the value 0 or 1.
Status MpsParser::read_indicator() {
  constexpr const char* kRelations[] = {"IF", "OI", "FF"};  // relations 1, 2, 3
  int relation = 0;
  for (int k = 0; k < 3; ++k) {
    if (equal_ignoring_case(fields_.raw(0), kRelations[k])) relation = k + 1;
  }
  if (relation == 0) return messages_.error(error::kIllegalIndicator, line_number());
  const std::string_view name = fields_.name(1);
  int row, column;
  KELVO_TRY(require_row(name, row));
  KELVO_TRY(require_column(fields_.name(2), column));
  double value;
  KELVO_TRY(fields_.number(3, value));
  const int line = rows_[row].line;
  const char type = model_.column_type[column];
  if (line < 0 || model_.row_sense[line] == 'R' || (value != 0.0 && value != 1.0) ||
      fields_.count() < 4 || type == 'S' || type == 'N') {
    return messages_.error(error::kIllegalIndicator, line_number());
  }
  switch (line_kind_[line]) {
    case MpsLineKind::row:
      break;
    case MpsLineKind::indicator:
      return messages_.error(error::kRowRepeats, name);
    case MpsLineKind::quadratic:
    case MpsLineKind::dropped:
      return messages_.error(error::kQuadraticTermInConstraint, line_number());
    case MpsLineKind::user_cut:
    case MpsLineKind::lazy_constraint:
      return messages_.error(error::kIllegalIndicator, line_number());
  }
  line_kind_[line] = MpsLineKind::indicator;
  record_of_[line] = static_cast<int>(model_.indicators.column.size());
  model_.indicators.column.push_back(column);
  model_.indicators.complemented.push_back(value == 0.0 ? 1 : 0);
  model_.indicators.relation.push_back(relation);
  return {};
}

}  // namespace kelvo
