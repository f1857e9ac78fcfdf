// Bases and norms from which an optimization starts.
#include <cmath>

#include "prob_fixture.h"

namespace {

struct Basis {
  std::vector<int> columns = {-1, -1}, rows = {-1, -1};
  bool operator==(const Basis&) const = default;
};

// The optimum (3, 1): x nonbasic at its upper bound, y basic, the first slack nonbasic.
const Basis kOptimal{{2, 1}, {0, 1}};

class StartBasis : public SmallLp {
 protected:
  Basis stored() {
    Basis basis;
    EXPECT_EQ(KLVgetbase(env, lp, basis.columns.data(), basis.rows.data()), 0);
    return basis;
  }
  void copy(const Basis& basis) {
    ASSERT_EQ(KLVcopybase(env, lp, basis.columns.data(), basis.rows.data()), 0);
  }
};

TEST_F(StartBasis, IsReadBackAfterAnOptimization) {
  Basis none;
  EXPECT_EQ(KLVgetbase(env, lp, none.columns.data(), none.rows.data()), 1262);
  EXPECT_EQ(errors, "KELVO Error  1262: No basis exists.\n");
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(stored(), kOptimal);
  EXPECT_EQ(KLVgetbase(env, lp, none.columns.data(), nullptr), 0);
  EXPECT_EQ(none.columns, kOptimal.columns);
}

TEST_F(StartBasis, IsUsedByTheNextOptimization) {
  for (const auto optimize : {&KLVprimopt, &KLVdualopt, &KLVlpopt}) {
    load();
    copy(kOptimal);
    EXPECT_EQ(stored(), kOptimal);
    ASSERT_EQ(optimize(env, lp), 0);
    EXPECT_EQ(KLVgetitcnt(env, lp), 0);
    EXPECT_EQ(objective(), 11.0);
    // Another basis in place of the optimal one, and the optimum is found again.
    copy({{0, 0}, {1, 1}});
    EXPECT_EQ(objective(), 11.0) << "the solution stays until the next optimization";
    int type = -1;
    EXPECT_EQ(KLVsolninfo(env, lp, nullptr, &type, nullptr, nullptr), 0);
    EXPECT_EQ(type, KLV_SOLUTION_NONBASIC) << "the basis is not that of the solution any more";
    ASSERT_EQ(optimize(env, lp), 0);
    EXPECT_GT(KLVgetitcnt(env, lp), 0);
    EXPECT_EQ(stored(), kOptimal);
    // The parameter says: no advanced start.
    set(KLV_PARAM_ADVIND, 0);
    set(KLV_PARAM_PREIND, 0);
    ASSERT_EQ(optimize(env, lp), 0);
    EXPECT_GT(KLVgetitcnt(env, lp), 0);
    ASSERT_EQ(KLVsetdefaults(env), 0);
  }
}

TEST_F(StartBasis, IsChecked) {
  const int codes[] = {1, 4}, rows[] = {1, 1};
  EXPECT_EQ(KLVcopybase(env, lp, nullptr, rows), 1004);
  EXPECT_EQ(KLVcopybase(env, lp, rows, nullptr), 1004);
  EXPECT_EQ(KLVcopybase(env, lp, codes, rows), 0) << "without data checking";
  EXPECT_EQ(optimum(lp), 11.0);
  check_data();
  take(errors);
  EXPECT_EQ(KLVcopybase(env, lp, codes, rows), 1253);
  EXPECT_EQ(errors, "KELVO Error  1253: Invalid status entry 1 for basis specification.\n");
  EXPECT_EQ(stored(), kOptimal) << "the basis stays";

  const double values[] = {1, 1};
  const int first[] = {0, 0}, second[] = {1, 1};
  EXPECT_EQ(KLVaddqconstr(env, lp, 0, 1, 1, 'L', nullptr, nullptr, first, second, values, nullptr),
            0);
  EXPECT_EQ(KLVcopybase(env, lp, rows, rows), 1031);
  EXPECT_EQ(KLVchgprobtype(env, lp, 1), 0);
  EXPECT_EQ(KLVcopybase(env, lp, rows, rows), 1017);
  EXPECT_EQ(KLVcopypnorms(env, lp, values, values, 2), 1017);
  EXPECT_EQ(KLVcopydnorms(env, lp, values, rows, 2), 1017);
  // A quadratic objective is no obstacle.
  EXPECT_EQ(KLVchgprobtype(env, lp, 5), 0);
  EXPECT_EQ(KLVcopybase(env, lp, rows, rows), 0);
}

TEST_F(StartBasis, NormsAreCheckedAndUsed) {
  const double norms[] = {1.5, 2.5, 1}, bad[] = {1, -INFINITY};
  const int head[] = {1, -2}, no_row[] = {1, -3}, no_column[] = {2, -1};
  EXPECT_EQ(KLVcopypnorms(env, lp, norms, norms, 2), 1262);
  EXPECT_EQ(KLVcopydnorms(env, lp, norms, head, 2), 1262);
  const Basis start{{0, 1}, {0, 1}};
  copy(start);
  EXPECT_EQ(KLVcopypnorms(env, lp, norms, norms, 3), 1208);
  EXPECT_EQ(KLVcopydnorms(env, lp, norms, head, 3), 1208);
  EXPECT_EQ(KLVcopypnorms(env, lp, nullptr, norms, 2), 1004);
  EXPECT_EQ(KLVcopydnorms(env, lp, norms, nullptr, 2), 1004);
  EXPECT_EQ(KLVcopydnorms(env, lp, norms, no_row, 2), 1203);
  EXPECT_EQ(KLVcopydnorms(env, lp, norms, no_column, 2), 1201);
  check_data();
  EXPECT_EQ(KLVcopypnorms(env, lp, norms, bad, 2), 1233);

  // Norms that are given are not computed, as the log tells.
  set(KLV_PARAM_DPRIIND, 2);
  set(KLV_PARAM_PPRIIND, 2);
  const auto says = [&](auto optimize, const char* words) {
    take(log);
    EXPECT_EQ(optimize(env, lp), 0);
    EXPECT_EQ(objective(), 11.0);
    return contains(log, words);
  };
  copy(start);
  EXPECT_TRUE(says(KLVdualopt, "Initializing dual steep norms"));
  copy(start);
  ASSERT_EQ(KLVcopydnorms(env, lp, norms, head, 2), 0);
  EXPECT_FALSE(says(KLVdualopt, "Initializing dual steep norms"));
  copy(start);
  EXPECT_TRUE(says(KLVprimopt, "Initializing primal norms"));
  copy(start);
  ASSERT_EQ(KLVcopypnorms(env, lp, norms, norms, 1), 0);
  EXPECT_FALSE(says(KLVprimopt, "Initializing primal norms"));
}

}  // namespace
