// Parameters of the start and of storage: they change the way, never the answer.
#include "random_lp.h"

namespace {

class StartSettings : public ProblemTest {
 protected:
  StartSettings() { EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_PREIND, 0), 0); }

  /// Solves from scratch.
  double solve(bool primal) {
    EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 0), 0);
    EXPECT_EQ(primal ? KLVprimopt(env, lp) : KLVdualopt(env, lp), 0);
    EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    return objective();
  }
  /// Basic columns of the basis in which a run starts.
  int basic_columns_at_start() {
    set(KLV_PARAM_ITLIM, 0);
    EXPECT_EQ(KLVprimopt(env, lp), 0);
    set(KLV_PARAM_ITLIM, KLV_NO_COUNT_LIMIT);
    std::vector<int> codes(KLVgetnumcols(env, lp));
    EXPECT_EQ(KLVgetbase(env, lp, codes.data(), nullptr), 0);
    return static_cast<int>(std::count(codes.begin(), codes.end(), KLV_BASIS_BASIC));
  }
};

TEST_F(StartSettings, CrashBasesChangeTheStartAndNotTheAnswer) {
  int crashed = 0;
  for (unsigned seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE(seed);
    random_lp(seed, {.m = 10, .n = 16, .wide_scales = seed % 3 == 0}).load(env, lp);
    const double expected = solve(false);
    EXPECT_EQ(basic_columns_at_start(), 0);
    for (const int crash : {0, -1}) {
      set(KLV_PARAM_CRAIND, crash);
      crashed += basic_columns_at_start() > 0;
      for (const bool primal : {true, false}) expect_close(solve(primal), expected, expected, "");
      set(KLV_PARAM_PREIND, 1);
      expect_close(solve(true), expected, expected, "after presolve");
      set(KLV_PARAM_PREIND, 0);
    }
    set(KLV_PARAM_CRAIND, 1);
  }
  EXPECT_GT(crashed, 40);
}

TEST_F(StartSettings, MemoryEmphasisStoresTheMatrixCompactly) {
  constexpr int kMatrixCompression = 1066;
  for (unsigned seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    const DenseLp dense = random_lp(seed, {.m = 12, .n = 20, .wide_scales = seed % 2 == 0});
    dense.load(env, lp);
    set(KLV_PARAM_SCAIND, static_cast<int>(seed % 3) - 1);
    take(log);
    const double expected = solve(seed % 4 < 2);
    EXPECT_EQ(take(log).find("Compression"), std::string::npos);
    set(KLV_PARAM_MEMORYEMPHASIS, 1);
    expect_close(solve(seed % 4 < 2), expected, expected, "");
    EXPECT_NE(take(log).find("Compression reduced "), std::string::npos);
    // Rows of the tableau come from the columns then.
    std::vector<double> row(dense.n), plain(dense.n);
    ASSERT_EQ(KLVbinvarow(env, lp, 3, row.data()), 0);
    std::vector<double> y(dense.m);
    ASSERT_EQ(KLVbinvrow(env, lp, 3, y.data()), 0);
    for (int j = 0; j < dense.n; ++j) {
      double sum = 0.0, size = 0.0;
      for (int i = 0; i < dense.m; ++i) {
        sum += y[i] * dense.a[i][j];
        size += std::fabs(y[i] * dense.a[i][j]);
      }
      EXPECT_NEAR(row[j], sum, 1e-9 * (1 + size)) << j;
    }
    set(KLV_PARAM_DPRIIND, 3);
    expect_close(solve(false), expected, expected, "norms in the full space");
    set(KLV_PARAM_DPRIIND, 0);
    set(kMatrixCompression, -1);
    expect_close(solve(false), expected, expected, "");
    EXPECT_EQ(take(log).find("Compression"), std::string::npos);
    set(KLV_PARAM_MEMORYEMPHASIS, 0);
    set(kMatrixCompression, 1);
    expect_close(solve(false), expected, expected, "");
    EXPECT_NE(take(log).find("Compression time = "), std::string::npos);
    set(kMatrixCompression, 0);
  }
}

}  // namespace
