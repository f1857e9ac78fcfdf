// Basis files: which columns are basic in place of which slacks, and which nonbasic columns sit at
// their upper bounds, in lines like those of an MPS file.
//
//   NAME          the problem's name   (and, when there is a solution, iterations and sizes)
//    XU column row      the column is basic, the row's slack nonbasic at its upper bound
//    XL column row      the same, at its lower bound
//    BS column          the column is basic
//    UL column          the column is nonbasic at its upper bound
//    LL column          the column is nonbasic at its lower bound
//    SC column value    the column is nonbasic with this value
//    SR row value       the row's slack is nonbasic; value is the row's activity
//    BR row value       the row's slack is basic
//   ENDATA
//
// Columns that no line mentions are nonbasic at the lower bound (without one at the upper bound,
// without both free at zero), slacks basic. A later line about the same column or row counts. Codes
// may be written in small letters. The writer gives the slack of a 'G' row as nonbasic at its upper
// bound, which is its only one. Names with blanks and names that occur twice do not survive.
#pragma once

#include "base/file_stream.h"
#include "base/line_reader.h"
#include "base/messages.h"
#include "base/status.h"
#include "prob/model.h"
#include "prob/solution.h"

namespace kelvo {

/// Reads a basis for a model; one without names is read with the default names. A line about a name
/// that the model does not have is skipped with a warning. On failure `basis` is as it was; the
/// error has been reported, except 1423 (the stream failed). Errors: 1441, 1551, 1552, 1553, 1434,
/// 1435, 1465; 1550 not one basic variable per row; 1554 a column of a value between its bounds.
/// Throws std::bad_alloc.
Status read_basis(LineReader& lines, const Model& model, MessageSink& sink, StoredBasis& basis);

/// 1555, reported, unless there are as many basic variables as rows.
Status check_basis_size(const Model& model, const StoredBasis& basis, MessageSink& sink);

/// Writes a basis that check_basis_size() accepts. `solution_iterations` is negative without a
/// solution. Throws std::bad_alloc.
void write_basis(const Model& model, const StoredBasis& basis, int solution_iterations,
                 MessageSink& sink, FileStream& stream);

}  // namespace kelvo
