// The work program of sifting: all rows and some of the columns of a whole program. The columns
// left out are at a bound, which shifts the limits of the rows and the objective.
#pragma once

#include "lp/simplex/simplex.h"

namespace kelvo {

class WorkProgram {
 public:
  /// The whole program must outlive the object.
  explicit WorkProgram(const LpProblem& whole) : whole_(whole) {}

  /// Takes the columns marked [whole columns], at the basis that `status` [whole variables] says,
  /// from which a run begins; the columns left out are at the bounds of their statuses.
  void take(const Vector<char>& marks, const Vector<int>& status);
  /// Statuses of the last run, in the whole program's.
  void copy_statuses(Vector<int>& status) const;

  const LpProblem& lp() const { return lp_; }
  /// [lp().num_cols] which columns they are, ascending.
  const Vector<int>& columns() const { return columns_; }
  Simplex& simplex() { return *simplex_; }
  const Simplex& simplex() const { return *simplex_; }

 private:
  void copy_columns();
  void shift_limits(const Vector<char>& marks, const Vector<int>& status);

  const LpProblem& whole_;
  LpProblem lp_;
  Vector<int> columns_;
  Owned<Simplex> simplex_;  // over lp_
};

}  // namespace kelvo
