#include "lp/simplex/primal/primal_pricing.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace kelvo {
namespace {

// Hot candidates kept by a full scan, and how many may gather before the next one.
constexpr int kHotKept = 64;
constexpr int kHotLimit = 1024;
// Free variables should become basic early: their merit counts this many times.
constexpr double kFreeBonus = 1e6;
// After so many devex weights that have grown too large the reference framework is reset.
constexpr int kInaccurateWeights = 10;
// Automatic pricing looks at sections for at most this many iterations and this many per row: by
// then a better choice is worth its work.
constexpr int kSectionIterations = 100;
constexpr double kSectionIterationsPerRow = 0.25;
// Samples that a measured cost needs, by number of variables.
struct Samples {
  int variables;
  int samples;
};
constexpr Samples kSamples[] = {{1000, 4}, {10000, 8}, {100000, 12}};
constexpr int kSamplesOtherwise = 16;
constexpr int kDevexSampleFactor = 4;
// Norms are dropped when the work W per iteration that they take and the work F of a factorization
// stand as follows: W / F below the first without a perturbation; 3 W < 2 F in a problem with more
// rows than the second; W / F below the third times the iterations per variable.
constexpr double kUnperturbedRatio = 5.0;
constexpr int kManyRows = 999;
constexpr double kManyRowsRatio = 2.0 / 3.0;
constexpr double kIterationsRatio = 2.5;

}  // namespace

PrimalPricer::PrimalPricer(SimplexState& state) : state_(state), sections_(state) {
  weight_.assign(state.num_vars, 1.0);
  place_.assign(state.num_vars, -1);
  candidates_.reserve(state.num_vars);
  merits_.reserve(state.num_vars);
  hot_.reserve(kHotLimit + 1);
}

void PrimalPricer::begin() {
  rule_ = state_.run.settings.primal_pricing;
  automatic_ = rule_ == PrimalPricing::automatic;
  sectional_ = automatic_ || rule_ == PrimalPricing::reduced_cost;
  samples_ = 0;
  section_choices_ = 0;
  sampled_work_ = 0.0;
  std::fill(weight_.begin(), weight_.end(), 1.0);
  inaccurate_ = 0;
  tolerance_ = state_.run.dual_tolerance;
  switch (rule_) {
    case PrimalPricing::automatic:
      slack_norms();
      break;
    case PrimalPricing::devex:
      state_.log.using_devex();
      break;
    case PrimalPricing::steepest:
    case PrimalPricing::steepest_slack:
      state_.log.using_steepest();
      tau_.setup(state_.m);
      tau_row_.setup(state_.num_vars);
      if (take_given_weights()) break;
      slack_norms();
      if (rule_ == PrimalPricing::steepest) exact_norms();
      break;
    case PrimalPricing::reduced_cost:
    case PrimalPricing::full:
      break;
  }
  if (sectional_) sections_.begin(weight_);
}

void PrimalPricer::reinitialize() {
  if (sectional_) return;
  if (rule_ == PrimalPricing::steepest || rule_ == PrimalPricing::steepest_slack) {
    state_.log.reinitializing_primal_norms();
    slack_norms();
    if (rule_ == PrimalPricing::steepest) exact_norms();
  } else {
    std::fill(weight_.begin(), weight_.end(), 1.0);
  }
}

// --- Automatic pricing ---------------------------------------------------------------------------

int PrimalPricer::sample_size() const {
  int samples = kSamplesOtherwise;
  for (const Samples& row : kSamples) {
    if (state_.num_vars >= row.variables) continue;
    samples = row.samples;
    break;
  }
  return rule_ == PrimalPricing::devex ? kDevexSampleFactor * samples : samples;
}

// Steepest edge multiplies two vectors into the rows, the row of the inverse and one of about the
// same density.
bool PrimalPricer::sections_too_dear() const {
  if (section_choices_ > kSectionIterations + kSectionIterationsPerRow * state_.m) return true;
  const double steepest =
      2.0 * state_.density.pivot_btran * state_.problem.columns.num_nonzeros() + state_.m;
  return sampled_work_ / samples_ > steepest;
}

bool PrimalPricer::norms_too_dear() const {
  const double ratio =
      sampled_work_ / samples_ / static_cast<double>(state_.factor().statistics().factor_nonzeros);
  const double iterations_per_variable =
      static_cast<double>(state_.run.run_iterations()) / state_.num_vars;
  return (!state_.program.bounds_perturbed() && ratio < kUnperturbedRatio) ||
         (state_.m > kManyRows && ratio < kManyRowsRatio) ||
         ratio < kIterationsRatio * iterations_per_variable;
}

void PrimalPricer::switch_to_steepest() {
  try {
    tau_.setup(state_.m);
    tau_row_.setup(state_.num_vars);
  } catch (const std::bad_alloc&) {
    state_.log.no_memory_for_steepest();
    automatic_ = false;
    return;
  }
  slack_norms();
  sectional_ = false;
  rule_ = PrimalPricing::steepest_slack;
  state_.log.switched_to_steepest();
}

void PrimalPricer::switch_to_devex() {
  std::fill(weight_.begin(), weight_.end(), 1.0);
  rule_ = PrimalPricing::devex;
  automatic_ = false;
  state_.log.switched_to_devex();
}

void PrimalPricer::review_rule() {
  if (!automatic_ || samples_ <= sample_size()) return;
  if (sectional_ && sections_too_dear()) {
    switch_to_steepest();
  } else if (!sectional_ && norms_too_dear()) {
    switch_to_devex();
  } else {
    // Old samples keep the weight of one sample size.
    sampled_work_ *= static_cast<double>(sample_size()) / samples_;
    samples_ = sample_size();
    return;
  }
  samples_ = 0;
  sampled_work_ = 0.0;
}

// --- Norms ---------------------------------------------------------------------------------------

/// Weights that a caller gave for this basis.
bool PrimalPricer::take_given_weights() {
  if (state_.weights.given_primal.empty()) return false;
  weight_.swap(state_.weights.given_primal);
  state_.weights.given_primal.clear();
  return true;
}

/// The norms of a slack basis, 1 + |a_j|^2.
void PrimalPricer::slack_norms() {
  const SparseMatrix& columns = state_.problem.columns;
  for (int j = 0; j < state_.n; ++j) {
    double sum = 1.0;
    for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
      sum += columns.value[k] * columns.value[k];
    }
    weight_[j] = sum;
  }
  for (int i = 0; i < state_.m; ++i) weight_[state_.n + i] = 2.0;
}

/// Norms of the current basis, by rows of the inverse or by columns, whichever are fewer.
void PrimalPricer::exact_norms() {
  int movable = 0;
  for (int j = 0; j < state_.num_vars; ++j) movable += state_.basis.move[j] != Basis::kStays;
  const bool rowwise = state_.m < movable;
  state_.log.initializing_primal_norms(rowwise);
  const bool slack_basis = std::all_of(state_.basis.header.begin(), state_.basis.header.end(),
                                       [this](int j) { return j >= state_.n; });
  if (slack_basis || no_factor(state_.refactorize())) return;
  if (rowwise) {
    exact_norms_rowwise();
  } else {
    exact_norms_columnwise();
  }
}

void PrimalPricer::exact_norms_rowwise() {
  std::fill(weight_.begin(), weight_.end(), 1.0);
  for (int p = 0; p < state_.m && !state_.run.stop().requested(); ++p) {
    state_.compute_row_ep(p);
    state_.compute_pivot_row();
    const WorkVector& row = state_.pivot_row;
    for (int k = 0; k < row.count; ++k) {
      const double alpha = row.value[row.index[k]];
      weight_[row.index[k]] += alpha * alpha;
    }
  }
}

void PrimalPricer::exact_norms_columnwise() {
  WorkVector& x = state_.full;
  for (int j = 0; j < state_.num_vars && !state_.run.stop().requested(); ++j) {
    if (state_.basis.move[j] == Basis::kStays) continue;
    x.clear();
    state_.program.load_column(j, x);
    state_.factor().ftran(x, state_.density.entering);
    double sum = 1.0;
    if (x.is_dense()) {
      for (int p = 0; p < state_.m; ++p) sum += x.value[p] * x.value[p];
    } else {
      for (int k = 0; k < x.count; ++k) sum += x.value[x.index[k]] * x.value[x.index[k]];
    }
    weight_[j] = sum;
  }
  x.clear();
}

// --- Candidates ----------------------------------------------------------------------------------

bool PrimalPricer::attractive(int j) const {
  const double d = state_.duals.reduced_cost[j];
  const int movement = state_.basis.move[j];
  if (movement == Basis::kUp) return d < -tolerance_;
  if (movement == Basis::kDown) return d > tolerance_;
  return movement == Basis::kAnywhere && std::fabs(d) > tolerance_;
}

double PrimalPricer::merit(int j) const {
  const double d = state_.duals.reduced_cost[j];
  const double value = d * d / weight_[j];
  return state_.basis.move[j] == Basis::kAnywhere ? kFreeBonus * value : value;
}

void PrimalPricer::rebuild() {
  for (int j : candidates_) place_[j] = -1;
  for (int j : banned_) place_[j] = -1;
  candidates_.clear();
  banned_.clear();
  if (sectional_) {
    sections_.rebuild(tolerance_);
    return;
  }
  for (int j = 0; j < state_.num_vars; ++j) {
    if (!attractive(j)) continue;
    place_[j] = static_cast<int>(candidates_.size());
    candidates_.push_back(j);
  }
  scanned_ = false;
}

void PrimalPricer::refresh(int j) {
  if (sectional_) return;
  const bool now = attractive(j);
  if (place_[j] == -2) return;  // banned
  if (now && place_[j] < 0) {
    place_[j] = static_cast<int>(candidates_.size());
    candidates_.push_back(j);
  } else if (!now && place_[j] >= 0) {
    const int last = candidates_.back();
    candidates_[place_[j]] = last;
    place_[last] = place_[j];
    candidates_.pop_back();
    place_[j] = -1;
  }
  if (!now || !scanned_ || merit(j) <= cutoff_) return;
  if (static_cast<int>(hot_.size()) == kHotLimit) {
    scanned_ = false;
  } else {
    hot_.push_back(j);
  }
}

void PrimalPricer::ban(int j) {
  if (sectional_) {
    sections_.ban(j);
    return;
  }
  if (place_[j] >= 0) {
    const int last = candidates_.back();
    candidates_[place_[j]] = last;
    place_[last] = place_[j];
    candidates_.pop_back();
  }
  place_[j] = -2;
  banned_.push_back(j);
}

void PrimalPricer::scan() {
  hot_.clear();
  cutoff_ = 0.0;
  if (static_cast<int>(candidates_.size()) > kHotKept) {
    merits_.clear();
    for (int j : candidates_) merits_.push_back(merit(j));
    std::nth_element(merits_.begin(), merits_.begin() + kHotKept, merits_.end(),
                     [](double a, double b) { return a > b; });
    cutoff_ = merits_[kHotKept];
  }
  for (int j : candidates_) {
    if (merit(j) < cutoff_ || static_cast<int>(hot_.size()) == kHotLimit) continue;
    hot_.push_back(j);
  }
  scanned_ = true;
}

int PrimalPricer::choose_in_sections() {
  const double before = sections_.work();
  const int chosen = sections_.choose();
  ++samples_;
  ++section_choices_;
  sampled_work_ += sections_.work() - before;
  return chosen;
}

int PrimalPricer::choose_from_candidates() {
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (!scanned_) scan();
    int best = -1;
    double best_merit = 0.0;
    int kept = 0;
    for (const int j : hot_) {
      if (place_[j] < 0) continue;
      hot_[kept++] = j;
      const double value = merit(j);
      if (value > best_merit || (value == best_merit && best >= 0 &&
                                 state_.program.tie_key[j] < state_.program.tie_key[best])) {
        best = j;
        best_merit = value;
      }
    }
    hot_.resize(kept);
    if (best >= 0 && best_merit >= cutoff_) return best;
    if (candidates_.empty()) return -1;
    scanned_ = false;
  }
  return -1;
}

void PrimalPricer::update_weights(int entering, int position, double pivot) {
  if (sectional_) return;
  const int leaving = state_.basis.header[position];
  switch (rule_) {
    case PrimalPricing::devex:
      update_devex(entering, leaving, pivot);
      break;
    case PrimalPricing::steepest:
    case PrimalPricing::steepest_slack:
      update_steepest(entering, leaving, pivot);
      break;
    case PrimalPricing::reduced_cost:
    case PrimalPricing::automatic:
    case PrimalPricing::full:
      break;
  }
}

void PrimalPricer::update_devex(int entering, int leaving, double pivot) {
  const double entering_weight = weight_[entering];
  const WorkVector& row = state_.pivot_row;
  const double scale = entering_weight / (pivot * pivot);
  const int count = row.is_dense() ? state_.num_vars : row.count;
  for (int k = 0; k < count; ++k) {
    const int j = row.is_dense() ? k : row.index[k];
    const double alpha = row.value[j];
    if (alpha == 0.0) continue;
    const double grown = alpha * alpha * scale;
    if (grown > weight_[j]) weight_[j] = grown;
  }
  weight_[leaving] = std::max(scale, 1.0);
  // Weights that have grown without bound no longer tell candidates apart.
  constexpr double kLargestWeight = 1e7;
  if (weight_[leaving] > kLargestWeight && ++inaccurate_ > kInaccurateWeights) {
    std::fill(weight_.begin(), weight_.end(), 1.0);
    inaccurate_ = 0;
    scanned_ = false;
  }
}

void PrimalPricer::update_steepest(int entering, int leaving, double pivot) {
  // tau = B^-T alpha_q, and its products with the nonbasic columns.
  const double work_before = state_.factor().statistics().work + state_.program.rows.work();
  const WorkVector& column = state_.entering;
  double exact = 1.0;
  tau_.clear();
  if (column.is_dense()) {
    for (int p = 0; p < state_.m; ++p) {
      tau_.value[p] = column.value[p];
      exact += column.value[p] * column.value[p];
    }
    tau_.count = WorkVector::kDense;
  } else {
    for (int k = 0; k < column.count; ++k) {
      const int p = column.index[k];
      tau_.insert(p, column.value[p]);
      exact += column.value[p] * column.value[p];
    }
  }
  state_.factor().btran(tau_, state_.density.primal_btran);
  SolveDensities::observe(state_.density.primal_btran, tau_.density());
  tau_row_.clear();
  state_.program.rows.multiply(tau_, state_.density.primal_btran, tau_row_);
  ++samples_;
  sampled_work_ += state_.factor().statistics().work + state_.program.rows.work() - work_before;
  const WorkVector& row = state_.pivot_row;
  const int count = row.is_dense() ? state_.num_vars : row.count;
  for (int k = 0; k < count; ++k) {
    const int j = row.is_dense() ? k : row.index[k];
    if (row.value[j] == 0.0 || j == entering) continue;
    const double ratio = row.value[j] / pivot;
    const double product = j < state_.n ? tau_row_.value[j] : tau_.value[j - state_.n];
    weight_[j] =
        std::max(weight_[j] + ratio * (ratio * exact - 2.0 * product), 1.0 + ratio * ratio);
  }
  weight_[leaving] = std::max(exact / (pivot * pivot), 1.0 + 1.0 / (pivot * pivot));
}

}  // namespace kelvo
