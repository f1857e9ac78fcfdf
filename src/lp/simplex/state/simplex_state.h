// What the primal and the dual simplex share: one basis, its factor, its primal and dual values.
//
//     minimize c'x   subject to   [A I] x = 0,   lower <= x <= upper
//
// over N = n + m variables, the structural ones first (lp_problem.h). The methods work on copies of
// costs and bounds (`cost`, `lower`, `upper`) which they may perturb, shift or, in a first phase,
// replace; the true ones stay in the problem and come back with restore_costs() and
// restore_bounds().
//
// Invariants between two iterations:
// - header[p] is the variable basic at position p; exactly the header's variables have status
//   kBasic.
// - A nonbasic variable j sits at value[j]: at lower[j] (kAtLower), at upper[j] (kAtUpper), or
//   anywhere between (kFreeSuper; 0 for a free one). move[j] tells where it may go.
// - basic_value[p], basic_lower[p], basic_upper[p] belong to header[p]; value[] of a basic variable
//   is only filled in by store_results().
// - reduced_cost[j] is c_j - a_j'y for every nonbasic variable that may move, 0 for basic ones.
//   Those of immovable variables (move[j] == 0) are only valid after compute_duals().
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
  explicit SimplexState(const LpProblem& problem);

  // --- The problem and the run -----------------------------------------------------------------
  const LpProblem& problem;
  SimplexSettings settings;
  // Tolerances the dual method works with: never looser than the settings', and tight enough that
  // the objective of an accepted basis is right to more digits than anybody asks for.
  double primal_tolerance = 0.0;
  double dual_tolerance = 0.0;
  SimplexLog log;
  Random random;
  const int m;         // rows
  const int n;         // structural columns
  const int num_vars;  // n + m

  // --- Working data, indexed by variable [num_vars] ----------------------------------------------
  Vector<double> cost;
  Vector<double> lower;
  Vector<double> upper;
  Vector<int> status;        // BasisStatus
  Vector<signed char> move;  // a Movement; 0 for basic variables
  Vector<double> value;      // of nonbasic variables
  Vector<double> reduced_cost;
  Vector<unsigned char> held;  // 1: fixed because of singularity until release_held()
  Vector<int> tie_key;         // a fixed random permutation of 0..num_vars-1 that breaks ties
  int num_cost_shifts = 0;     // costs changed by ratio tests and dual corrections
  bool costs_perturbed = false;
  bool bounds_perturbed = false;

  enum Movement : signed char { kDown = -1, kStays = 0, kUp = 1, kAnywhere = 2 };

  // --- The basis, indexed by basis position [m] --------------------------------------------------
  Vector<int> header;
  Vector<double> basic_value;
  Vector<double> basic_lower;
  Vector<double> basic_upper;
  Vector<double> dual_weights;  // of the dual pricing; see dual_weights_valid
  bool dual_weights_valid = false;
  // [num_vars] or empty: steepest-edge weights that the next run of the primal method takes over.
  Vector<double> given_primal_weights;
  bool basis_valid = false;    // false until a basis was set
  bool primals_fresh = false;  // basic_value was computed from the fresh factor, no update since
  bool duals_fresh = false;    // likewise reduced_cost

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
  double objective = 0.0;        // true objective of the last results
  Vector<double> result_values;  // [num_vars]
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
  /// Takes the settings over, restores true costs and bounds and makes nonbasic variables agree
  /// with the bounds.
  void begin_run(const SimplexSettings& run_settings);
  /// Working costs := the problem's, no shifts, no perturbation. Reduced costs become invalid.
  void restore_costs();
  /// Working bounds := the problem's. Nonbasic variables move to a present bound; call
  /// compute_primals() afterwards.
  void restore_bounds();
  /// After a change of working bounds: statuses and values of nonbasic variables, movements, the
  /// basic variables' bounds and the row partition follow. Boxed ones keep their side.
  void refresh_nonbasic();
  /// Variables held because of a singularity become ordinary ones; returns how many there were.
  int release_held();

  /// A basis with the order of its positions, to come back to after a trial.
  struct BasisCopy {
    Vector<int> header;           // [m]
    Vector<int> status;           // [num_vars]
    Vector<double> value;         // [num_vars] of nonbasic variables
    Vector<double> dual_weights;  // [m]
    bool dual_weights_valid = false;
  };
  void copy_basis(BasisCopy& copy) const;
  /// The factor stays valid when the positions have not changed since the copy was made.
  void restore_basis(const BasisCopy& copy);

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
  /// reduced_cost := c - [A I]'row_duals.
  void price_out();
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
  /// Fills values, reduced costs, row duals and objective of the results from the current basis
  /// under the true costs and bounds.
  void store_results();

 private:
  void accept_header();
  void balance_basis(int num_basic);
  void refresh_variable(int j);
  void refresh_basic(int position);
  void refresh_partition();
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
