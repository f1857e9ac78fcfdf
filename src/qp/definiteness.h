// Is a symmetric sparse matrix positive semidefinite, and if not, in which direction does its form
// fall?
//
// The matrix is factored as L D L' by elimination in an order of small degree (Markowitz's rule for
// symmetric matrices: the row with the fewest entries next); once the rest is mostly full it is
// eliminated as a dense matrix. A positive semidefinite matrix needs no pivoting for stability: its
// pivots only shrink, and where one vanishes its whole row does (Higham, "Accuracy and Stability of
// Numerical Algorithms", section 10.3). So the first pivot that is negative, or zero in a row that
// is not, proves indefiniteness, and going back through the rows eliminated before it gives a
// direction x with x'Qx < 0.
#pragma once

#include "base/sparse_matrix.h"

namespace kelvo {

/// A pivot of magnitude up to this share of the largest diagonal entry counts as zero: elimination
/// in double precision leaves less than that of one that is zero.
inline constexpr double kZeroPivot = 1e-10;

/// True when sign * Q is positive semidefinite; Q is square with both triangles stored. Throws
/// std::bad_alloc.
bool is_semidefinite(const SparseMatrix& q, double sign);

/// Looks for x [columns] with sign * x'Qx < 0: a diagonal entry, then a 2 x 2 principal minor, then
/// the factorization. False when there is none as far as the numbers tell; x is zero then. Throws
/// std::bad_alloc.
bool find_indefinite_direction(const SparseMatrix& q, double sign, Vector<double>& x);

/// x'Qx, accumulated in extended precision.
double quadratic_form(const SparseMatrix& q, const double* x);

}  // namespace kelvo
