// From the rows and records of a file to a model.

#include <algorithm>

#include "io/lp_format/reader/collector.h"
#include "prob/model/model_edit.h"

namespace kelvo {
namespace {

/// Sums up neighbouring entries with the same index inside each line, and drops zeros.
void merge_neighbours(SparseMatrix& matrix) {
  int kept = 0;
  int begin = 0;
  for (int line = 0; line < matrix.num_major; ++line) {
    const int end = matrix.start[line + 1];
    for (int k = begin; k < end;) {
      const int index = matrix.index[k];
      double sum = matrix.value[k];
      for (++k; k < end && matrix.index[k] == index; ++k) sum += matrix.value[k];
      if (sum == 0.0) continue;
      matrix.index[kept] = index;
      matrix.value[kept++] = sum;
    }
    begin = end;
    matrix.start[line + 1] = kept;
  }
  matrix.index.resize(kept);
  matrix.value.resize(kept);
}

/// Merges the terms of single rows, keeping the order of first appearance.
class TermMerger {
 public:
  explicit TermMerger(int columns) : seen_(columns, -1), position_(columns) {}

  /// Sums up terms of one variable, drops zeros, returns the number left.
  int merge(int* index, double* value, int count) {
    ++stamp_;
    int distinct = 0;
    for (int k = 0; k < count; ++k) {
      const int column = index[k];
      if (seen_[column] == stamp_) {
        value[position_[column]] += value[k];
        continue;
      }
      seen_[column] = stamp_;
      position_[column] = distinct;
      index[distinct] = column;
      value[distinct++] = value[k];
    }
    int kept = 0;
    for (int k = 0; k < distinct; ++k) {
      if (value[k] == 0.0) continue;
      index[kept] = index[k];
      value[kept++] = value[k];
    }
    return kept;
  }

  void merge(ExtraRows& group) {
    SparseMatrix& rows = group.rows;
    int kept = 0;
    int begin = 0;
    for (int row = 0; row < rows.num_major; ++row) {
      const int end = rows.start[row + 1];
      const int count = merge(rows.index.data() + begin, rows.value.data() + begin, end - begin);
      std::copy_n(rows.index.data() + begin, count, rows.index.data() + kept);
      std::copy_n(rows.value.data() + begin, count, rows.value.data() + kept);
      kept += count;
      begin = end;
      rows.start[row + 1] = kept;
    }
    rows.index.resize(kept);
    rows.value.resize(kept);
    rows.num_minor = static_cast<int>(seen_.size());
  }

  void merge(QuadraticConstraint& constraint) {
    const int count = merge(constraint.linear_index.data(), constraint.linear_value.data(),
                            static_cast<int>(constraint.linear_index.size()));
    constraint.linear_index.resize(count);
    constraint.linear_value.resize(count);
  }

 private:
  int stamp_ = -1;
  Vector<int> seen_;      // [columns] stamp of the last row with that column
  Vector<int> position_;  // [columns] place of the column in that row
};

/// Q with both triangles from the terms of x'Qx.
SparseMatrix symmetric_matrix(const LpQuadraticTerms& terms, int columns) {
  SparseMatrix by_column;
  by_column.num_major = by_column.num_minor = columns;
  by_column.start.assign(columns + 1, 0);
  for (std::size_t k = 0; k < terms.size(); ++k) {
    ++by_column.start[terms.first[k] + 1];
    if (terms.first[k] != terms.second[k]) ++by_column.start[terms.second[k] + 1];
  }
  for (int j = 0; j < columns; ++j) by_column.start[j + 1] += by_column.start[j];
  by_column.index.resize(by_column.start[columns]);
  by_column.value.resize(by_column.start[columns]);
  Vector<int> next(by_column.start.begin(), by_column.start.end() - 1);
  const auto put = [&](int column, int row, double value) {
    by_column.index[next[column]] = row;
    by_column.value[next[column]++] = value;
  };
  for (std::size_t k = 0; k < terms.size(); ++k) {
    const int i = terms.first[k];
    const int j = terms.second[k];
    if (i == j) {
      put(i, i, terms.value[k]);
    } else {
      put(i, j, 0.5 * terms.value[k]);
      put(j, i, 0.5 * terms.value[k]);
    }
  }
  // Transposing a symmetric matrix only brings the entries of each column into order.
  SparseMatrix ordered = transpose(by_column);
  merge_neighbours(ordered);
  return ordered;
}

/// Appends rows to others; the group carries the names of all of them.
void append_extra_rows(ExtraRows& rows, LpRowGroup& group) {
  const ExtraRows& more = group.data;
  if (more.size() == 0) return;
  const int offset = rows.rows.num_nonzeros();
  for (int i = 1; i <= more.size(); ++i) rows.rows.start.push_back(offset + more.rows.start[i]);
  rows.rows.num_major += more.rows.num_major;
  rows.rows.num_minor = more.rows.num_minor;
  const auto append = [](auto& to, const auto& from) {
    to.insert(to.end(), from.begin(), from.end());
  };
  append(rows.rows.index, more.rows.index);
  append(rows.rows.value, more.rows.value);
  append(rows.rhs, more.rhs);
  append(rows.sense, more.sense);
  rows.names = group.names.release();
}

Vector<const char*> pointers_from(const NameStore& names, int first) {
  Vector<const char*> pointers;
  for (int k = first; k < names.size(); ++k) pointers.push_back(names[k]);
  return pointers;
}

/// The type of a column that had the type `old` and is listed in a type section.
char combined_type(char old, LpSection section) {
  const bool was_semi = old == 'S' || old == 'N';
  if (section == LpSection::semi_continuous) return old == 'C' || old == 'S' ? 'S' : 'N';
  if (was_semi) return 'N';
  return section == LpSection::binaries || old == 'B' ? 'B' : 'I';
}

}  // namespace

void LpCollector::drop_nonlinear(const char* source_name) {
  const auto say = [&](const char* what) {
    diagnostics_.sink().print(Channel::warning, "Problem %s contains %s, ignored.\n", source_name,
                              what);
  };
  if (!types_.empty()) say("integer variable declarations");
  if (quadratic_.size() > 0) say("quadratic objective coefficients");
  if (!quadratic_constraints_.empty()) say("quadratic constraints");
  types_.clear();
  quadratic_.truncate(0);
  quadratic_constraints_.clear();
  quadratic_names_ = LpNames();
}

void LpCollector::build(Model& model) {
  size_bounds();
  model.num_rows = rows_.data.size();
  model.num_cols = num_cols();
  model.sense = sense_;
  model.objective_name = std::move(objective_name_);
  model.has_objective_name = has_objective_name_;
  apply_types(model);
  model.lower = std::move(lower_);
  model.upper = std::move(upper_);
  build_objective(model);
  build_matrix(model);
  model.col_names = columns_.release();

  TermMerger merger(quadratic_constraints_.empty() && user_cuts_.data.size() == 0 &&
                            lazy_constraints_.data.size() == 0 && indicators_.data.size() == 0
                        ? 0
                        : model.num_cols);
  merger.merge(user_cuts_.data);
  merger.merge(lazy_constraints_.data);
  merger.merge(indicators_.data);
  for (QuadraticConstraint& constraint : quadratic_constraints_) merger.merge(constraint);
  for (LpRowGroup* group : {&user_cuts_, &lazy_constraints_, &indicators_}) {
    group->data.names = group->names.release();
  }
  model.user_cuts = std::move(user_cuts_.data);
  model.lazy_constraints = std::move(lazy_constraints_.data);
  model.quadratic_constraints = std::move(quadratic_constraints_);
  model.quadratic_names = quadratic_names_.release();
  append_switches(model.indicators);
  model.indicators.rows = std::move(indicators_.data);
  sos_.members.num_minor = model.num_cols;
  sos_.names = sos_names_.release();
  model.sos = std::move(sos_);
}

void LpCollector::append_switches(IndicatorConstraints& indicators) {
  for (const LpIndicator& indicator : indicator_switches_) {
    indicators.column.push_back(indicator.column);
    indicators.complemented.push_back(indicator.complemented ? 1 : 0);
    indicators.relation.push_back(indicator.relation);
  }
}

void LpCollector::append_to(Model& model) {
  size_bounds();
  const NameStore names = columns_.release();
  const Vector<const char*> new_columns = pointers_from(names, model.num_cols);
  ColumnBlock columns;
  columns.count = static_cast<int>(new_columns.size());
  columns.names = new_columns.data();
  if (columns.count > 0) append_columns(model, columns);
  model.lower = std::move(lower_);
  model.upper = std::move(upper_);

  TermMerger merger(model.num_cols);
  merger.merge(rows_.data);
  const NameStore row_names = rows_.names.release();
  const Vector<const char*> new_rows = pointers_from(row_names, first_new_row_);
  RowBlock rows;
  rows.count = rows_.data.size();
  rows.rhs = rows_.data.rhs.data();
  rows.sense = rows_.data.sense.data();
  rows.names = new_rows.data();
  rows.entries = rows_.data.rows.num_nonzeros();
  rows.begin = rows_.data.rows.start.data();
  rows.columns = rows_.data.rows.index.data();
  rows.values = rows_.data.rows.value.data();
  if (rows.count > 0) append_rows(model, rows);

  merger.merge(user_cuts_.data);
  merger.merge(lazy_constraints_.data);
  merger.merge(indicators_.data);
  append_extra_rows(model.user_cuts, user_cuts_);
  append_extra_rows(model.lazy_constraints, lazy_constraints_);
  append_switches(model.indicators);
  append_extra_rows(model.indicators.rows, indicators_);
  for (QuadraticConstraint& constraint : quadratic_constraints_) {
    merger.merge(constraint);
    model.quadratic_constraints.push_back(std::move(constraint));
  }
  if (!quadratic_constraints_.empty()) model.quadratic_names = quadratic_names_.release();
}

void LpCollector::apply_types(Model& model) {
  if (types_.empty()) return;
  model.column_type.assign(model.num_cols, 'C');
  bool other_bounds = false;
  for (const TypeRecord& record : types_) {
    const int j = record.column;
    model.column_type[j] = combined_type(model.column_type[j], record.section);
    if (record.section != LpSection::binaries) continue;
    if (upper_given_[j] == 0) upper_[j] = 1.0;
    other_bounds = other_bounds || lower_[j] != 0.0 || upper_[j] != 1.0;
  }
  if (other_bounds) {
    diagnostics_.sink().print(
        Channel::warning, "Warning:  Binary variables declared with bounds other than 0 and 1.\n");
  }
}

void LpCollector::build_objective(Model& model) {
  model.objective.assign(model.num_cols, 0.0);
  for (std::size_t k = 0; k < objective_.size(); ++k) {
    model.objective[objective_.index[k]] += objective_.value[k];
  }
  if (quadratic_.size() == 0) return;
  SparseMatrix quadratic = symmetric_matrix(quadratic_, model.num_cols);
  if (quadratic.num_nonzeros() > 0) model.quadratic = std::move(quadratic);
}

void LpCollector::build_matrix(Model& model) {
  SparseMatrix& rows = rows_.data.rows;
  rows.num_minor = model.num_cols;
  SparseMatrix columns = transpose(rows);
  rows = SparseMatrix();
  merge_neighbours(columns);
  model.matrix.assign(std::move(columns));
  model.rhs = std::move(rows_.data.rhs);
  model.row_sense = std::move(rows_.data.sense);
  model.row_names = rows_.names.release();
}

}  // namespace kelvo
