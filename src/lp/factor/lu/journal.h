// What updates and borders overwrite, kept while a caller may want to take them back.
//
// An update moves, shortens and fills lines of U. Their old contents stay in the files as garbage,
// because files are not compressed while a journal is kept; so a record needs the old places only,
// the entries that were taken out of lines, and what an update cleared in the dense block. Undoing
// the last update costs what the update has cost, and leaves every live line with the same entries
// in the same order: later solves give the same bits as if the update had never been made.
#pragma once

#include "lp/factor/lu/factors.h"

namespace kelvo {

struct LuJournal {
  /// An entry taken out of a line, where the last entry of the line has replaced it.
  struct Taken {
    int line;
    int at;
    double value;
  };
  /// A row of U that went to the end of its file, and where it was.
  struct Moved {
    int row;
    Span span;
    int limit;
  };
  /// The factor before one update or border. The lists below hold what belongs to it from these
  /// sizes on.
  struct Update {
    int order;
    int pivot;         // -1 for a border, which leaves U alone
    Span column, row;  // of the pivot, in U
    double diagonal;
    int place;
    int columns_used, rows_used, etas_used;
    long u_nonzeros;
    std::size_t from_rows, from_columns, moved_rows, dense;
  };

  Vector<Update> updates;
  Vector<Taken> from_rows;     // out of lines of u_rows
  Vector<Taken> from_columns;  // out of lines of u_columns
  Vector<Moved> moved_rows;
  Vector<double> dense;  // row and column of U in the dense block, [order] for a pivot of it

  void clear();
  /// Writes down the state before the update of pivot t.
  void open_update(const LuFactors& lu, int t);
  /// Writes down the state before a border, when the etas were `etas_used` long.
  void open_border(const LuFactors& lu, int etas_used);
};

/// Undoes the last update or border of the journal; returns the entries touched.
long undo_update(LuFactors& lu, LuJournal& journal);

}  // namespace kelvo
