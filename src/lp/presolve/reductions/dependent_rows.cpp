// Equations that are linear combinations of others.
//
// Gaussian elimination on a copy of the equations: a pivot takes its row out, as independent, and
// its column out of all other rows. An equation that runs empty is dependent; it goes when its
// right-hand side has run empty too. The pivot is in a row with a single entry, if there is
// one, and otherwise in a shortest column and the shortest row of that. A column with one entry
// needs no arithmetic, which disposes of most equations. When the elimination becomes too much
// work, what is left counts as independent.
//
// Undo: the row never binds on its own, y_i = 0.
//
// Integrality: none, the columns stay.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"
#include "lp/presolve/reductions/substitution_rules.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// A pivot is at least this share of the largest entry of its column.
constexpr double kPivotShare = 0.05;

SparseMatrix equations_of(const PresolveLp& lp) {
  SparseMatrix columns;
  columns.num_major = lp.num_cols();
  columns.num_minor = lp.num_rows();
  columns.start.reserve(lp.num_cols() + 1);
  for (int j = 0; j < lp.num_cols(); ++j) {
    for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
      if (!lp.is_equation(lp.matrix[e].row)) continue;
      columns.index.push_back(lp.matrix[e].row);
      columns.value.push_back(lp.matrix[e].value);
    }
    columns.start.push_back(static_cast<int>(columns.index.size()));
  }
  return columns;
}

class DependentRows {
 public:
  DependentRows(PresolveLp& lp, std::int64_t work_allowed)
      : lp_(lp),
        work_limit_(lp.work + work_allowed),
        matrix_(equations_of(lp)),
        rhs_(lp.row_lower),
        size_(lp.num_rows()),
        exact_(lp.num_rows(), 1) {
    for (int i = 0; i < lp.num_rows(); ++i) size_[i] = std::max(1.0, std::fabs(rhs_[i]));
  }

  void run();

 private:
  struct Candidate {
    int count, column;                              // the count that it had when it was listed
    bool operator<(const Candidate& other) const {  // of a heap with the shortest on top
      return count != other.count ? count > other.count : column > other.column;
    }
  };

  void list_column(int j);
  int next_pivot();
  int pivot_in(int j) const;
  void eliminate(int e);
  void subtract_row(int pivot, int e);
  void take_out(int i);
  void row_is_empty(int i);

  PresolveLp& lp_;
  const std::int64_t work_limit_;
  LinkedMatrix matrix_;
  Vector<double> rhs_;            // [rows]
  Vector<double> size_;           // [rows] size of the largest right-hand side that went into it
  Vector<char> exact_;            // [rows] 1: no entry was cancelled but for rounding
  Vector<Candidate> candidates_;  // heap; outdated ones are skipped
  Vector<int> single_rows_;       // rows that came down to one entry
};

void DependentRows::list_column(int j) {
  if (matrix_.col_count(j) == 0) return;
  candidates_.push_back({matrix_.col_count(j), j});
  std::push_heap(candidates_.begin(), candidates_.end());
}

/// The entry to pivot on, or -1.
int DependentRows::next_pivot() {
  while (!single_rows_.empty()) {
    const int i = single_rows_.back();
    single_rows_.pop_back();
    if (matrix_.row_count(i) != 1) continue;
    const int e = matrix_.row_first(i);
    if (matrix_[e].value == matrix_[pivot_in(matrix_[e].col)].value) return e;
    // Too small against its column: it waits for the column.
  }
  while (!candidates_.empty()) {
    const Candidate top = candidates_.front();
    std::pop_heap(candidates_.begin(), candidates_.end());
    candidates_.pop_back();
    if (top.count == matrix_.col_count(top.column)) return pivot_in(top.column);
  }
  return -1;
}

/// The entry of column j, large enough, whose row is shortest.
int DependentRows::pivot_in(int j) const {
  double largest = 0.0;
  for (int e = matrix_.col_first(j); e >= 0; e = matrix_[e].col_next) {
    largest = std::max(largest, std::fabs(matrix_[e].value));
  }
  int best = -1;
  for (int e = matrix_.col_first(j); e >= 0; e = matrix_[e].col_next) {
    if (std::fabs(matrix_[e].value) < kPivotShare * largest) continue;
    if (best < 0 || matrix_.row_count(matrix_[e].row) < matrix_.row_count(matrix_[best].row)) {
      best = e;
    }
  }
  return best;
}

void DependentRows::take_out(int i) {
  lp_.work += matrix_.row_count(i);
  for (int e = matrix_.row_first(i); e >= 0; e = matrix_.row_first(i)) {
    const int j = matrix_[e].col;
    matrix_.erase(e);
    list_column(j);
  }
}

/// Takes the pivot's column out of the row of entry e.
void DependentRows::subtract_row(int pivot, int e) {
  const int i = matrix_[pivot].row, r = matrix_[e].row;
  const double ratio = -matrix_[e].value / matrix_[pivot].value;
  matrix_.erase(e);
  for (int f = matrix_.row_first(i); f >= 0; f = matrix_[f].row_next) {
    if (f == pivot) continue;
    const int j = matrix_[f].col;
    const double added = ratio * matrix_[f].value;
    lp_.work += std::min(matrix_.row_count(r), matrix_.col_count(j)) + 1;
    const int at = matrix_.find(r, j);
    if (at < 0) {
      matrix_.insert(r, j, added);
      continue;
    }
    const double sum = matrix_[at].value + added;
    if (sound_sum(matrix_[at].value, added) != 0.0) {
      matrix_.set_value(at, sum);
      continue;
    }
    if (sum != 0.0) exact_[r] = 0;
    matrix_.erase(at);
    list_column(j);
  }
  exact_[r] = exact_[r] && exact_[i];
  rhs_[r] += ratio * rhs_[i];
  size_[r] = std::max(size_[r], std::fabs(ratio) * size_[i]);
}

void DependentRows::eliminate(int e) {
  const int i = matrix_[e].row, j = matrix_[e].col;
  for (int f = matrix_.col_first(j); f >= 0;) {
    const int r = matrix_[f].row;
    const int next = matrix_[f].col_next;
    if (f != e) {
      subtract_row(e, f);
      if (matrix_.row_count(r) == 1) single_rows_.push_back(r);
      if (matrix_.row_count(r) == 0) row_is_empty(r);
    }
    f = next;
  }
  take_out(i);
}

void DependentRows::row_is_empty(int i) {
  const double rest = std::fabs(rhs_[i]);
  if (rest <= tol::kSame * size_[i]) {
    lp_.remove_row(i, kRemovedDependentRow);
  } else if (exact_[i] && rest > lp_.settings.feasibility_tolerance * size_[i]) {
    lp_.fail(FindingKind::dependent_row, i);
  }
}

void DependentRows::run() {
  candidates_.reserve(lp_.num_cols());
  for (int j = 0; j < lp_.num_cols(); ++j) list_column(j);
  for (int i = 0; i < lp_.num_rows(); ++i) {
    if (matrix_.row_count(i) == 1) single_rows_.push_back(i);
  }
  lp_.work += matrix_.num_nonzeros();
  for (int e = next_pivot(); e >= 0 && !lp_.tired() && lp_.work < work_limit_; e = next_pivot()) {
    eliminate(e);
    lp_.poll();
  }
}

}  // namespace

void remove_dependent_rows(PresolveLp& lp, std::int64_t work_allowed) {
  DependentRows(lp, work_allowed).run();
}

}  // namespace kelvo
