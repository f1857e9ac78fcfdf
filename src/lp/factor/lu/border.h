// Bordering: the factors grow by rows whose logicals are basic.
//
//     B' = [B 0; R I] = [M 0; W I] [U 0; 0 I],  W U = R
//
// for B = M U up to permutations, so that each new row costs one transposed solve with U and
// becomes a row eta with the multipliers W. Nothing else of the factors changes.
#pragma once

#include "base/sparse_matrix.h"
#include "lp/factor/lu/factors.h"
#include "lp/factor/lu/journal.h"
#include "lp/factor/lu/solve.h"

namespace kelvo {

/// Appends the lines of `rows` as rows of the basis matrix, each with its logical at a new position
/// behind the others. Entry e of `rows` is in the column at positions[e]. `solver` works on `lu`
/// and is set up for the new order. Throws std::bad_alloc, with nothing changed.
void add_border(LuFactors& lu, LuSolver& solver, const SparseMatrix& rows, const int* positions,
                LuJournal* journal);

/// Takes the last added pivots away again, down to `order`. Their etas are no longer there.
void remove_border(LuFactors& lu, int order);

}  // namespace kelvo
