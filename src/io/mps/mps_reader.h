// Reader of MPS files.
//
// Sections, in this order: NAME; OBJSENSE, OBJNAME, REFROW (each optional); ROWS; USERCUTS,
// LAZYCONS; COLUMNS; RHS; RANGES; BOUNDS; SOS; QMATRIX, QUADOBJ, QCMATRIX (any number); INDICATORS;
// ENDATA. Fields are separated by white space, so names hold no blanks.
//
// Where the format leaves room:
//
// - The name of an RHS, range or bound set may be missing. In RHS and RANGES that is so when a line
//   has an even number of fields, the second looks like a number and it is not the case that it
//   names a row while the first does not. In BOUNDS, when two fields (for types without a value:
//   one or two) follow the type, and the second, if any, looks like a number and it is not the case
//   that it names a column while the first does not. Lines without a set name belong to the set
//   that was found first.
// - "OBJSENSE MAX" on one line is understood when no data line follows.
// - Zero coefficients of the matrix are kept as entries.
// - SOS sets within COLUMNS: the type is the first field of the marker line (then the set's name
//   and 'MARKER' follow) or the one behind 'SOSORG' (then the marker's name is that of the set).
//   The weight of a column is its coefficient in the REFROW row, 0 without one; when the file has
//   no REFROW, weights are 1, 2, 3, ...
// - In the SOS section a line opens a set when its first field begins within the first three
//   characters of the line or is no column, and it looks like a type (S and another character).
// - QMATRIX holds both triangles of Q, QUADOBJ one of them: each of its entries off the diagonal
//   counts for both. Entries of the same place are added up; then Q must be symmetric. The
//   objective has 1/2 x'Qx. QCMATRIX holds the terms of x'Qx, without 1/2, unchanged; its row
//   must not be ranged.
// - INDICATORS: code, row, column, value 0 or 1; the codes IF, OI and FF mean "row if column",
//   "column if row" and both. The row must not be ranged.
// - A semi-continuous column without a lower bound keeps 0.
#pragma once

#include "base/line_reader.h"
#include "base/messages.h"
#include "base/status.h"
#include "prob/model/model.h"

namespace kelvo {

struct MpsReaderSettings {
  // Room made at the start; only hints.
  int rows = 30000;
  int columns = 60000;
  int nonzeros = 250000;
  int quadratic_nonzeros = 5000;
  /// Tell the choices made: objective sense, objective, sets.
  bool show_choices = true;
  /// False: quadratic constraints are left out, with a warning.
  bool quadratic_constraints = true;
};

/// Reads a model. On failure `model` is as it was; the error has been reported, except 1012 (room
/// requested is too large) and 1423 (the stream failed, its text takes the file name). Throws
/// std::bad_alloc, leaving `model` as it was.
Status read_mps(LineReader& lines, const MpsReaderSettings& settings, MessageSink& sink,
                Model& model);

}  // namespace kelvo
