// The optimizers of linear problems.
#include <cmath>

#include "prob_fixture.h"

namespace {

using Optimize = SmallLp;

TEST_F(Optimize, ChoiceOfMethod) {
  const auto method_of = [&](auto optimize) {
    EXPECT_EQ(optimize(env, lp), 0);
    return KLVgetmethod(env, lp);
  };
  // No basis: dual. A primal feasible basis: primal, unless it is not to be used.
  EXPECT_EQ(method_of(KLVlpopt), 2);
  EXPECT_EQ(method_of(KLVlpopt), 1);
  EXPECT_EQ(KLVgetitcnt(env, lp), 0);
  set(KLV_PARAM_ADVIND, 0);
  EXPECT_EQ(method_of(KLVlpopt), 2);
  set(KLV_PARAM_ADVIND, 1);
  // The basis (x at its bound, y basic) becomes primal infeasible.
  EXPECT_EQ(KLVchgcoef(env, lp, 0, -1, 1.0), 0);
  EXPECT_EQ(method_of(KLVlpopt), 2);
  EXPECT_NEAR(objective(), 3.0, 1e-9);
  for (const int named : {1, 2}) {
    set(KLV_PARAM_LPMETHOD, named);
    EXPECT_EQ(method_of(KLVlpopt), named);
  }
  EXPECT_EQ(method_of(KLVprimopt), 1);
}

TEST_F(Optimize, MethodsThatAreNotThereSaySo) {
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  for (const int named : {3, 4, 5, 6}) {
    set(KLV_PARAM_LPMETHOD, named);
    EXPECT_EQ(KLVlpopt(env, lp), 1292);
    EXPECT_EQ(take(errors), "KELVO Error  1292: Invalid choice of optimization method.\n");
  }
  EXPECT_EQ(KLVhybnetopt(env, lp, 'd'), 1292);
  EXPECT_EQ(KLVhybbaropt(env, lp, 0), 1292);
  EXPECT_EQ(KLVsiftopt(env, lp), 1292);
  EXPECT_NEAR(objective(), 11.0, 1e-9) << "the solution from before is still there";
}

TEST_F(Optimize, RefusesWhatIsNotLinear) {
  EXPECT_EQ(KLVlpopt(env, nullptr), 1009);
  EXPECT_EQ(KLVlpopt(nullptr, lp), 1002);
  EXPECT_EQ(KLVnewcols(env, lp, 1, nullptr, nullptr, nullptr, "I", nullptr), 0);
  for (const auto optimize : {KLVlpopt, KLVprimopt, KLVdualopt}) {
    EXPECT_EQ(optimize(env, lp), 1017);
  }
}

TEST_F(Optimize, WarmAfterChanges) {
  optimum(lp);
  change_bound(0, 'U', 2);
  EXPECT_NEAR(optimum(lp), 6 + 2 * 5.0 / 3.0, 1e-9);
  // A new row and a new column enter the basis kept.
  add_row(1, 'L', 1);
  EXPECT_NEAR(optimum(lp), 8.0, 1e-9);
  const double cost = 10, one = 1;
  const int first = 0;
  EXPECT_EQ(KLVaddcols(env, lp, 1, 1, &cost, &first, &first, &one, nullptr, nullptr, nullptr), 0);
  EXPECT_NEAR(optimum(lp), 40.0, 1e-9);
  EXPECT_EQ(KLVdelrows(env, lp, 0, 0), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_UNBOUNDED);
}

// What a run keeps for the next one must not outlive the edit that contradicts it.
TEST_F(Optimize, EveryKindOfEditReachesTheKeptWorkingProblem) {
  set(KLV_PARAM_PREIND, 0);
  double before = optimum(lp);
  static const int kRows[] = {0, 1};
  static const double kRanges[] = {-2}, kCosts[] = {-1, 2};
  const struct {
    const char* what;
    int (*edit)(KLVenv, KLVprob);
  } kEdits[] = {
      {"right-hand side", [](KLVenv e, KLVprob p) { return KLVchgcoef(e, p, 0, -1, 5.0); }},
      {"senses", [](KLVenv e, KLVprob p) { return KLVchgsense(e, p, 2, kRows, "RG"); }},
      {"objective sense", [](KLVenv e, KLVprob p) { return KLVchgobjsen(e, p, 1); }},
      {"ranges", [](KLVenv e, KLVprob p) { return KLVchgrngval(e, p, 1, kRows, kRanges); }},
      {"costs", [](KLVenv e, KLVprob p) { return KLVchgobj(e, p, 2, kRows, kCosts); }},
      {"a coefficient", [](KLVenv e, KLVprob p) { return KLVchgcoef(e, p, 1, 0, 4.0); }},
  };
  for (const auto& each : kEdits) {
    SCOPED_TRACE(each.what);
    ASSERT_EQ(each.edit(env, lp), 0);
    EXPECT_EQ(KLVgetstat(env, lp), 0);
    KLVprob copy = clone();
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    set(KLV_PARAM_ADVIND, 0);
    ASSERT_EQ(KLVdualopt(env, copy), 0);
    set(KLV_PARAM_ADVIND, 1);
    ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    EXPECT_NEAR(objective(), objective(copy), 1e-9);
    EXPECT_GT(std::fabs(objective() - before), 0.1) << "the edit matters";
    before = objective();
    EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  }
}

int count_calls(KLVenv, void*, int wherefrom, void* handle) {
  auto* const calls = static_cast<int*>(handle);
  EXPECT_TRUE(wherefrom == 1 || wherefrom == 2);
  return ++*calls >= 2;
}

TEST_F(Optimize, Stops) {
  const auto status_of = [&](auto optimize) {
    EXPECT_EQ(optimize(env, lp), 0);
    return KLVgetstat(env, lp);
  };
  set(KLV_PARAM_ITLIM, 0);
  EXPECT_EQ(status_of(KLVdualopt), KLV_STATUS_ITERATION_LIMIT);
  EXPECT_EQ(KLVgetitcnt(env, lp), 0);
  set(KLV_PARAM_ITLIM, 2100000000);

  volatile int flag = 1;
  EXPECT_EQ(KLVsetterminate(env, &flag), 0);
  EXPECT_EQ(status_of(KLVlpopt), KLV_STATUS_USER_ABORTED);
  flag = 0;
  set(KLV_PARAM_TILIM, 0.0);
  EXPECT_EQ(status_of(KLVdualopt), KLV_STATUS_TIME_LIMIT);
  set(KLV_PARAM_TILIM, 1e75);

  int calls = 0;
  EXPECT_EQ(KLVsetlpcallbackfunc(env, count_calls, &calls), 0);
  EXPECT_EQ(status_of(KLVdualopt), KLV_STATUS_USER_ABORTED);
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(KLVsetlpcallbackfunc(env, nullptr, nullptr), 0);
  EXPECT_EQ(status_of(KLVdualopt), KLV_STATUS_OPTIMAL);
  EXPECT_NEAR(objective(), 11.0, 1e-9);
}

TEST_F(Optimize, ObjectiveLimits) {
  // Maximization: the dual simplex stops once the bound 11 is below the lower limit. A column that
  // presolve fixes at a cost of 100 moves the objective of what is left, not that of the problem.
  for (const double fixed : {0.0, 100.0}) {
    SCOPED_TRACE(fixed);
    load();
    set(KLV_PARAM_ADVIND, 0);
    const double one = 1;
    EXPECT_EQ(KLVnewcols(env, lp, 1, &fixed, &one, &one, nullptr, nullptr), 0);
    for (const auto& [limit, status] :
         {std::pair(12.0, KLV_STATUS_OBJECTIVE_LIMIT), {10.0, KLV_STATUS_OPTIMAL}}) {
      set(KLV_PARAM_OBJLLIM, limit + fixed);
      ASSERT_EQ(KLVdualopt(env, lp), 0);
      EXPECT_EQ(KLVgetstat(env, lp), status);
    }
  }
}

TEST_F(Optimize, LogFollowsTheDisplayParameter) {
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_TRUE(contains(log, "\nIteration log . . .\n"));
  EXPECT_TRUE(contains(take(log), "Dual objective"));
  set(KLV_PARAM_SIMDISPLAY, 0);
  set(KLV_PARAM_ADVIND, 0);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(log, "");
}

TEST_F(Optimize, ConcurrentIsNotForRepeatableRuns) {
  int highest = 0;
  EXPECT_EQ(KLVinfointparam(env, KLV_PARAM_THREADS, nullptr, nullptr, &highest), 0);
  if (highest < 2) GTEST_SKIP() << "one processor";
  set(KLV_PARAM_THREADS, 2);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(take(warnings),
            "concurrent optimizer may be non-deterministic; using Simplex instead\n");
  set(KLV_PARAM_PARALLELMODE, -1);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(warnings, "");
}

}  // namespace
