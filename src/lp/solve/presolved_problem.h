// The presolved problem that a problem keeps: the presolved program in the terms of the caller's
// model, and as a problem of its own when the caller asks to see it.
#pragma once

#include "lp/solve/presolved_lp.h"
#include "prob/problem.h"

namespace kelvo {

class PresolvedProblem {
 public:
  /// The program was made from the model of `original`.
  PresolvedProblem(Owned<PresolvedLp>&& lp, const Problem& original);

  const PresolvedLp& lp() const { return *lp_; }
  bool has_reduced() const { return lp_->has_reduced(); }
  /// What the objective of the reduced problem lacks of that of the original one.
  double objective_offset() const { return sense_ * lp_->reduced().offset; }

  /// Brings the reduced program up to date after changes of the objective; false when the
  /// reductions do not allow it and the object is to go.
  bool catch_up(const Problem& original);

  /// The reduced program as a problem that carries the names of the original's rows and columns.
  Problem& shown(const Problem& original);

 private:
  Owned<PresolvedLp> lp_;
  const int sense_;
  std::uint64_t cost_revision_;
  Owned<Problem> shown_;  // null until the caller asks
};

/// One mark per column of the problem, or nothing when no column is protected.
Vector<char> protection_marks(const Problem& problem);

}  // namespace kelvo
