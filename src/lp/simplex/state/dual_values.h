// Row duals and reduced costs of the basis under the working costs.
//
//     y = B^-T c_B,    d = c - [A I]'y
//
// reduced_cost[j] is d_j, 0 for basic variables. While current() it is right for every nonbasic
// variable that may move; for the immovable ones (Basis::kStays) only while fresh(). The primal
// method with sectional pricing keeps y alone and computes d where it looks.
//
// The methods update both arrays in their loops and keep the validity themselves through the
// functions below.
#pragma once

#include "base/containers.h"
#include "base/work_vector.h"
#include "lp/simplex/state/basis.h"
#include "lp/simplex/state/basis_inverse.h"
#include "lp/simplex/state/validity.h"

namespace kelvo {

class DualValues {
 public:
  DualValues(const WorkingProgram& program, const Basis& basis);

  Vector<double> row_duals;     // [m] y, by row
  Vector<double> reduced_cost;  // [N] d
  // Of the working problem; the dual method keeps it up to date. Valid while these values and the
  // basic ones are current.
  double objective = 0.0;

  bool current() const { return validity_ != Validity::stale; }
  bool fresh() const { return validity_ == Validity::fresh; }
  Validity validity() const { return validity_; }
  void set_validity(Validity validity) { validity_ = validity; }
  /// The basis or the costs are others now.
  void make_stale() {
    validity_ = Validity::stale;
    feasible_ = false;
  }
  /// After an update: current values are no longer fresh ones.
  void lose_freshness() {
    if (fresh()) validity_ = Validity::updated;
  }
  /// Any nonbasic variables may have moved, or may move now: only fresh values serve for all.
  void follow_movements() {
    if (!fresh()) validity_ = Validity::stale;
    feasible_ = false;
  }

  /// No reduced cost of the movable variables has the wrong sign beyond the tolerance, as recorded
  /// by whoever has looked.
  bool feasible() const { return feasible_; }
  void set_feasible(bool feasible) { feasible_ = feasible; }
  /// A nonbasic variable with this reduced cost and movement has the wrong sign.
  static bool wrong(double d, int movement, double tolerance) {
    return movement == Basis::kAnywhere ? d > tolerance || d < -tolerance
                                        : d * movement < -tolerance;
  }

  /// Both arrays from scratch. `rhs` [m] is work space, cleared.
  void compute(BasisInverse& inverse, WorkVector& rhs);
  /// d_j from y, of one variable.
  double priced_out(int j) const;
  /// d from y.
  void price_out();
  /// One step of iterative refinement of y = c_B B^-1 with residuals in extended precision; the
  /// basic costs c_B are the working ones, or the unit vector of a basis position.
  void refine(Vector<double>& y, int unit_position, BasisInverse& inverse, WorkVector& rhs) const;
  /// The sum of d_j x_j over the nonbasic variables (A x + s = 0 leaves nothing else) plus the
  /// offset: the objective of the working problem, and the dual one too. Needs fresh values.
  double working_objective() const;

 private:
  const WorkingProgram& program_;
  const Basis& basis_;
  Validity validity_ = Validity::stale;
  bool feasible_ = false;
};

}  // namespace kelvo
