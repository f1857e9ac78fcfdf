// Elimination of a symmetric matrix until a pivot shows that it is not positive semidefinite.
//
// The rows that are left hold their off-diagonal entries, both triangles, sorted by column, and
// their diagonal entry apart. Eliminating row p with pivot d and entries s_i replaces a_ij by
// a_ij - s_i s_j / d among its neighbours. Row p is kept for the way back.
#pragma once

#include <utility>

#include "base/sparse_matrix.h"

namespace kelvo {

/// A direction in which the form with the matrix ((a, b), (b, c)) is negative, given that there is
/// one.
std::pair<double, double> negative_direction(double a, double b, double c);

class SymmetricElimination {
 public:
  /// Of sign * Q; Q must outlive the object.
  SymmetricElimination(const SparseMatrix& q, double sign);

  /// Eliminates; true as soon as indefiniteness shows.
  bool run();
  /// After run() was true: a direction [columns] in which the form is negative, up to rounding.
  void direction(Vector<double>& x) const;

 private:
  struct Entry {
    int column;
    double value;
  };
  struct Eliminated {
    int row;
    double pivot;
    Vector<Entry> entries;
  };

  int choose();
  bool is_mostly_full() const;
  /// Looks at the pivot of a row; true when it shows indefiniteness.
  bool shows_indefiniteness(int row, double pivot, const Vector<Entry>& entries);
  void eliminate(int row);
  void drop(int row);
  void subtract(int row, double factor, const Vector<Entry>& pivot_row, int pivot_column);
  bool run_dense();

  Vector<Vector<Entry>> rows_;        // [columns] of the rows left
  Vector<double> diagonal_;           // [columns] of the rows left
  Vector<char> left_;                 // [columns] 1 while a row is left
  Vector<std::pair<int, int>> heap_;  // (degree when entered, row): smallest degree first
  int num_left_ = 0;
  std::int64_t entries_left_ = 0;  // off-diagonal, both triangles
  double tolerance_ = 0.0;
  Vector<Eliminated> eliminated_;  // in order
  Vector<Entry> merged_;           // scratch
  Vector<Entry> proof_;            // the negative direction among the rows left at the end
};

}  // namespace kelvo
