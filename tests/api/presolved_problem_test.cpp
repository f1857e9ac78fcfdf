// The presolved problem that a caller works with, and changes of the original meanwhile.
#include <algorithm>

#include "file_fixture.h"
#include "random_lp.h"

namespace {

class PresolvedInStep : public FileTest {
 protected:
  KLVprob reduced() {
    KLVprob found = nullptr;
    EXPECT_EQ(KLVgetredlp(env, lp, &found), 0);
    return found;
  }

  /// The optimum of the original by way of the reduced problem and back, with its duals.
  void expect_in_step(KLVprob small, const DenseLp& data, const std::vector<double>& cost) {
    double offset = 0.0;
    ASSERT_EQ(KLVpreslvwrite(env, lp, path("reduced.pre").c_str(), &offset), 0);
    const double value = optimum(small) + offset;
    const int m = KLVgetnumrows(env, small), n = KLVgetnumcols(env, small);
    std::vector<double> small_x(n + 1), small_pi(m + 1), x(data.n), pi(data.m), dj(data.n);
    ASSERT_EQ(KLVsolution(env, small, nullptr, nullptr, small_x.data(), small_pi.data(), nullptr,
                          nullptr),
              0);
    ASSERT_EQ(KLVuncrushx(env, lp, x.data(), small_x.data()), 0);
    ASSERT_EQ(KLVuncrushpi(env, lp, pi.data(), small_pi.data()), 0);
    ASSERT_EQ(KLVdjfrompi(env, lp, pi.data(), dj.data()), 0);
    double primal = 0.0, size = 1.0;
    for (int j = 0; j < data.n; ++j) {
      primal += cost[j] * x[j];
      size += std::fabs(cost[j] * x[j]);
    }
    expect_close(primal, value, size, "objective of the uncrushed point");
    // The uncrushed duals bound it from the other side.
    double dual = 0.0;
    for (int j = 0; j < data.n; ++j) {
      const double end = data.sense * dj[j] > 0 ? data.lb[j] : data.ub[j];
      if (std::fabs(dj[j]) > 1e-7) dual += dj[j] * end;
    }
    for (int i = 0; i < data.m; ++i) {
      const bool low = data.sense * pi[i] > 0;
      const double other = data.rhs[i] + data.rng[i];
      const double end = data.senses[i] != 'R' ? data.rhs[i]
                         : low                 ? std::min(data.rhs[i], other)
                                               : std::max(data.rhs[i], other);
      dual += pi[i] * end;
    }
    expect_close(dual, value, size, "objective of the uncrushed duals");
    int status = 0;
    KLVprob copy = KLVcloneprob(env, lp, &status);
    expect_close(optimum(copy), value, size, "optimum");
    EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  }
};

TEST_F(PresolvedInStep, FollowsTheObjectiveWhereItsReductionsAllow) {
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_REDUCE, 1), 0);
  int followed = 0, freed = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    DenseLp data = random_lp(seed, {.m = 8, .n = 10, .degenerate = seed % 2 == 0});
    // Bounds for all, so that every objective has an optimum; few entries in some of the rows.
    for (int j = 0; j < data.n; ++j) {
      if (data.lb[j] <= -kNone) data.lb[j] = data.ub[j] - 6;
      if (data.ub[j] >= kNone) data.ub[j] = data.lb[j] + 6;
    }
    data.load(env, lp);
    optimum(lp);
    std::vector<double> point(data.n);
    ASSERT_EQ(KLVgetx(env, lp, point.data(), 0, data.n - 1), 0);
    for (int i = 0; i < 4; ++i) {
      double lost = 0.0;
      for (int j = i + 2; j < data.n; ++j) {
        lost += data.a[i][j] * point[j];
        data.a[i][j] = 0.0;
      }
      data.rhs[i] -= lost;
    }
    data.load(env, lp);
    ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
    const KLVprob small = reduced();
    std::vector<int> columns;
    std::vector<double> cost;
    for (int j = 0; j < data.n; ++j) {
      columns.push_back(j);
      cost.push_back((j * 7 + static_cast<int>(seed) * 5) % 13 - 6);
    }
    ASSERT_EQ(KLVchgobj(env, lp, data.n, columns.data(), cost.data()), 0);
    if (reduced() == nullptr) {
      ++freed;
      continue;
    }
    ++followed;
    EXPECT_EQ(reduced(), small) << "the handle stays";
    expect_in_step(small, data, cost);
    // Any other change ends it.
    const double bound = data.lb[0];
    ASSERT_EQ(KLVchgbds(env, lp, 1, columns.data(), "L", &bound), 0);
    EXPECT_EQ(reduced(), nullptr);
  }
  EXPECT_GT(followed, 15);
  EXPECT_GT(freed, 0);
}

TEST_F(PresolvedInStep, OfDualReductionsEndsWithTheObjective) {
  const DenseLp data = random_lp(2, {.m = 8, .n = 10});
  data.load(env, lp);
  ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
  EXPECT_NE(reduced(), nullptr);
  const int column = 0;
  const double cost = data.obj[0] + 1;
  ASSERT_EQ(KLVchgobj(env, lp, 1, &column, &cost), 0);
  EXPECT_EQ(reduced(), nullptr);
}

}  // namespace
