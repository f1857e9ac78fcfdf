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

SimplexState::SimplexState(const LpProblem& lp)
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
  std::fill(dual_weights.begin(), dual_weights.end(), 1.0);
  dual_weights_valid = true;
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
  int position = 0;
  for (int j = 0; j < num_vars; ++j) {
    if (status[j] == kBasic) header[position++] = j;
  }
  accept_header();
  dual_weights_valid = num_basic == m && (m == 0 || header[0] == n);
  if (dual_weights_valid) std::fill(dual_weights.begin(), dual_weights.end(), 1.0);
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
  basis_valid = true;
  factor_current_ = false;
  saved_ = false;
  refresh_nonbasic();
}

void SimplexState::copy_basis(BasisCopy& copy) const {
  copy.header = header;
  copy.status = status;
  copy.value = value;
  copy.dual_weights = dual_weights;
  copy.dual_weights_valid = dual_weights_valid;
}

void SimplexState::restore_basis(const BasisCopy& copy) {
  const bool moved = header != copy.header;
  header = copy.header;
  status = copy.status;
  value = copy.value;
  dual_weights = copy.dual_weights;
  dual_weights_valid = copy.dual_weights_valid;
  duals_fresh = false;
  if (moved) {
    accept_header();
  } else {
    refresh_nonbasic();
  }
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
  log.begin_run(settings, iterations);
  restore_costs();
  restore_bounds();
  if (!basis_valid) set_slack_basis();
}

void SimplexState::restore_costs() {
  std::copy(problem.cost.begin(), problem.cost.end(), cost.begin());
  num_cost_shifts = 0;
  costs_perturbed = false;
  duals_fresh = false;
}

void SimplexState::restore_bounds() {
  std::copy(problem.lower.begin(), problem.lower.end(), lower.begin());
  std::copy(problem.upper.begin(), problem.upper.end(), upper.begin());
  bounds_perturbed = false;
  if (basis_valid) refresh_nonbasic();
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

void SimplexState::refresh_basic(int position) {
  const int j = header[position];
  basic_lower[position] = lower[j];
  basic_upper[position] = upper[j];
  move[j] = kStays;
}

void SimplexState::refresh_partition() {
  for (int j = 0; j < n; ++j) {
    if (move[j] != kStays) {
      rows.activate(j);
    } else {
      rows.deactivate(j);
    }
  }
}

void SimplexState::refresh_nonbasic() {
  for (int j = 0; j < num_vars; ++j) {
    if (status[j] != kBasic) refresh_variable(j);
  }
  for (int p = 0; p < m; ++p) refresh_basic(p);
  refresh_partition();
  primals_fresh = false;
}

int SimplexState::release_held() {
  int released = 0;
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
    status[header[p]] = kBasic;
    held[header[p]] = 0;
  }
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
  status = saved_status_;
  dual_weights = saved_weights_;
  dual_weights_valid = saved_weights_valid_;
  refresh_nonbasic();
  return true;
}

void SimplexState::place_nonbasic(int variable, BasisStatus at) {
  status[variable] = at;
  refresh_variable(variable);
  if (variable >= n) return;
  if (move[variable] != kStays) {
    rows.activate(variable);
  } else {
    rows.deactivate(variable);
  }
}

void SimplexState::flip(int j) {
  assert(status[j] != kBasic && is_boxed(j));
  status[j] = status[j] == kAtLower ? kAtUpper : kAtLower;
  value[j] = status[j] == kAtLower ? lower[j] : upper[j];
  if (move[j] != kStays) move[j] = status[j] == kAtLower ? kUp : kDown;
  primals_fresh = false;
}

bool SimplexState::exchange(int position, int entering_variable, double entering_value,
                            BasisStatus leaving_status, double pivot) {
  const int leaving = header[position];
  header[position] = entering_variable;
  status[entering_variable] = kBasic;
  move[entering_variable] = kStays;
  reduced_cost[entering_variable] = 0.0;
  if (entering_variable < n) rows.deactivate(entering_variable);
  basic_value[position] = entering_value;
  basic_lower[position] = lower[entering_variable];
  basic_upper[position] = upper[entering_variable];
  place_nonbasic(leaving, leaving_status);
  ++iterations;
  primals_fresh = false;
  duals_fresh = false;
  factor_current_ = factor_->update(position, pivot);
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
  duals_fresh = freshly_factored();
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

void SimplexState::compute_row_ep(int position) {
  row_ep.clear();
  row_ep.insert(position, 1.0);
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
  std::copy(value.begin(), value.end(), result_values.begin());
  for (int p = 0; p < m; ++p) result_values[header[p]] = basic_value[p];
  objective = problem.offset;
  for (int j = 0; j < num_vars; ++j) {
    if (problem.cost[j] != 0.0) objective += problem.cost[j] * result_values[j];
  }
}

}  // namespace kelvo
