// The two ways to the ranges of objective coefficients.
#include "analysis/sensitivity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "base/random.h"
#include "lp/solve/solve_model.h"
#include "lp/tableau/kept_basis.h"

namespace kelvo::test {
namespace {

/// Equations and inequalities over boxes, feasible at 1 everywhere.
Model random_model(int seed) {
  Random random(seed);
  Model model;
  model.sense = seed % 2 ? 1 : -1;
  model.num_rows = 8;
  model.num_cols = 10;
  SparseMatrix columns;
  columns.num_major = model.num_cols;
  columns.num_minor = model.num_rows;
  Vector<double> activity(model.num_rows, 0.0);
  for (int j = 0; j < model.num_cols; ++j) {
    for (int i = 0; i < model.num_rows; ++i) {
      if (random.below(2) == 0) continue;
      const double value = (random.below(19) - 9) * (i % 3 == 0 ? 100.0 : 1.0);
      if (value == 0.0) continue;
      columns.index.push_back(i);
      columns.value.push_back(value);
      activity[i] += value;
    }
    columns.start.push_back(static_cast<int>(columns.index.size()));
    model.objective.push_back(random.below(19) - 9);
    model.lower.push_back(j == 3 ? 1.0 : 0.0);
    model.upper.push_back(j == 3 ? 1.0 : 1.0 + random.below(3));
  }
  for (int i = 0; i < model.num_rows; ++i) {
    model.row_sense.push_back("LEEG"[i % 4]);
    model.rhs.push_back(activity[i]);
  }
  model.matrix.assign(std::move(columns));
  return model;
}

TEST(Sensitivity, RowsAndColumnsAgree) {
  SilentSink sink;
  NeverStop stop;
  const CallContext context{sink, stop};
  DriverSettings settings;
  for (int seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const Model model = random_model(seed);
    Owned<WorkingLp> working;
    prepare_working_lp(model, ModelChanges(), working, StoredBasis(), settings, context);
    ASSERT_EQ(working->simplex().run_dual(settings.simplex), SimplexOutcome::optimal);
    Sensitivity sensitivity(model, *working);
    double low[2][10], high[2][10];
    sensitivity.objective_by_rows(0, 9, low[0], high[0]);
    sensitivity.objective_by_columns(0, 9, low[1], high[1]);
    for (int j = 0; j < 10; ++j) {
      EXPECT_NEAR(low[0][j], low[1][j], 1e-7 * (1.0 + std::fabs(low[0][j])));
      EXPECT_NEAR(high[0][j], high[1][j], 1e-7 * (1.0 + std::fabs(high[0][j])));
    }
    // Part of the range only.
    sensitivity.objective_by_rows(4, 6, low[0], high[0]);
    EXPECT_NEAR(low[0][1], low[1][5], 1e-7 * (1.0 + std::fabs(low[1][5])));
  }
}

}  // namespace
}  // namespace kelvo::test
