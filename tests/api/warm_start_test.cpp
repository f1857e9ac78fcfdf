// A second optimization starts from the basis of the first: few iterations after small changes, the
// same answer as from scratch, and the log says what it started from.
#include "random_lp.h"

namespace {

class WarmStart : public RandomLpTest {
 protected:
  struct Counts {
    int warm = 0;
    int cold = 0;
  };

  /// Solves the problem from its basis, a copy of it from scratch, and compares.
  void compare(Counts& counts) {
    KLVprob copy = clone();
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    set(KLV_PARAM_ADVIND, 0);
    ASSERT_EQ(KLVdualopt(env, copy), 0);
    set(KLV_PARAM_ADVIND, 1);
    EXPECT_EQ(KLVgetstat(env, lp), KLVgetstat(env, copy));
    if (KLVgetstat(env, lp) == KLV_STATUS_OPTIMAL) {
      EXPECT_NEAR(objective(), objective(copy), 1e-6 * (1 + std::fabs(objective(copy))));
    }
    counts.warm += KLVgetitcnt(env, lp);
    counts.cold += KLVgetitcnt(env, copy);
    EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  }
};

TEST_F(WarmStart, FewIterationsAfterChanges) {
  // Both sides without presolve, so that the counts are of the same thing.
  set(KLV_PARAM_PREIND, 0);
  enum { kRhs, kBound, kCost, kRow, kColumn, kDeleted, kKinds };
  Counts counts[kKinds];
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(seed);
    solve(seed, {.m = 40, .n = 60});
    const int row = static_cast<int>(seed % 40), column = static_cast<int>(seed * 7 % 60);
    change_rhs(row, data.rhs[row] + (data.senses[row] == 'G' ? -1.0 : 1.0));
    compare(counts[kRhs]);
    change_bound(column, 'L', data.lb[column] > -kNone ? data.lb[column] - 1 : -1);
    compare(counts[kBound]);
    change_cost(column, data.obj[column] + (seed % 2 ? 1.5 : -1.5));
    compare(counts[kCost]);
    // A row that cuts the solution off, then an attractive column.
    const std::vector<double> x = columns(KLVgetx);
    std::vector<int> index(60);
    std::vector<double> value(60);
    double cut = -0.5;
    for (int j = 0; j < 60; ++j) {
      index[j] = j;
      value[j] = 1 + (j * 5 + seed) % 7;
      cut += value[j] * x[j];
    }
    const int begin = 0;
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
  const auto starts = [&](auto optimize, KLVprob of) {
    take(log);
    EXPECT_EQ(optimize(env, of), 0);
    return log.substr(std::min(log.find("Start basis"), log.size()), 32);
  };
  // Presolve leaves a basis without a factor.
  set(KLV_PARAM_PREIND, 0);
  load(4, {.m = 40, .n = 60, .wide_scales = true});
  EXPECT_EQ(starts(KLVdualopt, lp), "");
  for (const auto optimize : {KLVdualopt, KLVprimopt, KLVlpopt}) {
    EXPECT_EQ(starts(optimize, lp), "Start basis given, factor kept.\n");
    EXPECT_EQ(KLVgetitcnt(env, lp), 0);
  }
  // A copy has the basis but not the factor.
  KLVprob copy = clone();
  EXPECT_EQ(starts(KLVdualopt, copy).substr(0, 19), "Start basis given.\n");
  EXPECT_EQ(KLVgetitcnt(env, copy), 0);
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);
  set(KLV_PARAM_ADVIND, 0);
  EXPECT_EQ(starts(KLVdualopt, lp), "");
}

TEST_F(WarmStart, DeletingRowsWhoseSlackIsNotBasicLeavesTooManyBasicVariables) {
  solve(8, {.m = 20, .n = 30});
  int tight = 0;
  while (basic(-tight - 1)) ++tight;
  ASSERT_EQ(KLVdelrows(env, lp, tight, tight), 0);
  take(log);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_TRUE(contains(
      log, "Start basis has 20 basic variables for 19 rows; slacks and columns leave it.\n"))
      << log;
}

}  // namespace
