#include "lp/start_from_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "lp/independent_columns.h"
#include "lp/lp_problem.h"
#include "lp/model_to_lp.h"
#include "prob/row_limits.h"

namespace kelvo {

namespace {

// A place or multiplier that nobody gave: no comparison with it is true.
constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

/// Variables are numbered as in LpProblem: the columns, then the logicals s = -(activity).
class BasisGuess {
 public:
  BasisGuess(const Model& model, const StartValues& values, double tolerance)
      : model_(model),
        n_(model.num_cols),
        m_(model.num_rows),
        tolerance_(tolerance),
        has_x_(values.x != nullptr) {
    load_bounds();
    load_primal(values);
    load_dual(values);
  }

  StoredBasis run();

 private:
  void load_bounds();
  void load_primal(const StartValues& values);
  void load_dual(const StartValues& values);
  double room(int v) const;
  bool is_candidate(int v) const;
  int resting_side(int v) const;
  /// Slacks, then columns with most room first, then what is at a bound without a multiplier.
  Vector<int> candidates() const;

  const Model& model_;
  const int n_, m_;
  const double tolerance_;
  Vector<double> lower_, upper_;  // [variables]
  const bool has_x_;
  Vector<double> place_;       // [variables]; empty when no primal value is known
  Vector<double> multiplier_;  // [variables] of the minimization; empty likewise
};

void BasisGuess::load_bounds() {
  for (int j = 0; j < n_; ++j) {
    lower_.push_back(finite_or_infinite(model_.lower[j]));
    upper_.push_back(finite_or_infinite(model_.upper[j]));
  }
  for (int i = 0; i < m_; ++i) {
    const RowLimits limits = row_limits(model_, i);
    lower_.push_back(-limits.upper);
    upper_.push_back(-limits.lower);
  }
}

void BasisGuess::load_primal(const StartValues& values) {
  if (values.x == nullptr && values.slack == nullptr) return;
  place_.assign(n_ + m_, 0.0);
  for (int j = 0; j < n_; ++j) {
    place_[j] = values.x == nullptr
                    ? kUnknown
                    : std::clamp(values.x[j], lower_[j], std::max(lower_[j], upper_[j]));
  }
  Vector<double> activity;
  if (values.slack == nullptr) compute_row_activities(model_, values.x, activity);
  for (int i = 0; i < m_; ++i) {
    if (values.slack == nullptr) {
      place_[n_ + i] = -activity[i];
    } else {
      const double slack = values.slack[i];
      place_[n_ + i] = model_.row_sense[i] == 'R' ? -model_.rhs[i] - slack : slack - model_.rhs[i];
    }
  }
}

void BasisGuess::load_dual(const StartValues& values) {
  if (values.dj == nullptr && values.pi == nullptr) return;
  multiplier_.assign(n_ + m_, 0.0);
  const ColumnStore& matrix = model_.matrix;
  for (int j = 0; j < n_; ++j) {
    double dj = values.dj != nullptr ? values.dj[j] : model_.objective[j];
    const int end = matrix.start[j] + matrix.count[j];
    for (int k = matrix.start[j]; k < end && values.dj == nullptr; ++k) {
      dj -= matrix.value[k] * values.pi[matrix.index[k]];
    }
    multiplier_[j] = model_.sense * dj;
  }
  for (int i = 0; i < m_; ++i) {
    multiplier_[n_ + i] = values.pi != nullptr ? -model_.sense * values.pi[i] : kUnknown;
  }
}

/// Distance from the nearer bound, relative to the numbers; 0 without primal values.
double BasisGuess::room(int v) const {
  if (place_.empty()) return 0.0;
  const auto distance = [&](double bound) {
    if (!std::isfinite(bound)) return kInf;
    return std::fabs(place_[v] - bound) / (1.0 + std::fabs(bound));
  };
  return std::min(distance(lower_[v]), distance(upper_[v]));
}

bool BasisGuess::is_candidate(int v) const {
  if (lower_[v] >= upper_[v]) return false;
  if (!place_.empty()) return room(v) > tolerance_;
  return std::fabs(multiplier_[v]) <= tolerance_;
}

int BasisGuess::resting_side(int v) const {
  const bool has_lower = std::isfinite(lower_[v]), has_upper = std::isfinite(upper_[v]);
  if (!has_lower && !has_upper) return kFreeSuper;
  if (!has_lower || !has_upper) return has_lower ? kAtLower : kAtUpper;
  if (!place_.empty()) {
    const double up = upper_[v] - place_[v], down = place_[v] - lower_[v];
    if (up < down || up > down) return up < down ? kAtUpper : kAtLower;
  }
  if (!multiplier_.empty() && std::fabs(multiplier_[v]) > 0.0) {
    return multiplier_[v] < 0.0 ? kAtUpper : kAtLower;
  }
  return std::fabs(upper_[v]) < std::fabs(lower_[v]) ? kAtUpper : kAtLower;
}

Vector<int> BasisGuess::candidates() const {
  Vector<int> list;
  for (int v = n_; v < n_ + m_; ++v) {
    if (is_candidate(v)) list.push_back(v);
  }
  const std::ptrdiff_t slacks = static_cast<std::ptrdiff_t>(list.size());
  Vector<double> rooms(n_, 0.0);
  for (int j = 0; j < n_; ++j) {
    if (!is_candidate(j)) continue;
    rooms[j] = room(j);
    list.push_back(j);
  }
  std::stable_sort(list.begin() + slacks, list.end(),
                   [&](int u, int v) { return rooms[u] > rooms[v]; });
  if (place_.empty() || multiplier_.empty()) return list;
  // At a degenerate vertex the duals tell which of those at their bounds may be basic.
  for (int v = 0; v < n_ + m_; ++v) {
    const bool free_to_move = lower_[v] < upper_[v] && std::fabs(multiplier_[v]) <= tolerance_;
    if (free_to_move && !is_candidate(v)) list.push_back(v);
  }
  return list;
}

StoredBasis BasisGuess::run() {
  const Vector<int> offered = candidates();
  const Vector<char> basic = choose_independent(make_lp_problem(model_), offered);
  Vector<int> status(n_ + m_);
  for (int v = 0; v < n_ + m_; ++v) status[v] = basic[v] ? kBasic : resting_side(v);
  for (const int v : offered) {
    if (!basic[v] && room(v) > tolerance_) status[v] = kFreeSuper;
  }
  StoredBasis basis;
  lp_to_stored_status(status, model_, basis);
  if (has_x_) basis.x.assign(place_.begin(), place_.begin() + n_);
  return basis;
}

}  // namespace

StoredBasis basis_from_values(const Model& model, const StartValues& values, double tolerance) {
  return BasisGuess(model, values, tolerance).run();
}

}  // namespace kelvo
