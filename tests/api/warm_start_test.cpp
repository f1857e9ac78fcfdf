// A second optimization starts from the basis of the first: few iterations after small changes, the
// same answer as from scratch, and the log says what it started from.
#include "random_lp.h"

namespace {

class WarmStart : public ProblemTest {
 protected:
  struct Counts {
    int warm = 0;
    int cold = 0;
  };

  /// Solves the problem as it stands from its basis, a copy of it from scratch, and compares.
  void compare(Counts& counts) {
    int status = 0;
    KLVprob copy = KLVcloneprob(env, lp, &status);
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 0), 0);
    ASSERT_EQ(KLVdualopt(env, copy), 0);
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 1), 0);
    EXPECT_EQ(KLVgetstat(env, lp), KLVgetstat(env, copy));
    if (KLVgetstat(env, lp) == KLV_STATUS_OPTIMAL) {
      double warm = 0, cold = 0;
      EXPECT_EQ(KLVgetobjval(env, lp, &warm), 0);
      EXPECT_EQ(KLVgetobjval(env, copy, &cold), 0);
      EXPECT_NEAR(warm, cold, 1e-6 * (1 + std::fabs(cold)));
    }
    counts.warm += KLVgetitcnt(env, lp);
    counts.cold += KLVgetitcnt(env, copy);
    EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  }
};

TEST_F(WarmStart, FewIterationsAfterChanges) {
  // Both sides without presolve, so that the counts are of the same thing.
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_PREIND, 0), 0);
  enum { kRhs, kBound, kCost, kRow, kColumn, kDeleted, kKinds };
  Counts counts[kKinds];
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const DenseLp data = random_lp(seed, {.m = 40, .n = 60});
    data.load(env, lp);
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    const int row = static_cast<int>(seed % 40), column = static_cast<int>(seed * 7 % 60);
    const double rhs = data.rhs[row] + (data.senses[row] == 'G' ? -1.0 : 1.0);
    ASSERT_EQ(KLVchgrhs(env, lp, 1, &row, &rhs), 0);
    compare(counts[kRhs]);
    const double lower = data.lb[column] > -kNone ? data.lb[column] - 1 : -1;
    ASSERT_EQ(KLVchgbds(env, lp, 1, &column, "L", &lower), 0);
    compare(counts[kBound]);
    const double cost = data.obj[column] + (seed % 2 ? 1.5 : -1.5);
    ASSERT_EQ(KLVchgobj(env, lp, 1, &column, &cost), 0);
    compare(counts[kCost]);
    // A row that cuts the solution off, then an attractive column.
    std::vector<double> x(60);
    ASSERT_EQ(KLVgetx(env, lp, x.data(), 0, 59), 0);
    std::vector<int> index(60);
    std::vector<double> value(60);
    double activity = 0;
    for (int j = 0; j < 60; ++j) {
      index[j] = j;
      value[j] = 1 + (j * 5 + seed) % 7;
      activity += value[j] * x[j];
    }
    const int begin = 0;
    const double cut = activity - 0.5;
    ASSERT_EQ(KLVaddrows(env, lp, 0, 1, 60, &cut, "L", &begin, index.data(), value.data(), nullptr,
                         nullptr),
              0);
    compare(counts[kRow]);
    const double price = -5 * data.sense, one = 1;
    ASSERT_EQ(KLVaddcols(env, lp, 1, 1, &price, &begin, &row, &one, nullptr, &one, nullptr), 0);
    compare(counts[kColumn]);
    ASSERT_EQ(KLVdelrows(env, lp, 40, 40), 0);
    compare(counts[kDeleted]);
  }
  for (const Counts& count : counts) {
    EXPECT_LT(4 * count.warm, count.cold) << "kind " << &count - counts;
    EXPECT_GT(count.cold, 100);
  }
}

TEST_F(WarmStart, NothingToDoTakesNoIteration) {
  const DenseLp data = random_lp(4, {.m = 40, .n = 60, .wide_scales = true});
  data.load(env, lp);
  // Presolve leaves a basis without a factor.
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_PREIND, 0), 0);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(log.find("Start basis"), std::string::npos);
  for (const auto optimize : {KLVdualopt, KLVprimopt, KLVlpopt}) {
    take(log);
    ASSERT_EQ(optimize(env, lp), 0);
    EXPECT_EQ(KLVgetitcnt(env, lp), 0);
    EXPECT_NE(log.find("Start basis given, factor kept.\n"), std::string::npos) << log;
  }
  // A copy has the basis but not the factor; so has the problem after a change of the matrix.
  int status = 0;
  KLVprob copy = KLVcloneprob(env, lp, &status);
  take(log);
  ASSERT_EQ(KLVdualopt(env, copy), 0);
  EXPECT_EQ(KLVgetitcnt(env, copy), 0);
  EXPECT_NE(log.find("Start basis given.\n"), std::string::npos) << log;
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 0), 0);
  take(log);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(log.find("Start basis"), std::string::npos);
}

TEST_F(WarmStart, DeletingRowsWhoseSlackIsNotBasicLeavesTooManyBasicVariables) {
  const DenseLp data = random_lp(8, {.m = 20, .n = 30});
  data.load(env, lp);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  int tight = -1, row = 0;
  for (int i = 0; i < 20 && tight < 0; ++i) {
    if (KLVgetijrow(env, lp, i, -1, &row) == 1251) tight = i;
  }
  ASSERT_GE(tight, 0);
  ASSERT_EQ(KLVdelrows(env, lp, tight, tight), 0);
  take(log);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_NE(
      log.find("Start basis has 20 basic variables for 19 rows; slacks and columns leave it.\n"),
      std::string::npos)
      << log;
}

}  // namespace
