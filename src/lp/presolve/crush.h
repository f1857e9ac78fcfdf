// Values and forms from the original program to the reduced one and back, without a basis.
//
// Values of columns and duals of rows go through the records of the postsolve stack: forward in
// the order in which they were made, back in the reverse one. Linear forms  sum f_j x_j  are
// rewritten by what the records say of x_j. Everything is in the terms of the minimization.
#pragma once

#include "lp/presolve/presolve.h"

namespace kelvo {

/// Reduced values [reduced columns] of a point x [columns].
void crush_x(const Presolve& presolve, const double* x, double* reduced_x);

/// A point [columns] from reduced values. Where the reduction left a choice, it satisfies the rows
/// that were removed.
void uncrush_x(const Presolve& presolve, const double* reduced_x, double* x);

/// Reduced duals [reduced rows] of y [rows].
void crush_y(const Presolve& presolve, const double* y, double* reduced_y);

/// Duals [rows] from reduced ones [reduced rows] and the reduced costs [reduced columns] that
/// belong to them.
void uncrush_y(const Presolve& presolve, const double* reduced_y, const double* reduced_z,
               double* y);

/// A linear form as dense weights and a constant.
struct LinearForm {
  Vector<double> weight;
  double offset = 0.0;
};

/// Rewrites a form over the columns in place into one over the kept columns (still in the original
/// numbering); false when a weight falls on a column whose value is no linear form of them.
bool crush_form(const Presolve& presolve, LinearForm& form);

/// Rewrites a form over kept columns (in the original numbering) into one over all columns that
/// has the same value.
void uncrush_form(const Presolve& presolve, LinearForm& form);

/// What became of a column or row, for what is not kept.
enum RemovalCode : int {
  kRemovedAtLower = -1,
  kRemovedAtUpper = -2,
  kRemovedFixed = -3,       // at a value that is not a bound
  kRemovedAggregated = -4,  // substituted out; of a row: used for that
  kRemovedOther = -5,       // of a row: never binds or became a bound
};

/// Codes of all columns [columns] and rows [rows]: the reduced index or a RemovalCode.
void removal_codes(const Presolve& presolve, Vector<int>& cols, Vector<int>& rows);

}  // namespace kelvo
