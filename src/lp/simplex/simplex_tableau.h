// The algebra of a Simplex's factored basis, for whoever reads its tableau.
//
// Solves are in the engine's terms: vectors by row on one side of the inverse, by basis position
// on the other (lp/factor/basis_factor.h). They use the work vectors of the Simplex, so that
// nothing here allocates; a result is valid until the next solve or run, and may be overwritten by
// the caller. Needs a current factor (Simplex::has_factor()) and leaves the basis unchanged.
#pragma once

#include "base/work_vector.h"
#include "lp/simplex/simplex.h"

namespace kelvo {

class SimplexTableau {
 public:
  /// The Simplex must outlive the object.
  explicit SimplexTableau(Simplex& simplex) : state_(*simplex.state_) {}

  // Right-hand sides, cleared: fill one of them and solve.

  /// [m], by row, for ftran(). The one of column() and entering_column().
  WorkVector& empty_column() const;
  /// [m], one for either solve.
  WorkVector& empty_vector() const;
  /// Lists the entries of a variable's column of [A I] in a cleared vector.
  void load_column(int variable, WorkVector& x) const;

  /// x := B^-1 x and y := y'B^-1. The density of the result that is expected is in (0, 1].
  void ftran(WorkVector& x, double expected_density = 1.0) const;
  void btran(WorkVector& y, double expected_density = 1.0) const;

  /// B^-1 a_j, by position, kept by the factor for an exchange (BasisSteps::exchange).
  const WorkVector& entering_column(int variable) const;
  /// e_p'B^-1, by row, with an index list.
  WorkVector& inverse_row(int position) const;
  /// e_p'B^-1 [A I] over the nonbasic variables that are not fixed, with an index list [num_vars].
  /// The row of the inverse remains valid beside it.
  const WorkVector& row(int position) const;

 private:
  SimplexState& state_;
};

}  // namespace kelvo
