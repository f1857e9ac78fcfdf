// Starts that are more, or less, than a whole basis: values, norms with a basis, parts of a basis;
// and what presolve makes of a start.
#include "random_lp.h"

namespace {

class StartValues : public ProblemTest {
 protected:
  /// An optimal solution of lp and what it took.
  struct Solution {
    std::vector<double> x, pi, slack, dj;
    std::vector<int> cstat, rstat;
    double objective = 0.0;
    int iterations = 0;
  };

  void load(unsigned seed) {
    data = random_lp(seed, {.m = 40, .n = 60});
    data.load(env, lp);
  }

  Solution solution(KLVprob solved) {
    Solution s;
    EXPECT_EQ(KLVgetstat(env, solved), KLV_STATUS_OPTIMAL);
    s.x.resize(data.n);
    s.dj.resize(data.n);
    s.cstat.resize(data.n);
    s.pi.resize(data.m);
    s.slack.resize(data.m);
    s.rstat.resize(data.m);
    EXPECT_EQ(KLVsolution(env, solved, nullptr, &s.objective, s.x.data(), s.pi.data(),
                          s.slack.data(), s.dj.data()),
              0);
    EXPECT_EQ(KLVgetbase(env, solved, s.cstat.data(), s.rstat.data()), 0);
    s.iterations = KLVgetitcnt(env, solved);
    return s;
  }

  /// Solves lp from the start it holds, expects the known optimum and returns the iterations.
  int iterations_to(double objective, int (*optimize)(KLVenv, KLVprob) = KLVlpopt) {
    EXPECT_EQ(optimize(env, lp), 0);
    const Solution s = solution(lp);
    EXPECT_NEAR(s.objective, objective, 1e-6 * (1.0 + std::fabs(objective)));
    return s.iterations;
  }

  DenseLp data;
};

TEST_F(StartValues, AnOptimalPointOrItsDualsLeadBackToIt) {
  int cold = 0, from_x = 0, from_duals = 0, from_both = 0, from_slacks = 0;
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    load(seed);
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    const Solution s = solution(lp);
    cold += s.iterations;
    const auto start = [&](const double* x, const double* slack, const double* dj,
                           const double* pi) {
      EXPECT_EQ(KLVcopystart(env, lp, nullptr, nullptr, x, slack, dj, pi), 0);
      return iterations_to(s.objective);
    };
    from_x += start(s.x.data(), nullptr, nullptr, nullptr);
    from_slacks += start(s.x.data(), s.slack.data(), nullptr, nullptr);
    from_duals += start(nullptr, nullptr, s.dj.data(), s.pi.data());
    from_both += start(s.x.data(), nullptr, nullptr, s.pi.data());
  }
  EXPECT_GT(cold, 200);
  EXPECT_LT(8 * from_x, cold);
  EXPECT_EQ(from_slacks, from_x);
  EXPECT_LT(4 * from_duals, cold);
  EXPECT_LT(8 * from_both, cold);
}

TEST_F(StartValues, ColumnsBetweenTheirBoundsStandWhereTheyAreTold) {
  load(3);
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_PREIND, 0), 0);
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  const Solution s = solution(lp);
  // The middle between the optimum and another vertex is feasible and no vertex.
  std::vector<double> minus(s.x.size());
  ASSERT_EQ(KLVgetobj(env, lp, minus.data(), 0, data.n - 1), 0);
  for (double& cost : minus) cost = -cost;
  std::vector<int> all(data.n), free_codes(data.n, 3), slacks(data.m, 1);
  for (int j = 0; j < data.n; ++j) all[j] = j;
  for (int j = 0; j < data.n; ++j) {
    if (std::fabs(data.ub[j]) >= kNone || std::fabs(data.lb[j]) >= kNone) minus[j] = 0.0;
  }
  int status = 0;
  KLVprob other = KLVcloneprob(env, lp, &status);
  ASSERT_EQ(KLVchgobj(env, other, data.n, all.data(), minus.data()), 0);
  ASSERT_EQ(KLVprimopt(env, other), 0);
  std::vector<double> x(data.n);
  ASSERT_EQ(KLVgetx(env, other, x.data(), 0, data.n - 1), 0);
  EXPECT_EQ(KLVfreeprob(env, &other), 0);
  double value = 0.0;
  for (int j = 0; j < data.n; ++j) {
    x[j] = 0.5 * (x[j] + s.x[j]);
    value += data.obj[j] * x[j];
  }
  ASSERT_GT(std::fabs(value - s.objective), 1.0);
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ITLIM, 0), 0);
  const auto expect_value = [&] {
    ASSERT_EQ(KLVprimopt(env, lp), 0);
    double objective = 0.0;
    ASSERT_EQ(KLVgetobjval(env, lp, &objective), 0);
    expect_close(objective, value, value, "objective of the start");
  };
  ASSERT_EQ(
      KLVcopystart(env, lp, free_codes.data(), slacks.data(), x.data(), nullptr, nullptr, nullptr),
      0);
  expect_value();
  ASSERT_EQ(KLVcopystart(env, lp, nullptr, nullptr, x.data(), nullptr, nullptr, nullptr), 0);
  expect_value();
  // A run that is stopped is taken up where it was.
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ITLIM, 2), 0);
  double last = value;
  for (int k = 0; k < 5; ++k) {
    ASSERT_EQ(KLVprimopt(env, lp), 0);
    double objective = 0.0;
    ASSERT_EQ(KLVgetobjval(env, lp, &objective), 0);
    EXPECT_LE(data.sense * objective, data.sense * last + 1e-6 * (1.0 + std::fabs(last)));
    last = objective;
  }
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ITLIM, 2100000000), 0);
  iterations_to(s.objective, KLVprimopt);
}

TEST_F(StartValues, OfAnyKindLeadToTheOptimum) {
  for (unsigned seed = 0; seed < 8; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    load(seed);
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    const Solution s = solution(lp);
    std::vector<double> far(s.x), broken(s.x);
    for (int j = 0; j < data.n; ++j) far[j] = j % 2 ? 1e6 : -1e6;
    for (int j = 0; j < data.n; j += 3) broken[j] = j % 2 ? NAN : INFINITY;
    const std::vector<int> between(data.n, 3), slacks(data.m, 1);
    for (const auto optimize : {KLVlpopt, KLVprimopt, KLVdualopt}) {
      for (const std::vector<double>& x : {far, broken}) {
        ASSERT_EQ(KLVcopystart(env, lp, between.data(), slacks.data(), x.data(), nullptr, nullptr,
                               nullptr),
                  0);
        iterations_to(s.objective, optimize);
        ASSERT_EQ(KLVcopystart(env, lp, nullptr, nullptr, x.data(), nullptr, nullptr, nullptr), 0);
        iterations_to(s.objective, optimize);
      }
      // One half of one side.
      ASSERT_EQ(KLVcopystart(env, lp, nullptr, nullptr, nullptr, s.slack.data(), nullptr, nullptr),
                0);
      iterations_to(s.objective, optimize);
      ASSERT_EQ(KLVcopystart(env, lp, nullptr, nullptr, nullptr, nullptr, s.dj.data(), nullptr), 0);
      iterations_to(s.objective, optimize);
    }
  }
}

TEST_F(StartValues, PresolveTakesAStartAlong) {
  int cold = 0, crushed = 0;
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    load(seed);
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    const Solution s = solution(lp);
    cold += s.iterations;
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 2), 0);
    take(log);
    crushed += iterations_to(s.objective);
    EXPECT_NE(log.find("Start basis crushed through presolve.\nStart basis given.\n"),
              std::string::npos)
        << log;
    // A start far from the optimum is crushed without being asked for, a close one is not.
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 1), 0);
    take(log);
    EXPECT_EQ(iterations_to(s.objective), 0);
    EXPECT_EQ(log.find("crushed"), std::string::npos) << log;
    std::vector<int> codes(data.n, 3), slacks(data.m, 1);
    for (int j = 0; j < data.n; ++j) codes[j] = data.sense * data.obj[j] > 0 ? 2 : 0;
    ASSERT_EQ(KLVcopybase(env, lp, codes.data(), slacks.data()), 0);
    take(log);
    iterations_to(s.objective);
    EXPECT_NE(log.find("Start basis crushed through presolve.\n"), std::string::npos) << log;
  }
  EXPECT_GT(cold, 200);
  EXPECT_EQ(crushed, 0);
}

TEST_F(StartValues, NormsComeWithABasisAndPartsOfOneAreCompleted) {
  load(5);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  const Solution s = solution(lp);
  // The exact norms, in the order of the columns and then the rows.
  std::vector<double> norms;
  const auto add_norm = [&](int row, int column) {
    int position = 0;
    std::vector<double> y(data.m);
    ASSERT_EQ(KLVgetijrow(env, lp, row, column, &position), 0);
    ASSERT_EQ(KLVbinvrow(env, lp, position, y.data()), 0);
    double norm = 0.0;
    for (const double entry : y) norm += entry * entry;
    norms.push_back(norm);
  };
  for (int j = 0; j < data.n; ++j) {
    if (s.cstat[j] == 1) add_norm(-1, j);
  }
  for (int i = 0; i < data.m; ++i) {
    if (s.rstat[i] == 1) add_norm(i, -1);
  }
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_DPRIIND, 2), 0);
  ASSERT_EQ(KLVcopybasednorms(env, lp, s.cstat.data(), s.rstat.data(), norms.data()), 0);
  const int column = 0;
  const double cost = data.obj[0] + 100;
  ASSERT_EQ(KLVchgobj(env, lp, 1, &column, &cost), 0);
  take(log);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(log.find("Initializing dual steep norms"), std::string::npos) << log;
  EXPECT_EQ(log.find("crushed"), std::string::npos) << "norms hold for the basis as it is";
  EXPECT_EQ(KLVcopybasednorms(env, lp, s.cstat.data(), s.rstat.data(), nullptr), 1004);

  const int columns[] = {4, 7}, rows[] = {2}, codes[] = {1, 2}, tight[] = {0};
  ASSERT_EQ(KLVcopypartialbase(env, lp, 2, columns, codes, 1, rows, tight), 0);
  std::vector<int> cstat(data.n), rstat(data.m);
  ASSERT_EQ(KLVgetbase(env, lp, cstat.data(), rstat.data()), 0);
  for (int j = 0; j < data.n; ++j) {
    if (j == 4 || j == 7) continue;
    EXPECT_EQ(cstat[j], std::fabs(data.ub[j]) < std::fabs(data.lb[j]) ? 2 : 0) << j;
  }
  EXPECT_EQ(cstat[4], 1);
  EXPECT_EQ(cstat[7], 2);
  for (int i = 0; i < data.m; ++i) EXPECT_EQ(rstat[i], i == 2 ? 0 : 1) << i;
  EXPECT_EQ(KLVcopypartialbase(env, lp, -1, columns, codes, 1, rows, tight), 1003);
  EXPECT_EQ(KLVcopypartialbase(env, lp, 2, columns, nullptr, 1, rows, tight), 1004);
  const int bad[] = {data.n};
  EXPECT_EQ(KLVcopypartialbase(env, lp, 1, bad, codes, 0, nullptr, nullptr), 1201);
  EXPECT_EQ(KLVcopypartialbase(env, lp, 0, nullptr, nullptr, 1, bad, tight), 1203);
}

TEST_F(StartValues, AreChecked) {
  load(1);
  const std::vector<int> columns(data.n, 0), rows(data.m, 1);
  std::vector<double> x(data.n, 0.0);
  EXPECT_EQ(KLVcopystart(env, lp, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1004);
  EXPECT_EQ(KLVcopystart(env, lp, columns.data(), nullptr, x.data(), nullptr, nullptr, nullptr),
            1004);
  EXPECT_EQ(KLVgetbase(env, lp, nullptr, nullptr), 1262) << "nothing has been stored";
  check_data();
  x[5] = NAN;
  EXPECT_EQ(KLVcopystart(env, lp, nullptr, nullptr, x.data(), nullptr, nullptr, nullptr), 1225);
  std::vector<int> bad(columns);
  bad[3] = 7;
  EXPECT_EQ(KLVcopystart(env, lp, bad.data(), rows.data(), nullptr, nullptr, nullptr, nullptr),
            1253);
}

TEST_F(StartValues, WeightsOfRowsToComeAreThoseTheyWillHave) {
  load(9);
  const int begin[] = {0, 3}, index[] = {0, 20, 59, 7, 8, 30};
  const double value[] = {2, -1, 3, 1, 1, -4}, rhs[] = {1e6, 1e6};
  double weight[] = {-1, -1};
  const auto weights = [&](int pricing) {
    return KLVgetweight(env, lp, 2, 6, begin, index, value, weight, pricing);
  };
  EXPECT_EQ(weights(2), 0) << "no basis";
  EXPECT_EQ(take(warnings), "Warning:  No weights computed.\n");
  EXPECT_EQ(weight[0], -1);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(weights(1), 0);
  EXPECT_EQ(take(warnings), "Warning:  No weights computed.\n");
  EXPECT_EQ(weights(4), 0);
  EXPECT_EQ(weight[1], 1.0);
  EXPECT_EQ(weights(6), 1257);
  ASSERT_EQ(weights(2), 0);
  EXPECT_EQ(warnings, "");
  ASSERT_EQ(KLVaddrows(env, lp, 0, 2, 6, rhs, "LL", begin, index, value, nullptr, nullptr), 0);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  ASSERT_EQ(KLVgetitcnt(env, lp), 0);
  for (int k = 0; k < 2; ++k) {
    int position = 0;
    std::vector<double> y(data.m + 2);
    ASSERT_EQ(KLVgetijrow(env, lp, data.m + k, -1, &position), 0);
    ASSERT_EQ(KLVbinvrow(env, lp, position, y.data()), 0);
    double norm = 0.0;
    for (const double entry : y) norm += entry * entry;
    expect_close(weight[k], norm, norm, "weight");
  }
}

}  // namespace
