// The mixed-integer program that branch and cut solves, as plain data.
//
//     minimize    c'x + offset
//     subject to  A x + s = 0,   lower <= (x, s) <= upper          (lp, see lp/form/lp_problem.h)
//                 x_j whole where is_integer
//                 x_j = 0 or l_j <= x_j <= u_j                      (semi-continuous columns)
//                 special ordered sets
//                 x_b = v  implies  L <= a_i x <= U                 (indicators)
//
// Everything that branching decides is a bound of a variable of `lp`, column or logical:
//   - the interval of a semi-continuous column in `lp` is the hull of 0 and [l_j, u_j]; a branch
//     makes it [0, 0] or [l_j, u_j];
//   - a branch on a set fixes some of its members at 0;
//   - the row of an indicator is a row of `lp` whose logical is free, and gets the bounds [-U, -L]
//     where the binary column is at v. Other rows of `lp` hold always.
// So a node is a list of bounds, and nodes of all kinds are stored, propagated and undone alike.
#pragma once

#include "lp/form/lp_problem.h"

namespace kelvo {

/// x_column = 0 or lower <= x_column <= upper. The interval may have infinite ends, and 0 may lie
/// inside it, when it says nothing.
struct SemiColumn {
  int column;
  double lower;
  double upper;
};

/// At most one (type 1), or at most two neighbouring (type 2) members are not 0. Members in the
/// order of their weights.
struct OrderedSet {
  int type;
  Vector<int> members;
  Vector<double> weights;  // [members] ascending
};

/// lower <= a_row x <= upper where x_binary is `active` (0 or 1); `row` is a row of the program
/// whose logical is free. Several indicators may share a binary column, never a row.
struct Indicator {
  int binary;
  int active;
  int row;
  double lower;
  double upper;
};

struct MipProblem {
  LpProblem lp;             // with its row-wise matrix
  Vector<char> is_integer;  // [num_cols] 1: whole values only
  Vector<SemiColumn> semis;
  Vector<OrderedSet> sets;
  Vector<Indicator> indicators;
  // Wishes of the caller for branching; both empty without a priority order.
  Vector<int> priority;           // [num_cols] larger first; 0 for columns without one
  Vector<signed char> direction;  // [num_cols] -1 down first, 1 up first, 0 free

  int num_cols() const { return lp.num_cols; }
  int num_rows() const { return lp.num_rows; }
  bool is_binary(int j) const { return is_integer[j] && lp.lower[j] == 0.0 && lp.upper[j] == 1.0; }
  bool has_constraint_branches() const {
    return !semis.empty() || !sets.empty() || !indicators.empty();
  }
};

/// By how much a point may miss a requirement.
struct MipTolerances {
  double feasibility = 1e-6;  // of rows and bounds
  double integrality = 1e-5;  // distance of an integer column from a whole number
};

/// How far a point is from satisfying everything, each the largest amount found.
struct MipResiduals {
  double bound = 0.0;        // of columns, semi-continuous ones included
  double row = 0.0;          // of rows, those of active indicators included
  double integrality = 0.0;  // of integer columns
  double set = 0.0;          // of members that would have to be 0

  bool within(const MipTolerances& tolerances) const {
    return bound <= tolerances.feasibility && row <= tolerances.feasibility &&
           integrality <= tolerances.integrality && set <= tolerances.feasibility;
  }
};

/// Measures a point x [num_cols]; an indicator is active when its column is within the integrality
/// tolerance of the active value.
MipResiduals measure_point(const MipProblem& mip, const Vector<double>& x,
                           const MipTolerances& tolerances);

}  // namespace kelvo
