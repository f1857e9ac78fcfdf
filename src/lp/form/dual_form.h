// The dual of a linear program as a linear program, and the way back with a basis.
//
// The primal is that of lp_problem.h: minimize c'x, L <= A x <= U, l <= x <= u. Each column is
// measured from a point p_j, its lower bound or, without one, its upper bound or 0, so that with
// b' = b - A p
//
//     minimize  -(L' y+ - U' y-) + (u - l)'w  - c'p
//
//     A'y - w <= c_j   columns with a lower bound (w_j >= 0 only where there is an upper one too)
//     A'y     >= c_j   columns with an upper bound alone
//     A'y      = c_j   free columns; fixed columns have no row
//
// is the negated dual. y_i >= 0 for rows with a lower limit alone, y_i <= 0 for those with an upper
// one, y_i free for equations; a ranged row has two columns, y = y+ - y-; a row without limits has
// none.
//
// Complementary bases: what is basic here is nonbasic there. The row of x_j has multiplier p_j -
// x_j; its logical is basic when x_j is at p_j, w_j is basic when x_j is at its upper
// bound, and a basic y_i says at which limit row i is.
#pragma once

#include "lp/form/lp_problem.h"
#include "lp/form/lp_solution.h"

namespace kelvo {

class DualForm {
 public:
  explicit DualForm(const LpProblem& primal);

  /// The program above. Its optimum is minus that of the primal.
  const LpProblem& program() const { return dual_; }

  /// Which primal line a column of the program belongs to.
  enum class ColumnKind { row, row_upper, column_bound };
  struct ColumnOrigin {
    ColumnKind kind;  // y_i (y+ of a ranged row), y- of a ranged row, w_j
    int line;         // row i or column j
  };
  const Vector<ColumnOrigin>& columns() const { return columns_; }  // [program columns]
  const Vector<int>& row_columns() const { return rows_; }          // [program rows] primal column

  /// A solution of the program, with or without a basis, as one of the primal with the same layers
  /// and with its reduced costs.
  void recover(const LpProblem& primal, const LpSolution& dual, LpSolution& solution) const;

 private:
  void recover_basis(const LpProblem& primal, const LpSolution& dual, LpSolution& solution) const;
  void place_columns(const LpProblem& primal);
  void add_row_columns(const LpProblem& primal);
  void add_bound_columns(const LpProblem& primal);
  void append(ColumnOrigin origin, double cost, double lower, double upper);
  void append_row_entries(const LpProblem& primal, int row, double sign);

  LpProblem dual_;
  Vector<double> point_;          // [primal columns] p
  Vector<int> row_of_column_;     // [primal columns] row of the program, -1 for fixed ones
  Vector<int> rows_;              // [program rows] primal column
  Vector<ColumnOrigin> columns_;  // [program columns]
};

}  // namespace kelvo
