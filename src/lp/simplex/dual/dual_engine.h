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
  SimplexOutcome run();
  /// From an optimal basis, with results stored: bounds kept within `finest`, if few iterations
  /// lead there; otherwise the basis stays. Results are stored again.
  void polish(double finest);

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
  enum class Weights { none, steepest, devex };

  // The run.
  SimplexOutcome solve();
  SimplexOutcome finish_with_primal();
  TrueProblem look_at_true_problem();
  void settle_superbasics();
  bool worth_perturbing();

  // A phase.
  PhaseEnd run_phase();
  bool rebuild();
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
  void choose_pricing();
  void initialize_weights();
  int compute_exact_weights(bool all);

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
  double objective_ = 0.0;      // of the working problem, kept up to date by the steps
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
};

}  // namespace kelvo
