// Strong branching: how much worse does the objective get when a column with a fractional value is
// rounded down, or up?
//
// From an optimal basis each side is a probe (Simplex::probe): one bound of one column changes, a
// few iterations of the dual simplex method only ever worsen the objective, and what it has reached
// by then is the answer. After each side everything is as before. (D. Applegate, R. Bixby, V.
// Chvatal and W. Cook, "Finding cuts in the TSP", 1995.)
#pragma once

#include "lp/solve/working_lp.h"
#include "prob/model/model.h"

namespace kelvo {

enum class BranchingStop { none, time_limit, aborted };

class StrongBranching {
 public:
  /// The working LP is at an optimal basis with its factor. `settings` are those of the
  /// environment; display and limits are set here. All arguments must outlive the object.
  StrongBranching(const Model& model, WorkingLp& working, const SimplexSettings& settings,
                  int iteration_limit, const RunContext& context);

  /// Objectives in the model's sense after rounding column `j`, which has the value x: 1e75 times
  /// the sense for a side that is infeasible. A value that is integral has its bound moved to it.
  BranchingStop probe(int j, double x, double& down, double& up);

 private:
  BranchingStop run_side(int j, double lower, double upper, double& objective);

  const Model& model_;
  WorkingLp& working_;
  SimplexSettings settings_;
  const RunContext& context_;
};

}  // namespace kelvo
