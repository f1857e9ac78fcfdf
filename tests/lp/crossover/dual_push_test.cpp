// An optimal basis in which a variable that stands at a bound has taken the place of one with a
// multiplier is put right without a change of the values.
#include "lp/crossover/dual_push.h"

#include "lp/busy_lp.h"

namespace kelvo {
namespace {

using test::busy_lp;
using test::never;
using test::solve;
using test::Solved;
using test::worst_violation;

bool stands_at_bound(const LpProblem& lp, int v, double value) {
  return value == lp.lower[v] || value == lp.upper[v];
}

constexpr double kZero = 1e-9;
constexpr double kDear = 1e11 / 3.0;  // a unit of costs that no cost is exact in

/// Makes nonbasic variables with multipliers basic, in place of basic ones at a bound; their
/// number.
int spoil(const LpProblem& lp, const LpSolution& solution, Random& random, Vector<int>& status) {
  Vector<double> value(solution.x);
  value.resize(lp.num_vars(), 0.0);
  Vector<double> multiplier(lp.cost);
  for (int j = 0; j < lp.num_cols; ++j) {
    for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
      value[lp.num_cols + lp.columns.index[k]] -= lp.columns.value[k] * solution.x[j];
      multiplier[j] -= lp.columns.value[k] * solution.y[lp.columns.index[k]];
    }
  }
  for (int i = 0; i < lp.num_rows; ++i) multiplier[lp.num_cols + i] = -solution.y[i];
  int spoilt = 0;
  for (int tries = 0; tries < 20; ++tries) {
    const int in = random.below(lp.num_vars()), out = random.below(lp.num_vars());
    if (status[in] == kBasic || status[out] != kBasic || std::fabs(multiplier[in]) < kZero) {
      continue;
    }
    if (std::fabs(multiplier[out]) > kZero || !stands_at_bound(lp, out, value[out])) continue;
    if (!stands_at_bound(lp, in, value[in])) continue;
    status[out] = value[out] == lp.lower[out] ? kAtLower : kAtUpper;
    status[in] = kBasic;
    ++spoilt;
  }
  return spoilt;
}

TEST(DualPush, SettlesTheBasisAndKeepsTheOptimum) {
  int spoilt_programs = 0;
  for (int seed = 0; seed < 4000; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(seed * 7919 + 5);
    const int m = 2 + random.below(7), n = 2 + random.below(8);
    const LpProblem lp = busy_lp(random, m, n);
    const Solved solved = solve(lp);
    if (solved.outcome != SimplexOutcome::optimal) continue;
    LpSolution basic = solved.basic;
    if (spoil(lp, basic, random, basic.status) == 0) continue;
    ++spoilt_programs;
    LpSolution dear_basic = basic;
    ASSERT_TRUE(push_duals(lp, basic.y, basic.status, never));
    ASSERT_LE(worst_violation(lp, basic), 1e-9);
    // Rounding of large duals is not taken for a multiplier.
    LpProblem dear_lp = lp;
    for (double& cost : dear_lp.cost) cost *= kDear;
    for (double& y : dear_basic.y) y *= kDear;
    ASSERT_TRUE(push_duals(dear_lp, dear_basic.y, dear_basic.status, never));
    for (double& y : dear_basic.y) y /= kDear;
    ASSERT_LE(worst_violation(lp, dear_basic), 1e-9);
    const Solved again = solve(lp, &basic.status);
    ASSERT_EQ(again.iterations, 0);
    ASSERT_NEAR(again.objective, solved.objective, 1e-9 * (1.0 + std::fabs(solved.objective)));
  }
  EXPECT_GT(spoilt_programs, 300);
}

}  // namespace
}  // namespace kelvo
