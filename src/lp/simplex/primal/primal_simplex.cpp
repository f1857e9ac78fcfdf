// Round: a fresh factorization with everything computed anew, then iterations until something asks
// for the next round. What ends a run is only decided at the start of a round, on fresh values.
#include "lp/simplex/primal/primal_simplex.h"

#include <algorithm>
#include <cmath>

#include "lp/simplex/primal/primal_perturbation.h"
#include "lp/simplex/primal/primal_pricing.h"
#include "lp/simplex/primal/primal_ratio_test.h"
#include "lp/simplex/simplex_tolerances.h"

namespace kelvo {
namespace {

// Rounds in a row without any iteration between them before the run gives up.
constexpr int kIdleRounds = 20;
// Phase one that neither reaches feasibility nor proves infeasibility goes on with this tolerance
// of reduced costs.
constexpr double kFinestTolerance = 1e-9;
// A proof of infeasibility must exclude zero by this share of the tolerance times its own size.
constexpr double kProofMargin = 1e-9;

class PrimalSimplex {
 public:
  explicit PrimalSimplex(SimplexState& state)
      : state_(state), pricer_(state), ratio_test_(state), perturbation_(state) {
    gradient_.setup(state.m);
    gradient_row_.setup(state.num_vars);
  }

  SimplexOutcome run();

 private:
  enum class Step { next, round, no_candidate, unlimited, stopped, singular };

  bool begin_round();
  void set_phase();
  void set_infeasibility_costs();
  Step iterate();
  void compute_entering_column(int entering);
  int next_superbasic();
  Step push_superbasics();
  void place_at_end(int variable, int direction);
  Step move_entering(int entering, int direction, const PrimalStep& step);
  Step pivot(int entering, int direction, const PrimalStep& step);
  bool confirm_reduced_cost(int entering);
  double range_of(int entering, int direction) const;
  void move_basics(double signed_step);
  void change_gradient(int leaving_position);
  void price_gradient();
  void add_to_duals(double factor, const WorkVector& y);
  double compute_row_pivot(int entering, int position);
  void update_reduced_costs(int entering, int leaving, double pivot);
  void note_progress(double gain);
  bool settle(SimplexOutcome& outcome, Step reason);
  void count_superbasics();
  bool dropped_satisfied();
  bool below_objective_limit() const;
  Step stopped_by_objective();
  bool prove_infeasible();
  void store_ray(int entering, int direction);
  SimplexOutcome finish(SimplexOutcome outcome);

  double tolerance() const { return perturbation_.feasibility_tolerance(); }
  double infeasibility_of(int p) const {
    return std::max({state_.basics.lower[p] - state_.basics.value[p],
                     state_.basics.value[p] - state_.basics.upper[p], 0.0});
  }

  SimplexState& state_;
  PrimalPricer pricer_;
  PrimalRatioTest ratio_test_;
  PrimalPerturbation perturbation_;
  bool phase_one_ = false;
  double infeasibility_ = 0.0;  // sum at the start of the round
  double objective_ = 0.0;      // in phase two: of the working problem
  WorkVector gradient_;         // [m] changes of the infeasibility costs, by position, then by row
  WorkVector gradient_row_;     // [num_vars]
  SimplexOutcome stop_ = SimplexOutcome::aborted;
  int round_iterations_ = 0;  // iterations made since the round began
  int idle_rounds_ = 0;
  int unlimited_entering_ = -1;
  int unlimited_direction_ = 0;
  int next_push_ = 0;  // variables below this one have been looked at in this round
};

// --- Rounds --------------------------------------------------------------------------------------

bool PrimalSimplex::begin_round() {
  const Refactored factored = state_.refactorize();
  if (no_factor(factored)) return false;
  if (factored != Refactored::ok) pricer_.reinitialize();
  pricer_.review_rule();
  state_.compute_primals();
  set_phase();
  if (phase_one_) {
    set_infeasibility_costs();
  } else {
    if (state_.program.costs_perturbed()) state_.restore_costs();
    pricer_.set_tolerance(state_.run.dual_tolerance);
  }
  state_.compute_duals();
  pricer_.rebuild();
  if (!phase_one_) objective_ = state_.duals.working_objective();
  idle_rounds_ = round_iterations_ > 0 ? 0 : idle_rounds_ + 1;
  round_iterations_ = 0;
  next_push_ = 0;
  const int factorizations = state_.factor().statistics().factorizations;
  if (state_.log.line_due(factorizations)) {
    state_.log.primal_iteration(state_.run.iterations, factorizations, phase_one_,
                                phase_one_ ? infeasibility_ : objective_);
  }
  return true;
}

void PrimalSimplex::set_phase() {
  infeasibility_ = 0.0;
  phase_one_ = false;
  for (int p = 0; p < state_.m; ++p) {
    const double amount = infeasibility_of(p);
    infeasibility_ += amount;
    if (amount > tolerance()) phase_one_ = true;
  }
}

/// Working costs := the gradient of the sum of infeasibilities.
void PrimalSimplex::set_infeasibility_costs() {
  std::fill(state_.program.cost.begin(), state_.program.cost.end(), 0.0);
  state_.program.set_costs_perturbed();
  for (int p = 0; p < state_.m; ++p) {
    double& cost = state_.program.cost[state_.basis.header[p]];
    if (state_.basics.value[p] < state_.basics.lower[p] - tolerance()) cost = -1.0;
    if (state_.basics.value[p] > state_.basics.upper[p] + tolerance()) cost = 1.0;
  }
}

SimplexOutcome PrimalSimplex::run() {
  count_superbasics();
  perturbation_.begin();
  pricer_.begin();
  while (true) {
    if (!begin_round()) return finish(state_.outcome_without_factor());
    if (idle_rounds_ > kIdleRounds) return finish(SimplexOutcome::non_optimal);
    Step step = Step::next;
    while (step == Step::next) step = iterate();
    if (step == Step::stopped) return finish(stop_);
    if (step == Step::singular) return finish(SimplexOutcome::singular);
    SimplexOutcome outcome = SimplexOutcome::non_optimal;
    if (step != Step::round && settle(outcome, step)) return finish(outcome);
  }
}

void PrimalSimplex::count_superbasics() {
  int count = 0;
  for (int j = 0; j < state_.num_vars; ++j) {
    count += state_.basis.status[j] == kFreeSuper && !state_.program.is_free(j);
  }
  if (count > 0) state_.log.primal_start_superbasics(count);
}

/// Variables that a repair dropped from the basis and that were held since. True when none of them
/// violates optimality; otherwise they take part again.
bool PrimalSimplex::dropped_satisfied() {
  int dropped = 0;
  int violations = 0;
  for (int j = 0; j < state_.num_vars; ++j) {
    if (!state_.basis.held[j] || state_.basis.status[j] == kBasic) continue;
    ++dropped;
    const double d = state_.duals.reduced_cost[j];
    const bool up =
        state_.basis.value[j] < state_.program.upper[j] && d < -state_.run.dual_tolerance;
    const bool down =
        state_.basis.value[j] > state_.program.lower[j] && d > state_.run.dual_tolerance;
    if (!up && !down) continue;
    ++violations;
    state_.log.dropped_violates(j, d);
  }
  if (dropped > 0) state_.log.dropped_checked(violations);
  state_.release_held();
  return violations == 0;
}

/// Nothing more to do in the working problem. True when that ends the run; otherwise another round
/// follows, on fresh values or without perturbation.
bool PrimalSimplex::settle(SimplexOutcome& outcome, Step reason) {
  if (round_iterations_ > 0) return false;
  if (reason == Step::unlimited && phase_one_) return false;  // rounding errors: choose again
  if (perturbation_.active() || state_.program.bounds_perturbed()) {
    perturbation_.remove();
    idle_rounds_ = 0;
    return false;
  }
  if (!dropped_satisfied()) return false;
  if (reason == Step::unlimited) {
    store_ray(unlimited_entering_, unlimited_direction_);
    outcome = SimplexOutcome::unbounded;
  } else if (phase_one_) {
    if (prove_infeasible()) {
      outcome = SimplexOutcome::infeasible;
    } else if (pricer_.tolerance() > kFinestTolerance) {
      // Infeasibilities are left that shallow slopes may still remove.
      pricer_.set_tolerance(kFinestTolerance);
      return false;
    }
  } else {
    outcome = SimplexOutcome::optimal;
  }
  return true;
}

SimplexOutcome PrimalSimplex::finish(SimplexOutcome outcome) {
  if (perturbation_.active() || state_.program.bounds_perturbed()) perturbation_.remove();
  state_.store_results();
  return outcome;
}

// --- One iteration -------------------------------------------------------------------------------

PrimalSimplex::Step PrimalSimplex::iterate() {
  if (const auto stop = state_.interrupted(false, phase_one_)) {
    stop_ = *stop;
    return Step::stopped;
  }
  if (below_objective_limit()) return stopped_by_objective();
  state_.log.elapsed(state_.run.iterations, true);
  const int entering = pricer_.choose();
  if (entering < 0) return phase_one_ ? Step::no_candidate : push_superbasics();
  if (perturbation_.due_at_start()) return Step::round;
  compute_entering_column(entering);
  if (!confirm_reduced_cost(entering)) {
    return round_iterations_ > 0 && !state_.freshly_factored() ? Step::round : Step::next;
  }
  const double d = state_.duals.reduced_cost[entering];
  const int direction = d < 0.0 ? 1 : -1;
  const double range = range_of(entering, direction);
  const PrimalStep step = phase_one_
                              ? ratio_test_.phase_one(direction, range, tolerance(), std::fabs(d))
                              : ratio_test_.phase_two(direction, range, tolerance());
  switch (step.kind) {
    case PrimalStep::Kind::unlimited:
      if (round_iterations_ > 0) return Step::round;
      if (phase_one_) {
        pricer_.ban(entering);
        return Step::next;
      }
      unlimited_entering_ = entering;
      unlimited_direction_ = direction;
      return Step::unlimited;
    case PrimalStep::Kind::no_pivot:
      if (!state_.freshly_factored()) return Step::round;
      pricer_.ban(entering);
      return Step::next;
    case PrimalStep::Kind::flip:
      return move_entering(entering, direction, step);
    case PrimalStep::Kind::exchange:
      break;
  }
  return pivot(entering, direction, step);
}

void PrimalSimplex::compute_entering_column(int entering) {
  state_.entering.clear();
  state_.program.load_column(entering, state_.entering);
  state_.factor().ftran(state_.entering, state_.density.entering, true);
  SolveDensities::observe(state_.density.entering, state_.entering.density());
}

/// The next variable of this round that stands between its bounds without being basic, or a free
/// one that does not stand at 0; -1 when there is none.
int PrimalSimplex::next_superbasic() {
  for (; next_push_ < state_.num_vars; ++next_push_) {
    const int j = next_push_;
    if (state_.basis.status[j] != kFreeSuper || state_.basis.held[j]) continue;
    if (!state_.program.is_free(j) || state_.basis.value[j] != 0.0) return next_push_++;
  }
  return -1;
}

/// Moves the superbasic variables, once no reduced cost does so any more: each to its nearer bound
/// (a free one to 0), or into the basis where a basic variable reaches a bound before. Reduced
/// costs stay what they are, nearly 0 for all that take part; the next round computes them anew.
PrimalSimplex::Step PrimalSimplex::push_superbasics() {
  bool pushed = false;
  for (int j = next_superbasic(); j >= 0; j = next_superbasic()) {
    if (const auto stop = state_.interrupted(false, phase_one_)) {
      stop_ = *stop;
      return Step::stopped;
    }
    const double x = state_.basis.value[j];
    const double lower = state_.program.is_free(j) ? 0.0 : state_.program.lower[j];
    const double upper = state_.program.is_free(j) ? 0.0 : state_.program.upper[j];
    const bool up = x < lower || (x <= upper && upper - x < x - lower);
    const int direction = up ? 1 : -1;
    compute_entering_column(j);
    const PrimalStep step =
        ratio_test_.phase_two(direction, direction > 0 ? upper - x : x - lower, tolerance());
    if (step.kind != PrimalStep::Kind::flip && step.kind != PrimalStep::Kind::exchange) continue;
    pushed = true;
    ++round_iterations_;
    move_basics(direction * step.length);
    if (step.kind == PrimalStep::Kind::flip) {
      place_at_end(j, direction);
      ++state_.run.iterations;
      continue;
    }
    const int leaving = state_.basis.header[step.position];
    perturbation_.shift_leaving_bound(leaving, step.leaving_at, state_.basics.value[step.position]);
    const double pivot = state_.entering.value[step.position];
    const double end = x + direction * step.length;
    const bool updated = state_.exchange(step.position, j, end, step.leaving_at, pivot);
    if (!updated || state_.factor().should_refactor()) return Step::round;
  }
  return pushed ? Step::round : Step::no_candidate;
}

/// A nonbasic variable has moved as far as it may.
void PrimalSimplex::place_at_end(int variable, int direction) {
  if (state_.program.is_free(variable)) {
    state_.basis.value[variable] = 0.0;
  } else {
    state_.basis.place(variable, direction > 0 ? kAtUpper : kAtLower);
  }
}

bool PrimalSimplex::below_objective_limit() const {
  return !phase_one_ && objective_ < state_.run.settings.objective_lower_limit;
}

/// The limit counts when the true problem's objective, freshly computed, is below it.
PrimalSimplex::Step PrimalSimplex::stopped_by_objective() {
  if (round_iterations_ > 0) return Step::round;
  if (state_.program.bounds_perturbed()) {
    perturbation_.remove();
    return Step::round;
  }
  stop_ = SimplexOutcome::objective_limit;
  return Step::stopped;
}

/// The reduced cost follows from the entering column too. False when the stored one was wrong in
/// sign, which it then no longer is.
bool PrimalSimplex::confirm_reduced_cost(int entering) {
  const WorkVector& alpha = state_.entering;
  double d = state_.program.cost[entering];
  const int count = alpha.is_dense() ? state_.m : alpha.count;
  for (int k = 0; k < count; ++k) {
    const int p = alpha.is_dense() ? k : alpha.index[k];
    d -= state_.program.cost[state_.basis.header[p]] * alpha.value[p];
  }
  const double stored = state_.duals.reduced_cost[entering];
  state_.duals.reduced_cost[entering] = d;
  const bool same_sign = (d < 0.0) == (stored < 0.0);
  if (same_sign && std::fabs(d) >= 0.5 * std::min(std::fabs(stored), pricer_.tolerance())) {
    return true;
  }
  if (state_.freshly_factored()) pricer_.ban(entering);
  pricer_.refresh(entering);
  return false;
}

double PrimalSimplex::range_of(int entering, int direction) const {
  const double x = state_.basis.value[entering];
  return direction > 0 ? state_.program.upper[entering] - x : x - state_.program.lower[entering];
}

/// x_B -= signed_step * alpha; the objective side is the caller's.
void PrimalSimplex::move_basics(double signed_step) {
  const WorkVector& alpha = state_.entering;
  if (signed_step == 0.0) return;
  const int count = alpha.is_dense() ? state_.m : alpha.count;
  for (int k = 0; k < count; ++k) {
    const int p = alpha.is_dense() ? k : alpha.index[k];
    state_.basics.value[p] -= signed_step * alpha.value[p];
  }
}

/// In phase one: collects how the infeasibility costs of the basic variables change after a move
/// and changes them. The leaving position is left out; it is dealt with by the exchange.
void PrimalSimplex::change_gradient(int leaving_position) {
  gradient_.clear();
  const WorkVector& alpha = state_.entering;
  const int count = alpha.is_dense() ? state_.m : alpha.count;
  for (int k = 0; k < count; ++k) {
    const int p = alpha.is_dense() ? k : alpha.index[k];
    if (alpha.value[p] == 0.0 || p == leaving_position) continue;
    double& cost = state_.program.cost[state_.basis.header[p]];
    double now = 0.0;
    if (state_.basics.value[p] < state_.basics.lower[p] - tolerance()) now = -1.0;
    if (state_.basics.value[p] > state_.basics.upper[p] + tolerance()) now = 1.0;
    if (now == cost) continue;
    gradient_.insert(p, now - cost);
    cost = now;
  }
}

/// Row duals += factor * y.
void PrimalSimplex::add_to_duals(double factor, const WorkVector& y) {
  const int count = y.is_dense() ? state_.m : y.count;
  for (int k = 0; k < count; ++k) {
    const int i = y.is_dense() ? k : y.index[k];
    state_.duals.row_duals[i] += factor * y.value[i];
  }
}

/// The pivot row's entry of the entering variable; without sectional pricing the whole row too.
double PrimalSimplex::compute_row_pivot(int entering, int position) {
  state_.compute_row_ep(position);
  if (!pricer_.sectional()) {
    state_.compute_pivot_row();
    return state_.pivot_row.value[entering];
  }
  const Vector<double>& y = state_.row_ep.value;
  if (entering >= state_.n) return y[entering - state_.n];
  const SparseMatrix& columns = state_.problem.columns;
  double sum = 0.0;
  for (int k = columns.start[entering]; k < columns.start[entering + 1]; ++k) {
    sum += columns.value[k] * y[columns.index[k]];
  }
  return sum;
}

/// Reduced costs after the change of costs in gradient_, whose transposed solve is in gradient_.
void PrimalSimplex::price_gradient() {
  if (pricer_.sectional()) {
    add_to_duals(1.0, gradient_);
    return;
  }
  gradient_row_.clear();
  state_.program.rows.multiply(gradient_, state_.density.primal_btran, gradient_row_);
  const int count = gradient_row_.is_dense() ? state_.n : gradient_row_.count;
  for (int k = 0; k < count; ++k) {
    const int j = gradient_row_.is_dense() ? k : gradient_row_.index[k];
    if (gradient_row_.value[j] == 0.0) continue;
    state_.duals.reduced_cost[j] -= gradient_row_.value[j];
    pricer_.refresh(j);
  }
  const int rows = gradient_.is_dense() ? state_.m : gradient_.count;
  for (int k = 0; k < rows; ++k) {
    const int j = state_.n + (gradient_.is_dense() ? k : gradient_.index[k]);
    if (state_.basis.move[j] == Basis::kStays) continue;
    state_.duals.reduced_cost[j] -= gradient_.value[j - state_.n];
    pricer_.refresh(j);
  }
}

/// The entering variable goes to its other bound; the basis stays.
PrimalSimplex::Step PrimalSimplex::move_entering(int entering, int direction,
                                                 const PrimalStep& step) {
  move_basics(direction * step.length);
  state_.basis.place(entering, direction > 0 ? kAtUpper : kAtLower);
  ++state_.run.iterations;
  ++round_iterations_;
  if (phase_one_) {
    ++state_.run.phase_one_iterations;
    change_gradient(-1);
    if (gradient_.count > 0) {
      state_.factor().btran(gradient_, state_.density.primal_btran);
      SolveDensities::observe(state_.density.primal_btran, gradient_.density());
      price_gradient();
    }
  }
  pricer_.refresh(entering);
  note_progress(step.length * std::fabs(state_.duals.reduced_cost[entering]));
  return perturbation_.due() ? Step::round : Step::next;
}

PrimalSimplex::Step PrimalSimplex::pivot(int entering, int direction, const PrimalStep& step) {
  const int position = step.position;
  const int leaving = state_.basis.header[position];
  const double column_pivot = state_.entering.value[position];
  const double row_pivot = compute_row_pivot(entering, position);
  const double disagreement = std::fabs(row_pivot - column_pivot);
  if (disagreement > simplex_tolerance::kPivotAgreement * (1.0 + std::fabs(column_pivot))) {
    if (!state_.freshly_factored()) return Step::round;
    if (disagreement > simplex_tolerance::kPivotFailure * std::fabs(column_pivot)) {
      pricer_.ban(entering);
      return Step::next;
    }
  }
  const double d = state_.duals.reduced_cost[entering];
  const double entering_value = state_.basis.value[entering] + direction * step.length;
  move_basics(direction * step.length);
  perturbation_.shift_leaving_bound(leaving, step.leaving_at, state_.basics.value[position]);
  if (phase_one_) {
    // Costs change before the exchange, so one transposed solve with the old basis serves.
    change_gradient(position);
    if (gradient_.count > 0) {
      double correction = 0.0;
      for (int k = 0; k < gradient_.count; ++k) {
        correction +=
            gradient_.value[gradient_.index[k]] * state_.entering.value[gradient_.index[k]];
      }
      state_.factor().btran(gradient_, state_.density.primal_btran);
      SolveDensities::observe(state_.density.primal_btran, gradient_.density());
      price_gradient();
      state_.duals.reduced_cost[entering] = d - correction;
    }
    ++state_.run.phase_one_iterations;
  }
  pricer_.update_weights(entering, position, row_pivot);
  update_reduced_costs(entering, leaving, column_pivot);
  const int factorizations = state_.factor().statistics().factorizations;
  const bool updated =
      state_.exchange(position, entering, entering_value, step.leaving_at, column_pivot);
  ++round_iterations_;
  pricer_.refresh(entering);
  pricer_.refresh(leaving);
  note_progress(step.length * std::fabs(d));
  if (state_.run.settings.display >= 2) {
    state_.log.primal_iteration(state_.run.iterations, factorizations, phase_one_,
                                phase_one_ ? infeasibility_ : objective_);
    state_.log.exchange(state_.run.iterations, phase_one_, entering, leaving, objective_);
  }
  return updated && !state_.factor().should_refactor() && !perturbation_.due() ? Step::next
                                                                               : Step::round;
}

void PrimalSimplex::update_reduced_costs(int entering, int leaving, double pivot) {
  const double dual_step = state_.duals.reduced_cost[entering] / pivot;
  const WorkVector& row = state_.pivot_row;
  if (pricer_.sectional()) add_to_duals(dual_step, state_.row_ep);
  const int count = pricer_.sectional() ? 0 : row.is_dense() ? state_.num_vars : row.count;
  for (int k = 0; k < count; ++k) {
    const int j = row.is_dense() ? k : row.index[k];
    if (row.value[j] == 0.0 || j == entering) continue;
    state_.duals.reduced_cost[j] -= dual_step * row.value[j];
    pricer_.refresh(j);
  }
  state_.duals.reduced_cost[leaving] = -dual_step;
  if (phase_one_) {
    // As a nonbasic variable the leaving one is feasible and costs nothing.
    state_.duals.reduced_cost[leaving] -= state_.program.cost[leaving];
    state_.program.cost[leaving] = 0.0;
  }
}

/// Perturbs when the run has stalled for long; the new bounds are taken up by the next round.
void PrimalSimplex::note_progress(double gain) {
  objective_ -= gain;
  perturbation_.observe(gain);
}

// --- Proofs --------------------------------------------------------------------------------------

/// The duals of the infeasibility costs combine the rows into one that no point of the box
/// satisfies: sum of z_j x_j = 0 with z = [A I]'y, but its maximum over the box is negative.
bool PrimalSimplex::prove_infeasible() {
  state_.results.farkas = state_.duals.row_duals;
  state_.refine_duals(state_.results.farkas);
  double largest = 0.0;
  double size = 0.0;
  for (int j = 0; j < state_.num_vars; ++j) {
    const double z =
        state_.basis.status[j] == kBasic ? state_.program.cost[j] : -state_.duals.reduced_cost[j];
    if (z == 0.0) continue;
    const double bound = z > 0.0 ? state_.problem.upper[j] : state_.problem.lower[j];
    if (std::isinf(bound)) {
      if (std::fabs(z) > state_.run.settings.optimality_tolerance) return false;
      continue;
    }
    largest += z * bound;
    size += std::fabs(z * bound);
  }
  return largest < -kProofMargin * size;
}

void PrimalSimplex::store_ray(int entering, int direction) {
  std::fill(state_.results.ray.begin(), state_.results.ray.end(), 0.0);
  state_.results.ray[entering] = direction;
  const WorkVector& alpha = state_.entering;
  for (int p = 0; p < state_.m; ++p) {
    if (alpha.value[p] != 0.0)
      state_.results.ray[state_.basis.header[p]] = -direction * alpha.value[p];
  }
}

}  // namespace

SimplexOutcome run_primal_simplex(SimplexState& state) {
  return PrimalSimplex(state).run();
}

}  // namespace kelvo
