// One attempt at a sparse LU factorization of chosen columns of a matrix.
//
//   1. Logical columns, then column singletons, then row singletons become pivots in linear time,
//      without any search: they permute the matrix to [U11 U12 U13; 0 L22 0; 0 L32 N].
//   2. The nucleus N is eliminated sparsely: pivots of small Markowitz count that pass a relative
//      threshold in their column (Markowitz 1957; Suhl and Suhl 1990; Zlatev's limit on the
//      search).
//   3. When what remains is dense enough, a dense kernel with partial pivoting ends the work.
//
// The number of columns may differ from the number of rows: the unpivoted rows and positions then
// tell the rank, which is all that can be asked of such a run.
#pragma once

#include "base/containers.h"
#include "base/sparse_matrix.h"
#include "base/stop_check.h"
#include "lp/factor/lu/factors.h"

namespace kelvo {

struct KernelSettings {
  double threshold = 0.01;            // a pivot is at least this times the maximum of its column
  double absolute_tolerance = 1e-13;  // and larger than this in magnitude
  double row_multiplier = 3.0;        // capacity of the active rows / their entries at the start
  double column_multiplier = 3.0;     // likewise for the active columns
  double dense_density = 0.3;         // active density above which the dense kernel takes over
  StopCheck* stop = nullptr;          // asked now and then whether to go on; may be null
};

enum class KernelOutcome { ok, singular, no_dense_memory, stopped };

class LuKernel {
 public:
  /// Factorizes the columns variables[0..count): column v of `matrix`, or for v >= num_major the
  /// unit column of row v - num_major. On `ok` (square matrices only) `factors` is complete; on
  /// `singular` only its pivot_of_position and pivot_of_row are. Throws std::bad_alloc.
  KernelOutcome run(const SparseMatrix& matrix, const int* variables, int count,
                    const KernelSettings& settings, LuFactors& factors);

  /// Nonzeros touched by the last run.
  double work() const { return work_; }
  /// Entries of the columns of the last run.
  long nonzeros() const { return nonzeros_; }
  /// Gives the memory of the active submatrix back.
  void release();

 private:
  // A line of the active submatrix: entries begin..begin+count-1, room for `room` entries.
  struct Line {
    int begin = 0;
    int count = 0;
    int room = 0;
  };
  // Doubly linked lists of lines by their count; list 0 holds the rejected lines.
  struct CountLists {
    Vector<int> head;      // [longest count + 1], -1 when empty
    Vector<int> next;      // [lines], -1 at the end
    Vector<int> previous;  // [lines], -1 - count for the first of a list
    int lowest = 1;        // no list between 1 and this one has a line

    void setup(int lines, int longest);
    void link(int line, int count);
    void unlink(int line);
    void skip_empty() {
      while (lowest + 1 < static_cast<int>(head.size()) && head[lowest] < 0) ++lowest;
    }
  };

  // singletons.cpp
  void pivot_logicals();
  void count_columns();
  void pivot_column_singletons();
  void pivot_row_singletons();
  void record_pivot(int row, int position, double value);
  void store_singleton_column(int position, int row, double value);
  Span column_of(int position) const;

  // markowitz.cpp
  void load_nucleus();
  KernelOutcome eliminate_nucleus();
  bool find_pivot();
  bool find_singleton();
  bool search_row(int row);
  bool search_column(int position);
  void consider(int row, int position, double merit, double value);
  void eliminate_pivot();
  void store_pivot_column();
  void store_pivot_row();
  double take_out_of_column(int position, int row);
  void update_column(int position, double u);
  void put_maximum_first(int position);
  void remove_from_row(int row, int position);
  void make_room_in_column(int position, int more);
  void make_room_in_row(int row, int more);
  void sort_lines_by_place(const Vector<Line>& lines);
  void compress_active_columns();
  void compress_active_rows();

  // dense.cpp
  bool worth_dense() const;
  bool load_dense();
  bool worth_block() const;
  bool stop_asked() const { return settings_.stop != nullptr && settings_.stop->requested(); }
  KernelOutcome factor_dense();
  void store_dense_pivot(int k, const double* dense, int order);

  // assembly.cpp
  void assemble();
  void assemble_nucleus_columns();
  void build_rows(const EntryFile& from, const Vector<Span>& columns, EntryFile& to,
                  Vector<Span>& rows);

  // Input of the run.
  const SparseMatrix* matrix_ = nullptr;
  const int* variables_ = nullptr;
  int num_rows_ = 0;
  int num_positions_ = 0;
  KernelSettings settings_;
  LuFactors* lu_ = nullptr;

  // Singleton phase.
  Vector<int> structurals_;    // positions without a logical
  Vector<int> column_count_;   // [positions] entries in unpivoted rows
  Vector<int> column_sum_;     // [positions] sum of those rows (mod 2^32): names the last one
  Vector<int> row_count_;      // [rows] entries in unpivoted positions
  Vector<int> row_begin_;      // [rows + 1] into row_positions_
  Vector<int> row_positions_;  // positions of the structurals by unpivoted row
  Vector<int> queue_;

  // Active submatrix of the nucleus: values by columns with the largest magnitude first, the
  // pattern alone by rows.
  Vector<Line> active_row_;     // [rows]
  Vector<Line> active_column_;  // [positions]
  Vector<int> row_file_;        // positions
  int row_used_ = 0;
  EntryFile column_file_;  // rows and values
  CountLists row_lists_, column_lists_;
  int rows_left_ = 0, positions_left_ = 0;
  long active_nonzeros_ = 0;
  int pivot_row_ = -1, pivot_position_ = -1;
  double best_merit_ = 0.0, best_value_ = 0.0;
  Vector<double> multiplier_;  // [rows] of the current pivot column, 0 elsewhere
  Vector<int> pivot_rows_;     // rows of the current pivot column but the pivot's
  Vector<int> touched_;        // [rows] stamp of the last column that met the row
  int stamp_ = 0;

  // Rows of U that the nucleus makes, by nucleus pivot; indices are positions.
  EntryFile u_file_;
  Vector<Span> u_span_;  // [nucleus pivots]
  Vector<int> scratch_;

  // Dense kernel: local row and column numbers to rows and positions.
  Vector<int> dense_rows_, dense_positions_;

  double work_ = 0.0;
  long nonzeros_ = 0;
};

}  // namespace kelvo
