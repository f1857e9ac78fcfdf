// Families of linear programs whose iterations touch few nonzeros however large they are.
#pragma once

#include <utility>

#include "base/random.h"
#include "lp/form/lp_problem.h"

namespace kelvo::bench {

class LpBuilder {
 public:
  explicit LpBuilder(int rows) { lp_.num_rows = rows; }
  void add_column(double cost, double upper) {
    lp_.cost.push_back(cost);
    lp_.lower.push_back(0.0);
    lp_.upper.push_back(upper);
    ++lp_.num_cols;
    lp_.columns.start.push_back(static_cast<int>(lp_.columns.index.size()));
  }
  /// An entry of the next column.
  void add_entry(int row, double value) {
    lp_.columns.index.push_back(row);
    lp_.columns.value.push_back(value);
  }
  LpProblem finish(const Vector<double>& least, const Vector<double>& most) {
    for (int i = 0; i < lp_.num_rows; ++i) {
      lp_.cost.push_back(0.0);
      lp_.lower.push_back(-most[i]);
      lp_.upper.push_back(-least[i]);
    }
    lp_.columns.num_major = lp_.num_cols;
    lp_.columns.num_minor = lp_.num_rows;
    lp_.rows = transpose(lp_.columns);
    return std::move(lp_);
  }

 private:
  LpProblem lp_;
};

/// Minimum cost flow between neighbours of a grid; every node may buy what it lacks.
inline LpProblem network(int rows) {
  Random random(3);
  const int width = 64;
  LpBuilder builder(rows);
  Vector<double> supply(rows);
  for (int i = 0; i < rows; ++i) {
    supply[i] = random.below(21) - 10.0;
    for (const int to : {i + 1, i - 1, i + width, i - width}) {
      if (to < 0 || to >= rows) continue;
      builder.add_entry(i, 1.0);
      builder.add_entry(to, -1.0);
      builder.add_column(1.0 + random.below(20), 5.0 + random.below(20));
    }
    builder.add_entry(i, supply[i] > 0.0 ? 1.0 : -1.0);
    builder.add_column(200.0, kInf);
  }
  return builder.finish(supply, supply);
}

/// Production of eight goods over many periods: balances with stocks, two shared capacities each.
inline LpProblem staircase(int rows) {
  Random random(4);
  constexpr int kGoods = 8, kShared = 2, kPeriod = kGoods + kShared;
  const int periods = rows / kPeriod;
  LpBuilder builder(periods * kPeriod);
  Vector<double> least(periods * kPeriod), most(periods * kPeriod);
  for (int t = 0; t < periods; ++t) {
    const int first = t * kPeriod;
    for (int g = 0; g < kGoods; ++g) {
      least[first + g] = most[first + g] = random.below(30);
      for (int way = 0; way < 2; ++way) {  // two ways to make it
        builder.add_entry(first + g, 1.0);
        builder.add_entry(first + kGoods + way, 0.5 + random.uniform());
        builder.add_column(1.0 + random.below(30), kInf);
      }
      builder.add_entry(first + g, -1.0);  // stock for the next period
      if (t + 1 < periods) builder.add_entry(first + kPeriod + g, 0.98);
      builder.add_column(0.1 + random.uniform(), 60.0);
      builder.add_entry(first + g, 1.0);  // bought
      builder.add_column(100.0, kInf);
    }
    for (int k = kGoods; k < kPeriod; ++k) {
      least[first + k] = -kInf;
      most[first + k] = 60.0;
    }
  }
  return builder.finish(least, most);
}

}  // namespace kelvo::bench
