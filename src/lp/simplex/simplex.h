// The simplex methods over one LpProblem: what a driver sees.
//
// A Simplex owns the basis, its factor and the primal and dual values, and keeps them between runs,
// so that a run after a change of bounds or costs starts warm. It never scales and never presolves:
// the problem it is given is the problem it solves.
#pragma once

#include <optional>

#include "base/containers.h"
#include "base/memory.h"
#include "lp/form/lp_problem.h"
#include "lp/simplex/basis_snapshot.h"
#include "lp/simplex/run_context.h"

namespace kelvo {

enum class DualPricing {
  automatic = 0,
  standard = 1,
  steepest = 2,
  steepest_slack = 3,
  steepest_unit = 4,
  devex = 5
};
enum class PrimalPricing {
  reduced_cost = -1,
  automatic = 0,
  devex = 1,
  steepest = 2,
  steepest_slack = 3,
  full = 4
};

/// The numbers that a run depends on.
struct SimplexSettings {
  double feasibility_tolerance = 1e-6;
  double optimality_tolerance = 1e-6;
  double markowitz_threshold = 0.01;
  double singularity_tolerance = 1e-13;
  int singularity_limit = 10;
  double row_file_multiplier = 3.0;
  double col_file_multiplier = 3.0;
  int refactor_frequency = 0;  // 0: adaptive; k > 0: every k iterations
  int iteration_limit = 2100000000;
  double objective_lower_limit = -1e75;  // on the minimized objective; primal stops below it
  double objective_upper_limit = 1e75;   // dual stops above it
  double work_limit = kInf;              // nonzeros touched by the run
  DualPricing dual_pricing = DualPricing::automatic;
  PrimalPricing primal_pricing = PrimalPricing::automatic;
  bool keep_optimal_start = false;  // do not polish a basis that is optimal as it is given
  bool perturb_at_start = false;
  double perturbation = 1e-6;  // initial magnitude
  int perturbation_limit = 0;  // degenerate iterations tolerated before perturbing; 0 automatic
  int price_limit = 0;         // candidates of partial pricing; 0 automatic
  int display = 0;             // 0 nothing, 1 a line per refactorization, 2 a line per iteration
  int service_period = 2100000000;
  bool scaled = false;  // the problem is a scaled one: log lines say so
  double sense = 1.0;   // the caller's: objectives in the log are sense * (internal value)
};

enum class SimplexOutcome {
  optimal,     // within the tolerances of the problem as given, no perturbation left
  infeasible,  // proof in farkas_dual()
  unbounded,   // proof in primal_ray()
  iteration_limit,
  work_limit,
  time_limit,
  aborted,
  objective_limit,
  superseded,   // the rival has a better start
  singular,     // the basis cannot be factored, repairs spent
  non_optimal,  // numerical trouble: stopped at the best known basis
};

/// A new lower and upper bound of a variable, structural or logical; lower <= upper.
struct VariableBounds {
  int variable;
  double lower;
  double upper;
};
struct VariableCost {
  int variable;
  double cost;
};

/// What a probe found. The bound holds whatever ended the probe: no point within the changed bounds
/// has a smaller objective (up to the optimality tolerance).
struct ProbeResult {
  // `optimal`: the iterations came to their end; the bound is then the optimum, but for what a
  // perturbation of the costs took from it.
  SimplexOutcome outcome = SimplexOutcome::non_optimal;
  double bound = 0.0;  // of the minimization; kInf when infeasible
  int iterations = 0;
  double work = 0.0;  // nonzeros touched
};

class DualEngine;
class SimplexState;

class Simplex {
 public:
  /// Works on the caller's problem, which must outlive the object and is changed by change_bounds()
  /// and the like. The caller may change costs and bounds himself between runs (then call
  /// bounds_changed() or costs_changed()).
  explicit Simplex(LpProblem& problem);
  /// Works on a copy.
  explicit Simplex(const LpProblem& problem);
  ~Simplex();
  Simplex(const Simplex&) = delete;
  Simplex& operator=(const Simplex&) = delete;

  /// Starts from the slack basis.
  void set_slack_basis();
  /// Starts from given statuses [num_vars], BasisStatus codes; a wrong number of basic variables is
  /// made right (missing logicals enter, surplus ones leave), and nonbasic statuses that point to
  /// an absent bound are moved to a present one.
  /// `values` [num_vars], when given, says where superbasic variables (kFreeSuper) stand; without
  /// it they stand at their point nearest to 0. A basis whose basic variables are those of the
  /// current one keeps the factor and the pricing weights.
  void set_basis(const Vector<int>& status, const double* values = nullptr);
  /// Bounds and costs of the problem, the given ones only; what is known of the last solution
  /// follows, so that the next run starts hot. Results are invalid until then.
  void change_bounds(const Vector<VariableBounds>& changes);
  void change_costs(const Vector<VariableCost>& changes);
  // Shape. The last basis and its factor stay in use: a new row's logical is basic, a new column is
  // nonbasic; deleting rows with basic logicals and nonbasic columns keeps the factor, other rows
  // and columns may be deleted too. Results are invalid until the next run. Short of memory these
  // throw std::bad_alloc and leave an object that is only good to be destroyed.

  /// Appends rows least[k] <= a_k x <= most[k]; `rows` holds the a_k by row.
  void add_rows(const SparseMatrix& rows, const Vector<double>& least, const Vector<double>& most);
  /// Appends structural columns; `columns` holds them by column, all arrays have one entry each.
  void add_columns(const SparseMatrix& columns, const Vector<double>& costs,
                   const Vector<double>& lower, const Vector<double>& upper);
  /// Both lists ascend; what remains closes up and keeps its order.
  void delete_rows(const Vector<int>& rows);
  void delete_columns(const Vector<int>& columns);

  /// The present basis to come back to, optionally with the dual pricing weights.
  SharedBasis snapshot(bool with_weights = false) const;
  /// Starts from a snapshot of a basis of the same shape. The factor is kept when the basic
  /// variables are those of the present basis.
  void start_from(const BasisSnapshot& basis);

  /// The problem was changed from outside.
  void bounds_changed();
  void costs_changed();

  SimplexOutcome run_dual(const SimplexSettings& settings, const RunContext& context = {});
  SimplexOutcome run_primal(const SimplexSettings& settings, const RunContext& context = {});

  /// Tries bounds with the dual method: a few iterations, within the limits of the settings (on
  /// iterations, work, and the objective: objective_upper_limit is the cutoff), from the present
  /// basis, which should be optimal; then everything is as before: problem, basis, factor, values,
  /// weights and results.
  ProbeResult probe(const Vector<VariableBounds>& changes, const SimplexSettings& settings,
                    const RunContext& context = {});

  const LpProblem& problem() const;

  // Results of the last run; lengths num_vars() where not said otherwise.
  const Vector<int>& status() const;            // BasisStatus of every variable
  const Vector<int>& header() const;            // [num_rows] variable at each basis position
  const Vector<double>& values() const;         // primal values, logicals included
  const Vector<double>& reduced_costs() const;  // d = c - [A I]'y, 0 for basic ones
  const Vector<double>& row_duals() const;      // [num_rows] y with B'y = c_B
  double objective() const;                     // c'x + offset of the minimization
  int iterations() const;                       // all runs since the construction
  int phase_one_iterations() const;
  /// Adds iterations that were made elsewhere on the way to this object's basis.
  void count_iterations(int all, int phase_one);
  /// After `infeasible`: y [num_rows] such that the bounds on (A I)'y prove that no point exists:
  /// max over the box of y'(A x + s) < 0 or min > 0.
  const Vector<double>& farkas_dual() const;
  /// After `unbounded`: a direction [num_vars] with A r_x + r_s = 0, c'r < 0 that keeps the bounds.
  const Vector<double>& primal_ray() const;
  double condition_estimate() const;   // largest / smallest pivot magnitude of the factor
  double markowitz_threshold() const;  // as raised by the runs
  double work() const;                 // nonzeros touched by all runs

  /// The reduced costs of an optimum have the right sign within this tolerance, which may be
  /// smaller than that of the settings. Of the last run.
  double dual_tolerance() const;

  // The basis and its factor outside of runs. SimplexTableau solves with it, BasisSteps changes it.

  /// The factor is that of the basis in force.
  bool has_factor() const;
  /// Factors the basis in force and computes its values, as a run without iterations would. False
  /// when the basis is singular or the factorization was stopped; a repair is no failure.
  bool compute_basic_solution(const SimplexSettings& settings, const RunContext& context = {});
  /// Whether the basis in force is primal feasible, as far as the kept values tell; nothing when
  /// they would have to be computed.
  std::optional<bool> known_primal_feasible(const SimplexSettings& settings);
  /// Steepest-edge weights of the basis in force for the next runs, by variable [num_vars] and
  /// positive: of the basic ones for the dual method, of the nonbasic ones for the primal method.
  /// They need not be exact. No weights (empty) for the primal method drops those given before.
  void give_dual_weights(const Vector<double>& weights);
  void give_primal_weights(Vector<double> weights);
  /// Bytes that each nonzero of the matrix takes in addition to the problem, without the copy for
  /// dense products.
  static int bytes_per_entry(bool compact);

 private:
  friend class BasisSteps;
  friend class SimplexTableau;

  template <class Run>
  SimplexOutcome run(const SimplexSettings& settings, const RunContext& context, bool dual,
                     Run run);
  DualEngine& dual();

  Owned<LpProblem> copy_;  // of a problem that must not be changed; may be null
  Owned<SimplexState> state_;
  Owned<DualEngine> dual_;  // made by the first use
};

}  // namespace kelvo
