// The factor of the basis, against dense algebra on the caller's numbers.
#include "random_lp.h"

namespace {

class AdvancedBasis : public RandomLpTest {
 protected:
  using Columns = std::vector<std::vector<double>>;

  /// Sum of columns[p] * x[p] must be b.
  static void expect_product(const Columns& columns, const std::vector<double>& x,
                             const std::vector<double>& b, const char* what) {
    SCOPED_TRACE(what);
    for (std::size_t i = 0; i < b.size(); ++i) {
      Sum sum;
      for (std::size_t p = 0; p < columns.size(); ++p) sum.add(columns[p][i] * x[p]);
      sum.expect(b[i]);
    }
  }
  /// y'columns[p] must be c[p].
  static void expect_transposed(const Columns& columns, const std::vector<double>& y,
                                const std::vector<double>& c, const char* what) {
    SCOPED_TRACE(what);
    for (std::size_t p = 0; p < columns.size(); ++p) {
      Sum sum;
      for (std::size_t i = 0; i < columns[p].size(); ++i) sum.add(columns[p][i] * y[i]);
      sum.expect(c[p]);
    }
  }

  void expect_dense_algebra() {
    const int m = data.m, n = data.n;
    const std::vector<int> now = head();
    const std::vector<double> basics = basic_values(), values = columns(KLVgetx),
                              slack = rows(KLVgetslack);
    Columns basis;
    for (int p = 0; p < m; ++p) {
      const int v = now[p];
      basis.push_back(data.column(v));
      EXPECT_EQ(basics[p], v >= 0 ? values[v] : slack[-v - 1]);
      int row = -1;
      EXPECT_EQ(KLVgetijrow(env, lp, v >= 0 ? -1 : -v - 1, v >= 0 ? v : -1, &row), 0);
      EXPECT_EQ(row, p);
    }
    for (int k = 0; k < m; ++k) {
      std::vector<double> unit(m, 0.0);
      unit[k] = 1.0;
      const std::vector<double> y = inverse(KLVbinvrow, k), z = inverse(KLVbinvarow, k);
      expect_product(basis, inverse(KLVbinvcol, k), unit, "KLVbinvcol");
      expect_transposed(basis, y, unit, "KLVbinvrow");
      for (int j = 0; j < n; ++j) {
        Sum sum;
        for (int i = 0; i < m; ++i) sum.add(y[i] * data.a[i][j]);
        sum.expect(z[j]);
      }
    }
    for (int v = -m; v < n; ++v) {
      expect_product(basis, inverse(KLVbinvacol, v), data.column(v), "KLVbinvacol");
    }
    std::vector<double> right(m);
    for (int i = 0; i < m; ++i) right[i] = (i % 3 - 1) * (1.0 + i);
    std::vector<double> x = right, y = right;
    ASSERT_EQ(KLVftran(env, lp, x.data()), 0);
    expect_product(basis, x, right, "KLVftran");
    ASSERT_EQ(KLVbtran(env, lp, y.data()), 0);
    expect_transposed(basis, y, right, "KLVbtran");
  }
  /// Rows without entries, the second one with a range.
  void new_rows(double range) {
    const double rhs[] = {4, range > -5 ? 1.0 : 6.0};
    const int second = 1;
    ASSERT_EQ(KLVnewrows(env, lp, 2, rhs, "LR", nullptr, nullptr), 0);
    ASSERT_EQ(KLVchgrngval(env, lp, 1, &second, &range), 0);
    data.m = 2;
  }
};

TEST_F(AdvancedBasis, AgreesWithDenseAlgebra) {
  for (unsigned seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE(seed);
    load(seed, {.m = 5 + static_cast<int>(seed % 7), .n = 9, .wide_scales = seed % 2 == 0});
    set(KLV_PARAM_SCAIND, static_cast<int>(seed % 3) - 1);
    ASSERT_EQ(seed % 4 < 2 ? KLVdualopt(env, lp) : KLVprimopt(env, lp), 0);
    ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    expect_dense_algebra();
    if (HasFailure()) return;
  }
}

TEST_F(AdvancedBasis, TheFactorOutlivesChangesOfNumbersButNotOfTheMatrix) {
  load(3);
  std::vector<double> x(data.m);
  EXPECT_EQ(KLVbinvcol(env, lp, 0, x.data()), 1258);
  EXPECT_EQ(KLVgetbhead(env, lp, nullptr, x.data()), 1217);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  const std::vector<double> column = inverse(KLVbinvcol, 0);
  change_rhs(0, data.rhs[0] + 1);
  EXPECT_EQ(inverse(KLVbinvcol, 0), column);
  EXPECT_EQ(KLVgetbhead(env, lp, nullptr, x.data()), 1217);

  // A copy has the same basis and makes a factor of its own.
  change_rhs(0, data.rhs[0]);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  KLVprob copy = clone();
  std::vector<int> own = head(), copied = head(copy);
  std::sort(own.begin(), own.end());
  std::sort(copied.begin(), copied.end());
  EXPECT_EQ(own, copied);
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);

  ASSERT_EQ(KLVchgcoef(env, lp, 0, 0, 17.0), 0);
  EXPECT_EQ(KLVftran(env, lp, x.data()), 1258);
}

TEST_F(AdvancedBasis, SlackBasis) {
  const double obj[] = {1, 1}, values[] = {1, 2, 1};
  ASSERT_EQ(KLVnewcols(env, lp, 2, obj, nullptr, nullptr, nullptr, nullptr), 0);
  new_rows(-10);
  const int list[] = {0, 1, 1}, places[] = {0, 0, 1};
  ASSERT_EQ(KLVchgcoeflist(env, lp, 3, list, places, values), 0);
  solve_again();
  EXPECT_EQ(head(), (std::vector<int>{-1, -2}));
  EXPECT_EQ(basic_values(), (std::vector<double>{4, -6}));  // activity 0 minus right-hand side
  EXPECT_EQ(inverse(KLVbinvacol, 0), (std::vector<double>{1, -2}));
}

TEST_F(AdvancedBasis, ProblemsWithoutRowsOrColumns) {
  using Two = std::vector<double>;
  const double obj[] = {1, -1}, upper[] = {3, 4};
  ASSERT_EQ(KLVnewcols(env, lp, 2, obj, nullptr, upper, nullptr, nullptr), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  Two low(2), high(2);
  EXPECT_EQ(KLVgetbhead(env, lp, nullptr, low.data()), 0);
  EXPECT_EQ(KLVbinvcol(env, lp, 0, low.data()), 1200);
  EXPECT_EQ(KLVbinvacol(env, lp, 0, low.data()), 0);
  ASSERT_EQ(KLVobjsa(env, lp, 0, 1, low.data(), high.data()), 0);
  EXPECT_EQ(low, (Two{0, -kNone}));
  EXPECT_EQ(high, (Two{kNone, 0}));
  EXPECT_EQ(KLVsetphase2(env, lp), 0);
  EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);

  ASSERT_EQ(KLVdelcols(env, lp, 0, 1), 0);
  new_rows(-2);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(basic_values(), (Two{4, -1}));
  EXPECT_EQ(inverse(KLVbinvcol, 1)[1], -1.0);
  ASSERT_EQ(KLVrhssa(env, lp, 0, 1, low.data(), high.data()), 0);
  EXPECT_EQ(low, (Two{0, 0}));
  EXPECT_EQ(high, (Two{kNone, 2}));
}

TEST_F(AdvancedBasis, ChecksOfArguments) {
  solve(5);
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
  EXPECT_TRUE(contains(errors, "KLVbinvacol: 'end' value 12 is greater than 11")) << errors;
  EXPECT_EQ(KLVbinvacol(env, lp, -data.m - 1, x.data()), 1200);
  EXPECT_EQ(KLVbinvacol(env, lp, -2147483647 - 1, x.data()), 1200);
  EXPECT_EQ(KLVftran(env, lp, nullptr), 1004);
  for (const auto& [i, j] : {std::pair(-1, -1), {0, 0}, {data.m, -1}, {-1, data.n}}) {
    EXPECT_EQ(KLVgetijrow(env, lp, i, j, &row), 1200);
  }
  for (int j = 0; j < data.n; ++j) {
    EXPECT_EQ(KLVgetijrow(env, lp, -1, j, &row), basic(j) ? 0 : 1251);
  }
}

TEST_F(AdvancedBasis, FarkasCertificate) {
  std::vector<double> y(10);
  double proof = 0.0;
  EXPECT_EQ(KLVdualfarkas(env, lp, y.data(), &proof), 1265);
  int proofs = 0;
  for (unsigned seed = 0; seed < 30; ++seed) {
    data = random_lp(seed, {.m = 8, .n = 9, .wide_scales = seed % 2 == 0});
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
    SCOPED_TRACE(seed);
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
      Sum entry;
      for (int i = 0; i < data.m; ++i) entry.add(y[i] * data.a[i][j]);
      if (std::fabs(entry.value) <= 1e-9 * entry.size) continue;
      gap -= std::max(entry.value * data.lb[j], entry.value * data.ub[j]);
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
  // max x1 + x2 + x3,  2 x1 - 4 x2 <= 3,  x2 - x3 = 0
  const double obj[] = {1, 1, 1}, rhs[] = {3, 0}, values[] = {2, -4, 1, -1};
  const int list[] = {0, 0, 1, 1}, places[] = {0, 1, 1, 2};
  ASSERT_EQ(KLVnewcols(env, lp, 3, obj, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(KLVnewrows(env, lp, 2, rhs, "LE", nullptr, nullptr), 0);
  ASSERT_EQ(KLVchgcoeflist(env, lp, 4, list, places, values), 0);
  ASSERT_EQ(KLVchgobjsen(env, lp, -1), 0);
  data.m = 2;
  // Presolve only tells that the problem is infeasible or unbounded.
  set(KLV_PARAM_PREIND, 0);
  for (const int scaling : {-1, 0, 1}) {
    set(KLV_PARAM_SCAIND, scaling);
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
  double moving = 2 * z[0] - 4 * z[1] < -0.5 ? 1.0 : 0.0;
  for (int j = 0; j < 3; ++j) {
    if (!basic(j)) moving = std::max(moving, std::fabs(z[j]));
  }
  EXPECT_NEAR(moving, 1.0, 1e-12);
  change_bound(1, 'U', 4);
  solve_again();
  EXPECT_EQ(KLVgetray(env, lp, z), 1254);
}

}  // namespace
