#include "lp/form/scaling.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "base/random.h"
#include "lp/small_model.h"
#include "lp/solve/conversion.h"
#include "support/recording_sink.h"

namespace kelvo {
namespace {

using test::small_model;

TEST(Scaling, RoundsToThePowerOfTwoOfTheWindow) {
  EXPECT_EQ(nearest_power_of_two(3.0), 2.0);
  EXPECT_EQ(nearest_power_of_two(3.1), 4.0);
  EXPECT_EQ(nearest_power_of_two(0.75), 1.0);
  EXPECT_EQ(nearest_power_of_two(0.7), 0.5);
  for (double f = 1e-60; f < 1e60; f *= 1.7) {
    const double power = nearest_power_of_two(f);
    int exponent = 0;
    EXPECT_EQ(std::frexp(power, &exponent), 0.5) << f;
    EXPECT_GE(f / power, 0.75) << f;
    EXPECT_LE(f / power, 1.5) << f;
  }
  // Beyond the cap the window cannot be kept, but the result stays a usable number.
  EXPECT_TRUE(std::isfinite(1.0 / nearest_power_of_two(1e300)));
  EXPECT_TRUE(std::isfinite(1.0 / nearest_power_of_two(1e-300)));
}

TEST(Scaling, LeavesFineMatricesAlone) {
  SilentSink sink;
  const auto state_of = [&](const Model& model, ScalingMethod method) {
    LpProblem lp = with_rows(make_lp(model));
    Scaling scaling;
    scale_problem(lp, method, scaling, sink);
    return scaling.state;
  };
  const Model fine = small_model(1, {1, 1}, {{'L', 4, {1, 10}}, {'L', 4, {2, -1}}});
  const Model wide = small_model(1, {1, 1}, {{'L', 4, {0.5, 10}}});
  const Model large = small_model(1, {1, 1}, {{'L', 4, {11, 12}}});
  const Model empty = small_model(1, {1, 1}, {{'L', 4, {0, 0}}});
  EXPECT_EQ(state_of(fine, ScalingMethod::equilibrate), ScalingState::unnecessary);
  EXPECT_EQ(state_of(empty, ScalingMethod::aggressive), ScalingState::unnecessary);
  EXPECT_EQ(state_of(wide, ScalingMethod::equilibrate), ScalingState::scaled);
  EXPECT_EQ(state_of(large, ScalingMethod::equilibrate), ScalingState::scaled);
  EXPECT_EQ(state_of(large, ScalingMethod::none), ScalingState::not_scaled);
}

TEST(Scaling, EquilibrationAndRangeSafeguard) {
  // Row maxima 4 and 100; the first column's scaled maximum is 0.5.
  Model model = small_model(1, {1, 1}, {{'L', 8, {2, 4}}, {'G', 5, {0, 100}}});
  Vector<double> row, col;
  compute_scale_factors(with_rows(make_lp(model)), ScalingMethod::equilibrate, row, col);
  EXPECT_EQ(row[0], 4.0);
  EXPECT_EQ(row[1], 100.0);
  EXPECT_EQ(col[0], 0.5);
  EXPECT_EQ(col[1], 1.0);

  model = small_model(1, {1, 1}, {{'L', 8, {1e-3, 1}}});
  model.upper[0] = 1e-9;
  compute_scale_factors(with_rows(make_lp(model)), ScalingMethod::equilibrate, row, col);
  EXPECT_NEAR(col[0], 0.21, 1e-12);
}

/// A model whose entries spread over `decades` powers of ten.
Model spread_model(std::uint64_t seed, int decades) {
  Random random(seed);
  Model model = small_model(-1, {}, {});
  model.num_rows = 12;
  model.num_cols = 9;
  test::DenseLines columns(model.num_cols, std::vector<double>(model.num_rows));
  const auto entry = [&] {
    const double sign = random.uniform() < 0.5 ? -1.0 : 1.0;
    return sign * std::pow(10.0, decades * (random.uniform() - 0.5));
  };
  for (int j = 0; j < model.num_cols; ++j) {
    for (int i = 0; i < model.num_rows; ++i) {
      if (random.uniform() >= 0.5) columns[j][i] = entry();
    }
    model.objective.push_back(entry());
    model.lower.push_back(random.uniform() < 0.3 ? -kInfiniteBound : -std::fabs(entry()));
    model.upper.push_back(random.uniform() < 0.3 ? kInfiniteBound : std::fabs(entry()));
  }
  for (int i = 0; i < model.num_rows; ++i) {
    model.rhs.push_back(entry());
    model.row_sense.push_back("LGE"[random.below(3)]);
  }
  model.matrix.assign(test::sparse_lines(columns, model.num_rows));
  return model;
}

double spread(const LpProblem& lp) {
  double largest = 0.0, smallest = 1e75;
  for (const double value : lp.columns.value) {
    largest = std::max(largest, std::fabs(value));
    smallest = std::min(smallest, std::fabs(value));
  }
  return largest / smallest;
}

TEST(Scaling, IsExactInBothDirections) {
  SilentSink sink;
  for (const ScalingMethod method : {ScalingMethod::equilibrate, ScalingMethod::aggressive}) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
      SCOPED_TRACE(seed);
      const Model model = spread_model(seed, 10);
      const LpProblem original = with_rows(make_lp(model));
      LpProblem lp = original;
      Scaling scaling;
      scale_problem(lp, method, scaling, sink);
      ASSERT_TRUE(scaling.active());
      // Entries end up at most 1 but for the rounding of a row and a column factor.
      for (const double value : lp.columns.value) EXPECT_LE(std::fabs(value), 1.5 * 1.5);
      // Both copies of the matrix agree, and the scaled program shows the numbers of the original.
      const SparseMatrix rows = transpose(lp.columns);
      EXPECT_EQ(rows.value, lp.rows.value);
      const ProgramView view(lp, scaling);
      Vector<double> values;
      for (int j = 0; j < lp.num_cols; ++j) {
        view.for_column(j, [&](int, double a) { values.push_back(a); });
        EXPECT_EQ(view.cost(j), original.cost[j]);
      }
      EXPECT_EQ(values, original.columns.value);
      for (int v = 0; v < lp.num_vars(); ++v) {
        EXPECT_EQ(view.lower(v), original.lower[v]);
        EXPECT_EQ(view.upper(v), original.upper[v]);
      }
      unscale_problem(lp, scaling);
      EXPECT_EQ(scaling.state, ScalingState::not_scaled);
      EXPECT_EQ(lp.columns.value, original.columns.value);
      EXPECT_EQ(lp.cost, original.cost);
      EXPECT_EQ(lp.lower, original.lower);
      EXPECT_EQ(lp.upper, original.upper);
    }
  }
}

TEST(Scaling, GeometricPassesNarrowTheSpread) {
  SilentSink sink;
  // A rank-one pattern of magnitudes, which row and column factors undo completely.
  Model model = spread_model(7, 0);
  for (int j = 0; j < model.num_cols; ++j) {
    for (int k = 0; k < model.matrix.count[j]; ++k) {
      const int at = model.matrix.start[j] + k;
      model.matrix.value[at] = std::pow(10.0, model.matrix.index[at] % 5) * std::pow(3.0, j);
    }
  }
  LpProblem equilibrated = with_rows(make_lp(model));
  LpProblem aggressive = equilibrated;
  Scaling scaling;
  scale_problem(equilibrated, ScalingMethod::equilibrate, scaling, sink);
  scaling = Scaling();
  scale_problem(aggressive, ScalingMethod::aggressive, scaling, sink);
  EXPECT_LE(spread(aggressive), spread(equilibrated));
  EXPECT_LE(spread(aggressive), 4.0 * 1.0001);  // what the rounding of two factors may leave
}

TEST(Scaling, WithoutMemoryTheProblemStaysAsItWas) {
  test::RecordingSink sink;
  const LpProblem original = with_rows(make_lp(spread_model(3, 8)));
  for (int k = 0; k < 4; ++k) {
    LpProblem lp = original;
    Scaling scaling;
    const auto blocks = live_blocks();
    fail_allocation_after(k);
    scale_problem(lp, ScalingMethod::aggressive, scaling, sink);
    fail_allocation_after(-1);
    EXPECT_EQ(scaling.state, ScalingState::not_scaled);
    EXPECT_EQ(lp.columns.value, original.columns.value);
    EXPECT_EQ(live_blocks(), blocks);
    EXPECT_EQ(sink.take(), "Not enough memory to scale.\n");
  }
}

}  // namespace
}  // namespace kelvo
