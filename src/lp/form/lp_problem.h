// The linear program that the engines solve, as plain data.
//
//     minimize    c'x + offset
//     subject to  A x + s = 0,   lower <= (x, s) <= upper
//
// Variables 0..n-1 are the structural columns, n..n+m-1 the logicals (slacks) of the rows in order,
// each with the unit column +e_i. A row  L_i <= a_i x <= U_i  gives its logical the bounds
// [-U_i, -L_i]. An absent bound is an IEEE infinity. Always a minimization.
#pragma once

#include <limits>

#include "base/basis_status.h"
#include "base/containers.h"
#include "base/sparse_matrix.h"

namespace kelvo {

inline constexpr double kInf = std::numeric_limits<double>::infinity();

struct LpProblem {
  int num_rows = 0;
  int num_cols = 0;
  SparseMatrix columns;  // column-wise, num_major = num_cols, num_minor = num_rows
  SparseMatrix rows;     // the same matrix row-wise; compact: empty once the program is scaled
  bool compact = false;  // memory before speed: engines hold the values of the matrix once
  Vector<double> cost;   // [num_cols + num_rows]; logicals cost 0
  Vector<double> lower;  // [num_cols + num_rows]
  Vector<double> upper;  // [num_cols + num_rows]
  double offset = 0.0;
  // Names for messages: a function rather than copies; either may be null.
  const char* (*column_name)(const void* context, int column) = nullptr;
  const char* (*row_name)(const void* context, int row) = nullptr;
  const void* name_context = nullptr;

  int num_vars() const { return num_cols + num_rows; }
  bool has_rows() const { return rows.num_major == num_rows; }
};

/// The first variable that admits no value at all, not even within the tolerance; -1 for none.
int find_empty_interval(const LpProblem& lp, double tolerance);

/// Closes intervals whose bounds cross: both become their mean. For crossings within the
/// feasibility tolerance; anything wider is infeasible and never comes here.
void close_crossed_bounds(LpProblem& lp);

/// A x for a point x [num_cols], accumulated in extended precision.
Vector<double> row_activities(const LpProblem& lp, const Vector<double>& x);

/// A copy that has the matrix row-wise, too.
LpProblem with_rows(const LpProblem& lp);

}  // namespace kelvo
