// Models written down row by row, for tests.
#pragma once

#include <initializer_list>

#include "prob/model/model.h"
#include "support/sparse_lines.h"

namespace kelvo::test {

struct RowSpec {
  char sense;
  double rhs;
  std::initializer_list<double> coefficients;  // dense, one per column
  double range = 0.0;
};

/// A model with bounds [0, inf) for every column; entries 0 are not stored.
inline Model small_model(int sense, std::initializer_list<double> objective,
                         std::initializer_list<RowSpec> rows) {
  Model model;
  model.sense = sense;
  model.num_cols = static_cast<int>(objective.size());
  model.num_rows = static_cast<int>(rows.size());
  model.objective.assign(objective);
  model.lower.assign(objective.size(), 0.0);
  model.upper.assign(objective.size(), kInfiniteBound);
  DenseLines lines;
  for (const RowSpec& row : rows) {
    model.row_sense.push_back(row.sense);
    model.rhs.push_back(row.rhs);
    if (row.sense == 'R') model.range.resize(rows.size(), 0.0);
    if (row.sense == 'R') model.range[model.rhs.size() - 1] = row.range;
    lines.push_back(row.coefficients);
  }
  model.matrix.assign(transpose(sparse_lines(lines, model.num_cols)));
  return model;
}

}  // namespace kelvo::test
