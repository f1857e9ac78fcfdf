// Bases and norms from which an optimization starts.
#include <cmath>
#include <vector>

#include "lp_fixture.h"

namespace {

struct Basis {
  std::vector<int> columns = {-1, -1}, rows = {-1, -1};
  bool operator==(const Basis&) const = default;
};

Basis read_basis(const SmallLp& small) {
  Basis basis;
  EXPECT_EQ(KLVgetbase(small.env, small.lp, basis.columns.data(), basis.rows.data()), 0);
  return basis;
}

// The optimum (3, 1): x nonbasic at its upper bound, y basic, the first slack nonbasic.
const Basis kOptimal{{2, 1}, {0, 1}};

TEST(StartBasis, IsReadBackAfterAnOptimization) {
  SmallLp small;
  Basis none;
  EXPECT_EQ(KLVgetbase(small.env, small.lp, none.columns.data(), none.rows.data()), 1262);
  EXPECT_EQ(small.errors, "KELVO Error  1262: No basis exists.\n");
  ASSERT_EQ(KLVlpopt(small.env, small.lp), 0);
  EXPECT_EQ(read_basis(small), kOptimal);
  EXPECT_EQ(KLVgetbase(small.env, small.lp, none.columns.data(), nullptr), 0);
  EXPECT_EQ(none.columns, kOptimal.columns);
}

TEST(StartBasis, IsUsedByTheNextOptimization) {
  for (const auto optimize : {&KLVprimopt, &KLVdualopt, &KLVlpopt}) {
    SmallLp small;
    ASSERT_EQ(KLVcopybase(small.env, small.lp, kOptimal.columns.data(), kOptimal.rows.data()), 0);
    EXPECT_EQ(read_basis(small), kOptimal);
    ASSERT_EQ(optimize(small.env, small.lp), 0);
    EXPECT_EQ(KLVgetitcnt(small.env, small.lp), 0);
    EXPECT_EQ(small.objective(), 11.0);
    // Another basis in place of the optimal one, and the optimum is found again.
    const Basis slack{{0, 0}, {1, 1}};
    ASSERT_EQ(KLVcopybase(small.env, small.lp, slack.columns.data(), slack.rows.data()), 0);
    EXPECT_EQ(small.objective(), 11.0) << "the solution stays until the next optimization";
    int type = -1;
    EXPECT_EQ(KLVsolninfo(small.env, small.lp, nullptr, &type, nullptr, nullptr), 0);
    EXPECT_EQ(type, KLV_SOLUTION_NONBASIC) << "the basis is not that of the solution any more";
    ASSERT_EQ(optimize(small.env, small.lp), 0);
    EXPECT_GT(KLVgetitcnt(small.env, small.lp), 0);
    EXPECT_EQ(read_basis(small), kOptimal);
    // The parameter says: no advanced start.
    ASSERT_EQ(KLVsetintparam(small.env, KLV_PARAM_ADVIND, 0), 0);
    ASSERT_EQ(KLVsetintparam(small.env, KLV_PARAM_PREIND, 0), 0);
    ASSERT_EQ(optimize(small.env, small.lp), 0);
    EXPECT_GT(KLVgetitcnt(small.env, small.lp), 0);
  }
}

TEST(StartBasis, IsChecked) {
  SmallLp small;
  const int codes[] = {1, 4}, rows[] = {1, 1};
  EXPECT_EQ(KLVcopybase(small.env, small.lp, nullptr, rows), 1004);
  EXPECT_EQ(KLVcopybase(small.env, small.lp, rows, nullptr), 1004);
  EXPECT_EQ(KLVcopybase(small.env, small.lp, codes, rows), 0) << "without data checking";
  ASSERT_EQ(KLVlpopt(small.env, small.lp), 0);
  EXPECT_EQ(small.objective(), 11.0);
  ASSERT_EQ(KLVsetintparam(small.env, KLV_PARAM_DATACHECK, 1), 0);
  small.errors.clear();
  EXPECT_EQ(KLVcopybase(small.env, small.lp, codes, rows), 1253);
  EXPECT_EQ(small.errors, "KELVO Error  1253: Invalid status entry 1 for basis specification.\n");
  EXPECT_EQ(read_basis(small), kOptimal) << "the basis stays";

  const double values[] = {1, 1};
  const int first[] = {0, 0}, second[] = {1, 1};
  EXPECT_EQ(KLVaddqconstr(small.env, small.lp, 0, 1, 1, 'L', nullptr, nullptr, first, second,
                          values, nullptr),
            0);
  EXPECT_EQ(KLVcopybase(small.env, small.lp, rows, rows), 1031);
  EXPECT_EQ(KLVchgprobtype(small.env, small.lp, 1), 0);
  EXPECT_EQ(KLVcopybase(small.env, small.lp, rows, rows), 1017);
  EXPECT_EQ(KLVcopypnorms(small.env, small.lp, values, values, 2), 1017);
  EXPECT_EQ(KLVcopydnorms(small.env, small.lp, values, rows, 2), 1017);
  // A quadratic objective is no obstacle.
  EXPECT_EQ(KLVchgprobtype(small.env, small.lp, 5), 0);
  EXPECT_EQ(KLVcopybase(small.env, small.lp, rows, rows), 0);
}

TEST(StartBasis, NormsAreCheckedAndUsed) {
  SmallLp small;
  const double norms[] = {1.5, 2.5, 1}, bad[] = {1, -INFINITY};
  const int head[] = {1, -2}, no_row[] = {1, -3}, no_column[] = {2, -1};
  EXPECT_EQ(KLVcopypnorms(small.env, small.lp, norms, norms, 2), 1262);
  EXPECT_EQ(KLVcopydnorms(small.env, small.lp, norms, head, 2), 1262);
  const Basis start{{0, 1}, {0, 1}};
  const auto copy = [&] {
    ASSERT_EQ(KLVcopybase(small.env, small.lp, start.columns.data(), start.rows.data()), 0);
  };
  copy();
  EXPECT_EQ(KLVcopypnorms(small.env, small.lp, norms, norms, 3), 1208);
  EXPECT_EQ(KLVcopydnorms(small.env, small.lp, norms, head, 3), 1208);
  EXPECT_EQ(KLVcopypnorms(small.env, small.lp, nullptr, norms, 2), 1004);
  EXPECT_EQ(KLVcopydnorms(small.env, small.lp, norms, nullptr, 2), 1004);
  EXPECT_EQ(KLVcopydnorms(small.env, small.lp, norms, no_row, 2), 1203);
  EXPECT_EQ(KLVcopydnorms(small.env, small.lp, norms, no_column, 2), 1201);
  ASSERT_EQ(KLVsetintparam(small.env, KLV_PARAM_DATACHECK, 1), 0);
  EXPECT_EQ(KLVcopypnorms(small.env, small.lp, norms, bad, 2), 1233);

  // Norms that are given are not computed, as the log tells.
  ASSERT_EQ(KLVsetintparam(small.env, KLV_PARAM_DPRIIND, 2), 0);
  ASSERT_EQ(KLVsetintparam(small.env, KLV_PARAM_PPRIIND, 2), 0);
  const auto log_of = [&](auto optimize) {
    small.log.clear();
    EXPECT_EQ(optimize(small.env, small.lp), 0);
    EXPECT_EQ(small.objective(), 11.0);
    return small.log;
  };
  copy();
  EXPECT_NE(log_of(KLVdualopt).find("Initializing dual steep norms"), std::string::npos);
  copy();
  ASSERT_EQ(KLVcopydnorms(small.env, small.lp, norms, head, 2), 0);
  EXPECT_EQ(log_of(KLVdualopt).find("Initializing dual steep norms"), std::string::npos);
  copy();
  EXPECT_NE(log_of(KLVprimopt).find("Initializing primal norms"), std::string::npos);
  copy();
  ASSERT_EQ(KLVcopypnorms(small.env, small.lp, norms, norms, 1), 0);
  EXPECT_EQ(log_of(KLVprimopt).find("Initializing primal norms"), std::string::npos);
}

}  // namespace
