// The presolved problem that a caller works with, and changes of the original meanwhile.
#include "random_lp.h"
#include "support/temporary_folder.h"

namespace {

class PresolvedInStep : public RandomLpTest {
 protected:
  KLVprob reduced() {
    KLVprob found = nullptr;
    EXPECT_EQ(KLVgetredlp(env, lp, &found), 0);
    return found;
  }

  /// The optimum of the original by way of the reduced problem and back, with its duals.
  void expect_in_step(KLVprob small, const std::vector<double>& cost) {
    double offset = 0.0;
    ASSERT_EQ(KLVpreslvwrite(env, lp, folder.path("reduced.pre").c_str(), &offset), 0);
    const double value = optimum(small) + offset;
    std::vector<double> small_x = columns(KLVgetx, small), small_pi = rows(KLVgetpi, small),
                        x(data.n), pi(data.m), dj(data.n);
    small_x.push_back(0), small_pi.push_back(0);  // an empty array would have no address
    ASSERT_EQ(KLVuncrushx(env, lp, x.data(), small_x.data()), 0);
    ASSERT_EQ(KLVuncrushpi(env, lp, pi.data(), small_pi.data()), 0);
    ASSERT_EQ(KLVdjfrompi(env, lp, pi.data(), dj.data()), 0);
    double primal = 0.0, dual = 0.0, size = 1.0;
    for (int j = 0; j < data.n; ++j) {
      primal += cost[j] * x[j];
      size += std::fabs(cost[j] * x[j]);
      const double end = data.sense * dj[j] > 0 ? data.lb[j] : data.ub[j];
      if (std::fabs(dj[j]) > 1e-7) dual += dj[j] * end;
    }
    expect_close(primal, value, size, "objective of the uncrushed point");
    // The uncrushed duals bound it from the other side.
    for (int i = 0; i < data.m; ++i) {
      const double other = data.senses[i] == 'R' ? data.rhs[i] + data.rng[i] : data.rhs[i];
      dual += pi[i] * (data.sense * pi[i] > 0 ? std::min(data.rhs[i], other)
                                              : std::max(data.rhs[i], other));
    }
    expect_close(dual, value, size, "objective of the uncrushed duals");
    KLVprob copy = clone();
    expect_close(optimum(copy), value, size, "optimum");
    EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  }

  TemporaryFolder folder;
};

TEST_F(PresolvedInStep, FollowsTheObjectiveWhereItsReductionsAllow) {
  set(KLV_PARAM_REDUCE, 1);
  int followed = 0, freed = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    data = random_lp(seed, {.m = 8, .n = 10, .degenerate = seed % 2 == 0});
    // Bounds for all, so that every objective has an optimum; few entries in some of the rows.
    for (int j = 0; j < data.n; ++j) {
      if (data.lb[j] <= -kNone) data.lb[j] = data.ub[j] - 6;
      if (data.ub[j] >= kNone) data.ub[j] = data.lb[j] + 6;
    }
    data.load(env, lp);
    optimum(lp);
    const std::vector<double> point = columns(KLVgetx);
    for (int i = 0; i < 4; ++i) {
      for (int j = i + 2; j < data.n; ++j) {
        data.rhs[i] -= data.a[i][j] * point[j];
        data.a[i][j] = 0.0;
      }
    }
    data.load(env, lp);
    ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
    const KLVprob small = reduced();
    std::vector<int> list;
    std::vector<double> cost;
    for (int j = 0; j < data.n; ++j) {
      list.push_back(j);
      cost.push_back((j * 7 + static_cast<int>(seed) * 5) % 13 - 6);
    }
    ASSERT_EQ(KLVchgobj(env, lp, data.n, list.data(), cost.data()), 0);
    if (reduced() == nullptr) {
      ++freed;
      continue;
    }
    ++followed;
    EXPECT_EQ(reduced(), small) << "the handle stays";
    expect_in_step(small, cost);
    change_bound(0, 'L', data.lb[0]);
    EXPECT_EQ(reduced(), nullptr) << "any other change ends it";
  }
  EXPECT_GT(followed, 15);
  EXPECT_GT(freed, 0);
}

TEST_F(PresolvedInStep, OfDualReductionsEndsWithTheObjective) {
  load(2, {.m = 8, .n = 10});
  ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
  EXPECT_NE(reduced(), nullptr);
  change_cost(0, data.obj[0] + 1);
  EXPECT_EQ(reduced(), nullptr);
}

}  // namespace
