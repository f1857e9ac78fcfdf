// The presolved problem of a model: the reduced model with the way back to the model's own terms.
//
// The reduced model has the sense of the original one and, beside it, an objective constant: the
// objective of the original model is that of the reduced one plus objective_offset().
#pragma once

#include "lp/presolve/presolve.h"
#include "lp/solve/driver.h"
#include "prob/attachment.h"
#include "prob/problem.h"

namespace kelvo {

class PresolveLog;

class PresolvedLp final : public Attachment {
 public:
  /// Presolves the linear part of a model and reports it.
  PresolvedLp(const Model& model, const PresolveSettings& settings,
              const Vector<char>& protected_columns, const CallContext& context);

  const Presolve& presolve() const { return presolve_; }
  PresolveOutcome outcome() const { return presolve_.outcome(); }
  /// In the original objective's sense. Of outcomes `reduced` and `unchanged`.
  double objective_offset() const { return sense_ * offset_; }
  /// Constant of the minimization that the engines see.
  double minimized_offset() const { return offset_; }
  /// True when there is a reduced model: always after the outcome `reduced`.
  bool has_reduced_model() const { return has_reduced_; }
  const Model& reduced_model() const { return reduced_; }
  /// After the outcome `unchanged` makes the reduced model a copy of the linear part.
  void keep_identity(const Model& model);

  /// An answer about the reduced model as a basic solution of the original one: x, y (of the
  /// minimization) and statuses. The answer must hold x, pi and a basis.
  void postsolve(const LpAnswer& answer, LpSolution& original) const;

  /// A basis of the original model as a start for the reduced one. When it comes with a point
  /// (`start.x`), the reduced start stands at that point: columns that presolve's changes of the
  /// basis leave between their bounds are superbasic.
  StoredBasis crush(const StoredBasis& start, const Model& original) const;

  /// From now on changes of the objective do not end this object: it follows them when it is next
  /// asked for (catch_up). For presolved problems that a caller works with, made without reductions
  /// that argue from the objective.
  void follow_objective() { follows_objective_ = true; }
  bool outlives(ChangeKind kind) noexcept override;
  /// Brings the reduced model in step with the original one; false when the reductions do not
  /// allow it and the object is to go.
  bool catch_up(const Model& original);

  /// The reduced model as a problem, for callers who ask; null until somebody sets it.
  Owned<Problem> reduced_problem;

 private:
  PresolvedLp(const Model& model, const PresolveSettings& settings,
              const Vector<char>& protected_columns, const CallContext& context, PresolveLog&& log);

  Presolve presolve_;
  const int sense_;
  double offset_ = 0.0;
  bool has_reduced_ = false;
  bool follows_objective_ = false;
  bool objective_changed_ = false;  // since the last catch_up()
  Model reduced_;
};

/// One mark per column of the problem, or nothing when no column is protected.
Vector<char> protection_marks(const Problem& problem);

/// A model with the given program, of the given sense, without names.
Model make_model(const LpProblem& lp, int sense);

}  // namespace kelvo
