// Random linear problems kept as dense data beside the problem object, and dense algebra on them.
#pragma once

#include <cmath>
#include <random>

#include "prob_fixture.h"

constexpr double kNone = 1e20;

struct DenseLp {
  int m = 0, n = 0, sense = 1;
  std::vector<std::vector<double>> a;  // [m][n]
  std::vector<double> obj, lb, ub, rhs, rng;
  std::string senses;

  /// Column of a variable as the interface numbers them: j, or -r-1 for the slack of row r.
  std::vector<double> column(int variable) const {
    std::vector<double> result(m, 0.0);
    if (variable < 0) {
      const int row = -variable - 1;
      result[row] = senses[row] == 'R' ? -1.0 : 1.0;
    } else {
      for (int i = 0; i < m; ++i) result[i] = a[i][variable];
    }
    return result;
  }

  /// Bounds of a variable, the slack of a row included.
  std::pair<double, double> bounds(int variable) const {
    if (variable >= 0) return {lb[variable], ub[variable]};
    const int row = -variable - 1;
    switch (senses[row]) {
      case 'L':
        return {0.0, kNone};
      case 'G':
        return {-kNone, 0.0};
      case 'R':
        return {std::min(0.0, rng[row]), std::max(0.0, rng[row])};
      default:
        return {0.0, 0.0};
    }
  }

  void load(KLVenv env, KLVprob lp) const {
    std::vector<int> begin, count, index;
    std::vector<double> value;
    for (int j = 0; j < n; ++j) {
      begin.push_back(static_cast<int>(index.size()));
      for (int i = 0; i < m; ++i) {
        if (a[i][j] == 0.0) continue;
        index.push_back(i);
        value.push_back(a[i][j]);
      }
      count.push_back(static_cast<int>(index.size()) - begin.back());
    }
    index.push_back(0);
    value.push_back(0);
    ASSERT_EQ(KLVcopylp(env, lp, n, m, sense, obj.data(), rhs.data(), senses.c_str(), begin.data(),
                        count.data(), index.data(), value.data(), lb.data(), ub.data(), rng.data()),
              0);
  }
};

struct DenseLpShape {
  int m = 8, n = 12;
  bool wide_scales = false;  // entries of very different size, so that scaling has work to do
  bool degenerate = false;   // small integers and many ties
};

/// A feasible and bounded problem with rows and bounds of every kind.
inline DenseLp random_lp(unsigned seed, const DenseLpShape& shape) {
  std::mt19937 generator(seed);
  const auto below = [&](int k) { return static_cast<int>(generator() % k); };
  DenseLp lp;
  lp.m = shape.m;
  lp.n = shape.n;
  lp.sense = below(2) ? 1 : -1;
  std::vector<double> row_scale(lp.m, 1.0), col_scale(lp.n, 1.0), point(lp.n);
  if (shape.wide_scales) {
    for (double& s : row_scale) s = std::pow(10.0, below(7) - 3);
    for (double& s : col_scale) s = std::pow(10.0, below(5) - 2);
  }
  const int most = shape.degenerate ? 2 : 9;
  for (int j = 0; j < lp.n; ++j) {
    const double width = 1 + below(4), low = below(5) - 2;
    const int kind = below(8);
    lp.lb.push_back((kind == 1 ? -kNone : low / col_scale[j]));
    lp.ub.push_back(kind == 0   ? kNone
                    : kind == 2 ? low / col_scale[j]
                                : (low + width) / col_scale[j]);
    point[j] = kind == 2 ? low : low + (shape.degenerate ? 0.0 : width * below(5) / 4.0);
    const double cost = below(2 * most + 1) - most;
    // Columns with one bound are priced towards it.
    const double priced = kind == 0 ? std::fabs(cost) : kind == 1 ? -std::fabs(cost) : cost;
    lp.obj.push_back(lp.sense * priced * col_scale[j]);
  }
  lp.a.assign(lp.m, std::vector<double>(lp.n, 0.0));
  lp.rng.assign(lp.m, 0.0);
  for (int i = 0; i < lp.m; ++i) {
    double activity = 0.0;
    for (int j = 0; j < lp.n; ++j) {
      if (below(3) == 0) continue;
      const double entry = below(2 * most + 1) - most;
      lp.a[i][j] = entry * row_scale[i] * col_scale[j];
      activity += entry * point[j];
    }
    const char sense = "LGERL"[below(5)];
    const double gap = shape.degenerate ? 0.0 : below(4);
    const double range = (1 + below(3)) * (below(2) ? 1 : -1);
    const double rhs = sense == 'L'   ? activity + gap
                       : sense == 'G' ? activity - gap
                       : sense == 'R' ? activity - (shape.degenerate ? 0.0 : range / 2)
                                      : activity;
    lp.senses += sense;
    lp.rhs.push_back(rhs * row_scale[i]);
    if (sense == 'R') lp.rng[i] = range * row_scale[i];
  }
  return lp;
}

/// |a - b| within rounding of numbers of that size.
inline void expect_close(double a, double b, double size, const char* what) {
  EXPECT_NEAR(a, b, 1e-7 * (1.0 + std::fabs(size))) << what;
}

/// Two sums of terms agree as far as the size of the terms lets them.
struct Sum {
  double value = 0.0, size = 1e-3;
  void add(double term) {
    value += term;
    size += std::fabs(term);
  }
  void expect(double other) const { EXPECT_NEAR(value, other, 1e-9 * (size + std::fabs(other))); }
};

/// A random problem in the place of lp, its basis and its solution.
class RandomLpTest : public ProblemTest {
 protected:
  void load(unsigned seed, const DenseLpShape& shape = {}) {
    data = random_lp(seed, shape);
    data.load(env, lp);
  }
  void solve(unsigned seed, const DenseLpShape& shape = {}) {
    load(seed, shape);
    solve_again();
  }
  void solve_again() {
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
  }
  std::vector<int> head(KLVprob of = nullptr) {
    std::vector<int> result(data.m);
    EXPECT_EQ(KLVgetbhead(env, of == nullptr ? lp : of, result.data(), nullptr), 0);
    return result;
  }
  std::vector<double> basic_values() {
    std::vector<double> result(data.m);
    EXPECT_EQ(KLVgetbhead(env, lp, nullptr, result.data()), 0);
    return result;
  }
  bool basic(int variable) {
    const std::vector<int> now = head();
    return std::count(now.begin(), now.end(), variable) == 1;
  }
  /// One line of B^-1 or of B^-1 A: KLVbinvcol, KLVbinvrow, KLVbinvacol (of length m), KLVbinvarow.
  template <class Query>
  std::vector<double> inverse(Query query, int index) {
    std::vector<double> result(std::max(data.m, data.n));
    EXPECT_EQ(query(env, lp, index, result.data()), 0);
    return result;
  }
  /// |row r of B^-1|^2 for the row in which a variable is basic.
  double dual_norm(int row, int column) {
    int position = 0;
    EXPECT_EQ(KLVgetijrow(env, lp, row, column, &position), 0);
    std::vector<double> y(KLVgetnumrows(env, lp));
    EXPECT_EQ(KLVbinvrow(env, lp, position, y.data()), 0);
    double norm = 0.0;
    for (const double entry : y) norm += entry * entry;
    return norm;
  }

  DenseLp data;
};
