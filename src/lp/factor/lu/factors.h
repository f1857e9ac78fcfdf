// The stored factors of a basis matrix and their invariants.
//
// Every pivot is a pair (row, position) and is named by its number k in the order of the
// factorization, so that both L and U are square matrices over the pivots 0..m-1 and a plain solve
// walks through memory. With P and Q the permutations from rows and positions to pivots,
//
//     P B Q' = L R_1^{-1} ... R_u^{-1} U
//
// Rows added later with their logicals basic, B' = [B 0; R I], extend this without touching what is
// there: they are pivots m, m+1, ... with unit lines in L and U, and row etas with the multipliers
// R Q'U^{-1}, as [M 0; W I] with M = L R_1^{-1} ... R_u^{-1} is M with the etas x_new -= W x
// appended.
//
// L:   unit lower triangular in the order of the pivots; kept by columns and by rows.
// R_u: the row eta of update u (Forrest and Tomlin 1972) or of an added row: row `target` -= sum of
//      value * row index.
// U:   upper triangular in the order of `sequence`; kept by columns, each divided by its diagonal
//      entry, and by rows, likewise, which keeps that division off the critical path of a solve.
//      Both change in every update: its pivot moves to the end of the sequence and leaves a gap
//      (-1) behind; pivots are never renumbered. Added pivots join the sequence at its end.
//
// Solves with few nonzeros find what they can reach by a depth-first search, hence both
// orientations of each factor (Gilbert and Peierls 1988).
#pragma once

#include "base/containers.h"
#include "lp/factor/lu/dense_block.h"

namespace kelvo {

/// The entries begin..end-1 of a file.
struct Span {
  int begin = 0;
  int end = 0;
  int size() const { return end - begin; }
};

/// No file grows beyond this many entries, so that 32-bit positions suffice.
inline constexpr int kMaxFileEntries = 524999998;

/// A file that runs short grows to this times its capacity, or to what is needed.
inline constexpr double kFileGrowth = 1.3;

/// Entries of sparse lines, one line after the other; the lines themselves are Spans kept apart.
struct EntryFile {
  Vector<int> index;     // [capacity]
  Vector<double> value;  // [capacity]
  int used = 0;          // entries in use, garbage of moved or deleted lines included

  int capacity() const { return static_cast<int>(index.size()); }
  /// Makes room for `entries` entries in all; throws std::bad_alloc, then nothing has changed.
  void reserve(long entries);
  /// Makes room for `more` entries behind those in use, growing in steps of kFileGrowth.
  void make_room(int more) {
    if (more > capacity() - used) enlarge(more);
  }
  void enlarge(int more);
  /// Gives the memory back.
  void release();
};

/// Closes the gaps of a file whose live lines are those of `lines`; order in memory is kept.
/// `limit` [lines] (may be null) receives the end of each line: no room to grow is left.
void compress_file(EntryFile& file, Vector<Span>& lines, Vector<int>* limit, Vector<int>& scratch);

struct LuFactors {
  int m = 0;             // order, rows added later included
  int num_factored = 0;  // order at the factorization

  // Pivots; -1 where a row or position has none (only after a failed factorization).
  int num_pivots = 0;
  int num_logical = 0;              // the leading pivots that are logicals: unit columns of B
  int num_triangular = 0;           // the leading pivots that were singletons of B
  Vector<int> row_of_pivot;         // [m]
  Vector<int> position_of_pivot;    // [m]
  Vector<int> pivot_of_row;         // [m]
  Vector<int> pivot_of_position;    // [positions]
  Vector<double> diagonal;          // [m] by pivot: of U
  Vector<double> inverse_diagonal;  // [m] by pivot

  // L without its unit diagonal.
  EntryFile l_columns, l_rows;
  Vector<Span> l_column;  // [m] by pivot: entries of l_columns
  Vector<Span> l_row;     // [m] by pivot: entries of l_rows
  Vector<int> l_pivots;   // pivots with a non-empty L column, ascending

  // U without its diagonal, divided as said above.
  EntryFile u_columns, u_rows;
  Vector<Span> u_column;    // [m] by pivot
  Vector<Span> u_row;       // [m] by pivot
  Vector<int> u_row_limit;  // [m] by pivot: where the room of the row ends
  Vector<int> sequence;     // pivots in order, -1 for gaps, those that were moved or added from
                            // num_factored on; the first sequence_size are valid
  Vector<int> place;        // [m] by pivot: its index in `sequence`
  int sequence_size = 0;
  long u_nonzeros = 0;  // entries of U off the diagonal

  // The last dense.order pivots of the factorization when they form a dense block: their L columns
  // and the part of their U columns within the block are kept there instead of in the files.
  // Updates clear the row and the column of a pivot that moves.
  DenseBlock dense;

  // Row etas of the updates and the added rows, in the order in which they were made.
  EntryFile etas;
  Vector<Span> eta;
  Vector<int> eta_target;

  int num_etas() const { return static_cast<int>(eta.size()); }
  long nonzeros() const { return l_columns.used + u_nonzeros + dense.size() + m; }
  /// First pivot of the dense block.
  int block_begin() const { return num_factored - dense.order; }
  /// True when an update has moved the pivot to the end of the sequence, or it was added there.
  bool moved(int k) const { return place[k] >= num_factored; }

  /// Sizes the arrays for a matrix of m rows and forgets all entries.
  void reset(int num_rows, int num_positions);
  /// Gives all memory of the files back.
  void release_files();
};

}  // namespace kelvo
