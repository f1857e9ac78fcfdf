// Small mixed-integer programs of all kinds, full of what presolve looks for, and their optima by
// enumeration of everything that is discrete.
#pragma once

#include "lp/busy_lp.h"
#include "mip/form/mip_problem.h"

namespace kelvo::test {

/// Tries all whole values, both branches of semi-continuous columns and all windows of sets; what
/// is continuous is left to the simplex method. The intervals of integer columns are finite.
class MipEnumeration {
 public:
  explicit MipEnumeration(const MipProblem& mip) : mip_(mip), node_(mip.lp) {
    for (int j = 0; j < mip.num_cols(); ++j) continuous_ |= !mip.is_integer[j];
    try_column(0);
  }
  bool found() const { return objective_ < kInf; }
  bool unbounded() const { return unbounded_; }
  double objective() const { return objective_; }
  const Vector<double>& best() const { return best_; }

 private:
  static constexpr double kWindow = 40.0;

  void try_column(int j) {
    while (j < mip_.num_cols() && !mip_.is_integer[j]) ++j;
    if (j == mip_.num_cols()) return try_semi(0);
    const double low = node_.lower[j], high = node_.upper[j];
    // A column that presolve made integer may have no bound; the others keep it small.
    const double last = std::min(high, kWindow);
    for (double value = std::ceil(std::max(low, -kWindow) - 1e-9); value <= last + 1e-9; ++value) {
      node_.lower[j] = node_.upper[j] = value;
      if (rows_can_hold()) try_column(j + 1);
    }
    node_.lower[j] = low;
    node_.upper[j] = high;
  }
  bool rows_can_hold() const {
    for (int i = 0; i < node_.num_rows; ++i) {
      double least = 0.0, greatest = 0.0;
      const SparseMatrix& rows = mip_.lp.rows;
      for (int k = rows.start[i]; k < rows.start[i + 1]; ++k) {
        const double a = rows.value[k];
        const int j = rows.index[k];
        least += a * (a > 0.0 ? node_.lower[j] : node_.upper[j]);
        greatest += a * (a > 0.0 ? node_.upper[j] : node_.lower[j]);
      }
      const int logical = node_.num_cols + i;
      if (least > -node_.lower[logical] + 1e-7 || greatest < -node_.upper[logical] - 1e-7) {
        return false;
      }
    }
    return true;
  }
  void with_bounds(int v, double low, double high, const auto& next) {
    const double old_low = node_.lower[v], old_high = node_.upper[v];
    node_.lower[v] = std::max(low, old_low);
    node_.upper[v] = std::min(high, old_high);
    if (node_.lower[v] <= node_.upper[v]) next();
    node_.lower[v] = old_low;
    node_.upper[v] = old_high;
  }
  void try_semi(std::size_t k) {
    if (k == mip_.semis.size()) return try_set(0);
    const SemiColumn& semi = mip_.semis[k];
    with_bounds(semi.column, 0.0, 0.0, [&] { try_semi(k + 1); });
    with_bounds(semi.column, semi.lower, semi.upper, [&] { try_semi(k + 1); });
  }
  void try_set(std::size_t k) {
    if (k == mip_.sets.size()) return try_indicator(0);
    const OrderedSet& set = mip_.sets[k];
    const int members = static_cast<int>(set.members.size());
    for (int first = 0; first == 0 || first + set.type <= members; ++first) {
      try_window(k, first, 0);
    }
  }
  void try_window(std::size_t k, int first, int member) {
    const OrderedSet& set = mip_.sets[k];
    if (member == static_cast<int>(set.members.size())) return try_set(k + 1);
    if (member >= first && member < first + set.type) return try_window(k, first, member + 1);
    with_bounds(set.members[member], 0.0, 0.0, [&] { try_window(k, first, member + 1); });
  }
  void try_indicator(std::size_t k) {
    if (k == mip_.indicators.size()) return try_point();
    const Indicator& indicator = mip_.indicators[k];
    const auto next = [&] { try_indicator(k + 1); };
    if (node_.lower[indicator.binary] != indicator.active) return next();
    with_bounds(node_.num_cols + indicator.row, -indicator.upper, -indicator.lower, next);
  }
  void try_point() {
    if (continuous_) {
      const Solved solved = solve(node_);
      unbounded_ = unbounded_ || solved.outcome == SimplexOutcome::unbounded;
      if (solved.outcome == SimplexOutcome::optimal) offer(solved.objective, solved.basic.x);
      return;
    }
    Vector<double> x(node_.lower.begin(), node_.lower.begin() + node_.num_cols);
    double objective = node_.offset;
    for (int j = 0; j < node_.num_cols; ++j) objective += node_.cost[j] * x[j];
    if (objective < objective_ && worst_infeasibility(node_, x) <= 1e-9) offer(objective, x);
  }
  void offer(double objective, const Vector<double>& x) {
    if (objective >= objective_) return;
    objective_ = objective;
    best_ = x;
  }

  const MipProblem& mip_;
  LpProblem node_;
  bool continuous_ = false, unbounded_ = false;
  Vector<double> best_;
  double objective_ = kInf;
};

/// What a random program is to contain.
struct SmallMipKind {
  int most_rows, most_cols;
  int integers;  // integer columns, at most
  int steps;     // width of their intervals
  bool extras;   // semi-continuous columns, sets and indicators
};

namespace small_mip_detail {

inline void add_row(LpProblem& lp, const std::vector<double>& row, double low, double high) {
  for (int j = 0; j < lp.num_cols; ++j) {
    if (row[j] == 0.0) continue;
    lp.rows.index.push_back(j);
    lp.rows.value.push_back(row[j]);
  }
  lp.rows.start.push_back(static_cast<int>(lp.rows.index.size()));
  lp.rows.num_major = ++lp.num_rows;
  lp.cost.push_back(0.0);
  lp.lower.push_back(-high);
  lp.upper.push_back(-low);
}

inline void make_integer(Random& random, const SmallMipKind& kind, MipProblem& mip, int j) {
  LpProblem& lp = mip.lp;
  mip.is_integer[j] = 1;
  if (random.below(2) == 0) {
    lp.lower[j] = 0.0;
    lp.upper[j] = 1.0;
    return;
  }
  if (lp.lower[j] == -kInf) lp.lower[j] = lp.upper[j] == kInf ? -1.0 : lp.upper[j] - kind.steps;
  lp.upper[j] = std::min(lp.upper[j], lp.lower[j] + 1 + random.below(kind.steps));
  if (random.below(6) == 0) lp.upper[j] += 0.5;
}

inline void add_extras(Random& random, MipProblem& mip) {
  LpProblem& lp = mip.lp;
  const int n = lp.num_cols;
  for (int count = random.below(3); count > 0; --count) {
    const int j = random.below(n);
    bool taken = mip.is_binary(j);
    for (const SemiColumn& semi : mip.semis) taken = taken || semi.column == j;
    if (taken) continue;
    const double low = random.below(4) - 1.0, high = low + random.below(4);
    mip.semis.push_back({j, low, high});
    lp.lower[j] = std::min(0.0, low);
    lp.upper[j] = std::max(0.0, high);
  }
  for (int count = random.below(3); count > 0 && n > 1; --count) {
    OrderedSet set{1 + random.below(2), {}, {}};
    for (int j = 0; j < n; ++j) {
      if (random.below(2) == 0) continue;
      set.members.push_back(j);
      set.weights.push_back(j);
    }
    if (!set.members.empty()) mip.sets.push_back(set);
  }
  for (int count = random.below(3); count > 0; --count) {
    const int b = random.below(n);
    if (!mip.is_binary(b)) continue;
    std::vector<double> row(n, 0.0);
    for (int k = 1 + random.below(3); k > 0; --k) row[random.below(n)] = random.below(7) - 3;
    const double low = random.below(5) - 3.0, high = low + random.below(4);
    const int sides = random.below(3);
    mip.indicators.push_back(
        {b, random.below(2), lp.num_rows, sides == 0 ? -kInf : low, sides == 1 ? kInf : high});
    add_row(lp, row, -kInf, kInf);
  }
}

/// Rows that mixed-integer reductions look for: big-M rows, cliques, rows with a common divisor.
inline void add_integer_rows(Random& random, MipProblem& mip) {
  LpProblem& lp = mip.lp;
  const int n = lp.num_cols;
  // Most rows admit this point.
  std::vector<double> point(n);
  for (int j = 0; j < n; ++j)
    point[j] = std::ceil(std::min(std::max(0.0, lp.lower[j]), lp.upper[j]));
  const auto put = [&](const std::vector<double>& row, double low, double high) {
    double activity = 0.0;
    for (int j = 0; j < n; ++j) activity += row[j] * point[j];
    const double shift = activity < low ? activity - low : activity > high ? activity - high : 0.0;
    if (random.below(5) == 0 || low == high) {
      add_row(lp, row, low, high);
    } else {
      add_row(lp, row, low + shift, high + shift);
    }
  };
  for (int count = random.below(4); count > 0; --count) {
    std::vector<double> row(n, 0.0);
    const int b = random.below(n), j = random.below(n);
    switch (random.below(4)) {
      case 0:  // x_j <= M x_b
        row[j] = 1.0;
        row[b] = -5.0 - random.below(30);
        put(row, -kInf, random.below(3));
        break;
      case 1:
        for (int k = 0; k < n; ++k) row[k] = mip.is_binary(k) ? 1.0 : 0.0;
        put(row, random.below(3) == 0 ? 1.0 : -kInf, 1.0);
        break;
      case 2:
        for (int k = 0; k < n; ++k) {
          if (mip.is_integer[k]) row[k] = (random.below(2) + 1) * (random.below(2) ? 6.0 : -9.0);
        }
        if (random.below(3) == 0) row[j] += 1.0;
        put(row, random.below(3) == 0 ? -12.0 : -kInf, random.below(40));
        break;
      default:
        row[j] = -1.0;
        for (int k = 0; k < n; ++k) {
          if (k != j && mip.is_integer[k]) row[k] = random.below(5) - 2;
        }
        put(row, 0.0, 0.0);
    }
  }
}

}  // namespace small_mip_detail

/// Some rows are multiplied by a power of ten, some columns are in other units.
inline MipProblem small_mip(int seed, const SmallMipKind& kind) {
  Random random(seed * 7919u + 11u);
  for (int k = 0; k < 10; ++k) random.uniform();
  const int m = 1 + random.below(kind.most_rows), n = 1 + random.below(kind.most_cols);
  MipProblem mip;
  mip.lp = with_rows(busy_lp(random, m, n));
  mip.is_integer.assign(n, 0);
  for (int count = kind.integers; count > 0; --count) {
    const int j = kind.integers >= n ? count - 1 : random.below(n);
    if (j < n && !mip.is_integer[j]) small_mip_detail::make_integer(random, kind, mip, j);
  }
  small_mip_detail::add_integer_rows(random, mip);
  LpProblem& lp = mip.lp;
  for (int i = 0; i < lp.num_rows; ++i) {
    if (random.below(8) != 0) continue;
    const double factor = std::pow(10.0, random.below(7) - 3);
    for (int k = lp.rows.start[i]; k < lp.rows.start[i + 1]; ++k) lp.rows.value[k] *= factor;
    lp.lower[n + i] *= factor;
    lp.upper[n + i] *= factor;
  }
  if (kind.extras) small_mip_detail::add_extras(random, mip);
  lp.columns = transpose(lp.rows);
  return mip;
}

}  // namespace kelvo::test
