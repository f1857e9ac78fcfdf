// The values of the basic variables, with their bounds beside them, all by basis position.
//
//     x_B = -B^-1 N x_N
//
// lower[p] and upper[p] are the working bounds of header[p] at any time. value[p] belongs to the
// basis and to the places of the nonbasic variables as far as validity() says; moves of nonbasic
// variables since then may be pending in `moves`, which SimplexState::apply_moves() takes over.
//
// The methods update value[] in their loops and keep the validity themselves through the functions
// below.
#pragma once

#include "base/work_vector.h"
#include "lp/simplex/state/basis.h"
#include "lp/simplex/state/basis_inverse.h"
#include "lp/simplex/state/validity.h"

namespace kelvo {

class BasicValues {
 public:
  BasicValues(const WorkingProgram& program, const Basis& basis);

  Vector<double> value;  // [m]
  Vector<double> lower;  // [m]
  Vector<double> upper;  // [m]
  WorkVector moves;  // [m] by row: columns times moves of nonbasic variables, still to be applied

  bool current() const { return validity_ != Validity::stale; }
  bool fresh() const { return validity_ == Validity::fresh; }
  Validity validity() const { return validity_; }
  void set_validity(Validity validity) { validity_ = validity; }
  /// After an update: current values are no longer fresh ones.
  void lose_freshness() {
    if (fresh()) validity_ = Validity::updated;
  }

  /// value := -B^-1 N x_N; nothing is pending afterwards. `rhs` [m] is work space, cleared.
  void compute(BasisInverse& inverse, WorkVector& rhs);
  /// value -= step * column, where `column` is by position.
  void move_along(const WorkVector& column, double step);
  /// The bounds of header[p] have changed.
  void refresh_bounds(int p) {
    const int j = basis_.header[p];
    lower[p] = program_.lower[j];
    upper[p] = program_.upper[j];
  }
  void refresh_all_bounds();

 private:
  const WorkingProgram& program_;
  const Basis& basis_;
  Validity validity_ = Validity::stale;
};

}  // namespace kelvo
