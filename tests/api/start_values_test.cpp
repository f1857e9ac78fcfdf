// Starts that are more, or less, than a whole basis: values, norms with a basis, parts of a basis;
// and what presolve makes of a start.
#include "random_lp.h"

namespace {

class StartValues : public RandomLpTest {
 protected:
  /// An optimal solution of lp and what it took.
  struct Solution {
    std::vector<double> x, pi, slack, dj;
    std::vector<int> cstat, rstat;
    double objective = 0.0;
    int iterations = 0;
  };

  StartValues() : between(60, 3), slacks(40, 1) {}
  void load_large(unsigned seed) { load(seed, {.m = 40, .n = 60}); }

  Solution solution() {
    EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    Solution s{columns(KLVgetx),  rows(KLVgetpi),           rows(KLVgetslack),
               columns(KLVgetdj), std::vector<int>(data.n), std::vector<int>(data.m),
               objective(),       KLVgetitcnt(env, lp)};
    EXPECT_EQ(KLVgetbase(env, lp, s.cstat.data(), s.rstat.data()), 0);
    return s;
  }
  Solution solved() {
    EXPECT_EQ(KLVlpopt(env, lp), 0);
    return solution();
  }
  /// Solves lp from the start it holds, expects the known optimum and returns the iterations.
  int iterations_to(double expected, int (*optimize)(KLVenv, KLVprob) = KLVlpopt) {
    EXPECT_EQ(optimize(env, lp), 0);
    EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    EXPECT_NEAR(objective(), expected, 1e-6 * (1.0 + std::fabs(expected)));
    return KLVgetitcnt(env, lp);
  }
  void start(const double* x, const double* slack = nullptr, const double* dj = nullptr,
             const double* pi = nullptr) {
    EXPECT_EQ(KLVcopystart(env, lp, nullptr, nullptr, x, slack, dj, pi), 0);
  }
  void start_between(const std::vector<double>& x) {
    EXPECT_EQ(
        KLVcopystart(env, lp, between.data(), slacks.data(), x.data(), nullptr, nullptr, nullptr),
        0);
  }

  const std::vector<int> between, slacks;
};

TEST_F(StartValues, AnOptimalPointOrItsDualsLeadBackToIt) {
  int cold = 0, from_x = 0, from_duals = 0, from_both = 0, from_slacks = 0;
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(seed);
    load_large(seed);
    const Solution s = solved();
    cold += s.iterations;
    start(s.x.data());
    from_x += iterations_to(s.objective);
    start(s.x.data(), s.slack.data());
    from_slacks += iterations_to(s.objective);
    start(nullptr, nullptr, s.dj.data(), s.pi.data());
    from_duals += iterations_to(s.objective);
    start(s.x.data(), nullptr, nullptr, s.pi.data());
    from_both += iterations_to(s.objective);
  }
  EXPECT_GT(cold, 200);
  EXPECT_LT(8 * from_x, cold);
  EXPECT_EQ(from_slacks, from_x);
  EXPECT_LT(4 * from_duals, cold);
  EXPECT_LT(8 * from_both, cold);
}

TEST_F(StartValues, ColumnsBetweenTheirBoundsStayWhereTheyAreTold) {
  load_large(3);
  set(KLV_PARAM_PREIND, 0);
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  const Solution s = solution();
  // The middle between the optimum and another vertex is feasible and no vertex.
  KLVprob other = clone();
  for (int j = 0; j < data.n; ++j) {
    const bool boxed = data.ub[j] < kNone && data.lb[j] > -kNone;
    change_cost(j, boxed ? -data.obj[j] : 0.0, other);
  }
  ASSERT_EQ(KLVprimopt(env, other), 0);
  std::vector<double> x = columns(KLVgetx, other);
  EXPECT_EQ(KLVfreeprob(env, &other), 0);
  double value = 0.0;
  for (int j = 0; j < data.n; ++j) {
    x[j] = 0.5 * (x[j] + s.x[j]);
    value += data.obj[j] * x[j];
  }
  ASSERT_GT(std::fabs(value - s.objective), 1.0);
  set(KLV_PARAM_ITLIM, 0);
  start_between(x);
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  expect_close(objective(), value, value, "objective of the start");
  start(x.data());
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  expect_close(objective(), value, value, "objective of the start");
  // A run that is stopped is taken up where it was.
  set(KLV_PARAM_ITLIM, 2);
  double last = value;
  for (int k = 0; k < 5; ++k) {
    ASSERT_EQ(KLVprimopt(env, lp), 0);
    EXPECT_LE(data.sense * objective(), data.sense * last + 1e-6 * (1.0 + std::fabs(last)));
    last = objective();
  }
  set(KLV_PARAM_ITLIM, 2100000000);
  iterations_to(s.objective, KLVprimopt);
}

TEST_F(StartValues, OfAnyKindLeadToTheOptimum) {
  for (unsigned seed = 0; seed < 8; ++seed) {
    SCOPED_TRACE(seed);
    load_large(seed);
    const Solution s = solved();
    std::vector<double> far(s.x), broken(s.x);
    for (int j = 0; j < data.n; ++j) far[j] = j % 2 ? 1e6 : -1e6;
    for (int j = 0; j < data.n; j += 3) broken[j] = j % 2 ? NAN : INFINITY;
    for (const auto optimize : {KLVlpopt, KLVprimopt, KLVdualopt}) {
      for (const std::vector<double>& x : {far, broken}) {
        start_between(x);
        iterations_to(s.objective, optimize);
        start(x.data());
        iterations_to(s.objective, optimize);
      }
      // One half of one side.
      start(nullptr, s.slack.data());
      iterations_to(s.objective, optimize);
      start(nullptr, nullptr, s.dj.data());
      iterations_to(s.objective, optimize);
    }
  }
}

TEST_F(StartValues, PresolveTakesAStartAlong) {
  const char kCrushed[] = "Start basis crushed through presolve.\n";
  int cold = 0, crushed = 0;
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(seed);
    load_large(seed);
    solve_again();
    const Solution s = solution();
    cold += s.iterations;
    set(KLV_PARAM_ADVIND, 2);
    take(log);
    crushed += iterations_to(s.objective);
    EXPECT_TRUE(contains(log, std::string(kCrushed) + "Start basis given.\n")) << log;
    // A start far from the optimum is crushed without being asked for, a close one is not.
    set(KLV_PARAM_ADVIND, 1);
    take(log);
    EXPECT_EQ(iterations_to(s.objective), 0);
    EXPECT_FALSE(contains(log, "crushed")) << log;
    std::vector<int> codes(data.n, 3);
    for (int j = 0; j < data.n; ++j) codes[j] = data.sense * data.obj[j] > 0 ? 2 : 0;
    ASSERT_EQ(KLVcopybase(env, lp, codes.data(), slacks.data()), 0);
    take(log);
    iterations_to(s.objective);
    EXPECT_TRUE(contains(log, kCrushed)) << log;
  }
  EXPECT_GT(cold, 200);
  EXPECT_EQ(crushed, 0);
}

TEST_F(StartValues, NormsComeWithABasisAndPartsOfOneAreCompleted) {
  load_large(5);
  solve_again();
  const Solution s = solution();
  // The exact norms, in the order of the columns and then the rows.
  std::vector<double> norms;
  for (int j = 0; j < data.n; ++j) {
    if (s.cstat[j] == 1) norms.push_back(dual_norm(-1, j));
  }
  for (int i = 0; i < data.m; ++i) {
    if (s.rstat[i] == 1) norms.push_back(dual_norm(i, -1));
  }
  set(KLV_PARAM_DPRIIND, 2);
  ASSERT_EQ(KLVcopybasednorms(env, lp, s.cstat.data(), s.rstat.data(), norms.data()), 0);
  change_cost(0, data.obj[0] + 100);
  take(log);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_FALSE(contains(log, "Initializing dual steep norms")) << log;
  EXPECT_FALSE(contains(log, "crushed")) << "norms hold for the basis as it is";
  EXPECT_EQ(KLVcopybasednorms(env, lp, s.cstat.data(), s.rstat.data(), nullptr), 1004);

  const int list[] = {4, 7}, row[] = {2}, codes[] = {1, 2}, tight[] = {0}, bad[] = {data.n};
  ASSERT_EQ(KLVcopypartialbase(env, lp, 2, list, codes, 1, row, tight), 0);
  std::vector<int> cstat(data.n), rstat(data.m), expected_c(data.n), expected_r = slacks;
  for (int j = 0; j < data.n; ++j) {
    expected_c[j] = std::fabs(data.ub[j]) < std::fabs(data.lb[j]) ? 2 : 0;
  }
  expected_c[4] = 1;
  expected_c[7] = 2;
  expected_r[2] = 0;
  ASSERT_EQ(KLVgetbase(env, lp, cstat.data(), rstat.data()), 0);
  EXPECT_EQ(cstat, expected_c);
  EXPECT_EQ(rstat, expected_r);
  EXPECT_EQ(KLVcopypartialbase(env, lp, -1, list, codes, 1, row, tight), 1003);
  EXPECT_EQ(KLVcopypartialbase(env, lp, 2, list, nullptr, 1, row, tight), 1004);
  EXPECT_EQ(KLVcopypartialbase(env, lp, 1, bad, codes, 0, nullptr, nullptr), 1201);
  EXPECT_EQ(KLVcopypartialbase(env, lp, 0, nullptr, nullptr, 1, bad, tight), 1203);
}

TEST_F(StartValues, AreChecked) {
  load_large(1);
  std::vector<int> codes(data.n, 0);
  std::vector<double> x(data.n, 0.0);
  EXPECT_EQ(KLVcopystart(env, lp, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1004);
  EXPECT_EQ(KLVcopystart(env, lp, codes.data(), nullptr, x.data(), nullptr, nullptr, nullptr),
            1004);
  EXPECT_EQ(KLVgetbase(env, lp, nullptr, nullptr), 1262) << "nothing has been stored";
  check_data();
  x[5] = NAN;
  EXPECT_EQ(KLVcopystart(env, lp, nullptr, nullptr, x.data(), nullptr, nullptr, nullptr), 1225);
  codes[3] = 7;
  EXPECT_EQ(KLVcopystart(env, lp, codes.data(), slacks.data(), nullptr, nullptr, nullptr, nullptr),
            1253);
}

TEST_F(StartValues, WeightsOfRowsToComeAreThoseTheyWillHave) {
  load_large(9);
  const int begin[] = {0, 3}, index[] = {0, 20, 59, 7, 8, 30};
  const double value[] = {2, -1, 3, 1, 1, -4}, rhs[] = {1e6, 1e6};
  double weight[] = {-1, -1};
  const auto weights = [&](int pricing) {
    return KLVgetweight(env, lp, 2, 6, begin, index, value, weight, pricing);
  };
  EXPECT_EQ(weights(2), 0) << "no basis";
  EXPECT_EQ(take(warnings), "Warning:  No weights computed.\n");
  EXPECT_EQ(weight[0], -1);
  solve_again();
  EXPECT_EQ(weights(1), 0);
  EXPECT_EQ(take(warnings), "Warning:  No weights computed.\n");
  EXPECT_EQ(weights(4), 0);
  EXPECT_EQ(weight[1], 1.0);
  EXPECT_EQ(weights(6), 1257);
  ASSERT_EQ(weights(2), 0);
  EXPECT_EQ(warnings, "");
  ASSERT_EQ(KLVaddrows(env, lp, 0, 2, 6, rhs, "LL", begin, index, value, nullptr, nullptr), 0);
  solve_again();
  ASSERT_EQ(KLVgetitcnt(env, lp), 0);
  for (int k = 0; k < 2; ++k) {
    const double norm = dual_norm(data.m + k, -1);
    expect_close(weight[k], norm, norm, "weight");
  }
}

}  // namespace
