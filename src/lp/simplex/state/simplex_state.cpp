#include "lp/simplex/state/simplex_state.h"

#include <algorithm>
#include <cassert>

namespace kelvo {
namespace {

// Nonzeros touched by a factorization that takes a small part of a second.
constexpr double kQuickFactorization = 2e7;

}  // namespace

SimplexState::SimplexState(LpProblem& lp)
    : problem(lp),
      m(lp.num_rows),
      n(lp.num_cols),
      num_vars(lp.num_vars()),
      log(lp),
      program(lp),
      basis(program),
      inverse(lp.columns, &log),
      basics(program, basis),
      duals(program, basis),
      weights(m),
      results(lp),
      row_ep(m),
      pivot_row(num_vars),
      entering(m),
      auxiliary(m),
      full(m) {}

// --- Setting up ----------------------------------------------------------------------------------

void SimplexState::set_context(const RunContext& context) {
  run.set_context(context);
  log.write_to(context.sink);
}

void SimplexState::set_slack_basis() {
  basis.set_slack();
  inverse.invalidate();
  saved_.forget();
  duals.make_stale();
  refresh_nonbasic();
  weights.set_slack();
}

void SimplexState::set_basis(const Vector<int>& given, const double* values) {
  const bool same = basis.set(given, values);
  if (!same) {
    inverse.invalidate();
    saved_.forget();
    duals.make_stale();
    weights.invalidate();
    const bool complete = std::count(given.begin(), given.end(), kBasic) == m;
    if (complete && basis.all_logicals()) weights.set_slack();
  }
  refresh_nonbasic();
}

void SimplexState::begin_run(const SimplexSettings& run_settings) {
  inverse.configure(run_settings);
  run.begin(run_settings, work());
  verified_ = false;
  log.begin_run(run.settings, run.iterations);
  restore_costs();
  restore_bounds();
  if (!basis.is_set()) set_slack_basis();
  if (basics.current() && factor_current()) apply_moves();
}

// --- Changes of the program ----------------------------------------------------------------------

void SimplexState::restore_costs() {
  if (program.costs_perturbed()) {
    take_costs();
  } else if (program.num_shifts() > 0) {
    program.take_shifts_back();
    duals.make_stale();
  }
}

void SimplexState::take_costs() {
  program.take_costs();
  duals.make_stale();
  optimum.forget();
}

void SimplexState::restore_bounds() {
  if (program.bounds_perturbed()) take_bounds();
}

void SimplexState::take_bounds() {
  program.take_bounds();
  if (basis.is_set()) refresh_nonbasic();
}

void SimplexState::refresh_nonbasic() {
  basis.refresh_all();
  basics.refresh_all_bounds();
  basics.moves.clear();
  basics.set_validity(Validity::stale);
  duals.follow_movements();
  optimum.forget();
}

void SimplexState::change_bounds(const Vector<VariableBounds>& changes) {
  restore_bounds();
  for (const VariableBounds& change : changes) {
    const int j = change.variable;
    if (problem.lower[j] == change.lower && problem.upper[j] == change.upper) continue;
    optimum.forget();
    trail.note_bounds(*this, j);
    program.set_bounds(j, change.lower, change.upper);
    if (!basis.is_set()) continue;
    if (basis.is_basic(j)) {
      basics.refresh_bounds(basis.position[j]);
    } else {
      change_nonbasic_bounds(j);
    }
  }
}

void SimplexState::change_nonbasic_bounds(int j) {
  const double before = basis.value[j];
  trail.note_variable(*this, j);
  if (duals.current() && basis.move[j] == Basis::kStays) {
    trail.note_reduced_cost(*this, j);
    duals.reduced_cost[j] = duals.priced_out(j);
  }
  basis.refresh(j);
  const double d = duals.reduced_cost[j];
  if (duals.current() && DualValues::wrong(d, basis.move[j], run.dual_tolerance)) {
    if (program.is_boxed(j)) {
      flip(j);
    } else {
      duals.set_feasible(false);
    }
  }
  const double change = basis.value[j] - before;
  if (change == 0.0 || !basics.current()) return;
  program.add_column(j, change, basics.moves);
  duals.objective += d * change;
  basics.lose_freshness();
}

void SimplexState::change_costs(const Vector<VariableCost>& changes) {
  restore_costs();
  for (const VariableCost& change : changes) {
    const int j = change.variable;
    const double amount = change.cost - problem.cost[j];
    if (amount == 0.0) continue;
    program.set_cost(j, change.cost);
    duals.reduced_cost[j] += amount;
    duals.objective += amount * basis.value[j];
    duals.set_feasible(false);
    optimum.forget();
    if (basis.is_set() && basis.is_basic(j)) duals.make_stale();
  }
}

void SimplexState::apply_moves() {
  if (basics.moves.count == 0) return;
  factor().ftran(basics.moves, density.flips);
  trail.note_positions(*this, basics.moves);
  basics.move_along(basics.moves, 1.0);
  basics.moves.clear();
  basics.lose_freshness();
}

void SimplexState::take_shifts_back() {
  full.clear();
  for (const int j : program.shifted()) {
    const double change = problem.cost[j] - program.cost[j];
    if (change == 0.0) continue;
    program.cost[j] = problem.cost[j];
    if (basis.is_basic(j)) {
      full.insert(basis.position[j], change);
    } else {
      duals.reduced_cost[j] += change;
    }
  }
  program.clear_shifts();
  duals.lose_freshness();
  duals.set_feasible(false);
  if (full.count == 0) return;
  factor().btran(full, density.primal_btran);
  const int count = full.is_dense() ? m : full.count;
  for (int k = 0; k < count; ++k) {
    const int i = full.is_dense() ? k : full.index[k];
    duals.row_duals[i] += full.value[i];
  }
  full.clear();
}

// --- The basis and its factor --------------------------------------------------------------------

Refactored SimplexState::refactorize() {
  if (freshly_factored()) return Refactored::ok;
  trail.note_everything(*this);
  basics.lose_freshness();
  duals.lose_freshness();
  bool restored = false;
  while (true) {
    switch (inverse.factorize(basis.header, !saved_.present(), &run.stop())) {
      case FactorOutcome::ok:
        saved_.save(basis, weights);
        return restored ? Refactored::restored : Refactored::ok;
      case FactorOutcome::stopped:
        return Refactored::stopped;
      case FactorOutcome::repaired:
        basis.apply_repairs(inverse.repairs(), log);
        weights.invalidate();
        refresh_nonbasic();
        duals.make_stale();
        saved_.save(basis, weights);
        return Refactored::repaired;
      case FactorOutcome::singular:
        break;
    }
    if (!saved_.present()) return Refactored::singular;
    saved_.put_back(basis, weights);
    refresh_nonbasic();
    duals.make_stale();
    restored = true;
    factor().raise_markowitz();
  }
}

SimplexOutcome SimplexState::outcome_without_factor() const {
  return inverse.was_stopped() ? RunControl::outcome_of_stop(run.stop().check())
                               : SimplexOutcome::singular;
}

void SimplexState::flip(int j) {
  trail.note_variable(*this, j);
  basis.flip(j);
  basics.lose_freshness();
}

bool SimplexState::exchange(int at, int entering_variable, double entering_value,
                            BasisStatus leaving_status, double pivot) {
  const int leaving = basis.header[at];
  trail.note_exchange(*this, at);
  trail.note_position(*this, at);
  trail.note_variable(*this, leaving);
  trail.note_variable(*this, entering_variable);
  basis.exchange(at, entering_variable);
  basis.place(leaving, leaving_status);
  basics.value[at] = entering_value;
  basics.refresh_bounds(at);
  duals.reduced_cost[entering_variable] = 0.0;
  ++run.iterations;
  basics.set_validity(Validity::stale);
  duals.make_stale();
  optimum.forget();
  return inverse.update(at, pivot);
}

// --- The pivot row -------------------------------------------------------------------------------

void SimplexState::compute_row_ep(int p) {
  row_ep.clear();
  row_ep.insert(p, 1.0);
  factor().btran(row_ep, density.pivot_btran);
  if (row_ep.is_dense()) row_ep.pack();
  SolveDensities::observe(density.pivot_btran, row_ep.density());
}

void SimplexState::compute_pivot_row() {
  pivot_row.clear();
  program.rows.multiply(row_ep, density.pivot_row, pivot_row);
  const double* weight = row_ep.value.data();
  const signed char* logical_move = basis.move.data() + n;
  if (pivot_row.is_dense()) pivot_row.pack(n);
  for (int k = 0; k < row_ep.count; ++k) {
    const int i = row_ep.index[k];
    if (logical_move[i] != Basis::kStays) pivot_row.insert(n + i, weight[i]);
  }
  SolveDensities::observe(density.pivot_row, pivot_row.density());
}

// --- Ends ----------------------------------------------------------------------------------------

void SimplexState::store_results() {
  restore_costs();
  restore_bounds();
  if (basics.fresh() && duals.fresh()) {
    results.note_solution();
    return;
  }
  // A run that was stopped does not wait for a long factorization: values from the updated factor
  // are good enough, and without any factor those kept by the last iterations.
  const bool quick = factor().statistics().factor_work <= kQuickFactorization;
  if (!freshly_factored() && (quick || !factor_current() || !run.stop().requested())) {
    if (refactorize() == Refactored::singular) return;
  }
  if (factor_current()) {
    if (!basics.fresh()) compute_primals();
    if (!duals.fresh()) compute_duals();
  }
  results.note_solution();
}

void SimplexState::note_optimum(bool polished) {
  optimum.note(run, polished);
  duals.set_feasible(duals.current());
  if (duals.current() && basics.current() && !verified_) {
    duals.objective = duals.working_objective();
  }
}

void SimplexState::log_optimum(bool dual) {
  const int factorizations = factor().statistics().factorizations;
  if (!log.line_due(factorizations)) return;
  if (dual) {
    log.dual_iteration(run.iterations, factorizations, false, duals.objective);
  } else {
    log.primal_iteration(run.iterations, factorizations, false, duals.objective);
  }
}

}  // namespace kelvo
