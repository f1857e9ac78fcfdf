// Triangular solves with the stored factors, in a sparse and a plain form.
//
// Sparse form: a depth-first search from the nonzeros of the right-hand side lists, in topological
// order, all pivots whose value can become nonzero; only these are touched. Plain form: one pass
// over the pivots that skips zeros. The search gives up, and the plain form runs, when its reach
// grows beyond what a plain pass costs.
//
// The solves work on two vectors of the solver's own, indexed by pivot ("inner" vectors), which
// are zero between solves. A right-hand side moves into one of them (by rows or by positions) and
// the last stage moves the result out again.
#pragma once

#include "base/work_vector.h"
#include "lp/factor/lu/factors.h"

namespace kelvo {

class LuSolver {
 public:
  explicit LuSolver(const LuFactors& factors) : lu_(factors) {}

  /// Makes the work arrays long enough for factors of this order; they never shrink.
  void setup(int order);
  WorkVector& inner(int which) { return inner_[which]; }

  /// Moves `from`, indexed by lines whose pivots are pivot_of_line, to an inner vector.
  void enter(WorkVector& from, const Vector<int>& pivot_of_line, const Vector<int>& line_of_pivot,
             WorkVector& to);

  // Stages of ftran, in their order. `expected` is the density expected of the final result.
  void solve_l(WorkVector& x, double expected);
  void solve_etas(WorkVector& x);
  /// The result goes to `out` by basis positions; x is zero again.
  void solve_u(WorkVector& x, double expected, WorkVector& out);

  // Stages of btran, in their order.
  void solve_u_transposed(WorkVector& y, double expected);
  void solve_etas_transposed(WorkVector& y);
  /// The result goes to `out` by rows; y is zero again.
  void solve_l_transposed(WorkVector& y, double expected, WorkVector& out);

  // The plain forms of the same stages for two vectors at once.
  void solve_l_pair(WorkVector& a, WorkVector& b);
  void solve_u_pair(WorkVector& a, WorkVector& b, WorkVector& out_a, WorkVector& out_b);
  void solve_u_transposed_pair(WorkVector& a, WorkVector& b);
  void solve_l_transposed_pair(WorkVector& a, WorkVector& b, WorkVector& out_a, WorkVector& out_b);

  /// True when the sparse form promises to pay for k nonzeros in the right-hand side.
  bool worth_sparse(int k, double expected) const;

  double work() const { return work_; }
  void reset_work() { work_ = 0.0; }

 private:
  /// Lists in reach_[result..m) all pivots reachable from x's; -1 when there are too many.
  int reach(const WorkVector& x, const Vector<Span>& lines, const EntryFile& file);

  const LuFactors& lu_;
  // All of [m] or longer.
  WorkVector inner_[2];  // by pivot, zero between solves
  Vector<char> marked_;  // 1 while a pivot is in the reach
  Vector<int> reach_;
  Vector<int> stack_;   // pivots on the path of the search
  Vector<int> resume_;  // where the search continues in the line of stack_[k]
  double work_ = 0.0;
};

}  // namespace kelvo
