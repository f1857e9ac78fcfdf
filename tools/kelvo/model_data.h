// A model's linear part, read through the query functions.
#pragma once

#include <string>
#include <vector>

#include "session.h"

namespace kelvo::command {

/// Columns j have the entries start[j] .. start[j + 1] - 1 of index (rows) and value.
struct ModelData {
  int num_rows = 0;
  int num_cols = 0;
  int sense = 1;                  // 1 minimize, -1 maximize
  std::vector<double> objective;  // [num_cols]
  std::vector<double> lower;      // [num_cols]
  std::vector<double> upper;      // [num_cols]
  std::vector<double> rhs;        // [num_rows]
  std::vector<char> row_sense;    // [num_rows] L, E, G or R
  std::vector<double> range;      // [num_rows], empty when no row has a range
  std::vector<int> start;         // [num_cols + 1]
  std::vector<int> index;
  std::vector<double> value;
};

/// Throws Failure.
ModelData read_model_data(Session& session);

/// Names of all columns, in order; empty when the model has none. Throws Failure.
std::vector<std::string> column_names(Session& session);

}  // namespace kelvo::command
