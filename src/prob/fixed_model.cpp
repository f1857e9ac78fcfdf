#include "prob/fixed_model.h"

#include <cmath>

#include "prob/data/column_types.h"
#include "prob/model/model_edit.h"

namespace kelvo {
namespace {

void fix(Model& model, int column, double value) {
  model.lower[column] = model.upper[column] = value + 0.0;
}

void fix_columns(Model& model, const double* x, double tolerance) {
  for (std::size_t j = 0; j < model.column_type.size(); ++j) {
    const int column = static_cast<int>(j);
    if (is_integer_type(model.column_type[j])) {
      fix(model, column, std::round(x[j]));
    } else if (model.column_type[j] == 'S' && std::fabs(x[j]) <= tolerance) {
      fix(model, column, 0.0);
    }
  }
  for (const int j : model.sos.members.index) {
    if (std::fabs(x[j]) <= tolerance) fix(model, j, 0.0);
  }
}

void append_rows_of(Model& model, const ExtraRows& rows, const Vector<char>& wanted) {
  const SparseMatrix& matrix = rows.rows;
  for (int k = 0; k < rows.size(); ++k) {
    if (wanted[k] == 0) continue;
    const int begin = 0;
    const char* const name = rows.names.present() ? rows.names[k] : nullptr;
    RowBlock block;
    block.count = 1;
    block.rhs = &rows.rhs[k];
    block.sense = &rows.sense[k];
    block.names = &name;
    block.entries = matrix.start[k + 1] - matrix.start[k];
    block.begin = &begin;
    block.columns = matrix.index.data() + matrix.start[k];
    block.values = matrix.value.data() + matrix.start[k];
    append_rows(model, block);
  }
}

}  // namespace

Model fixed_model(const Model& model, const double* x, double tolerance) {
  // The bits of a relation: an active column makes the row hold; a row that holds needs an active
  // column.
  constexpr int kRowIfActive = 1;
  constexpr int kActiveIfRow = 2;
  Model fixed = model;
  fix_columns(fixed, x, tolerance);
  const IndicatorConstraints& indicators = model.indicators;
  const SparseMatrix& rows = indicators.rows.rows;
  Vector<char> wanted(indicators.size());
  for (int k = 0; k < indicators.size(); ++k) {
    const int column = indicators.column[k];
    const bool on = column >= 0 && std::round(x[column]) != 0.0;
    const bool active = column >= 0 && on != (indicators.complemented[k] != 0);
    wanted[k] = active && (indicators.relation[k] & kRowIfActive) != 0;
    if (active || (indicators.relation[k] & kActiveIfRow) == 0) continue;
    for (int p = rows.start[k]; p < rows.start[k + 1]; ++p)
      fix(fixed, rows.index[p], x[rows.index[p]]);
  }
  append_rows_of(fixed, indicators.rows, wanted);
  append_rows_of(fixed, model.lazy_constraints, Vector<char>(model.lazy_constraints.size(), 1));
  clear_integer_data(fixed);
  return fixed;
}

}  // namespace kelvo
