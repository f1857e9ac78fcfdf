// Triangular solves with the stored factors, in a sparse and a plain form.
//
// Sparse form: a depth-first search from the nonzeros of the right-hand side lists, in topological
// order, all positions that can become nonzero; only these are touched. Plain form: one pass over
// the pivots that skips zeros. The search gives up, and the plain form runs, when its reach grows
// beyond what a plain pass costs.
#pragma once

#include "base/work_vector.h"
#include "lp/factor/lu_factors.h"

namespace kelvo {

/// Off-diagonal entries of a row eta or of a partially transformed column, in row space.
struct PackedVector {
  Vector<int> index;     // [m], the first `count` are valid
  Vector<double> value;  // [m]
  int count = 0;
  int position = -1;  // of the basis, when the vector belongs to one
  bool valid = false;

  void setup(int m) {
    index.resize(m);
    value.resize(m);
    valid = false;
  }
};

class LuSolver {
 public:
  explicit LuSolver(const LuFactors& factors) : lu_(factors) {}

  /// Sizes the work arrays; to be called after every factorization.
  void setup();

  // Stages of ftran, in their order. `expected` is the density expected of the final result.
  void solve_l(WorkVector& x, double expected);
  void solve_etas(WorkVector& x);
  /// Also turns the vector from row space to basis positions; exchanges its storage.
  void solve_u(WorkVector& x, double expected);

  // Stages of btran, in their order.
  /// Turns the vector from basis positions to row space; exchanges its storage.
  void enter_rows(WorkVector& y);
  void solve_u_transposed(WorkVector& y, double expected);
  void solve_etas_transposed(WorkVector& y);
  void solve_l_transposed(WorkVector& y, double expected);

  /// True when the sparse form promises to pay for k nonzeros in the right-hand side.
  bool worth_sparse(int k, double expected) const;

  double work() const { return work_; }
  void reset_work() { work_ = 0.0; }

 private:
  /// Lists in reach_[result..m) all positions reachable from x's; -1 when there are too many.
  int reach(const WorkVector& x, const Vector<Span>& lines, const EntryFile& file);
  /// The vector's list is lost; it is rebuilt if the vector turns out sparse.
  void finish_plain(WorkVector& x);

  const LuFactors& lu_;
  Vector<char> marked_;   // [m] 1 while a position is in the reach
  Vector<int> reach_;     // [m]
  Vector<int> stack_;     // [m] positions of the search
  Vector<int> resume_;    // [m] where to go on in the line of stack_[k]
  Vector<double> zeros_;  // [m] all zero between calls
  Vector<double> zeros_b_;
  double work_ = 0.0;
};

}  // namespace kelvo
