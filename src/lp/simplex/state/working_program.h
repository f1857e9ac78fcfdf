// The program as the simplex methods see it: the matrix, and working copies of costs and bounds.
//
//     minimize c'x   subject to   [A I] x = 0,   lower <= x <= upper
//
// over N = n + m variables, the structural ones first (lp_problem.h). The methods may perturb,
// shift or, in a first phase, replace the working costs and bounds; the true ones stay in the
// problem and come back with take_costs(), take_bounds() or take_shifts_back(). Each change of the
// working numbers is recorded by its function below, so that a run whose costs were never touched
// pays nothing for restoring them:
//
// - no shifts and not costs_perturbed(): cost[j] is the problem's for every j;
// - not costs_perturbed(): cost[j] is the problem's for every j that shifted() does not list;
// - not bounds_perturbed(): lower and upper are the problem's.
#pragma once

#include "base/containers.h"
#include "base/random.h"
#include "base/work_vector.h"
#include "lp/form/lp_problem.h"
#include "lp/simplex/state/partitioned_rows.h"

namespace kelvo {

class WorkingProgram {
 public:
  /// The problem must outlive the object.
  explicit WorkingProgram(LpProblem& lp);

  LpProblem& problem;
  Random random;         // of tie keys and perturbations
  Vector<double> cost;   // [N] working costs
  Vector<double> lower;  // [N] working bounds
  Vector<double> upper;  // [N]
  Vector<int> tie_key;   // [N] a fixed permutation of 0..N-1, random at first, that breaks ties
  // The matrix by row; its active part are the columns of movable nonbasic structural variables, as
  // Basis keeps it.
  PartitionedRows rows;

  bool is_fixed(int j) const { return lower[j] == upper[j]; }
  bool is_boxed(int j) const { return lower[j] > -kInf && upper[j] < kInf; }
  bool is_free(int j) const { return lower[j] == -kInf && upper[j] == kInf; }

  /// Adds factor times column j of [A I] to a vector indexed by row.
  void add_column(int j, double factor, WorkVector& x) const;
  /// Column j alone in a cleared vector indexed by row.
  void load_column(int j, WorkVector& x) const;

  // Costs.
  bool costs_perturbed() const { return costs_perturbed_; }
  /// After changes of any working costs.
  void set_costs_perturbed() { costs_perturbed_ = true; }
  /// Variables whose costs ratio tests and dual corrections have changed, in the order of the
  /// changes; one may be listed twice.
  const Vector<int>& shifted() const { return shifted_; }
  int num_shifts() const { return static_cast<int>(shifted_.size()); }
  void shift_cost(int j, double amount) {
    shifted_.push_back(j);
    cost[j] += amount;
  }
  /// Forgets the list of shifts: the costs of its variables are true again.
  void clear_shifts() { shifted_.clear(); }
  void take_shifts_back();
  void take_costs();
  /// Of the problem and the working copy.
  void set_cost(int j, double c) { problem.cost[j] = cost[j] = c; }

  // Bounds.
  bool bounds_perturbed() const { return bounds_perturbed_; }
  /// After changes of any working bounds.
  void set_bounds_perturbed() { bounds_perturbed_ = true; }
  void take_bounds();
  /// Of the problem and the working copy.
  void set_bounds(int j, double low, double high) {
    problem.lower[j] = lower[j] = low;
    problem.upper[j] = upper[j] = high;
  }

  /// What a trial puts back: the flags and the number of shifts. Costs and bounds themselves are
  /// the trail's.
  struct Mark {
    bool costs_perturbed = false;
    bool bounds_perturbed = false;
    std::size_t num_shifts = 0;
  };
  Mark mark() const { return {costs_perturbed_, bounds_perturbed_, shifted_.size()}; }
  void return_to(const Mark& mark) noexcept;

  /// After the problem has changed its shape; costs and bounds are the caller's.
  void resize();
  /// The row-wise copy of a matrix with other columns than before; every column is active.
  void copy_rows_again();

 private:
  Vector<int> shifted_;
  bool costs_perturbed_ = false;
  bool bounds_perturbed_ = false;
};

}  // namespace kelvo
