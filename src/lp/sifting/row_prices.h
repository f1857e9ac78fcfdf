// Approximate duals of a covering program,
//
//     minimize c'x   subject to   A x >= need,   0 <= x <= range
//
// by the subgradient method (Held, Wolfe and Crowder 1974, "Validation of subgradient
// optimization", Mathematical Programming 6): each pass prices the columns and raises the prices of
// rows that the columns of negative reduced cost leave uncovered. Some passes get within a few per
// cent of the optimum, in the time of a few pivots: near enough to tell which columns matter.
#pragma once

#include "base/containers.h"
#include "base/sparse_matrix.h"
#include "base/stop_check.h"

namespace kelvo {

struct CoveringProgram {
  Vector<double> need;   // [rows]; a row with need 0 takes no part
  SparseMatrix columns;  // only rows that take part
  Vector<double> cost;   // [columns]
  Vector<double> range;  // [columns] finite
};

/// The best prices [rows] met within so many passes, from the given ones on; all >= 0. A stop only
/// ends the search early.
Vector<double> improve_row_prices(const CoveringProgram& program, const Vector<double>& start,
                                  int passes, StopCheck& stop);

}  // namespace kelvo
