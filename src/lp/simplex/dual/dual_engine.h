// The dual simplex method: the run, from the outside in.
//
//   run         choice of phase, perturbation, clean-up, verified conclusions (dual_simplex.cpp)
//   phase one   dual infeasible starts (dual_phase_one.cpp)
//   a phase     refactorizations, limits, iterations until no choice is left (dual_phase.cpp)
//   iteration   leaving variable, pivot row, ratio test, columns, update (dual_iteration.cpp)
//   weights     steepest edge and devex (dual_weights.cpp)
//   costs       perturbation and shifts (dual_costs.cpp)
//   polish      the last digits of an optimum (dual_polish.cpp)
//   proofs      of infeasibility and of the objective limit (dual_proofs.cpp)
//   probe       a few iterations under other bounds (dual_probe.cpp)
//
// The engine is kept between runs: its work space is as large as the problem.
//
// Sources: Lemke (1954); Forrest and Goldfarb (1992) for steepest edge; Harris (1973) and Maros
// (2003) for the ratio test; Koberstein (2005) for phase one by artificial bounds, shifting and
// perturbation; Hall and McKinnon (2005) for the use of sparsity.
#pragma once

#include <optional>

#include "lp/simplex/dual/dual_ratio_test.h"
#include "lp/simplex/dual/leaving_list.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

class DualEngine {
 public:
  explicit DualEngine(SimplexState& state);
  /// To be called after the state has changed its shape.
  void follow_shape();
  /// Runs from the state's basis, after SimplexState::begin_run(). Working costs and bounds are the
  /// true ones on return, and the results are filled (store_results()) in every case.
  SimplexOutcome run();
  /// After a run of either method has ended optimal: makes bounds hold as closely as rounding
  /// allows, if few iterations lead there. The state stays optimal either way. False when that may
  /// still be worth a try.
  bool polish_optimum();
  /// Tries bounds: iterates from the state's basis under the changed bounds, within the limits of
  /// the settings, and puts everything back, the factor included.
  ProbeResult probe(const Vector<VariableBounds>& changes);

 private:
  /// How a phase ends when no limit stops it.
  enum class PhaseEnd {
    feasible,         // no primal infeasibility is left (optimal for the working problem)
    no_entering,      // the pivot row at leaving_ proves infeasibility of the working problem
    stuck,            // only choices remain that numerical trouble forbids
    objective_limit,  // proved for the true costs
    stopped,          // stop_outcome_ says why
  };
  /// What is left to do under the true costs when a phase has ended feasible.
  enum class TrueProblem { optimal, primal_work, dual_work };
  enum class Step { done, refactor, no_leaving, no_entering };
  enum class Weights { none, steepest, steepest_full, devex };

  // The run.
  void begin();
  bool starts_hot() const;
  SimplexOutcome solve();
  bool polish(double finest);
  SimplexOutcome finish_with_primal();
  TrueProblem look_at_true_problem();
  void settle_superbasics();
  bool worth_perturbing();

  // A probe.
  SimplexOutcome probe_phase(const Vector<VariableBounds>& changes);
  double true_bound() const;

  // A phase.
  PhaseEnd run_phase();
  bool rebuild();
  void start_choices();
  void log_phase_line();
  double dual_infeasibility_sum() const;
  bool stalls(double dual_step);

  // Phase one.
  int count_dual_infeasibilities(bool boxed_too, double tolerance) const;
  void begin_phase_one();
  void end_phase_one();
  std::optional<PhaseEnd> run_phase_one();

  // An iteration.
  Step iterate();
  int choose_leaving();
  bool pivot_agrees(double row_pivot, double column_pivot);
  void compute_columns(int entering);
  void apply_flips();
  void update_duals(int entering, int leaving, double dual_step);
  void update_primals_and_weights(int position, double primal_step, double pivot);

  // Weights.
  bool exact_weights() const {
    return weights_ == Weights::steepest || weights_ == Weights::steepest_full;
  }
  void choose_pricing();
  void initialize_weights();
  int compute_exact_weights(bool all);
  double exact_weight();
  void compute_full_row();
  void load_weight_column(WorkVector& tau);

  // Costs.
  void perturb_costs();
  void remove_perturbation();
  void shift_cost(int variable, double amount);
  void correct_duals();
  void flip_infeasible_boxed();

  // Proofs.
  bool prove_infeasibility();
  bool prove_objective_limit();

  SimplexState& s_;
  LeavingList leaving_list_;
  DualRatioTest ratio_test_;
  Weights weights_ = Weights::steepest;
  bool phase_one_ = false;
  // Values and factor are current and the costs not perturbed, as in the run's start: what it
  // concludes is verified instead of computed again. A hot run stays so when it factors again.
  bool hot_ = false;
  bool started_hot_ = false;
  bool leaving_list_ready_ = false;
  int leaving_ = -1;            // position chosen last
  double infeasibility_ = 0.0;  // its x - bound
  SimplexOutcome stop_outcome_ = SimplexOutcome::non_optimal;
  int trouble_ = 0;           // numerical failures since the last good factorization
  int degenerate_steps_ = 0;  // in a row
  int degenerate_limit_ = 0;  // steps tolerated before the costs are perturbed (again)
  int perturbations_ = 0;
  int restores_ = 0;  // returns to an older basis in this run
  bool perturbing_allowed_ = true;
  bool limit_refuted_ = false;  // the objective limit was not proved since the last rebuild
  WorkVector flip_column_;      // [m]
  WorkVector full_row_;         // [n] rho'A of the leaving row; empty unless needed
};

}  // namespace kelvo
