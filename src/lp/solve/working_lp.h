// A working LP: the scaled copy of a program with the simplex that runs on it.
//
// The one of a problem is kept between calls, so that a call after a change of bounds, right-hand
// sides or costs continues with the factor and the pricing weights of the last one. Which revisions
// of the problem it agrees with is recorded here by whoever makes it agree.
//
// The message sink, the stop check and the hook belong to a call, which hands them to each run.
#pragma once

#include "lp/form/lp_solution.h"
#include "lp/form/lp_start.h"
#include "lp/form/measure_changes.h"
#include "lp/form/program_view.h"
#include "lp/simplex/simplex.h"
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

class WorkingLp {
 public:
  /// Takes a program over, closes bounds that cross and scales it; the slack basis.
  WorkingLp(LpProblem&& lp, ScalingMethod method, MessageSink& sink);

  /// Forgets basis, factor and weights: the slack basis again.
  void start_afresh();
  /// Starts from a given basis, unless that is the basis in force already.
  void start_from(const LpStart& start);
  /// Takes over the steepest-edge norms that come with the basis in force. Scaling of rows is left
  /// out of account: weights need not be exact.
  void give_norms(const LpStart& start);
  /// True when the basis in force has the basic variables of this one [num_vars].
  bool has_basic_variables_of(const Vector<int>& status) const;
  /// Factors the basis in force and computes its values without iterating; false when the basis is
  /// singular.
  bool compute_basic_solution(const SimplexSettings& settings, const RunContext& context);
  /// True when the factor is that of the basis in force.
  bool has_factor() const;

  const LpProblem& lp() const { return lp_; }
  const Scaling& scaling() const { return scaling_; }
  Simplex& simplex() { return *simplex_; }
  const Simplex& simplex() const { return *simplex_; }
  /// The program in its own units.
  ProgramView unscaled() const { return ProgramView(lp_, scaling_); }
  /// Bytes of a working LP's matrix in all its copies but the one for dense products.
  static double matrix_bytes(int nonzeros, bool compact);
  /// A copy of the program in its own units.
  LpProblem unscaled_copy() const;

  /// New numbers in the program's units; finish_changes() tells the simplex. Bounds that cross are
  /// closed.
  void put_cost(int column, double cost);
  void put_bounds(int variable, double lower, double upper);
  void finish_changes();
  /// Both at once for the bounds of one column.
  void change_bounds(int column, double lower, double upper) {
    put_bounds(column, lower, upper);
    finish_changes();
  }
  /// Names for messages: those of another copy of the program.
  void name_like(const LpProblem& other);
  /// Of the basic variables that move towards a bound along a direction [num_vars], but far more
  /// slowly than others do, makes the unit so small that they move as fast. The slack basis again;
  /// false when there is none.
  bool magnify_blocking(const Vector<double>& direction);

  /// The revisions of the problem that this object agrees with, as recorded by its owner.
  const Revisions& agrees_with() const { return agrees_with_; }
  void set_agrees_with(const Revisions& revisions) { agrees_with_ = revisions; }
  /// True when the last run ended at an optimum of the problem that was verified within these
  /// tolerances, as recorded by the owner.
  bool ended_optimal(const SimplexSettings& settings) const {
    return settings.feasibility_tolerance >= verified_feasibility_ &&
           settings.optimality_tolerance >= verified_optimality_;
  }
  void set_ended_optimal(bool optimal, const SimplexSettings& settings) {
    verified_feasibility_ = optimal ? settings.feasibility_tolerance : kInf;
    verified_optimality_ = optimal ? settings.optimality_tolerance : kInf;
  }
  /// The last verified answer with what was measured on the caller's model, whose numbers are still
  /// those that this object agrees with; null when there is none.
  Owned<MeasuredSolution> take_measured() { return std::move(measured_); }
  void keep_measured(Owned<MeasuredSolution> measured) { measured_ = std::move(measured); }
  /// True while what compute_basic_solution() left is there, as recorded by the owner.
  bool has_basic_solution() const { return has_basic_solution_ && has_factor(); }
  void forget_basic_solution() { has_basic_solution_ = false; }
  /// The scaling that was requested; kept when the LP has been replaced by an unscaled one.
  ScalingMethod requested_scaling() const { return requested_; }
  void set_requested_scaling(ScalingMethod method) { requested_ = method; }

  /// x, y and statuses of the last run in the program's units.
  void get_solution(LpSolution& solution) const;
  void unscaled_x(Vector<double>& x) const;
  /// A multiplier vector [num_rows] in the program's units.
  void unscaled_farkas(Vector<double>& y) const;
  /// The direction [num_vars] of unboundedness of the last run to full precision, scaled.
  void exact_direction(Vector<double>& direction) const;
  /// The structural part [num_cols] of a direction in the program's units.
  void unscale_direction(const Vector<double>& direction, Vector<double>& ray) const;

 private:
  static constexpr Revisions kNoRevisions{.structure = ~std::uint64_t{0}};

  void make_simplex();

  ScalingMethod requested_;
  Revisions agrees_with_ = kNoRevisions;
  LpProblem lp_;
  Scaling scaling_;
  bool has_basic_solution_ = false;
  Owned<MeasuredSolution> measured_;
  double verified_feasibility_ = kInf;  // tolerances of the last optimum
  double verified_optimality_ = kInf;
  Vector<VariableCost> cost_changes_;  // since the last finish_changes()
  Vector<VariableBounds> bound_changes_;
  Owned<Simplex> simplex_;  // over lp_
};

}  // namespace kelvo
