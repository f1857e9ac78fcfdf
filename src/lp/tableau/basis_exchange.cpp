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

BasisExchange::BasisExchange(WorkingLp& working, const SimplexSettings& settings,
                             const RunContext& context)
    : lp_(working.lp()),
      simplex_(working.simplex()),
      tableau_(working.simplex()),
      steps_(working.simplex(), context),
      tolerance_(settings.feasibility_tolerance),
      m_(lp_.num_rows),
      n_(lp_.num_cols) {}

BasisStatus BasisExchange::nearest_bound(int variable, double value) const {
  const double lower = lp_.lower[variable];
  const double upper = lp_.upper[variable];
  if (lower == -kInf && upper == kInf) return kFreeSuper;
  return value - lower <= upper - value ? kAtLower : kAtUpper;
}

ExchangeOutcome BasisExchange::finish_exchange(int entering, int position, BasisStatus leaves_at) {
  const bool kept = steps_.exchange(position, entering, leaves_at);
  return kept ? ExchangeOutcome::done : ExchangeOutcome::singular;
}

ExchangeOutcome BasisExchange::exchange(int entering, int position, BasisStatus leaves_at) {
  const double pivot = tableau_.entering_column(entering).value[position];
  if (std::fabs(pivot) < simplex_tolerance::kPivot) return ExchangeOutcome::illegal;
  return finish_exchange(entering, position, leaves_at);
}

ExchangeOutcome BasisExchange::move_to(int variable, BasisStatus bound) {
  const double value = bound == kAtLower ? lp_.lower[variable] : lp_.upper[variable];
  if (is_basic(variable) || std::isinf(value)) return ExchangeOutcome::illegal;
  steps_.move_to(variable, bound);
  return ExchangeOutcome::done;
}

void BasisExchange::compute_values() {
  steps_.store_results();
}

// --- Slacks into the basis -----------------------------------------------------------------------

/// The place for the entering column `alpha` [m].
int BasisExchange::position_to_leave(const Vector<double>& alpha,
                                     const Vector<char>& listed) const {
  const Vector<int>& header = simplex_.header();
  double largest = 0.0;
  for (int p = 0; p < m_; ++p) {
    if (!listed[header[p]]) largest = std::max(largest, std::fabs(alpha[p]));
  }
  int best = -1;
  double best_distance = kInf;
  double best_pivot = 0.0;
  for (int p = 0; p < m_; ++p) {
    const int v = header[p];
    const double pivot = std::fabs(alpha[p]);
    if (listed[v] || pivot < simplex_tolerance::kPivot || pivot < kPivotShare * largest) continue;
    const double x = steps_.basic_value(p);
    const double distance = std::min(std::fabs(x - lp_.lower[v]), std::fabs(lp_.upper[v] - x));
    const bool nearer = distance < best_distance - tolerance_;
    const bool as_near = distance <= best_distance + tolerance_;
    if (best >= 0 && !nearer && !(as_near && pivot > best_pivot)) continue;
    best = p;
    best_distance = distance;
    best_pivot = pivot;
  }
  return best;
}

ExchangeOutcome BasisExchange::pivot_in(const Vector<int>& rows, int& count) {
  Vector<char> listed(lp_.num_vars(), 0);
  for (const int row : rows) listed[n_ + row] = 1;
  count = 0;
  for (const int row : rows) {
    const int slack = n_ + row;
    if (is_basic(slack)) continue;
    const int position = position_to_leave(tableau_.entering_column(slack).value, listed);
    if (position < 0) return ExchangeOutcome::illegal;
    const int leaving = simplex_.header()[position];
    const BasisStatus at = nearest_bound(leaving, steps_.basic_value(position));
    const ExchangeOutcome outcome = finish_exchange(slack, position, at);
    if (outcome != ExchangeOutcome::done) return outcome;
    steps_.compute_primals();
    ++count;
  }
  return ExchangeOutcome::done;
}

// --- Fixed variables out of the basis ------------------------------------------------------------

/// Among the movable variables of the pivot row the one with the smallest ratio; when there is none
/// the fixed one with the largest pivot. -1 when only listed variables are left.
int BasisExchange::variable_to_enter(int position, const Vector<char>& listed) {
  const WorkVector& row = tableau_.row(position);
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
    const double ratio = std::fabs(simplex_.reduced_costs()[j]) / pivot;
    if (best >= 0 && ratio >= best_ratio) continue;
    best = j;
    best_ratio = ratio;
  }
  return best >= 0 ? best : largest_pivot(tableau_.inverse_row(position), listed);
}

/// The nonbasic variable with the largest entry in the row of the tableau, fixed ones included.
int BasisExchange::largest_pivot(const WorkVector& inverse_row, const Vector<char>& listed) const {
  int best = -1;
  double best_pivot = simplex_tolerance::kPivot;
  const Vector<double>& y = inverse_row.value;
  const SparseMatrix& columns = lp_.columns;
  for (int j = 0; j < lp_.num_vars(); ++j) {
    if (listed[j] || is_basic(j)) continue;
    double entry = j >= n_ ? y[j - n_] : 0.0;
    for (int k = j < n_ ? columns.start[j] : 0; j < n_ && k < columns.start[j + 1]; ++k) {
      entry += y[columns.index[k]] * columns.value[k];
    }
    if (std::fabs(entry) <= best_pivot) continue;
    best = j;
    best_pivot = std::fabs(entry);
  }
  return best;
}

ExchangeOutcome BasisExchange::pivot_out(const Vector<int>& variables, int& count) {
  Vector<char> listed(lp_.num_vars(), 0);
  for (const int v : variables) listed[v] = 1;
  count = 0;
  for (int p = 0; p < m_; ++p) {
    const int leaving = simplex_.header()[p];
    if (!listed[leaving]) continue;
    const int entering = variable_to_enter(p, listed);
    if (entering < 0) continue;
    const double pivot = tableau_.entering_column(entering).value[p];
    if (std::fabs(pivot) < simplex_tolerance::kPivot) continue;
    const ExchangeOutcome outcome = finish_exchange(entering, p, kAtLower);
    if (outcome != ExchangeOutcome::done) return outcome;
    steps_.compute_duals();
    ++count;
  }
  return ExchangeOutcome::done;
}

}  // namespace kelvo
