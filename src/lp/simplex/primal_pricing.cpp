#include "lp/simplex/primal_pricing.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// Hot candidates kept by a full scan, and how many may gather before the next one.
constexpr int kHotKept = 64;
constexpr int kHotLimit = 1024;
// Free variables should become basic early: their merit counts this many times.
constexpr double kFreeBonus = 1e6;
// A devex weight this many times below the one computed from the pivot column is inaccurate; after
// so many of them the reference framework is reset.
constexpr double kWeightError = 9.0;
constexpr int kInaccurateWeights = 10;

}  // namespace

PrimalPricer::PrimalPricer(SimplexState& state) : state_(state) {
  weight_.assign(state.num_vars, 1.0);
  place_.assign(state.num_vars, -1);
  candidates_.reserve(state.num_vars);
  merits_.reserve(state.num_vars);
  hot_.reserve(kHotLimit + 1);
}

void PrimalPricer::begin() {
  rule_ = state_.settings.primal_pricing;
  if (rule_ == PrimalPricing::automatic) rule_ = PrimalPricing::devex;
  std::fill(weight_.begin(), weight_.end(), 1.0);
  inaccurate_ = 0;
  tolerance_ = state_.dual_tolerance;
  switch (rule_) {
    case PrimalPricing::devex:
      state_.log.using_devex();
      break;
    case PrimalPricing::steepest:
    case PrimalPricing::steepest_slack:
      state_.log.using_steepest();
      state_.log.initializing_primal_norms(false);
      tau_.setup(state_.m);
      tau_row_.setup(state_.num_vars);
      if (rule_ == PrimalPricing::steepest) {
        exact_norms();
      } else {
        slack_norms();
      }
      break;
    default:
      break;
  }
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

void PrimalPricer::exact_norms() {
  bool slack_basis = true;
  for (int p = 0; p < state_.m && slack_basis; ++p) slack_basis = state_.header[p] >= state_.n;
  slack_norms();
  if (slack_basis || state_.refactorize() == Refactored::singular) return;
  WorkVector& x = state_.full;
  for (int j = 0; j < state_.num_vars; ++j) {
    if (state_.move[j] == SimplexState::kStays) continue;
    x.clear();
    state_.load_column(j, x);
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

bool PrimalPricer::attractive(int j) const {
  const double d = state_.reduced_cost[j];
  switch (state_.move[j]) {
    case SimplexState::kUp:
      return d < -tolerance_;
    case SimplexState::kDown:
      return d > tolerance_;
    case SimplexState::kAnywhere:
      return std::fabs(d) > tolerance_;
    default:
      return false;
  }
}

double PrimalPricer::merit(int j) const {
  const double d = state_.reduced_cost[j];
  const double value = d * d / weight_[j];
  return state_.move[j] == SimplexState::kAnywhere ? kFreeBonus * value : value;
}

void PrimalPricer::rebuild() {
  for (int j : candidates_) place_[j] = -1;
  for (int j : banned_) place_[j] = -1;
  candidates_.clear();
  banned_.clear();
  for (int j = 0; j < state_.num_vars; ++j) {
    if (!attractive(j)) continue;
    place_[j] = static_cast<int>(candidates_.size());
    candidates_.push_back(j);
  }
  scanned_ = false;
}

void PrimalPricer::refresh(int j) {
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

int PrimalPricer::choose() {
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (!scanned_) scan();
    int best = -1;
    double best_merit = 0.0;
    int kept = 0;
    for (const int j : hot_) {
      if (place_[j] < 0) continue;
      hot_[kept++] = j;
      const double value = merit(j);
      if (value > best_merit ||
          (value == best_merit && best >= 0 && state_.tie_key[j] < state_.tie_key[best])) {
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
  const int leaving = state_.header[position];
  switch (rule_) {
    case PrimalPricing::devex:
      update_devex(entering, leaving, pivot);
      break;
    case PrimalPricing::steepest:
    case PrimalPricing::steepest_slack:
      update_steepest(entering, leaving, pivot);
      break;
    default:
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
  state_.rows.multiply(tau_, state_.density.primal_btran, tau_row_);
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
