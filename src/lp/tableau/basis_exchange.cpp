#include "lp/tableau/basis_exchange.h"

#include <algorithm>
#include <cmath>

#include "lp/simplex/simplex_tolerances.h"

namespace kelvo {

namespace {

// A pivot of at least this share of the largest one in its column or row is stable enough to be
// chosen for other merits.
constexpr double kPivotShare = 0.1;
// Where the choice decides about feasibility, smaller ones must do.
constexpr double kLeastPivotShare = 1e-5;

}  // namespace

BasisExchange::BasisExchange(WorkingLp& working, const RunContext& context)
    : state_(working.simplex().state()), lent_(state_, context), m_(state_.m), n_(state_.n) {}

void BasisExchange::compute_column(int variable) {
  state_.entering.clear();
  state_.load_column(variable, state_.entering);
  state_.factor().ftran(state_.entering, state_.density.entering, true);
}

BasisStatus BasisExchange::nearest_bound(int variable, double value) const {
  if (state_.is_free(variable)) return kFreeSuper;
  return value - state_.lower[variable] <= state_.upper[variable] - value ? kAtLower : kAtUpper;
}

ExchangeOutcome BasisExchange::finish_exchange(int entering, int position, BasisStatus leaves_at) {
  const int leaving = state_.header[position];
  const double pivot = state_.entering.value[position];
  // A free variable stays where it is.
  state_.value[leaving] = state_.basic_value[position];
  if (state_.exchange(position, entering, 0.0, leaves_at, pivot)) return ExchangeOutcome::done;
  return state_.refactorize() == Refactored::ok ? ExchangeOutcome::done : ExchangeOutcome::singular;
}

ExchangeOutcome BasisExchange::exchange(int entering, int position, BasisStatus leaves_at) {
  compute_column(entering);
  if (std::fabs(state_.entering.value[position]) < simplex_tolerance::kPivot) {
    return ExchangeOutcome::illegal;
  }
  return finish_exchange(entering, position, leaves_at);
}

ExchangeOutcome BasisExchange::move_to(int variable, BasisStatus bound) {
  const double value = bound == kAtLower ? state_.lower[variable] : state_.upper[variable];
  if (state_.status[variable] == kBasic || std::isinf(value)) return ExchangeOutcome::illegal;
  state_.place_nonbasic(variable, bound);
  state_.primals_fresh = false;
  return ExchangeOutcome::done;
}

void BasisExchange::compute_values() {
  state_.store_results();
}

// --- Slacks into the basis -----------------------------------------------------------------------

/// The place for the entering column in state_.entering.
int BasisExchange::position_to_leave(const Vector<char>& listed) const {
  const Vector<double>& alpha = state_.entering.value;
  double largest = 0.0;
  for (int p = 0; p < m_; ++p) {
    if (!listed[state_.header[p]]) largest = std::max(largest, std::fabs(alpha[p]));
  }
  int best = -1;
  double best_distance = kInf;
  double best_pivot = 0.0;
  for (int p = 0; p < m_; ++p) {
    const int v = state_.header[p];
    const double pivot = std::fabs(alpha[p]);
    if (listed[v] || pivot < simplex_tolerance::kPivot || pivot < kPivotShare * largest) continue;
    const double x = state_.basic_value[p];
    const double distance =
        std::min(std::fabs(x - state_.lower[v]), std::fabs(state_.upper[v] - x));
    const bool nearer = distance < best_distance - state_.settings.feasibility_tolerance;
    const bool as_near = distance <= best_distance + state_.settings.feasibility_tolerance;
    if (best >= 0 && !nearer && !(as_near && pivot > best_pivot)) continue;
    best = p;
    best_distance = distance;
    best_pivot = pivot;
  }
  return best;
}

ExchangeOutcome BasisExchange::pivot_in(const Vector<int>& rows, int& count) {
  Vector<char> listed(state_.num_vars, 0);
  for (const int row : rows) listed[n_ + row] = 1;
  count = 0;
  for (const int row : rows) {
    const int slack = n_ + row;
    if (state_.status[slack] == kBasic) continue;
    compute_column(slack);
    const int position = position_to_leave(listed);
    if (position < 0) return ExchangeOutcome::illegal;
    const BasisStatus at = nearest_bound(state_.header[position], state_.basic_value[position]);
    const ExchangeOutcome outcome = finish_exchange(slack, position, at);
    if (outcome != ExchangeOutcome::done) return outcome;
    state_.compute_primals();
    ++count;
  }
  return ExchangeOutcome::done;
}

// --- Fixed variables out of the basis ------------------------------------------------------------

/// Among the movable variables of the pivot row the one with the smallest ratio; when there is none
/// the fixed one with the largest pivot. -1 when only listed variables are left.
int BasisExchange::variable_to_enter(int position, const Vector<char>& listed) {
  state_.compute_row_ep(position);
  state_.compute_pivot_row();
  const WorkVector& row = state_.pivot_row;
  double largest = 0.0;
  for (int k = 0; k < row.count; ++k) {
    if (!listed[row.index[k]]) largest = std::max(largest, std::fabs(row.value[row.index[k]]));
  }
  const double least = std::max(simplex_tolerance::kPivot, kLeastPivotShare * largest);
  int best = -1;
  double best_ratio = kInf;
  for (int k = 0; k < row.count; ++k) {
    const int j = row.index[k];
    const double pivot = std::fabs(row.value[j]);
    if (listed[j] || pivot < least) continue;
    const double ratio = std::fabs(state_.reduced_cost[j]) / pivot;
    if (best >= 0 && ratio >= best_ratio) continue;
    best = j;
    best_ratio = ratio;
  }
  if (best >= 0) return best;
  double best_pivot = simplex_tolerance::kPivot;
  const SparseMatrix& columns = state_.problem.columns;
  for (int j = 0; j < state_.num_vars; ++j) {
    if (listed[j] || state_.status[j] == kBasic) continue;
    double entry = j >= n_ ? state_.row_ep.value[j - n_] : 0.0;
    for (int k = j < n_ ? columns.start[j] : 0; j < n_ && k < columns.start[j + 1]; ++k) {
      entry += state_.row_ep.value[columns.index[k]] * columns.value[k];
    }
    if (std::fabs(entry) <= best_pivot) continue;
    best = j;
    best_pivot = std::fabs(entry);
  }
  return best;
}

ExchangeOutcome BasisExchange::pivot_out(const Vector<int>& variables, int& count) {
  Vector<char> listed(state_.num_vars, 0);
  for (const int v : variables) listed[v] = 1;
  count = 0;
  for (int p = 0; p < m_; ++p) {
    const int leaving = state_.header[p];
    if (!listed[leaving]) continue;
    const int entering = variable_to_enter(p, listed);
    if (entering < 0) continue;
    compute_column(entering);
    if (std::fabs(state_.entering.value[p]) < simplex_tolerance::kPivot) continue;
    const ExchangeOutcome outcome = finish_exchange(entering, p, kAtLower);
    if (outcome != ExchangeOutcome::done) return outcome;
    state_.compute_duals();
    ++count;
  }
  return ExchangeOutcome::done;
}

}  // namespace kelvo
