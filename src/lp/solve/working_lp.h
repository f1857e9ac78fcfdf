// The working LP of a problem: the scaled copy of its linear part with the simplex that runs on it.
//
// It is kept between calls, so that a call after a change of bounds, right-hand sides or costs
// continues with the factor and the pricing weights of the last one. Whether it still fits the
// model is not a matter of trust: fits() compares the numbers themselves, which costs no more than
// the check of the answer that ends every call.
//
// The message sink, the stop check and the hook belong to a call, which hands them to each run.
#pragma once

#include "lp/form/scaling.h"
#include "lp/simplex/simplex.h"
#include "lp/solve/model_to_lp.h"
#include "prob/attachment.h"
#include "prob/change_kind.h"

namespace kelvo {

/// What a call lends to the engines.
struct CallContext {
  MessageSink& sink;
  StopCheck& stop;
  IterationHook* hook = nullptr;  // may be null

  /// For one run of a simplex method.
  RunContext for_run(Rival* rival = nullptr) const { return {&sink, &stop, hook, rival}; }
};

class WorkingLp final : public Attachment {
 public:
  /// Copies and scales the model and starts with the slack basis.
  WorkingLp(const Model& model, ScalingMethod method, MessageSink& sink);

  /// True when the matrix of the model and the scaling asked for are those of this object.
  bool fits(const Model& model, ScalingMethod method) const;
  /// Takes over costs and bounds of a model that it fits.
  void refresh(const Model& model);
  /// Forgets basis, factor and weights: the slack basis again.
  void start_afresh();
  /// Starts from a stored basis, unless that is the basis in force already. `x` [num_cols], in the
  /// model's units, may say where superbasic columns stand.
  void start_from(const StoredBasis& basis, const Model& model, const double* x = nullptr);
  /// Takes over the steepest-edge norms that come with a stored basis, the one in force. Scaling of
  /// rows is left out of account: weights need not be exact.
  void give_norms(const StoredBasis& basis);
  /// True when the basis in force has the basic variables of a stored one.
  bool has_basic_variables_of(const StoredBasis& basis) const;
  /// Factors the basis in force and computes its values without iterating; false when the basis is
  /// singular.
  bool compute_basic_solution(const SimplexSettings& settings, const RunContext& context);

  const LpProblem& lp() const { return lp_; }
  const Scaling& scaling() const { return scaling_; }
  Simplex& simplex() { return *simplex_; }
  const Simplex& simplex() const { return *simplex_; }
  /// True when the factor is that of the basis in force.
  bool has_factor() const;
  /// New bounds of a column in the model's units, until the next refresh().
  void change_bounds(int column, double lower, double upper);
  /// Of the basic variables that move towards a bound along a direction [num_vars], but far more
  /// slowly than others do, makes the unit so small that they move as fast. The slack basis again;
  /// false when there is none.
  bool magnify_blocking(const Vector<double>& direction);
  /// The revisions of the problem that this object agrees with, by the word of its owner.
  const Revisions& agrees_with() const { return agrees_with_; }
  void set_agrees_with(const Revisions& revisions) { agrees_with_ = revisions; }
  void agree_with_nothing() { agrees_with_ = kNoRevisions; }
  /// The scaling that was asked for; kept when the LP has been replaced by an unscaled one.
  void set_requested_scaling(ScalingMethod method) { requested_ = method; }

  /// Constant of the minimized objective, for the log and the objective limits.
  void set_objective_constant(double constant) { lp_.offset = constant; }

  /// Primal values [num_cols] of the last run in the model's units.
  void unscaled_x(Vector<double>& x) const;
  /// Duals [num_rows] in the model's units and its objective's sense.
  void unscaled_pi(const Model& model, Vector<double>& pi) const;
  /// A multiplier vector [num_rows] in the model's units.
  void unscaled_farkas(Vector<double>& y) const;
  /// The direction [num_vars] of unboundedness of the last run to full precision, scaled.
  void exact_direction(Vector<double>& direction) const;
  /// The structural part [num_cols] of a direction in the model's units.
  void unscale_direction(const Vector<double>& direction, Vector<double>& ray) const;

 private:
  static constexpr Revisions kNoRevisions{.structure = ~std::uint64_t{0}};

  void make_simplex();

  ScalingMethod requested_;
  Revisions agrees_with_ = kNoRevisions;
  LpProblem lp_;
  Scaling scaling_;
  Owned<Simplex> simplex_;  // over lp_
};

}  // namespace kelvo
