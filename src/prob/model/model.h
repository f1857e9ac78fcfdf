// The optimization model, as plain data in the caller's own units.
//
//     minimize (sense 1) or maximize (sense -1)   c'x + 1/2 x'Qx
//     subject to   a_i x  {<=, =, >=}  rhs_i   for rows 'L', 'E', 'G'
//                  rhs_i <= a_i x <= rhs_i + range_i  (range_i >= 0, row 'R')
//                  rhs_i + range_i <= a_i x <= rhs_i  (range_i <  0, row 'R')
//                  lower <= x <= upper, column types, sets, indicator and quadratic constraints.
//
// A bound or right-hand side of magnitude 1e20 or more is infinite. Readers build a new Model aside
// and swap it in when it is complete. Edits of an existing model are in model_edit.h.
#pragma once

#include "base/name_store.h"
#include "prob/model/column_store.h"

namespace kelvo {

inline constexpr double kInfiniteBound = 1e20;

/// Rows kept outside the matrix (user cuts, lazy constraints), compressed by row.
struct ExtraRows {
  Vector<double> rhs;
  Vector<char> sense;
  SparseMatrix rows;  // num_major = number of rows, num_minor is not used
  NameStore names;

  int size() const { return rows.num_major; }
};

/// Special ordered sets, compressed by set. Members are kept as given; their order in the
/// set is that of their weights.
struct SosSets {
  Vector<char> type;     // '1' or '2' per set
  SparseMatrix members;  // index: column, value: weight
  NameStore names;

  int size() const { return members.num_major; }
};

/// Indicator constraints: row k holds only while its binary column has the active value.
struct IndicatorConstraints {
  Vector<int> column;         // the binary column of each, or -1
  Vector<char> complemented;  // 1 when the row holds while the column is 0
  Vector<int> relation;       // 1 "->", 2 "<-", 3 "<->"
  ExtraRows rows;

  int size() const { return rows.size(); }
};

/// In which order and direction the search should branch; columns not listed come last.
struct PriorityOrder {
  Vector<int> column;     // each column once, in the order given
  Vector<int> priority;   // [size] the larger ones first
  Vector<int> direction;  // [size] -1 down first, 1 up first, 0 as the search likes

  int size() const { return static_cast<int>(column.size()); }
};

struct QuadraticConstraint {
  double rhs = 0.0;
  char sense = 'L';
  Vector<int> linear_index;
  Vector<double> linear_value;
  Vector<int> quad_row, quad_col;  // terms value * x_row * x_col as given
  Vector<double> quad_value;
};

struct Model {
  String name;
  String objective_name;
  bool has_objective_name = false;
  int sense = 1;

  int num_rows = 0;
  int num_cols = 0;
  Vector<double> objective;  // [num_cols]
  Vector<double> lower;      // [num_cols]
  Vector<double> upper;      // [num_cols]
  Vector<char> column_type;  // [num_cols] 'C','B','I','S','N'; empty when no types were given
  ColumnStore matrix;        // num_cols columns over num_rows rows
  Vector<double> rhs;        // [num_rows]
  Vector<char> row_sense;    // [num_rows] 'L','E','G','R'
  Vector<double> range;      // [num_rows], 0 where no range; empty until a range is set
  NameStore row_names;
  NameStore col_names;

  // Quadratic objective Q, symmetric, both triangles, compressed by column; num_major 0 when
  // absent.
  SparseMatrix quadratic;
  Vector<QuadraticConstraint> quadratic_constraints;
  NameStore quadratic_names;
  SosSets sos;
  IndicatorConstraints indicators;
  PriorityOrder order;
  ExtraRows user_cuts;
  ExtraRows lazy_constraints;
};

}  // namespace kelvo
