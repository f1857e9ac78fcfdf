// What the primal and the dual simplex share: one basis, its factor, its primal and dual values.
//
// Each quantity is a class of its own, in the file of its name, with its arrays, what they are
// indexed by, and how far they are valid:
//
//     program   working costs and bounds, the matrix          basics    values of basic variables
//     basis     header, statuses, places of nonbasic ones     duals     row duals, reduced costs
//     inverse   the factor                                    weights   pricing weights
//     run       settings, counters, limits                    results   what a run leaves
//
// This class joins them: the functions below make changes that concern several, and pass on what
// becomes stale. Changes of single arrays in the methods' loops keep the invariants themselves and
// tell the quantity what it is worth afterwards.
//
// A run continues from what the last one left as far as the quantities are valid, so that a run
// after a small change costs its iterations and little more: there is no pass over all variables
// between one hot run and the next.
#pragma once

#include <optional>

#include "base/work_vector.h"
#include "lp/simplex/simplex_log.h"
#include "lp/simplex/state/basic_values.h"
#include "lp/simplex/state/basis.h"
#include "lp/simplex/state/basis_inverse.h"
#include "lp/simplex/state/dual_values.h"
#include "lp/simplex/state/edge_weights.h"
#include "lp/simplex/state/optimum_record.h"
#include "lp/simplex/state/run_control.h"
#include "lp/simplex/state/run_results.h"
#include "lp/simplex/state/saved_basis.h"
#include "lp/simplex/state/solve_densities.h"
#include "lp/simplex/state/trail.h"
#include "lp/simplex/state/working_program.h"

namespace kelvo {

enum class Refactored {
  ok,        // fresh factor of the current basis
  repaired,  // fresh factor, but logicals replaced dependent columns
  restored,  // the basis was singular: the last basis that could be factored is back
  singular,  // nothing could be factored
  stopped,   // the stop check asked to stop on the way: no factor
};

/// No factor can be had, for whatever reason.
inline bool no_factor(Refactored result) {
  return result == Refactored::singular || result == Refactored::stopped;
}

class SimplexState {
 public:
  /// The problem must outlive the object; change_bounds() and change_costs() write to it.
  explicit SimplexState(LpProblem& lp);

  LpProblem& problem;
  int m;         // rows
  int n;         // structural columns
  int num_vars;  // n + m
  SimplexLog log;

  RunControl run;
  WorkingProgram program;
  Basis basis;
  BasisInverse inverse;
  BasicValues basics;
  DualValues duals;
  EdgeWeights weights;
  RunResults results;
  OptimumRecord optimum;
  Trail trail;

  // Work space of an iteration.
  SolveDensities density;
  WorkVector row_ep;     // [m] row of the inverse, indexed by row
  WorkVector pivot_row;  // [num_vars] movable entries of row_ep'[A I]
  WorkVector entering;   // [m] B^-1 a_q, indexed by position
  WorkVector auxiliary;  // [m] steepest-edge or flip column, indexed by position
  WorkVector full;       // [m] other right-hand sides; cleared between uses

  // --- Setting up --------------------------------------------------------------------------------
  void set_context(const RunContext& context);
  void set_slack_basis();
  /// Statuses as a caller gives them, see Simplex::set_basis. `values` [num_vars] gives the places
  /// of superbasic variables; null puts them at their point nearest to 0.
  void set_basis(const Vector<int>& given, const double* values);
  /// Takes the settings over, restores true costs and bounds where they differ and makes nonbasic
  /// variables agree with the bounds.
  void begin_run(const SimplexSettings& run_settings);

  // --- Changes of the program --------------------------------------------------------------------
  /// Sets bounds of the problem. While the values are current they follow: a nonbasic variable
  /// moves with its bound, to the side that its reduced cost asks for when there are two.
  void change_bounds(const Vector<VariableBounds>& changes);
  /// Sets costs of the problem. Reduced costs of nonbasic variables follow; after a change of a
  /// basic variable's cost all have to be computed again.
  void change_costs(const Vector<VariableCost>& changes);
  /// Brings the basic values up to date after nonbasic variables have moved.
  void apply_moves();
  /// Working costs := the problem's, no shifts, no perturbation. Reduced costs become stale, unless
  /// there was nothing to restore.
  void restore_costs();
  /// Working bounds := the problem's. Nonbasic variables move to a present bound; call
  /// compute_primals() afterwards.
  void restore_bounds();
  /// After a change of working bounds: statuses and values of nonbasic variables, movements, the
  /// basic variables' bounds and the row partition follow. Boxed ones keep their side.
  void refresh_nonbasic();
  /// Costs and bounds of the problem were changed from outside: takes all of them over.
  void take_costs();
  void take_bounds();
  /// Costs as they are in the problem after shifts, with row duals following; the reduced costs of
  /// nonbasic variables that were not shifted do not follow (see verify()).
  void take_shifts_back();

  // --- Shape (shape.cpp) -------------------------------------------------------------------------
  // All of these invalidate the results, and whatever outside this object knows the sizes. Short of
  // memory they throw std::bad_alloc and leave an object that is only good to be destroyed.

  /// Appends rows least <= a x <= most; `lines` holds them by row. Their logicals are basic.
  void add_rows(const SparseMatrix& lines, const Vector<double>& least, const Vector<double>& most);
  /// Deletes rows, ascending.
  void delete_rows(const Vector<int>& list);
  /// Appends structural columns, nonbasic.
  void add_columns(const SparseMatrix& more, const Vector<double>& costs,
                   const Vector<double>& lowers, const Vector<double>& uppers);
  /// Deletes structural columns, ascending.
  void delete_columns(const Vector<int>& list);

  // --- Trials (trials.cpp) -----------------------------------------------------------------------
  /// From here on changes are written down. Needs a current factor and current values.
  void begin_trial();
  /// Everything as it was when the trial began, the factor included.
  void undo_trial() noexcept;

  // --- The basis and its factor ------------------------------------------------------------------
  /// Factorizes the current basis unless the factor is current and fresh. A singular basis is
  /// repaired, or given up for the last one that could be factored when there is such a one.
  /// After `repaired` and `restored` values and weights must be computed again.
  Refactored refactorize();
  /// How a run ends that could not get a factor: singular, or the reason of the stop.
  SimplexOutcome outcome_without_factor() const;
  BasisFactor& factor() { return inverse.factor(); }
  const BasisFactor& factor() const { return inverse.factor(); }
  bool factor_current() const { return inverse.current(); }
  bool freshly_factored() const { return inverse.fresh(); }
  /// Exchanges header[position] for `entering_variable`, which takes the value `entering_value`;
  /// the leaving variable becomes nonbasic with `leaving_status`. The factor takes the column of
  /// the last kept ftran; false when it must be refactorized (the exchange is made in any case).
  /// Values and duals are stale afterwards, unless the caller has updated them and says so.
  bool exchange(int position, int entering_variable, double entering_value,
                BasisStatus leaving_status, double pivot);
  /// Moves a nonbasic variable to its other bound.
  void flip(int variable);
  /// Variables held because of a singularity become ordinary ones; returns how many there were.
  int release_held() { return basis.release_held(); }

  // --- Values ------------------------------------------------------------------------------------
  void compute_primals() { basics.compute(inverse, full); }
  void compute_duals() { duals.compute(inverse, full); }
  /// See DualValues::refine.
  void refine_duals(Vector<double>& y, int unit_position = -1) {
    duals.refine(y, unit_position, inverse, full);
  }
  /// Checks the current values against the problem in one pass over the matrix: the residuals of
  /// A x + s = 0, taken out by one step of refinement, and the reduced costs of the basic
  /// variables. True when they are as good as after a fresh factorization; then all reduced costs
  /// are computed from the row duals, the values count as fresh, and the point is primal and dual
  /// feasible within the working tolerances (verify.cpp).
  bool verify();
  /// row_ep := e_p'B^-1, with an index list.
  void compute_row_ep(int position);
  /// pivot_row := the movable entries of row_ep'[A I], with an index list.
  void compute_pivot_row();

  /// Nonzeros touched by the solves and the pivot rows of all runs.
  double work() const { return factor().statistics().work + program.rows.work(); }

  // --- Ends --------------------------------------------------------------------------------------
  std::optional<SimplexOutcome> interrupted(bool dual, bool phase_one) const {
    return run.interrupted(dual, phase_one, work());
  }
  /// Makes values, reduced costs and row duals of the current basis accurate under the true costs
  /// and bounds. The results follow when they are looked at.
  void store_results();
  void materialize_results() { results.materialize(problem, basis, basics); }
  /// After an optimal end: until something changes there is nothing more to do, unless a run is to
  /// polish an optimum that is not `polished`.
  void note_optimum(bool polished);
  /// The last run was optimal, and neither data nor tolerances have changed since.
  bool still_solved() const { return optimum.serves(run, duals.objective); }
  /// The line of a run that needs no iteration.
  void log_optimum(bool dual);

 private:
  void resize();
  void copy_rows_again();
  void settle_before_reshape();
  void rebuild_basis_after_reshape();
  void change_nonbasic_bounds(int j);
  void put_back_everything() noexcept;
  void put_back_notes() noexcept;

  bool verified_ = false;  // the run has ended with verify()
  SavedBasis saved_;
  // Flags and counts at the start of a trial.
  struct Before {
    WorkingProgram::Mark program;
    EdgeWeights::Mark weights;
    Validity basics, duals;
    bool dual_feasible, solved;
    int num_held;
    double dual_objective;
    FactorMark factor;
  } before_{};
};

/// Lends a context to the engine for the life of this object.
class LentContext {
 public:
  LentContext(SimplexState& state, const RunContext& context) : state_(state) {
    state_.set_context(context);
  }
  ~LentContext() { state_.set_context({}); }
  LentContext(const LentContext&) = delete;
  LentContext& operator=(const LentContext&) = delete;

 private:
  SimplexState& state_;
};

}  // namespace kelvo
