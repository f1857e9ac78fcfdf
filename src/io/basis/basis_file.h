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
//    BR row value       the row's slack is basic; value is the row's activity
//   ENDATA
//
// A restart file describes a point that need not be a vertex: lines XU and XL end with the column's
// value, there is a line BR or SR for every row and a line SC for every nonbasic column, and
// the columns with a value between their bounds are superbasic (status 3). The activity of a 'G'
// row is written with the opposite sign.
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
#include "prob/model/model.h"
#include "prob/solution.h"

namespace kelvo {

/// The point of a restart file.
struct RestartPoint {
  Vector<double> x;         // [columns]
  Vector<double> activity;  // [rows]
};

/// Reads a basis for a model; one without names is read with the default names. A line about a name
/// that the model does not have is skipped with a warning. On failure `basis` is as it was; the
/// error has been reported, except 1423 (the stream failed). Errors: 1441, 1551, 1552, 1553, 1434,
/// 1435, 1465; 1550 not one basic variable per row; 1554 a column of a value between its bounds.
/// Throws std::bad_alloc.
Status read_basis(LineReader& lines, const Model& model, MessageSink& sink, StoredBasis& basis);

/// Reads a restart file: the same, and superbasic columns are taken. A column without a value has
/// that of the bound where it is, or 0, a row 0. The results channel tells whether the file was
/// loaded.
Status read_restart(LineReader& lines, const Model& model, MessageSink& sink, StoredBasis& basis,
                    RestartPoint& point);

/// 1555, reported, unless there are as many basic variables as rows.
Status check_basis_size(const Model& model, const StoredBasis& basis, MessageSink& sink);

/// Writes a basis that check_basis_size() accepts. `solution_iterations` is negative without a
/// solution. With a point a restart file is written. Throws std::bad_alloc.
void write_basis(const Model& model, const StoredBasis& basis, int solution_iterations,
                 MessageSink& sink, FileStream& stream, const RestartPoint* point = nullptr);

}  // namespace kelvo
