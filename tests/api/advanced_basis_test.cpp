// The factor of the basis, against dense algebra on the caller's numbers.
#include <algorithm>

#include "random_lp.h"

namespace {

class AdvancedBasis : public ProblemTest {
 protected:
  /// B' of the basis header: columns of the basic variables.
  static std::vector<std::vector<double>> basis_columns(const DenseLp& data,
                                                        const std::vector<int>& head) {
    std::vector<std::vector<double>> columns;
    for (const int variable : head) columns.push_back(data.column(variable));
    return columns;
  }

  /// Sum of columns[p] * x[p] must be b.
  static void expect_product(const std::vector<std::vector<double>>& columns,
                             const std::vector<double>& x, const std::vector<double>& b,
                             const char* what) {
    for (std::size_t i = 0; i < b.size(); ++i) {
      double sum = 0.0, size = std::fabs(b[i]);
      for (std::size_t p = 0; p < columns.size(); ++p) {
        sum += columns[p][i] * x[p];
        size += std::fabs(columns[p][i] * x[p]);
      }
      EXPECT_NEAR(sum, b[i], 1e-9 * (1e-3 + size)) << what << ", row " << i;
    }
  }

  /// y'columns[p] must be c[p].
  static void expect_transposed(const std::vector<std::vector<double>>& columns,
                                const std::vector<double>& y, const std::vector<double>& c,
                                const char* what) {
    for (std::size_t p = 0; p < columns.size(); ++p) {
      double sum = 0.0, size = std::fabs(c[p]);
      for (std::size_t i = 0; i < y.size(); ++i) {
        sum += columns[p][i] * y[i];
        size += std::fabs(columns[p][i] * y[i]);
      }
      EXPECT_NEAR(sum, c[p], 1e-9 * (1e-3 + size)) << what << ", position " << p;
    }
  }

  void expect_dense_algebra(const DenseLp& data) {
    const int m = data.m, n = data.n;
    std::vector<int> head(m);
    std::vector<double> basic(m), x(m), y(m), z(n), slack(m), values(n);
    ASSERT_EQ(KLVgetbhead(env, lp, head.data(), basic.data()), 0);
    const auto columns = basis_columns(data, head);
    ASSERT_EQ(KLVgetx(env, lp, values.data(), 0, n - 1), 0);
    ASSERT_EQ(KLVgetslack(env, lp, slack.data(), 0, m - 1), 0);
    for (int p = 0; p < m; ++p) {
      const int v = head[p];
      EXPECT_EQ(basic[p], v >= 0 ? values[v] : slack[-v - 1]);
      int row = -1;
      EXPECT_EQ(KLVgetijrow(env, lp, v >= 0 ? -1 : -v - 1, v >= 0 ? v : -1, &row), 0);
      EXPECT_EQ(row, p);
    }
    for (int k = 0; k < m; ++k) {
      std::vector<double> unit(m, 0.0);
      unit[k] = 1.0;
      ASSERT_EQ(KLVbinvcol(env, lp, k, x.data()), 0);
      expect_product(columns, x, unit, "KLVbinvcol");
      ASSERT_EQ(KLVbinvrow(env, lp, k, y.data()), 0);
      expect_transposed(columns, y, unit, "KLVbinvrow");
      ASSERT_EQ(KLVbinvarow(env, lp, k, z.data()), 0);
      for (int j = 0; j < n; ++j) {
        double sum = 0.0, size = 0.0;
        for (int i = 0; i < m; ++i) {
          sum += y[i] * data.a[i][j];
          size += std::fabs(y[i] * data.a[i][j]);
        }
        EXPECT_NEAR(z[j], sum, 1e-9 * (1e-3 + size)) << "KLVbinvarow " << k << " column " << j;
      }
      ASSERT_EQ(KLVbinvacol(env, lp, -k - 1, x.data()), 0);
      expect_product(columns, x, data.column(-k - 1), "KLVbinvacol of a slack");
    }
    for (int j = 0; j < n; ++j) {
      ASSERT_EQ(KLVbinvacol(env, lp, j, x.data()), 0);
      expect_product(columns, x, data.column(j), "KLVbinvacol");
    }
    std::vector<double> right(m);
    for (int i = 0; i < m; ++i) right[i] = (i % 3 - 1) * (1.0 + i);
    x = right;
    ASSERT_EQ(KLVftran(env, lp, x.data()), 0);
    expect_product(columns, x, right, "KLVftran");
    y = right;
    ASSERT_EQ(KLVbtran(env, lp, y.data()), 0);
    expect_transposed(columns, y, right, "KLVbtran");
  }
};

TEST_F(AdvancedBasis, AgreesWithDenseAlgebra) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const DenseLp data = random_lp(
        seed, {.m = 5 + static_cast<int>(seed % 7), .n = 9, .wide_scales = seed % 2 == 0});
    data.load(env, lp);
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_SCAIND, static_cast<int>(seed % 3) - 1), 0);
    ASSERT_EQ(seed % 4 < 2 ? KLVdualopt(env, lp) : KLVprimopt(env, lp), 0);
    ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    expect_dense_algebra(data);
    if (::testing::Test::HasFailure()) return;
  }
}

TEST_F(AdvancedBasis, TheFactorOutlivesChangesOfNumbersButNotOfTheMatrix) {
  const DenseLp data = random_lp(3, {});
  data.load(env, lp);
  std::vector<double> x(data.m), again(data.m);
  EXPECT_EQ(KLVbinvcol(env, lp, 0, x.data()), 1258);
  EXPECT_EQ(KLVgetbhead(env, lp, nullptr, x.data()), 1217);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  ASSERT_EQ(KLVbinvcol(env, lp, 0, x.data()), 0);

  const int first = 0;
  const double rhs = data.rhs[0] + 1;
  ASSERT_EQ(KLVchgrhs(env, lp, 1, &first, &rhs), 0);
  ASSERT_EQ(KLVbinvcol(env, lp, 0, again.data()), 0);
  EXPECT_EQ(x, again);
  EXPECT_EQ(KLVgetbhead(env, lp, nullptr, x.data()), 1217);

  // A copy has the same basis and makes a factor of its own.
  int status = -1;
  ASSERT_EQ(KLVchgrhs(env, lp, 1, &first, &data.rhs[0]), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  KLVprob copy = KLVcloneprob(env, lp, &status);
  std::vector<int> head(data.m), copied_head(data.m);
  ASSERT_EQ(KLVgetbhead(env, lp, head.data(), nullptr), 0);
  ASSERT_EQ(KLVgetbhead(env, copy, copied_head.data(), nullptr), 0);
  std::sort(head.begin(), head.end());
  std::sort(copied_head.begin(), copied_head.end());
  EXPECT_EQ(head, copied_head);
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);

  ASSERT_EQ(KLVchgcoef(env, lp, 0, 0, 17.0), 0);
  EXPECT_EQ(KLVftran(env, lp, x.data()), 1258);
}

TEST_F(AdvancedBasis, SlackBasis) {
  const double obj[] = {1, 1}, rhs[] = {4, 6};
  ASSERT_EQ(KLVnewcols(env, lp, 2, obj, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(KLVnewrows(env, lp, 2, rhs, "LR", nullptr, nullptr), 0);
  const int rows[] = {0, 1, 1}, columns[] = {0, 0, 1};
  const double values[] = {1, 2, 1};
  ASSERT_EQ(KLVchgcoeflist(env, lp, 3, rows, columns, values), 0);
  const int second = 1;
  const double range = -10;
  ASSERT_EQ(KLVchgrngval(env, lp, 1, &second, &range), 0);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  int head[2];
  double x[2];
  ASSERT_EQ(KLVgetbhead(env, lp, head, x), 0);
  EXPECT_EQ(head[0], -1);
  EXPECT_EQ(head[1], -2);
  EXPECT_EQ(x[0], 4.0);
  EXPECT_EQ(x[1], -6.0);  // activity 0 minus right-hand side
  ASSERT_EQ(KLVbinvacol(env, lp, 0, x), 0);
  EXPECT_EQ(x[0], 1.0);
  EXPECT_EQ(x[1], -2.0);
}

TEST_F(AdvancedBasis, ProblemsWithoutRowsOrColumns) {
  const double obj[] = {1, -1}, upper[] = {3, 4}, rhs[] = {4, 1};
  ASSERT_EQ(KLVnewcols(env, lp, 2, obj, nullptr, upper, nullptr, nullptr), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  double low[2], high[2];
  EXPECT_EQ(KLVgetbhead(env, lp, nullptr, low), 0);
  EXPECT_EQ(KLVbinvcol(env, lp, 0, low), 1200);
  EXPECT_EQ(KLVbinvacol(env, lp, 0, low), 0);
  ASSERT_EQ(KLVobjsa(env, lp, 0, 1, low, high), 0);
  EXPECT_EQ(low[0], 0.0);
  EXPECT_EQ(high[0], kNone);
  EXPECT_EQ(low[1], -kNone);
  EXPECT_EQ(high[1], 0.0);
  EXPECT_EQ(KLVsetphase2(env, lp), 0);
  EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);

  ASSERT_EQ(KLVdelcols(env, lp, 0, 1), 0);
  ASSERT_EQ(KLVnewrows(env, lp, 2, rhs, "LR", nullptr, nullptr), 0);
  const int second = 1;
  const double range = -2;
  ASSERT_EQ(KLVchgrngval(env, lp, 1, &second, &range), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  int head[2];
  ASSERT_EQ(KLVgetbhead(env, lp, head, low), 0);
  EXPECT_EQ(low[0], 4.0);
  EXPECT_EQ(low[1], -1.0);
  ASSERT_EQ(KLVbinvcol(env, lp, 1, low), 0);
  EXPECT_EQ(low[1], -1.0);
  ASSERT_EQ(KLVrhssa(env, lp, 0, 1, low, high), 0);
  EXPECT_EQ(low[0], 0.0);
  EXPECT_EQ(high[0], kNone);
  EXPECT_EQ(low[1], 0.0);
  EXPECT_EQ(high[1], 2.0);
}

TEST_F(AdvancedBasis, ChecksOfArguments) {
  const DenseLp data = random_lp(5, {});
  data.load(env, lp);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  std::vector<double> x(data.m + data.n);
  int row = -7;
  for (const auto function : {KLVbinvcol, KLVbinvrow, KLVbinvarow}) {
    EXPECT_EQ(function(env, lp, -1, x.data()), 1200);
    EXPECT_EQ(function(env, lp, data.m, x.data()), 1200);
    EXPECT_EQ(function(env, lp, 0, nullptr), 1004);
    EXPECT_EQ(function(env, nullptr, 0, x.data()), 1009);
    EXPECT_EQ(function(nullptr, lp, 0, x.data()), 1002);
  }
  take(errors);
  EXPECT_EQ(KLVbinvacol(env, lp, data.n, x.data()), 1200);
  EXPECT_NE(errors.find("KLVbinvacol: 'end' value 12 is greater than 11"), std::string::npos)
      << errors;
  EXPECT_EQ(KLVbinvacol(env, lp, -data.m - 1, x.data()), 1200);
  EXPECT_EQ(KLVbinvacol(env, lp, -2147483647 - 1, x.data()), 1200);
  EXPECT_EQ(KLVftran(env, lp, nullptr), 1004);
  EXPECT_EQ(KLVgetijrow(env, lp, -1, -1, &row), 1200);
  EXPECT_EQ(KLVgetijrow(env, lp, 0, 0, &row), 1200);
  EXPECT_EQ(KLVgetijrow(env, lp, data.m, -1, &row), 1200);
  EXPECT_EQ(KLVgetijrow(env, lp, -1, data.n, &row), 1200);
  std::vector<int> head(data.m);
  ASSERT_EQ(KLVgetbhead(env, lp, head.data(), nullptr), 0);
  for (int j = 0; j < data.n; ++j) {
    const bool basic = std::count(head.begin(), head.end(), j) == 1;
    EXPECT_EQ(KLVgetijrow(env, lp, -1, j, &row), basic ? 0 : 1251);
  }
}

TEST_F(AdvancedBasis, FarkasCertificate) {
  std::vector<double> y(10);
  double proof = 0.0;
  EXPECT_EQ(KLVdualfarkas(env, lp, y.data(), &proof), 1265);
  int proofs = 0;
  for (unsigned seed = 0; seed < 30; ++seed) {
    DenseLp data = random_lp(seed, {.m = 8, .n = 9, .wide_scales = seed % 2 == 0});
    // One more equation that contradicts a combination of the others.
    for (int i = 0; i < 4; ++i) {
      if (data.senses[i] == 'E') continue;
      data.senses[i] = 'E';
      data.rhs[i] += 1e4 * (seed % 3 == 0 ? -1 : 1) * (1.0 + std::fabs(data.rhs[i]));
      break;
    }
    data.load(env, lp);
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    if (KLVgetstat(env, lp) != KLV_STATUS_INFEASIBLE) continue;
    ++proofs;
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    ASSERT_EQ(KLVdualfarkas(env, lp, y.data(), &proof), 0);
    double gap = 0.0;
    for (int i = 0; i < data.m; ++i) {
      const double end = data.rhs[i] + data.rng[i];
      double b = data.rhs[i];
      if (data.senses[i] == 'R') b = y[i] > 0 ? std::min(b, end) : std::max(b, end);
      EXPECT_TRUE(data.senses[i] != 'L' || y[i] <= 0.0);
      EXPECT_TRUE(data.senses[i] != 'G' || y[i] >= 0.0);
      gap += y[i] * b;
    }
    for (int j = 0; j < data.n; ++j) {
      double entry = 0.0, size = 0.0;
      for (int i = 0; i < data.m; ++i) {
        entry += y[i] * data.a[i][j];
        size += std::fabs(y[i] * data.a[i][j]);
      }
      if (std::fabs(entry) <= 1e-9 * size) continue;
      gap -= std::max(entry * data.lb[j], entry * data.ub[j]);
    }
    EXPECT_GT(proof, 0.0);
    EXPECT_NEAR(gap, proof, 1e-6 * (1.0 + std::fabs(proof)));
    EXPECT_EQ(KLVdualfarkas(env, lp, y.data(), nullptr), 0);
    EXPECT_EQ(KLVdualfarkas(env, lp, nullptr, nullptr), 1004);
  }
  EXPECT_GT(proofs, 20);
}

TEST_F(AdvancedBasis, UnboundedRay) {
  double z[3];
  EXPECT_EQ(KLVgetray(env, lp, z), 1217);
  // max x1 + x2 + x3,  2 x1 - 4 x2 <= 3,  x2 - x3 = 0,  x3 <= 5 (row 'R' with a wide range)
  const double obj[] = {1, 1, 1}, rhs[] = {3, 0};
  ASSERT_EQ(KLVnewcols(env, lp, 3, obj, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(KLVnewrows(env, lp, 2, rhs, "LE", nullptr, nullptr), 0);
  const int rows[] = {0, 0, 1, 1}, columns[] = {0, 1, 1, 2};
  const double values[] = {2, -4, 1, -1};
  ASSERT_EQ(KLVchgcoeflist(env, lp, 4, rows, columns, values), 0);
  ASSERT_EQ(KLVchgobjsen(env, lp, -1), 0);
  // Presolve only tells that the problem is infeasible or unbounded.
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_PREIND, 0), 0);
  for (const int scaling : {-1, 0, 1}) {
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_SCAIND, scaling), 0);
    ASSERT_EQ(KLVprimopt(env, lp), 0);
    ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_UNBOUNDED);
    ASSERT_EQ(KLVgetray(env, lp, z), 0);
    EXPECT_LE(2 * z[0] - 4 * z[1], 1e-9);
    EXPECT_NEAR(z[1], z[2], 1e-9);
    EXPECT_GT(z[0] + z[1] + z[2], 0.5);
    EXPECT_GE(std::min({z[0], z[1], z[2]}), 0.0);
    EXPECT_EQ(KLVgetray(env, lp, nullptr), 1004);
  }
  // The nonbasic column that moves, or the slack, moves by 1.
  std::vector<int> head(2);
  ASSERT_EQ(KLVgetbhead(env, lp, head.data(), nullptr), 0);
  double moving = 2 * z[0] - 4 * z[1] < -0.5 ? 1.0 : 0.0;
  for (int j = 0; j < 3; ++j) {
    if (std::count(head.begin(), head.end(), j) == 0) moving = std::max(moving, std::fabs(z[j]));
  }
  EXPECT_NEAR(moving, 1.0, 1e-12);
  const int column = 1;
  const double bound = 4;
  ASSERT_EQ(KLVchgbds(env, lp, 1, &column, "U", &bound), 0);
  ASSERT_EQ(KLVprimopt(env, lp), 0);
  ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
  EXPECT_EQ(KLVgetray(env, lp, z), 1254);
}

}  // namespace
