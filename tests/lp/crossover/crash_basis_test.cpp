// Crash bases: columns take the rows of equations, free ones first, and what comes out is a basis.
#include "lp/crossover/crash_basis.h"

#include "lp/busy_lp.h"
#include "lp/factor/basis_factor.h"
#include "lp/simplex/simplex.h"

namespace kelvo {
namespace {

/// Equations  x1 + x2 = 4,  x0 - x1 = 1  and the inequality  x2 <= 3; x1 is free.
LpProblem three_rows() {
  LpProblem lp;
  lp.num_rows = 3;
  lp.num_cols = 3;
  lp.columns.num_major = lp.columns.num_minor = 3;
  lp.columns.start.assign({0, 1, 3, 5});
  lp.columns.index.assign({1, 0, 1, 0, 2});
  lp.columns.value.assign({1.0, 1.0, -1.0, 1.0, 1.0});
  lp.rows = transpose(lp.columns);
  lp.cost.assign({1.0, 2.0, -3.0, 0.0, 0.0, 0.0});
  lp.lower.assign({0.0, -kInf, -2.0, -4.0, -1.0, -3.0});
  lp.upper.assign({kInf, kInf, 5.0, -4.0, -1.0, kInf});
  return lp;
}

TEST(CrashBasis, MovableColumnsTakeTheRowsOfEquations) {
  const Vector<int> status = crash_basis(three_rows(), CrashOrder::by_bounds);
  // The free column first, then the one with one bound; the slack of the inequality stays.
  EXPECT_EQ(status, Vector<int>({kBasic, kBasic, kAtLower, kAtLower, kAtLower, kBasic}));
  LpProblem boxed = three_rows();
  boxed.lower[1] = 0.0;
  boxed.upper[1] = 9.0;
  boxed.upper[0] = 5.0;
  EXPECT_EQ(crash_basis(boxed, CrashOrder::by_bounds)[1], kBasic) << "the widest one";
  const Vector<int> by_costs = crash_basis(boxed, CrashOrder::by_costs);
  EXPECT_EQ(by_costs[1], kAtLower);
  EXPECT_EQ(by_costs[2], kBasic) << "the cheapest one";
}

TEST(CrashBasis, IsNonsingularAndLeadsToTheSameOptimum) {
  int different = 0;
  for (int seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(seed * 104729 + 3);
    const LpProblem lp = test::busy_lp(random, 2 + random.below(10), 2 + random.below(12));
    SimplexSettings settings;
    Simplex from_slacks(lp);
    from_slacks.set_slack_basis();
    const Vector<int> slacks = from_slacks.status();
    const SimplexOutcome expected = from_slacks.run_dual(settings);
    for (const CrashOrder order : {CrashOrder::by_bounds, CrashOrder::by_costs}) {
      const Vector<int> status = crash_basis(lp, order);
      ASSERT_EQ(std::count(status.begin(), status.end(), kBasic), lp.num_rows);
      Simplex crashed(lp);
      crashed.set_basis(status);
      if (crashed.status() != slacks) ++different;
      const SimplexOutcome outcome =
          seed % 2 == 0 ? crashed.run_primal(settings) : crashed.run_dual(settings);
      if (expected != SimplexOutcome::optimal) continue;  // infeasible or unbounded: either proof
      ASSERT_EQ(outcome, SimplexOutcome::optimal);
      EXPECT_NEAR(crashed.objective(), from_slacks.objective(),
                  1e-7 * (1.0 + std::fabs(from_slacks.objective())));
    }
  }
  EXPECT_GT(different, 100);
}

}  // namespace
}  // namespace kelvo
