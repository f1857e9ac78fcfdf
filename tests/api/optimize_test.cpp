// The optimizers of linear problems.
#include "lp_fixture.h"

namespace {

TEST(Optimize, ChoiceOfMethod) {
  SmallLp p;
  // No basis: dual. A primal feasible basis: primal, unless it is not to be used.
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetmethod(p.env, p.lp), 2);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetmethod(p.env, p.lp), 1);
  EXPECT_EQ(KLVgetitcnt(p.env, p.lp), 0);
  EXPECT_EQ(KLVsetintparam(p.env, 1001, 0), 0);  // KLV_PARAM_ADVIND
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetmethod(p.env, p.lp), 2);
  EXPECT_EQ(KLVsetintparam(p.env, 1001, 1), 0);
  // The basis (x at its bound, y basic) becomes primal infeasible.
  EXPECT_EQ(KLVchgcoef(p.env, p.lp, 0, -1, 1.0), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetmethod(p.env, p.lp), 2);
  EXPECT_NEAR(p.objective(), 3.0, 1e-9);

  for (const int named : {1, 2}) {
    EXPECT_EQ(KLVsetintparam(p.env, 1062, named), 0);  // KLV_PARAM_LPMETHOD
    ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
    EXPECT_EQ(KLVgetmethod(p.env, p.lp), named);
  }
  ASSERT_EQ(KLVprimopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetmethod(p.env, p.lp), 1);
}

TEST(Optimize, MethodsThatAreNotThereSaySo) {
  SmallLp p;
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  for (const int named : {3, 4, 5, 6}) {
    EXPECT_EQ(KLVsetintparam(p.env, 1062, named), 0);
    p.errors.clear();
    EXPECT_EQ(KLVlpopt(p.env, p.lp), 1292);
    EXPECT_EQ(p.errors, "KELVO Error  1292: Invalid choice of optimization method.\n");
  }
  EXPECT_EQ(KLVhybnetopt(p.env, p.lp, 'd'), 1292);
  EXPECT_EQ(KLVhybbaropt(p.env, p.lp, 0), 1292);
  EXPECT_EQ(KLVsiftopt(p.env, p.lp), 1292);
  // The solution from before is still there.
  EXPECT_NEAR(p.objective(), 11.0, 1e-9);
}

TEST(Optimize, RefusesWhatIsNotLinear) {
  SmallLp p;
  EXPECT_EQ(KLVlpopt(p.env, nullptr), 1009);
  EXPECT_EQ(KLVlpopt(nullptr, p.lp), 1002);
  EXPECT_EQ(KLVnewcols(p.env, p.lp, 1, nullptr, nullptr, nullptr, "I", nullptr), 0);
  EXPECT_EQ(KLVlpopt(p.env, p.lp), 1017);
  EXPECT_EQ(KLVprimopt(p.env, p.lp), 1017);
  EXPECT_EQ(KLVdualopt(p.env, p.lp), 1017);
}

TEST(Optimize, WarmAfterChanges) {
  SmallLp p;
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  const int column = 0;
  const double bound = 2;
  EXPECT_EQ(KLVchgbds(p.env, p.lp, 1, &column, "U", &bound), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_NEAR(p.objective(), 6 + 2 * 5.0 / 3.0, 1e-9);
  // A new row and a new column enter the basis kept.
  const double one = 1, rhs = 1;
  const int begin = 0, second = 1;
  EXPECT_EQ(KLVaddrows(p.env, p.lp, 0, 1, 1, &rhs, "L", &begin, &second, &one, nullptr, nullptr),
            0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_NEAR(p.objective(), 8.0, 1e-9);
  const double cost = 10;
  EXPECT_EQ(KLVaddcols(p.env, p.lp, 1, 1, &cost, &begin, &begin, &one, nullptr, nullptr, nullptr),
            0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_NEAR(p.objective(), 40.0, 1e-9);
  EXPECT_EQ(KLVdelrows(p.env, p.lp, 0, 0), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_UNBOUNDED);
}

int count_calls(KLVenv, void*, int wherefrom, void* handle) {
  auto* const calls = static_cast<int*>(handle);
  EXPECT_TRUE(wherefrom == 1 || wherefrom == 2);
  return ++*calls >= 2;
}

TEST(Optimize, Stops) {
  SmallLp p;
  EXPECT_EQ(KLVsetintparam(p.env, 1020, 0), 0);  // KLV_PARAM_ITLIM
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_ITERATION_LIMIT);
  EXPECT_EQ(KLVgetitcnt(p.env, p.lp), 0);
  EXPECT_EQ(KLVsetintparam(p.env, 1020, 2100000000), 0);

  volatile int flag = 1;
  EXPECT_EQ(KLVsetterminate(p.env, &flag), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_USER_ABORTED);
  flag = 0;

  EXPECT_EQ(KLVsetdblparam(p.env, 1039, 0.0), 0);  // KLV_PARAM_TILIM
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_TIME_LIMIT);
  EXPECT_EQ(KLVsetdblparam(p.env, 1039, 1e75), 0);

  int calls = 0;
  EXPECT_EQ(KLVsetlpcallbackfunc(p.env, count_calls, &calls), 0);
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_USER_ABORTED);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(KLVsetlpcallbackfunc(p.env, nullptr, nullptr), 0);
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_NEAR(p.objective(), 11.0, 1e-9);
}

TEST(Optimize, ObjectiveLimits) {
  // Maximization: the dual simplex stops once the bound 11 is below the lower limit.
  SmallLp p;
  EXPECT_EQ(KLVsetdblparam(p.env, 1025, 12.0), 0);  // KLV_PARAM_OBJLLIM
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_OBJECTIVE_LIMIT);
  EXPECT_EQ(KLVsetdblparam(p.env, 1025, 10.0), 0);
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_OPTIMAL);
}

TEST(Optimize, LogFollowsTheDisplayParameter) {
  SmallLp p;
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_NE(p.log.find("\nIteration log . . .\n"), std::string::npos);
  EXPECT_NE(p.log.find("Dual objective"), std::string::npos) << p.log;
  p.log.clear();
  EXPECT_EQ(KLVsetintparam(p.env, 1019, 0), 0);  // KLV_PARAM_SIMDISPLAY
  EXPECT_EQ(KLVsetintparam(p.env, 1001, 0), 0);
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(p.log, "");
}

TEST(Optimize, ConcurrentIsNotForRepeatableRuns) {
  SmallLp p;
  int lowest = 0, highest = 0, standard = 0;
  EXPECT_EQ(KLVinfointparam(p.env, 1067, &standard, &lowest, &highest), 0);  // KLV_PARAM_THREADS
  if (highest < 2) GTEST_SKIP() << "one processor";
  EXPECT_EQ(KLVsetintparam(p.env, 1067, 2), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(p.warnings, "concurrent optimizer may be non-deterministic; using Simplex instead\n");
  p.warnings.clear();
  EXPECT_EQ(KLVsetintparam(p.env, 1109, -1), 0);  // KLV_PARAM_PARALLELMODE
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(p.warnings, "");
}

}  // namespace
