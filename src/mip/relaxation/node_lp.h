// The linear relaxation of the node in work: one simplex that stays hot through the whole search.
//
// The program is scaled inside; everything here is in its own units. Bounds change in place, basis
// and factor survive from node to node, and a node elsewhere in the tree starts from its snapshot.
#pragma once

#include "lp/solve/working_lp.h"

namespace kelvo {

enum class NodeLpOutcome {
  optimal,
  infeasible,
  cutoff,  // no point is better than the cutoff
  unbounded,
  iteration_limit,
  time_limit,
  aborted,
  failed  // numerical trouble that no fresh start mended
};

/// What lies behind one side of a branch, as far as a few iterations tell.
struct ProbedSide {
  double bound = -kInf;     // no point of the side is better; kInf: there is none
  bool infeasible = false;  // or beyond the cutoff
  bool solved = false;      // `bound` is the optimum of the side's relaxation
  int iterations = 0;
};

class NodeLp {
 public:
  /// `working`: the relaxation, at the basis where the first solve is to start.
  NodeLp(Owned<WorkingLp> working, const SimplexSettings& settings);

  int num_cols() const { return working_->lp().num_cols; }
  int num_vars() const { return working_->lp().num_vars(); }

  /// New bounds of a variable, column or logical, that hold from the next solve on.
  void set_bounds(int variable, double lower, double upper) {
    working_->put_bounds(variable, lower, upper);
  }

  double lower(int variable) const { return working_->lp().lower[variable] / factor(variable); }
  double upper(int variable) const { return working_->lp().upper[variable] / factor(variable); }

  SharedBasis snapshot() { return working_->simplex().snapshot(); }
  /// The bounds that go with the snapshot have been set.
  void start_from(const BasisSnapshot& basis);

  /// The dual simplex method from the present basis; a fresh start and the primal method where that
  /// does not end.
  NodeLpOutcome solve(double cutoff, int iteration_limit, const RunContext& context);

  /// Of the last solve that ended optimal, in the program's units.
  double objective() const { return objective_; }
  const Vector<double>& x() const { return x_; }                          // [num_cols]
  const Vector<double>& reduced_costs() const { return reduced_costs_; }  // [num_cols]

  /// After `infeasible`: multipliers of the rows [num_rows] whose combination no point of the box
  /// satisfies; false when there are none.
  bool infeasibility_proof(Vector<double>& y);

  /// Tries bounds of one column for at most so many iterations; then everything is as before. The
  /// last solve ended optimal.
  ProbedSide probe(int column, double lower, double upper, double cutoff, int iteration_limit,
                   const RunContext& context);

  double iterations() const { return iterations_; }
  double work() const { return working_->simplex().work(); }

 private:
  double factor(int variable) const {
    return working_->scaling().variable_factor(variable, num_cols());
  }
  NodeLpOutcome run(bool dual, const SimplexSettings& settings, const RunContext& context);
  void take_solution();

  Owned<WorkingLp> working_;
  SimplexSettings settings_;
  double iterations_ = 0.0;
  double objective_ = 0.0;
  Vector<double> x_;
  Vector<double> reduced_costs_;
  Vector<VariableBounds> probed_;  // work space
};

}  // namespace kelvo
