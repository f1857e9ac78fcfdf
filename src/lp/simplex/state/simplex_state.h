// What the primal and the dual simplex share: one basis, its factor, its primal and dual values.
//
//     minimize c'x   subject to   [A I] x = 0,   lower <= x <= upper
//
// over N = n + m variables, the structural ones first (lp_problem.h). The methods work on copies of
// costs and bounds (`cost`, `lower`, `upper`) which they may perturb, shift or, in a first phase,
// replace; the true ones stay in the problem and come back with restore_costs() and
// restore_bounds().
//
// A run continues from what the last one left as far as the flags say that it is still valid, so
// that a run after a small change costs its iterations and little more: there is no pass over all
// variables between one hot run and the next.
//
// Invariants between two iterations:
// - header[p] is the variable basic at position p; exactly the header's variables have status
//   kBasic.
// - A nonbasic variable j sits at value[j]: at lower[j] (kAtLower), at upper[j] (kAtUpper), or
//   anywhere between (kFreeSuper; 0 for a free one). move[j] tells where it may go.
// - basic_value[p], basic_lower[p], basic_upper[p] belong to header[p]; value[] of a basic variable
//   is only filled in by store_results().
// - While duals_current, reduced_cost[j] is c_j - a_j'y with y = row_duals for every nonbasic
//   variable that may move, 0 for basic ones. Those of immovable variables (move[j] == 0) are only
//   valid while duals_fresh.
// - The partitioned rows hold exactly the columns of movable nonbasic structural variables as their
//   active part.
//
// Every change of these arrays goes through the functions below, or keeps the invariants itself.
#pragma once

#include <optional>

#include "base/random.h"
#include "base/work_vector.h"
#include "lp/factor/basis_factor.h"
#include "lp/simplex/simplex.h"
#include "lp/simplex/simplex_log.h"
#include "lp/simplex/state/partitioned_rows.h"
#include "lp/simplex/state/trail.h"

namespace kelvo {

/// Running averages of the densities of solve results, one per kind of right-hand side; they
/// predict the next one of the kind. In [0, 1].
struct SolveDensities {
  double pivot_btran = 0.0;   // e_p'B^-1
  double pivot_row = 0.0;     // movable entries of e_p'B^-1 [A I]
  double entering = 0.0;      // B^-1 a_q
  double steepest = 0.0;      // B^-1 of a row of the inverse
  double flips = 0.0;         // B^-1 of the flipped columns' sum
  double primal_btran = 0.0;  // transposed solves of primal pricing
  /// Moves an average towards a new observation.
  static void observe(double& average, double density) {
    average += kDensityMemory * (density - average);
  }
  static constexpr double kDensityMemory = 0.05;  // weight of the newest observation
};

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
  explicit SimplexState(LpProblem& problem);

  // --- The problem and the run -----------------------------------------------------------------
  LpProblem& problem;
  SimplexSettings settings;
  // Tolerances the dual method works with: never looser than the settings', and tight enough that
  // the objective of an accepted basis is right to more digits than anybody asks for.
  double primal_tolerance = 0.0;
  double dual_tolerance = 0.0;
  SimplexLog log;
  Random random;
  int m;         // rows
  int n;         // structural columns
  int num_vars;  // n + m

  // --- Working data, indexed by variable [num_vars] ----------------------------------------------
  Vector<double> cost;
  Vector<double> lower;
  Vector<double> upper;
  Vector<int> status;        // BasisStatus
  Vector<signed char> move;  // a Movement; 0 for basic variables
  Vector<double> value;      // of nonbasic variables
  Vector<double> reduced_cost;
  Vector<unsigned char> held;    // 1: fixed because of singularity until release_held()
  Vector<int> tie_key;           // a fixed random permutation of 0..num_vars-1 that breaks ties
  int num_cost_shifts = 0;       // costs changed by ratio tests and dual corrections
  Vector<int> shifted;           // by them; a variable may be listed twice
  bool costs_perturbed = false;  // all costs may differ from the true ones, not the shifted alone
  bool bounds_perturbed = false;

  enum Movement : signed char { kDown = -1, kStays = 0, kUp = 1, kAnywhere = 2 };

  // --- The basis, indexed by basis position [m] --------------------------------------------------
  Vector<int> header;
  Vector<int> position;  // [num_vars] inverse of the header; valid for basic variables only
  Vector<double> basic_value;
  Vector<double> basic_lower;
  Vector<double> basic_upper;
  Vector<double> dual_weights;  // of the dual pricing; see dual_weights_valid
  bool dual_weights_valid = false;
  bool dual_weights_full = false;  // they measure in the full space, see dual_weights.cpp
  bool dual_weights_unit = false;  // valid only because the basis is that of the logicals
  // [num_vars] or empty: steepest-edge weights that the next run of the primal method takes over.
  Vector<double> given_primal_weights;
  bool basis_valid = false;  // false until a basis was set

  // --- What is valid -----------------------------------------------------------------------------
  // basic_value belongs to the basis and the places of the nonbasic variables (moves_ still to be
  // applied); reduced_cost and row_duals belong to the basis and the working costs.
  bool primals_current = false;
  bool duals_current = false;
  // Moreover they come from a fresh factor without updates since, or have passed verify().
  bool primals_fresh = false;
  bool duals_fresh = false;
  bool dual_feasible = false;   // no reduced cost has the wrong sign beyond the tolerance
  bool solved = false;          // the last run ended optimal and nothing has changed since
  double dual_objective = 0.0;  // working objective; valid while both are current

  // --- Solves ------------------------------------------------------------------------------------
  PartitionedRows rows;
  SolveDensities density;
  WorkVector row_ep;     // [m] row of the inverse, indexed by row
  WorkVector pivot_row;  // [num_vars] movable entries of row_ep'[A I]
  WorkVector entering;   // [m] B^-1 a_q, indexed by position
  WorkVector auxiliary;  // [m] steepest-edge or flip column, indexed by position
  WorkVector full;       // [m] right-hand sides of compute_primals and compute_duals

  // --- Counters and results ----------------------------------------------------------------------
  int iterations = 0;  // of all runs
  int phase_one_iterations = 0;
  int run_start_iteration = 0;
  double run_start_work = 0.0;
  double objective = 0.0;        // true objective of the last results
  Vector<double> result_values;  // [num_vars]; see materialize_results()
  bool results_stale = false;    // these two do not belong to the last results yet
  Vector<double> row_duals;      // [m]
  Vector<double> farkas;         // [m]
  Vector<double> ray;            // [num_vars]

  // --- Setting up --------------------------------------------------------------------------------
  /// What a call lends to the engine; empty between calls (LentContext).
  const RunContext& context() const { return context_; }
  void set_context(const RunContext& context);
  StopCheck& stop() const { return *stop_; }
  void set_slack_basis();
  /// Statuses as a caller gives them, see Simplex::set_basis. `values` [num_vars] gives the places
  /// of superbasic variables; null puts them at their point nearest to 0.
  void set_basis(const Vector<int>& given, const double* values);
  /// Sets bounds of the problem. While the values are current they follow: a nonbasic variable
  /// moves with its bound, to the side that its reduced cost asks for when there are two.
  void change_bounds(const Vector<VariableBounds>& changes);
  /// Sets costs of the problem. Reduced costs of nonbasic variables follow; after a change of a
  /// basic variable's cost all have to be computed again.
  void change_costs(const Vector<VariableCost>& changes);
  /// Brings basic_value up to date after nonbasic variables have moved.
  void apply_moves();
  /// Takes the settings over, restores true costs and bounds where they differ and makes nonbasic
  /// variables agree with the bounds.
  void begin_run(const SimplexSettings& run_settings);
  /// Working costs := the problem's, no shifts, no perturbation. Reduced costs become invalid.
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
  /// Variables held because of a singularity become ordinary ones; returns how many there were.
  int release_held();

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

  // --- Trials ------------------------------------------------------------------------------------
  /// From here on changes are written down. Needs a current factor and current values.
  void begin_trial();
  /// Everything as it was when the trial began, the factor included.
  void undo_trial() noexcept;
  Trail trail;

  // --- The basis and its factor ------------------------------------------------------------------
  /// Factorizes the current basis unless the factor is current and fresh. A singular basis is
  /// repaired, or given up for the last one that could be factored when there is such a one.
  /// After `repaired` and `restored` values and weights must be computed anew.
  Refactored refactorize();
  /// How a run ends that could not get a factor: singular, or the reason of the stop.
  SimplexOutcome outcome_without_factor();
  BasisFactor& factor() { return *factor_; }
  const BasisFactor& factor() const { return *factor_; }
  /// The factor is that of the current basis.
  bool factor_current() const { return factor_current_; }
  /// True when the factor is current and carries no updates.
  bool freshly_factored() const { return factor_current_ && factor_->statistics().updates == 0; }
  /// Exchanges header[position] for `entering_variable`, which takes the value `entering_value`;
  /// the leaving variable becomes nonbasic with `leaving_status`. The factor takes the column of
  /// the last kept ftran; false when it must be refactorized (the exchange is made in any case).
  bool exchange(int position, int entering_variable, double entering_value,
                BasisStatus leaving_status, double pivot);
  /// Moves a nonbasic variable to its other bound.
  void flip(int variable);
  /// Puts a nonbasic variable at the bound that `at` names.
  void place_nonbasic(int variable, BasisStatus at);
  bool is_fixed(int j) const { return lower[j] == upper[j]; }
  bool is_boxed(int j) const { return lower[j] > -kInf && upper[j] < kInf; }
  bool is_free(int j) const { return lower[j] == -kInf && upper[j] == kInf; }

  // --- Values ------------------------------------------------------------------------------------
  /// basic_value := -B^-1 N x_N.
  void compute_primals();
  /// reduced_cost := c - [A I]'y, y = B^-T c_B, for the working costs. row_duals := y.
  void compute_duals();
  /// c_j - a_j'y of one variable.
  double priced_out(int j) const;
  /// reduced_cost := c - [A I]'row_duals.
  void price_out();
  /// Checks the current values against the problem in one pass over the matrix: the residuals of
  /// A x + s = 0, taken out by one step of refinement, and the reduced costs of the basic
  /// variables. True when they are as good as after a fresh factorization; then all reduced costs
  /// are computed from row_duals, the values count as fresh, and the point is primal and dual
  /// feasible within the working tolerances.
  bool verify();
  /// Costs as they are in the problem after shifts, with row_duals following; the reduced costs of
  /// nonbasic variables that were not shifted do not follow (see verify()).
  void take_shifts_back();
  /// One step of iterative refinement of y = c_B B^-1 with residuals in extended precision; the
  /// basic costs c_B are those in use, or the unit vector of a basis position.
  void refine_duals(Vector<double>& y, int unit_position = -1);
  /// Objective of the working problem at the current basic solution: the sum of d_j x_j over the
  /// nonbasic variables (A x + s = 0 leaves nothing else) plus the offset. It is the dual objective
  /// too. Needs valid reduced costs of all variables.
  double working_objective() const;
  /// Adds factor times the column of variable j to a vector indexed by row.
  void add_column(int j, double factor_of_column, WorkVector& x) const;
  /// Column j alone in a cleared vector indexed by row.
  void load_column(int j, WorkVector& x) const;
  /// row_ep := e_p'B^-1, with an index list.
  void compute_row_ep(int position);
  /// pivot_row := the movable entries of row_ep'[A I], with an index list.
  void compute_pivot_row();

  /// Nonzeros touched by the solves and the pivot rows of all runs.
  double work() const { return factor_->statistics().work + rows.work(); }

  // --- Ends --------------------------------------------------------------------------------------
  /// What stops the run before the next iteration: a limit, the hook or the stop check.
  std::optional<SimplexOutcome> interrupted(bool dual, bool phase_one);
  /// Makes values, reduced costs and row duals of the current basis accurate under the true costs
  /// and bounds. `result_values` and `objective` follow when they are looked at.
  void store_results();
  void materialize_results();
  /// After an optimal end: until something changes there is nothing more to do, unless a run is to
  /// polish an optimum that is not `polished`.
  void note_optimum(bool polished);
  /// The last run was optimal, and neither data nor tolerances have changed since.
  bool still_solved() const;
  /// The line of a run that needs no iteration.
  void log_optimum(bool dual);

 private:
  void resize();
  void copy_rows_again();
  void settle_before_reshape();
  void rebuild_basis_after_reshape();
  void accept_header();
  void take_unit_weights();
  void change_nonbasic_bounds(int j);
  void balance_basis(int num_basic);
  void refresh_variable(int j);
  void refresh_basic(int position);
  void refresh_partition();
  void follow_movement(int j);
  void make_factor();
  void apply_repairs();
  void save_basis();
  bool restore_saved_basis();
  static SimplexOutcome outcome_of_stop(StopReason reason);

  RunContext context_;
  StopCheck* stop_;  // that of the context, or one that never stops
  FactorSettings factor_settings_;
  Owned<BasisFactor> factor_;
  bool factor_current_ = false;
  bool factorization_stopped_ = false;  // the last one was
  Vector<BasisRepair> repairs_;
  int num_held_ = 0;
  bool verified_ = false;  // the run has ended with verify()
  bool solved_polished_ = false;
  double solved_primal_tolerance_ = 0.0;
  double solved_dual_tolerance_ = 0.0;
  WorkVector moves_;  // [m] columns times moves of nonbasic variables, not applied yet
  // Flags and counts at the start of a trial.
  struct Before {
    bool costs_perturbed, bounds_perturbed, dual_weights_valid;
    bool primals_current, duals_current, primals_fresh, duals_fresh, dual_feasible, solved;
    int num_cost_shifts, num_held;
    std::size_t shifted;
    double dual_objective;
    FactorMark mark;
  } before_{};
  // The last basis that could be factored.
  Vector<int> saved_header_;      // [m]
  Vector<int> saved_status_;      // [num_vars]
  Vector<double> saved_weights_;  // [m]
  bool saved_ = false;
  bool saved_weights_valid_ = false;
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
