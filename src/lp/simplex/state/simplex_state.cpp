#include "lp/simplex/state/simplex_state.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numeric>

namespace kelvo {
namespace {

// Duals above this are refined once after a fresh factorization: rounding of 1e-15 of it would
// already be a hundredth of the smallest optimality tolerance that users set.
constexpr double kLargeDual = 1e6;

// What verify() accepts: reduced costs of basic variables up to this share of the largest dual, and
// corrections of basic values up to this share of the largest row activity.
constexpr double kDualRest = 1e-11;
constexpr double kPrimalError = 1e-9;

constexpr double kCancelled = 1e-100;  // a cancelled entry that must stay listed
// Nonzeros touched by a factorization that takes a small part of a second.
constexpr double kQuickFactorization = 2e7;
constexpr double kOwnTolerance = 1e-8;     // working tolerances are not looser than this
constexpr std::uint64_t kTieSeed = 20071;  // any number: ties must only be broken repeatably

NeverStop never_stop;  // has no state

BasisStatus present_status(int wanted, double lower, double upper) {
  const bool has_lower = lower > -kInf;
  const bool has_upper = upper < kInf;
  if (wanted == kFreeSuper) return kFreeSuper;
  if (wanted == kAtUpper) return has_upper ? kAtUpper : has_lower ? kAtLower : kFreeSuper;
  return has_lower ? kAtLower : has_upper ? kAtUpper : kFreeSuper;
}

}  // namespace

SimplexState::SimplexState(LpProblem& lp)
    : problem(lp),
      log(lp),
      random(kTieSeed),
      m(lp.num_rows),
      n(lp.num_cols),
      num_vars(lp.num_vars()),
      cost(lp.cost),
      lower(lp.lower),
      upper(lp.upper),
      rows(lp),
      stop_(&never_stop) {
  status.assign(num_vars, kAtLower);
  move.assign(num_vars, kStays);
  value.assign(num_vars, 0.0);
  reduced_cost.assign(num_vars, 0.0);
  held.assign(num_vars, 0);
  tie_key.resize(num_vars);
  std::iota(tie_key.begin(), tie_key.end(), 0);
  for (int j = num_vars - 1; j > 0; --j) {
    // Two draws, because one has only 15 bits.
    const long draw = 32768L * random.below(32768) + random.below(32768);
    std::swap(tie_key[j], tie_key[static_cast<int>(draw % (j + 1))]);
  }
  header.assign(m, 0);
  position.assign(num_vars, -1);
  basic_value.assign(m, 0.0);
  basic_lower.assign(m, 0.0);
  basic_upper.assign(m, 0.0);
  dual_weights.assign(m, 1.0);
  saved_header_.assign(m, 0);
  saved_status_.assign(num_vars, 0);
  saved_weights_.assign(m, 1.0);
  row_ep.setup(m);
  pivot_row.setup(num_vars);
  entering.setup(m);
  auxiliary.setup(m);
  full.setup(m);
  moves_.setup(m);
  result_values.assign(num_vars, 0.0);
  row_duals.assign(m, 0.0);
  farkas.assign(m, 0.0);
  ray.assign(num_vars, 0.0);
  make_factor();
}

void SimplexState::make_factor() {
  factor_settings_.markowitz_threshold = settings.markowitz_threshold;
  factor_settings_.absolute_tolerance = settings.singularity_tolerance;
  factor_settings_.row_file_multiplier = settings.row_file_multiplier;
  factor_settings_.col_file_multiplier = settings.col_file_multiplier;
  factor_settings_.singularity_limit = settings.singularity_limit;
  factor_settings_.adaptive_refactor = settings.refactor_frequency == 0;
  if (settings.refactor_frequency > 0) {
    factor_settings_.update_limit = settings.refactor_frequency - 1;
  } else {
    factor_settings_.update_limit = FactorSettings().update_limit;
  }
  factor_ = make_owned<BasisFactor>(problem.columns, factor_settings_, &log);
  factor_current_ = false;
}

// --- Setting up ----------------------------------------------------------------------------------

void SimplexState::set_context(const RunContext& context) {
  context_ = context;
  stop_ = context.stop != nullptr ? context.stop : &never_stop;
  log.write_to(context.sink);
}

void SimplexState::set_slack_basis() {
  for (int j = 0; j < n; ++j) {
    // The bound of smaller magnitude; a method that cares chooses the side itself.
    const bool upper_nearer = std::fabs(upper[j]) < std::fabs(lower[j]);
    status[j] = present_status(upper_nearer ? kAtUpper : kAtLower, lower[j], upper[j]);
    value[j] = 0.0;
  }
  for (int i = 0; i < m; ++i) {
    header[i] = n + i;
    status[n + i] = kBasic;
  }
  accept_header();
  take_unit_weights();
}

void SimplexState::take_unit_weights() {
  std::fill(dual_weights.begin(), dual_weights.end(), 1.0);
  dual_weights_valid = dual_weights_unit = true;
  dual_weights_full = false;
}

void SimplexState::set_basis(const Vector<int>& given, const double* values) {
  assert(static_cast<int>(given.size()) == num_vars);
  bool same_header = basis_valid;
  int num_basic = 0;
  for (int j = 0; j < num_vars; ++j) {
    const bool basic = given[j] == kBasic;
    num_basic += basic;
    same_header = same_header && basic == (status[j] == kBasic);
    status[j] = given[j];
    if (basic) continue;
    value[j] = given[j] != kFreeSuper ? 0.0
               : values != nullptr    ? values[j]
                                      : std::clamp(0.0, lower[j], upper[j]);
  }
  if (same_header) {
    refresh_nonbasic();
    return;
  }
  balance_basis(num_basic);
  int next = 0;
  for (int j = 0; j < num_vars; ++j) {
    if (status[j] == kBasic) header[next++] = j;
  }
  accept_header();
  dual_weights_valid = false;
  if (num_basic == m && (m == 0 || header[0] == n)) take_unit_weights();
}

void SimplexState::balance_basis(int num_basic) {
  for (int i = 0; i < m && num_basic < m; ++i) {
    if (status[n + i] == kBasic) continue;
    status[n + i] = kBasic;
    ++num_basic;
  }
  for (int j = num_vars - 1; j >= 0 && num_basic > m; --j) {
    if (status[j] != kBasic) continue;
    status[j] = present_status(kAtLower, lower[j], upper[j]);
    value[j] = 0.0;
    --num_basic;
  }
}

void SimplexState::accept_header() {
  for (int p = 0; p < m; ++p) position[header[p]] = p;
  basis_valid = true;
  factor_current_ = false;
  saved_ = false;
  refresh_nonbasic();
}

void SimplexState::begin_run(const SimplexSettings& run_settings) {
  const SimplexSettings& was = settings;
  const bool other_factor = run_settings.markowitz_threshold != was.markowitz_threshold ||
                            run_settings.singularity_tolerance != was.singularity_tolerance ||
                            run_settings.singularity_limit != was.singularity_limit ||
                            run_settings.row_file_multiplier != was.row_file_multiplier ||
                            run_settings.col_file_multiplier != was.col_file_multiplier ||
                            run_settings.refactor_frequency != was.refactor_frequency;
  settings = run_settings;
  primal_tolerance = std::min(settings.feasibility_tolerance, kOwnTolerance);
  dual_tolerance = std::min(settings.optimality_tolerance, kOwnTolerance);
  if (other_factor) make_factor();
  run_start_iteration = iterations;
  run_start_work = work();
  verified_ = false;
  log.begin_run(settings, iterations);
  restore_costs();
  restore_bounds();
  if (!basis_valid) set_slack_basis();
  if (primals_current && factor_current_) apply_moves();
}

void SimplexState::restore_costs() {
  if (!costs_perturbed && num_cost_shifts == 0) return;
  if (costs_perturbed) {
    take_costs();
    return;
  }
  for (const int j : shifted) cost[j] = problem.cost[j];
  shifted.clear();
  num_cost_shifts = 0;
  duals_current = duals_fresh = dual_feasible = false;
}

void SimplexState::take_costs() {
  std::copy(problem.cost.begin(), problem.cost.end(), cost.begin());
  shifted.clear();
  num_cost_shifts = 0;
  costs_perturbed = false;
  duals_current = duals_fresh = dual_feasible = solved = false;
}

void SimplexState::restore_bounds() {
  if (bounds_perturbed) take_bounds();
}

void SimplexState::take_bounds() {
  std::copy(problem.lower.begin(), problem.lower.end(), lower.begin());
  std::copy(problem.upper.begin(), problem.upper.end(), upper.begin());
  bounds_perturbed = false;
  if (basis_valid) refresh_nonbasic();
}

// --- Small changes -------------------------------------------------------------------------------

void SimplexState::change_bounds(const Vector<VariableBounds>& changes) {
  restore_bounds();
  for (const VariableBounds& change : changes) {
    const int j = change.variable;
    if (problem.lower[j] == change.lower && problem.upper[j] == change.upper) continue;
    solved = false;
    trail.note_bounds(*this, j);
    problem.lower[j] = lower[j] = change.lower;
    problem.upper[j] = upper[j] = change.upper;
    if (!basis_valid) continue;
    if (status[j] != kBasic) {
      change_nonbasic_bounds(j);
    } else {
      basic_lower[position[j]] = change.lower;
      basic_upper[position[j]] = change.upper;
    }
  }
}

void SimplexState::change_nonbasic_bounds(int j) {
  const double before = value[j];
  trail.note_variable(*this, j);
  if (duals_current && move[j] == kStays) {
    trail.note_reduced_cost(*this, j);
    reduced_cost[j] = priced_out(j);
  }
  place_nonbasic(j, static_cast<BasisStatus>(status[j]));
  const double d = reduced_cost[j];
  const bool wrong =
      move[j] == kAnywhere ? std::fabs(d) > dual_tolerance : d * move[j] < -dual_tolerance;
  if (duals_current && wrong) {
    if (is_boxed(j)) {
      flip(j);
    } else {
      dual_feasible = false;
    }
  }
  const double change = value[j] - before;
  if (change == 0.0 || !primals_current) return;
  add_column(j, change, moves_);
  dual_objective += d * change;
  primals_fresh = false;
}

void SimplexState::change_costs(const Vector<VariableCost>& changes) {
  restore_costs();
  for (const VariableCost& change : changes) {
    const int j = change.variable;
    const double amount = change.cost - problem.cost[j];
    if (amount == 0.0) continue;
    problem.cost[j] = cost[j] = change.cost;
    reduced_cost[j] += amount;
    dual_objective += amount * value[j];
    solved = dual_feasible = false;
    if (basis_valid && status[j] == kBasic) duals_current = duals_fresh = false;
  }
}

void SimplexState::apply_moves() {
  if (moves_.count == 0) return;
  factor_->ftran(moves_, density.flips);
  trail.note_positions(*this, moves_);
  const int count = moves_.is_dense() ? m : moves_.count;
  for (int k = 0; k < count; ++k) {
    const int p = moves_.is_dense() ? k : moves_.index[k];
    basic_value[p] -= moves_.value[p];
  }
  moves_.clear();
  primals_fresh = false;
}

// --- Trials --------------------------------------------------------------------------------------

void SimplexState::begin_trial() {
  assert(!trail.recording_ && factor_current_);
  trail.clear();
  before_ = {costs_perturbed, bounds_perturbed,     dual_weights_valid, primals_current,
             duals_current,   primals_fresh,        duals_fresh,        dual_feasible,
             solved,          num_cost_shifts,      num_held_,          shifted.size(),
             dual_objective,  factor_->checkpoint()};
  trail.recording_ = true;
}

void SimplexState::undo_trial() noexcept {
  trail.recording_ = false;
  moves_.clear();
  const auto backwards = [](const auto& notes, auto put_back) {
    for (std::size_t k = notes.size(); k > 0; --k) put_back(notes[k - 1]);
  };
  if (trail.everything_.taken) {
    // Copied, not swapped: others hold pointers into the arrays.
    const Trail::Everything& all = trail.everything_;
    const auto copy = [](const auto& from, auto& to) {
      std::copy(from.begin(), from.end(), to.begin());
    };
    copy(all.header, header);
    copy(all.status, status);
    copy(all.move, move);
    copy(all.held, held);
    copy(all.value, value);
    copy(all.cost, cost);
    copy(all.lower, lower);
    copy(all.upper, upper);
    copy(all.reduced_cost, reduced_cost);
    copy(all.basic_value, basic_value);
    copy(all.dual_weights, dual_weights);
    copy(all.row_duals, row_duals);
    for (int p = 0; p < m; ++p) {
      position[header[p]] = p;
      basic_lower[p] = lower[header[p]];
      basic_upper[p] = upper[header[p]];
    }
    refresh_partition();
  }
  backwards(trail.bounds_, [this](const Trail::Bounds& b) {
    problem.lower[b.variable] = lower[b.variable] = b.lower;
    problem.upper[b.variable] = upper[b.variable] = b.upper;
  });
  backwards(trail.variables_, [this](const Trail::Variable& v) {
    status[v.variable] = v.status;
    move[v.variable] = v.move;
    value[v.variable] = v.value;
    follow_movement(v.variable);
  });
  backwards(trail.costs_, [this](const Trail::Number& c) { cost[c.index] = c.value; });
  backwards(trail.exchanges_, [this](const Trail::Exchange& e) {
    header[e.position] = e.variable;
    position[e.variable] = e.position;
  });
  for (const Trail::Exchange& e : trail.exchanges_) refresh_basic(e.position);
  for (const Trail::Bounds& b : trail.bounds_) {
    if (status[b.variable] == kBasic) refresh_basic(position[b.variable]);
  }
  backwards(trail.positions_, [this](const Trail::Position& p) {
    basic_value[p.position] = p.value;
    dual_weights[p.position] = p.weight;
  });
  backwards(trail.reduced_costs_,
            [this](const Trail::Number& d) { reduced_cost[d.index] = d.value; });
  backwards(trail.row_duals_, [this](const Trail::Number& y) { row_duals[y.index] = y.value; });
  costs_perturbed = before_.costs_perturbed;
  bounds_perturbed = before_.bounds_perturbed;
  dual_weights_valid = before_.dual_weights_valid;
  primals_current = before_.primals_current;
  duals_current = before_.duals_current;
  primals_fresh = before_.primals_fresh;
  duals_fresh = before_.duals_fresh;
  dual_feasible = before_.dual_feasible;
  solved = before_.solved;
  num_cost_shifts = before_.num_cost_shifts;
  num_held_ = before_.num_held;
  shifted.resize(before_.shifted);
  dual_objective = before_.dual_objective;
  factor_current_ = factor_->rollback(before_.mark);
  factor_->release(before_.mark);
}

void SimplexState::refresh_variable(int j) {
  if (status[j] == kFreeSuper) {
    value[j] = std::clamp(value[j], lower[j], upper[j]);
    if (value[j] == lower[j]) {
      status[j] = kAtLower;
    } else if (value[j] == upper[j]) {
      status[j] = kAtUpper;
    }
  }
  status[j] = present_status(status[j], lower[j], upper[j]);
  switch (status[j]) {
    case kAtLower:
      value[j] = lower[j];
      move[j] = kUp;
      break;
    case kAtUpper:
      value[j] = upper[j];
      move[j] = kDown;
      break;
    default:
      move[j] = kAnywhere;
      if (std::isinf(value[j])) value[j] = 0.0;
  }
  if (held[j] || lower[j] == upper[j]) move[j] = kStays;
}

void SimplexState::refresh_basic(int p) {
  const int j = header[p];
  basic_lower[p] = lower[j];
  basic_upper[p] = upper[j];
  move[j] = kStays;
}

void SimplexState::follow_movement(int j) {
  if (j >= n) return;
  if (move[j] != kStays) {
    rows.activate(j);
  } else {
    rows.deactivate(j);
  }
}

void SimplexState::refresh_partition() {
  for (int j = 0; j < n; ++j) follow_movement(j);
}

void SimplexState::refresh_nonbasic() {
  for (int j = 0; j < num_vars; ++j) {
    if (status[j] != kBasic) refresh_variable(j);
  }
  for (int p = 0; p < m; ++p) refresh_basic(p);
  refresh_partition();
  moves_.clear();
  primals_current = primals_fresh = false;
  duals_current = dual_feasible = solved = false;
}

int SimplexState::release_held() {
  int released = 0;
  if (num_held_ == 0) return released;
  num_held_ = 0;
  for (int j = 0; j < num_vars; ++j) {
    if (!held[j]) continue;
    held[j] = 0;
    ++released;
    if (status[j] == kBasic) continue;
    refresh_variable(j);
    if (j < n && move[j] != kStays) rows.activate(j);
  }
  return released;
}

// --- The basis and its factor --------------------------------------------------------------------

Refactored SimplexState::refactorize() {
  if (freshly_factored()) return Refactored::ok;
  trail.note_everything(*this);
  factorization_stopped_ = false;
  primals_fresh = false;
  duals_fresh = false;
  bool restored = false;
  while (true) {
    repairs_.clear();
    const FactorOutcome outcome = factor_->factorize(header, !saved_, repairs_, stop_);
    if (outcome == FactorOutcome::ok) break;
    if (outcome == FactorOutcome::stopped) {
      factor_current_ = false;
      factorization_stopped_ = true;
      return Refactored::stopped;
    }
    if (outcome == FactorOutcome::repaired) {
      factor_current_ = true;
      apply_repairs();
      save_basis();
      return Refactored::repaired;
    }
    factor_current_ = false;
    if (!restore_saved_basis()) return Refactored::singular;
    restored = true;
    factor_->raise_markowitz();
  }
  factor_current_ = true;
  save_basis();
  return restored ? Refactored::restored : Refactored::ok;
}

SimplexOutcome SimplexState::outcome_of_stop(StopReason reason) {
  return reason == StopReason::time_limit ? SimplexOutcome::time_limit : SimplexOutcome::aborted;
}

SimplexOutcome SimplexState::outcome_without_factor() {
  return factorization_stopped_ ? outcome_of_stop(stop_->check()) : SimplexOutcome::singular;
}

void SimplexState::apply_repairs() {
  for (const BasisRepair& repair : repairs_) {
    const int j = repair.leaving;
    if (j < n) {
      log.variable_held(j);
      held[j] = 1;
    } else {
      log.slack_removed();
    }
    const bool upper_nearer = std::fabs(upper[j]) < std::fabs(lower[j]);
    status[j] = present_status(upper_nearer ? kAtUpper : kAtLower, lower[j], upper[j]);
    value[j] = 0.0;
  }
  // A variable may leave one position and come back at another, so the header has the last word.
  for (int j = 0; j < num_vars; ++j) {
    if (status[j] == kBasic) status[j] = present_status(kAtLower, lower[j], upper[j]);
  }
  for (int p = 0; p < m; ++p) {
    position[header[p]] = p;
    status[header[p]] = kBasic;
    held[header[p]] = 0;
  }
  num_held_ = static_cast<int>(std::count(held.begin(), held.end(), 1));
  dual_weights_valid = false;
  refresh_nonbasic();
}

void SimplexState::save_basis() {
  saved_header_ = header;
  saved_status_ = status;
  saved_weights_ = dual_weights;
  saved_weights_valid_ = dual_weights_valid;
  saved_ = true;
}

bool SimplexState::restore_saved_basis() {
  // Once only: if the saved basis cannot be factored either, repairs take over.
  if (!saved_) return false;
  saved_ = false;
  header = saved_header_;
  for (int p = 0; p < m; ++p) position[header[p]] = p;
  status = saved_status_;
  dual_weights = saved_weights_;
  dual_weights_valid = saved_weights_valid_;
  refresh_nonbasic();
  return true;
}

void SimplexState::place_nonbasic(int variable, BasisStatus at) {
  status[variable] = at;
  refresh_variable(variable);
  follow_movement(variable);
}

void SimplexState::flip(int j) {
  assert(status[j] != kBasic && is_boxed(j));
  trail.note_variable(*this, j);
  status[j] = status[j] == kAtLower ? kAtUpper : kAtLower;
  value[j] = status[j] == kAtLower ? lower[j] : upper[j];
  if (move[j] != kStays) move[j] = status[j] == kAtLower ? kUp : kDown;
  primals_fresh = false;
}

bool SimplexState::exchange(int at, int entering_variable, double entering_value,
                            BasisStatus leaving_status, double pivot) {
  const int leaving = header[at];
  trail.note_exchange(*this, at);
  trail.note_position(*this, at);
  trail.note_variable(*this, leaving);
  trail.note_variable(*this, entering_variable);
  header[at] = entering_variable;
  position[entering_variable] = at;
  status[entering_variable] = kBasic;
  move[entering_variable] = kStays;
  reduced_cost[entering_variable] = 0.0;
  if (entering_variable < n) rows.deactivate(entering_variable);
  basic_value[at] = entering_value;
  basic_lower[at] = lower[entering_variable];
  basic_upper[at] = upper[entering_variable];
  place_nonbasic(leaving, leaving_status);
  ++iterations;
  primals_current = primals_fresh = false;
  duals_current = duals_fresh = dual_feasible = solved = false;
  factor_current_ = factor_->update(at, pivot);
  return factor_current_;
}

// --- Values --------------------------------------------------------------------------------------

void SimplexState::add_column(int j, double factor_of_column, WorkVector& x) const {
  if (j >= n) {
    const int i = j - n;
    const double before = x.value[i];
    if (before == 0.0 && !x.is_dense()) x.insert(i, 0.0);
    const double after = before + factor_of_column;
    x.value[i] = after == 0.0 ? kCancelled : after;
    return;
  }
  const SparseMatrix& columns = problem.columns;
  for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
    const int i = columns.index[k];
    const double before = x.value[i];
    if (before == 0.0 && !x.is_dense()) x.insert(i, 0.0);
    // A cancelled entry keeps a trace, so that its row is not listed twice.
    const double after = before + factor_of_column * columns.value[k];
    x.value[i] = after == 0.0 ? kCancelled : after;
  }
}

void SimplexState::load_column(int j, WorkVector& x) const {
  assert(x.count == 0);
  if (j >= n) {
    x.insert(j - n, 1.0);
    return;
  }
  const SparseMatrix& columns = problem.columns;
  for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
    x.insert(columns.index[k], columns.value[k]);
  }
}

void SimplexState::compute_primals() {
  full.clear();
  full.count = WorkVector::kDense;
  for (int j = 0; j < num_vars; ++j) {
    if (status[j] != kBasic && value[j] != 0.0) add_column(j, -value[j], full);
  }
  full.pack();
  factor_->ftran(full, 1.0);
  std::copy(full.value.begin(), full.value.end(), basic_value.begin());
  full.clear();
  moves_.clear();
  primals_current = true;
  primals_fresh = freshly_factored();
}

void SimplexState::compute_duals() {
  full.clear();
  for (int p = 0; p < m; ++p) {
    if (cost[header[p]] != 0.0) full.insert(p, cost[header[p]]);
  }
  if (full.count > 0) factor_->btran(full, 1.0);
  std::copy(full.value.begin(), full.value.end(), row_duals.begin());
  full.clear();
  // Large duals cancel in the reduced costs, and the rounding of the solve shows there.
  const auto large = [](double y) { return std::fabs(y) > kLargeDual; };
  if (freshly_factored() && std::any_of(row_duals.begin(), row_duals.end(), large)) {
    refine_duals(row_duals);
  }
  price_out();
  duals_current = true;
  duals_fresh = freshly_factored();
}

double SimplexState::priced_out(int j) const {
  if (j >= n) return cost[j] - row_duals[j - n];
  double d = cost[j];
  const SparseMatrix& columns = problem.columns;
  for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
    d -= row_duals[columns.index[k]] * columns.value[k];
  }
  return d;
}

void SimplexState::take_shifts_back() {
  full.clear();
  for (const int j : shifted) {
    const double change = problem.cost[j] - cost[j];
    if (change == 0.0) continue;
    cost[j] = problem.cost[j];
    if (status[j] == kBasic) {
      full.insert(position[j], change);
    } else {
      reduced_cost[j] += change;
    }
  }
  shifted.clear();
  num_cost_shifts = 0;
  duals_fresh = dual_feasible = false;
  if (full.count == 0) return;
  factor_->btran(full, density.primal_btran);
  const int count = full.is_dense() ? m : full.count;
  for (int k = 0; k < count; ++k) {
    const int i = full.is_dense() ? k : full.index[k];
    row_duals[i] += full.value[i];
  }
  full.clear();
}

bool SimplexState::verify() {
  assert(primals_current && factor_current_ && moves_.count == 0);
  const SparseMatrix& columns = problem.columns;
  const double* y = row_duals.data();
  full.clear();
  double* rest = full.value.data();
  full.count = WorkVector::kDense;
  double worst_dual = 0.0, largest_dual = 1.0, sum = problem.offset;
  bool feasible = true;
  const auto see = [&](int j, double d, double x) {
    sum += cost[j] * x;
    if (status[j] == kBasic) {
      worst_dual = std::max(worst_dual, std::fabs(d));
      d = 0.0;
    }
    const int way = move[j];
    if (way == kAnywhere ? std::fabs(d) > dual_tolerance : d * way < -dual_tolerance) {
      feasible = false;
    }
    reduced_cost[j] = d;
  };
  const auto place = [&](int j) {
    return status[j] == kBasic ? basic_value[position[j]] : value[j];
  };
  for (int j = 0; j < n; ++j) {
    const double x = place(j);
    const int end = columns.start[j + 1];
    double d = cost[j];
    if (x == 0.0) {
      for (int k = columns.start[j]; k < end; ++k) d -= y[columns.index[k]] * columns.value[k];
    } else {
      for (int k = columns.start[j]; k < end; ++k) {
        d -= y[columns.index[k]] * columns.value[k];
        rest[columns.index[k]] += columns.value[k] * x;
      }
    }
    see(j, d, x);
  }
  double largest = 1.0;
  for (int i = 0; i < m; ++i) {
    const double x = place(n + i);
    rest[i] += x;
    largest = std::max(largest, std::fabs(x));
    largest_dual = std::max(largest_dual, std::fabs(y[i]));
    see(n + i, cost[n + i] - y[i], x);
  }
  if (!feasible || worst_dual > kDualRest * largest_dual) {
    full.clear();
    return false;
  }
  full.pack();
  factor_->ftran(full, density.flips);
  const int count = full.is_dense() ? m : full.count;
  for (int k = 0; k < count; ++k) {
    const int p = full.is_dense() ? k : full.index[k];
    const double error = full.value[p];
    if (std::fabs(error) > kPrimalError * largest) feasible = false;
    const double x = basic_value[p] - error;
    if (x < basic_lower[p] - primal_tolerance || x > basic_upper[p] + primal_tolerance) {
      feasible = false;
    }
    basic_value[p] = x;
  }
  full.clear();
  if (!feasible) return false;
  dual_objective = sum;
  verified_ = true;
  primals_fresh = duals_fresh = duals_current = dual_feasible = true;
  return true;
}

void SimplexState::price_out() {
  const double* y = row_duals.data();
  const SparseMatrix& columns = problem.columns;
  for (int j = 0; j < n; ++j) {
    if (status[j] == kBasic) {
      reduced_cost[j] = 0.0;
      continue;
    }
    double d = cost[j];
    for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
      d -= y[columns.index[k]] * columns.value[k];
    }
    reduced_cost[j] = d;
  }
  for (int i = 0; i < m; ++i) {
    reduced_cost[n + i] = status[n + i] == kBasic ? 0.0 : cost[n + i] - y[i];
  }
}

void SimplexState::refine_duals(Vector<double>& y, int unit_position) {
  const SparseMatrix& columns = problem.columns;
  full.clear();
  for (int p = 0; p < m; ++p) {
    const int v = header[p];
    long double rest = unit_position < 0 ? cost[v] : p == unit_position ? 1.0 : 0.0;
    if (v >= n) {
      rest -= y[v - n];
    } else {
      for (int k = columns.start[v]; k < columns.start[v + 1]; ++k) {
        rest -= static_cast<long double>(y[columns.index[k]]) * columns.value[k];
      }
    }
    if (rest != 0.0L) full.insert(p, static_cast<double>(rest));
  }
  if (full.count > 0) factor_->btran(full, 1.0);
  for (int i = 0; i < m; ++i) y[i] += full.value[i];
  full.clear();
}

double SimplexState::working_objective() const {
  double sum = 0.0;
  for (int j = 0; j < num_vars; ++j) {
    if (status[j] != kBasic) sum += reduced_cost[j] * value[j];
  }
  return sum + problem.offset;
}

void SimplexState::compute_row_ep(int p) {
  row_ep.clear();
  row_ep.insert(p, 1.0);
  factor_->btran(row_ep, density.pivot_btran);
  if (row_ep.is_dense()) row_ep.pack();
  SolveDensities::observe(density.pivot_btran, row_ep.density());
}

void SimplexState::compute_pivot_row() {
  pivot_row.clear();
  rows.multiply(row_ep, density.pivot_row, pivot_row);
  const double* weight = row_ep.value.data();
  const signed char* logical_move = move.data() + n;
  if (pivot_row.is_dense()) pivot_row.pack(n);
  for (int k = 0; k < row_ep.count; ++k) {
    const int i = row_ep.index[k];
    if (logical_move[i] != kStays) pivot_row.insert(n + i, weight[i]);
  }
  SolveDensities::observe(density.pivot_row, pivot_row.density());
}

// --- Ends ----------------------------------------------------------------------------------------

std::optional<SimplexOutcome> SimplexState::interrupted(bool dual, bool phase_one) {
  if (iterations - run_start_iteration >= settings.iteration_limit) {
    return SimplexOutcome::iteration_limit;
  }
  if (work() - run_start_work >= settings.work_limit) return SimplexOutcome::work_limit;
  const StopReason reason = stop_->check();
  if (reason != StopReason::none) return outcome_of_stop(reason);
  IterationHook* const hook = context_.hook;
  if (hook != nullptr && hook->before_iteration(dual, phase_one) != 0) {
    return SimplexOutcome::aborted;
  }
  Rival* const rival = context_.rival;
  if (rival != nullptr && work() >= rival->due() && rival->take_turn()) {
    return SimplexOutcome::superseded;
  }
  return std::nullopt;
}

void SimplexState::store_results() {
  if (num_cost_shifts > 0 || costs_perturbed) restore_costs();
  if (bounds_perturbed) restore_bounds();
  if (primals_fresh && duals_fresh) {
    results_stale = true;
    return;
  }
  // A run that was stopped does not wait for a long factorization: values from the updated factor
  // are good enough, and without any factor those kept by the last iterations.
  const bool quick = factor_->statistics().factor_work <= kQuickFactorization;
  if (!freshly_factored() && (quick || !factor_current_ || !stop_->requested())) {
    if (refactorize() == Refactored::singular) return;
  }
  if (factor_current_) {
    if (!primals_fresh) compute_primals();
    if (!duals_fresh) compute_duals();
  }
  results_stale = true;
}

void SimplexState::materialize_results() {
  if (!results_stale) return;
  results_stale = false;
  std::copy(value.begin(), value.end(), result_values.begin());
  for (int p = 0; p < m; ++p) result_values[header[p]] = basic_value[p];
  objective = problem.offset;
  for (int j = 0; j < num_vars; ++j) {
    if (problem.cost[j] != 0.0) objective += problem.cost[j] * result_values[j];
  }
}

void SimplexState::note_optimum(bool polished) {
  solved = true;
  solved_polished_ = polished;
  solved_primal_tolerance_ = primal_tolerance;
  solved_dual_tolerance_ = dual_tolerance;
  dual_feasible = duals_current;
  if (duals_current && primals_current && !verified_) dual_objective = working_objective();
}

bool SimplexState::still_solved() const {
  return solved && (solved_polished_ || settings.keep_optimal_start) &&
         primal_tolerance == solved_primal_tolerance_ && dual_tolerance == solved_dual_tolerance_ &&
         dual_objective <= settings.objective_upper_limit &&
         dual_objective >= settings.objective_lower_limit;
}

void SimplexState::log_optimum(bool dual) {
  const int factorizations = factor_->statistics().factorizations;
  if (!log.line_due(factorizations)) return;
  if (dual) {
    log.dual_iteration(iterations, factorizations, false, dual_objective);
  } else {
    log.primal_iteration(iterations, factorizations, false, dual_objective);
  }
}

}  // namespace kelvo
