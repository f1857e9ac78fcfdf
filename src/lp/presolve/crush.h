// Values and forms from the original program to the reduced one and back.
//
// They go through the records of the postsolve stack: to the reduced program in the order in which
// the records were made, back in the reverse one. Everything is in the terms of the minimization.
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

/// Rewrites a form over the columns in place into one over the kept columns (still in the original
/// numbering); false when a weight falls on a column whose value is no linear form of them.
bool crush_form(const Presolve& presolve, LinearForm& form);

/// Rewrites a form over kept columns (in the original numbering) into one over all columns that
/// has the same value.
void uncrush_form(const Presolve& presolve, LinearForm& form);

/// Codes of all columns [columns] and rows [rows]: the reduced index or a RemovalCode.
RemovalCodes removal_codes(const Presolve& presolve);

/// A start for the reduced program.
struct CrushedBasis {
  Vector<int> status;    // [reduced variables] BasisStatus, logicals after the columns
  Vector<double> value;  // [reduced columns] where superbasic ones are
  int num_basic = 0;
};

/// A basis of the original program, with `status` [num_cols + num_rows], logicals after the
/// columns, and values `x` [num_cols], as a start for the reduced one.
///
/// A row that went while it was tight hands the bound at which its column is to the column; merged
/// lines take over the status of the one that is at a limit. What an optimal basis from postsolve
/// looks like is recognised exactly, so that the crushed basis is the one it came from; of other
/// bases it keeps what it can, and the number of basic variables may be off by a few.
CrushedBasis crush_basis(const Presolve& presolve, const Vector<int>& status, const double* x);

}  // namespace kelvo
