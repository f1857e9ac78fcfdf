// A presolved program: the reduced one, and how answers and starts get from one to the other.
#pragma once

#include "lp/form/lp_start.h"
#include "lp/presolve/presolve.h"
#include "lp/solve/working_lp.h"

namespace kelvo {

class PresolveLog;

class PresolvedLp {
 public:
  /// Presolves a program and reports it. The row-wise matrix is not looked at.
  PresolvedLp(const LpProblem& original, const PresolveSettings& settings,
              const Vector<char>& protected_columns, const CallContext& context, PresolveLog& log);

  const Presolve& presolve() const { return presolve_; }
  PresolveOutcome outcome() const { return presolve_.outcome(); }
  /// True when there is a reduced program: always after the outcome `reduced`.
  bool has_reduced() const { return has_reduced_; }
  /// Its objective, offset included, is that of the original program.
  const LpProblem& reduced() const { return reduced_; }
  /// After the outcome `unchanged` makes the reduced program a copy of the original one.
  void keep_identity(const LpProblem& original);

  /// A start of the original program as one of the reduced program. When it comes with a point
  /// (`start.x`), the reduced start is at that point: columns that presolve's changes of the basis
  /// leave between their bounds are superbasic.
  LpStart crush(const LpStart& start, const LpProblem& original) const;

  /// Follows a change of the costs [num_cols] of the original program; false when the reductions do
  /// not allow it.
  bool change_costs(const Vector<double>& cost);

 private:
  Presolve presolve_;
  bool has_reduced_ = false;
  LpProblem reduced_;
};

}  // namespace kelvo
