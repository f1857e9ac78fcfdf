// Presolve: a smaller program with the same optimum, and postsolve.
//
//     Presolve presolve(lp, settings, marks, stop);
//     if (presolve.outcome() == PresolveOutcome::reduced) {
//       const LpProblem reduced = presolve.take_reduced();
//       LpSolution solution;
//       solve_reduced(presolve, reduced, inner, solution);   // solve_reduced.h
//     }
//
// The reduced program keeps rows and columns in their order. Bounds are tightened in it only where
// postsolve can repair the duals, so that an optimal basis of the reduced program becomes an
// optimal basis of the original one.
//
// Integer columns: reductions hold for whole values of them, and whole values come back. Arguments
// from duals hold then for the continuous columns only, so that duals and bases of the continuous
// relaxation are not promised to come back as optimal ones.
//
// Cheap reductions run from work lists of the lines that changed; those that look at the whole
// program follow when the lists are empty, and all of it is repeated as long as a pass removes a
// worthwhile part of what is left. The work is bounded by a multiple of the number of nonzeros.
#pragma once

#include "lp/form/lp_solution.h"
#include "lp/presolve/presolve_lp.h"

namespace kelvo {

class Presolve {
 public:
  /// Runs presolve on a program whose row-wise matrix is not looked at. Settings and stop check are
  /// used during the construction only. `progress` may be null.
  Presolve(const LpProblem& lp, const PresolveSettings& settings, const ColumnMarks& marks,
           StopCheck& stop, PresolveProgress* progress = nullptr);

  PresolveOutcome outcome() const { return outcome_; }
  const PresolveStats& stats() const { return stats_; }
  const Finding& finding() const { return finding_; }
  int num_rows() const { return static_cast<int>(row_map_.size()); }
  int num_cols() const { return static_cast<int>(col_map_.size()); }
  /// [num_rows], [num_cols] new index, or -1 for what is gone.
  const Vector<int>& row_map() const { return row_map_; }
  const Vector<int>& col_map() const { return col_map_; }
  /// Original index of each reduced row and column.
  const Vector<int>& kept_rows() const { return kept_rows_; }
  const Vector<int>& kept_cols() const { return kept_cols_; }
  const PostsolveStack& stack() const { return stack_; }
  /// The reduced program, of an outcome `reduced` or `unchanged`. It is handed over.
  LpProblem take_reduced() { return std::move(reduced_); }

  /// Follows a change of the costs [num_cols] of the original program: gives those of the reduced
  /// one [reduced columns] and its constant, and puts the new costs into the records. False when a
  /// reduction rests on the costs as they were (without dual reductions few do); postsolve gives no
  /// duals of any use then.
  bool reprice(const Vector<double>& cost, Vector<double>& reduced_cost, double& offset);

  /// Turns a solution of the reduced program into one of the original program, with the same
  /// layers: x from x; y and z from y and z; statuses from all of these.
  void postsolve(const LpSolution& reduced, LpSolution& original) const;

 private:
  void make_reduced(const PresolveLp& lp);

  PresolveOutcome outcome_ = PresolveOutcome::unchanged;
  PresolveStats stats_;
  Finding finding_;
  PostsolveStack stack_;
  LpProblem reduced_;
  Vector<int> row_map_, col_map_;
  Vector<int> kept_rows_, kept_cols_;
};

}  // namespace kelvo
