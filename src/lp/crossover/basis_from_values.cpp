#include "lp/crossover/basis_from_values.h"

#include <algorithm>
#include <cmath>

#include "lp/crossover/independent_columns.h"

namespace kelvo {

namespace {

class BasisGuess {
 public:
  BasisGuess(const LpProblem& lp, const VariableValues& values, double tolerance)
      : lp_(lp),
        place_(values.place),
        multiplier_(values.multiplier),
        tolerance_(tolerance),
        room_(lp.num_vars(), 0.0) {
    for (int v = 0; v < lp.num_vars() && !place_.empty(); ++v) {
      room_[v] = std::min(distance(v, lp.lower[v]), distance(v, lp.upper[v]));
    }
  }

  Vector<int> run() const;

 private:
  double distance(int v, double bound) const;
  bool is_candidate(int v) const;
  int resting_side(int v) const;
  /// Slacks, then columns with most room first, then what is at a bound without a multiplier.
  Vector<int> candidates() const;

  const LpProblem& lp_;
  const Vector<double>& place_;
  const Vector<double>& multiplier_;
  const double tolerance_;
  Vector<double> room_;  // [variables] to the nearer bound; 0 where no place is known
};

/// From a bound, relative to its size.
double BasisGuess::distance(int v, double bound) const {
  return std::isfinite(bound) ? std::fabs(place_[v] - bound) / (1.0 + std::fabs(bound)) : kInf;
}

bool BasisGuess::is_candidate(int v) const {
  if (lp_.lower[v] >= lp_.upper[v]) return false;
  if (!place_.empty()) return room_[v] > tolerance_;
  return std::fabs(multiplier_[v]) <= tolerance_;
}

int BasisGuess::resting_side(int v) const {
  const double lower = lp_.lower[v], upper = lp_.upper[v];
  const bool has_lower = std::isfinite(lower), has_upper = std::isfinite(upper);
  if (!has_lower && !has_upper) return kFreeSuper;
  if (!has_lower || !has_upper) return has_lower ? kAtLower : kAtUpper;
  if (!place_.empty()) {
    const double up = upper - place_[v], down = place_[v] - lower;
    if (up < down || up > down) return up < down ? kAtUpper : kAtLower;
  }
  if (!multiplier_.empty() && std::fabs(multiplier_[v]) > 0.0) {
    return multiplier_[v] < 0.0 ? kAtUpper : kAtLower;
  }
  return std::fabs(upper) < std::fabs(lower) ? kAtUpper : kAtLower;
}

Vector<int> BasisGuess::candidates() const {
  const int n = lp_.num_cols, size = lp_.num_vars();
  Vector<int> list;
  for (int v = n; v < size; ++v) {
    if (is_candidate(v)) list.push_back(v);
  }
  const std::ptrdiff_t slacks = static_cast<std::ptrdiff_t>(list.size());
  for (int j = 0; j < n; ++j) {
    if (is_candidate(j)) list.push_back(j);
  }
  std::stable_sort(list.begin() + slacks, list.end(),
                   [&](int u, int v) { return room_[u] > room_[v]; });
  if (place_.empty() || multiplier_.empty()) return list;
  // At a degenerate vertex the duals tell which of those at their bounds may be basic.
  for (int v = 0; v < size; ++v) {
    const bool free_to_move =
        lp_.lower[v] < lp_.upper[v] && std::fabs(multiplier_[v]) <= tolerance_;
    if (free_to_move && !is_candidate(v)) list.push_back(v);
  }
  return list;
}

Vector<int> BasisGuess::run() const {
  const Vector<int> offered = candidates();
  const Vector<char> basic = choose_independent(lp_, offered);
  Vector<int> status(lp_.num_vars());
  for (int v = 0; v < lp_.num_vars(); ++v) status[v] = basic[v] ? kBasic : resting_side(v);
  for (const int v : offered) {
    if (!basic[v] && room_[v] > tolerance_) status[v] = kFreeSuper;
  }
  return status;
}

}  // namespace

void clamp_places(const LpProblem& lp, Vector<double>& place) {
  for (int v = 0; v < lp.num_vars(); ++v) {
    place[v] = std::clamp(place[v], lp.lower[v], std::max(lp.lower[v], lp.upper[v]));
  }
}

Vector<double> places_at(const LpProblem& lp, Vector<double>&& x) {
  Vector<double> place(std::move(x));
  const Vector<double> activity = row_activities(lp, place);
  for (const double a : activity) place.push_back(-a);
  clamp_places(lp, place);
  return place;
}

LpStart basis_from_values(const LpProblem& lp, const VariableValues& values, double tolerance) {
  LpStart start;
  start.present = true;
  start.status = BasisGuess(lp, values, tolerance).run();
  return start;
}

}  // namespace kelvo
