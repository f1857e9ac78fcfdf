// A basis of the original program as a start for the reduced one.
//
// The records of the postsolve stack are walked in the order in which they were made. A row that
// went while it was tight hands the bound at which its column stands to the column; merged lines
// take over the status of the one that stands at a limit. What an optimal basis from the way back
// looks like is recognised exactly, so that the crushed basis is the one it came from; of other
// bases it keeps what it can, and the number of basic variables may be off by a few.
#pragma once

#include "lp/presolve/presolve.h"

namespace kelvo {

/// A point of departure of the reduced program.
struct CrushedBasis {
  Vector<int> status;    // [reduced variables] BasisStatus, logicals after the columns
  Vector<double> value;  // [reduced columns] where superbasic ones stand
  int num_basic = 0;
};

/// `status` [num_cols + num_rows] of the original program, logicals after the columns, and values
/// `x` [num_cols].
CrushedBasis crush_basis(const Presolve& presolve, const Vector<int>& status, const double* x);

}  // namespace kelvo
