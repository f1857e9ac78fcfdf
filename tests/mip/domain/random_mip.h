// Small random programs of all kinds with their solutions on a grid, for property tests.
#pragma once

#include <cmath>

#include "base/random.h"
#include "mip/form/mip_problem.h"

namespace kelvo::test {

struct RandomMip {
  MipProblem mip;
  Vector<Vector<double>> grid;    // [num_cols] values that are tried
  Vector<Vector<double>> points;  // those that satisfy everything, logicals appended
};

/// Adds a row  lower <= a x <= upper.
inline void add_row(MipProblem& mip, const Vector<double>& a, double lower, double upper) {
  LpProblem& lp = mip.lp;
  for (int j = 0; j < lp.num_cols; ++j) {
    if (a[j] == 0.0) continue;
    lp.rows.index.push_back(j);
    lp.rows.value.push_back(a[j]);
  }
  lp.rows.start.push_back(static_cast<int>(lp.rows.index.size()));
  lp.rows.num_major = ++lp.num_rows;
  lp.cost.push_back(0.0);
  lp.lower.push_back(-upper);
  lp.upper.push_back(-lower);
}

inline void add_column(MipProblem& mip, double lower, double upper, bool integer,
                       double cost = 0.0) {
  mip.lp.cost.push_back(cost);
  mip.lp.lower.push_back(lower);
  mip.lp.upper.push_back(upper);
  mip.is_integer.push_back(integer);
  mip.lp.rows.num_minor = ++mip.lp.num_cols;
}

/// After the last row.
inline void finish(MipProblem& mip) {
  mip.lp.columns = transpose(mip.lp.rows);
}

class RandomMipBuilder {
 public:
  explicit RandomMipBuilder(int seed) : random_(seed) {
    for (int k = 0; k < 20; ++k) random_.uniform();
  }

  RandomMip build() {
    const int columns = 4 + random_.below(5);
    for (int j = 0; j < columns; ++j) add_random_column();
    // Rows pass near a point of the grid, so that most programs have solutions.
    for (const Vector<double>& values : result_.grid) {
      center_.push_back(values[random_.below(static_cast<int>(values.size()))]);
    }
    const int rows = 2 + random_.below(5);
    for (int i = 0; i < rows; ++i) add_random_row();
    if (chance(0.3)) add_indicator();
    if (chance(0.3)) add_set();
    finish(result_.mip);
    Vector<double> point(columns);
    enumerate(0, point);
    return std::move(result_);
  }

 private:
  bool chance(double share) { return random_.uniform() < share; }

  void add_random_column() {
    MipProblem& mip = result_.mip;
    const double cost = random_.below(11) - 5.0;
    const double kind = random_.uniform();
    Vector<double> values;
    if (kind < 0.5) {
      add_column(mip, 0.0, 1.0, true, cost);
      values = {0.0, 1.0};
    } else if (kind < 0.7) {
      const double low = random_.below(5) - 3.0, high = low + 1 + random_.below(4);
      add_column(mip, low, chance(0.2) ? kInf : high, true, cost);
      for (double x = low; x <= high; ++x) values.push_back(x);
    } else if (kind < 0.8) {
      add_column(mip, 0.0, 3e9, true, cost);
      values = {0.0, 1.0, 1e9, 3e9 - 1.0, 3e9};
    } else if (kind < 0.9) {
      const double low = 1.0 + random_.below(2), high = low + random_.below(3);
      const bool negative = chance(0.3), integer = chance(0.3);
      add_column(mip, negative ? -high : 0.0, negative ? 0.0 : high, integer, cost);
      mip.semis.push_back({mip.num_cols() - 1, negative ? -high : low, negative ? -low : high});
      for (double x = low; x <= high; x += integer ? 1.0 : 0.5) {
        values.push_back(negative ? -x : x);
      }
      values.push_back(0.0);
    } else {
      add_column(mip, chance(0.2) ? -kInf : -2.0, chance(0.2) ? kInf : 2.0, false, cost);
      values = {-2.0, -1.5, 0.0, 0.1, 2.0};
    }
    result_.grid.push_back(values);
  }

  Vector<double> random_coefficients() {
    Vector<double> a(result_.grid.size(), 0.0);
    const bool knapsack = chance(0.3);
    for (double& value : a) {
      if (chance(0.4)) continue;
      value = knapsack ? 1.0 + random_.below(3) : random_.below(9) - 4.0;
      if (chance(0.1)) value *= 1000.0;
      if (chance(0.05)) value *= 0.1;
    }
    return a;
  }

  void add_random_row() {
    Vector<double> a = random_coefficients();
    double scale = 1.0;
    if (chance(0.1)) scale = std::pow(10.0, random_.below(7) - 2.0);
    double activity = 0.0;
    for (std::size_t j = 0; j < a.size(); ++j) {
      a[j] *= scale;
      activity += a[j] * center_[j];
    }
    const double room = chance(0.8) ? random_.below(3) * scale : -scale;
    const double kind = random_.uniform();
    if (kind < 0.15) {
      add_row(result_.mip, a, activity, activity);
    } else if (kind < 0.3) {
      add_row(result_.mip, a, activity - room - scale, activity + room + scale);
    } else if (kind < 0.65) {
      add_row(result_.mip, a, -kInf, activity + room);
    } else {
      add_row(result_.mip, a, activity - room, kInf);
    }
  }

  void add_indicator() {
    MipProblem& mip = result_.mip;
    for (int j = 0; j < mip.num_cols(); ++j) {
      if (!mip.is_binary(j)) continue;
      const Vector<double> a = random_coefficients();
      double activity = 0.0;
      for (std::size_t k = 0; k < a.size(); ++k) activity += a[k] * center_[k];
      add_row(mip, a, -kInf, kInf);
      const bool both = chance(0.3);
      mip.indicators.push_back({j, chance(0.5), mip.num_rows() - 1, both ? activity : -kInf,
                                both ? activity + 1.0 : activity - random_.below(3)});
      return;
    }
  }

  void add_set() {
    OrderedSet set;
    set.type = 1 + random_.below(2);
    for (int j = 0; j < result_.mip.num_cols(); ++j) {
      if (!chance(0.5)) continue;
      set.members.push_back(j);
      set.weights.push_back(j);
    }
    if (!set.members.empty()) result_.mip.sets.push_back(set);
  }

  void enumerate(int j, Vector<double>& point) {
    if (j < result_.mip.num_cols()) {
      for (const double value : result_.grid[j]) {
        point[j] = value;
        enumerate(j + 1, point);
      }
      return;
    }
    const MipResiduals residuals = measure_point(result_.mip, point, {});
    if (std::max({residuals.bound, residuals.row, residuals.set}) > 1e-9) return;
    result_.points.push_back(point);
    for (const double a : row_activities(result_.mip.lp, point)) {
      result_.points.back().push_back(-a);
    }
  }

  Random random_;
  RandomMip result_;
  Vector<double> center_;
};

inline double objective(const MipProblem& mip, const Vector<double>& point) {
  double value = mip.lp.offset;
  for (int j = 0; j < mip.num_cols(); ++j) value += mip.lp.cost[j] * point[j];
  return value;
}

}  // namespace kelvo::test
