// Matrices on which a factorization goes wrong first: singular, nearly singular, badly scaled; and
// updates that must be refused.
#include <gtest/gtest.h>

#include "lp/factor/basis_factor.h"
#include "lp/factor/factor_support.h"
#include "lp/factor/lu/kernel.h"
#include "support/sparse_lines.h"

namespace kelvo {
namespace {

using namespace factor_testing;

/// Column `to` becomes a combination of the columns of `from`, small integers each, plus
/// epsilon times the unit column of `row`.
void make_dependent(SparseMatrix& a, int to, const Vector<int>& from, Random& random,
                    double epsilon = 0.0, int row = 0) {
  Vector<double> sum(a.num_minor, 0.0);
  for (const int j : from) {
    const double factor = 1 + random.below(2);
    for_column(a, j, [&](int i, double value) { sum[i] += factor * value; });
  }
  sum[row] += epsilon;
  test::DenseLines columns;
  for (int j = 0; j < a.num_major; ++j) {
    columns.emplace_back(a.num_minor);
    for_column(a, j, [&](int i, double value) { columns[j][i] = value; });
  }
  columns[to].assign(sum.begin(), sum.end());
  a = test::sparse_lines(columns, a.num_minor);
}

/// A header of the columns 0..m-1.
Vector<int> leading_columns(int m) {
  Vector<int> header(m);
  for (int p = 0; p < m; ++p) header[p] = p;
  return header;
}

/// A nonsingular matrix of small integers with a random pattern: the identity, times shears.
SparseMatrix sheared_identity(Random& random, int m, int shears) {
  test::DenseLines columns(m, std::vector<double>(m, 0.0));
  for (int j = 0; j < m; ++j) columns[j][j] = 1.0;
  for (int k = 0; k < shears; ++k) {
    const int from = random.below(m), to = random.below(m);
    if (from == to) continue;
    const double factor = random.below(2) == 0 ? 1.0 : -1.0;
    for (int i = 0; i < m; ++i) columns[to][i] += factor * columns[from][i];
  }
  return test::sparse_lines(columns, m);
}

TEST(HardBases, ARepairExchangesAsManyColumnsAsDepend) {
  for (int seed = 700; seed < 730; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    const int m = 8 + random.below(60);
    SparseMatrix a = sheared_identity(random, m, 3 * m);
    const int dependent = 1 + random.below(4);
    for (int k = 0; k < dependent; ++k) {
      // Column k depends on later ones alone, so that the rank is exactly m - dependent; an empty
      // column and a double one are among the cases.
      Vector<int> from;
      for (int c = random.below(4); c > 0; --c) from.push_back(4 + random.below(m - 4));
      make_dependent(a, k, from, random);
    }
    Vector<int> header = leading_columns(m);
    BasisFactor factor(a, FactorSettings{}, nullptr);
    Vector<BasisRepair> repairs;
    EXPECT_EQ(factor.factorize(header, false, repairs), FactorOutcome::singular);
    EXPECT_TRUE(repairs.empty());
    EXPECT_FALSE(factor.valid());
    EXPECT_EQ(header, leading_columns(m));
    ASSERT_EQ(factor.factorize(header, true, repairs), FactorOutcome::repaired);
    EXPECT_EQ(repairs.size(), static_cast<std::size_t>(dependent));
    EXPECT_EQ(factor.statistics().repairs, 1);
    expect_solves(factor, a, header, random, 1e-10);
  }
}

TEST(HardBases, RepairsHaveABudget) {
  Random random(730);
  SparseMatrix a = sheared_identity(random, 20, 40);
  make_dependent(a, 3, {7, 9}, random);
  FactorSettings settings;
  settings.singularity_limit = 2;
  BasisFactor factor(a, settings, nullptr);
  for (const bool last : {false, false, true}) {
    Vector<int> header = leading_columns(20);
    Vector<BasisRepair> repairs;
    EXPECT_EQ(factor.factorize(header, true, repairs),
              last ? FactorOutcome::singular : FactorOutcome::repaired);
  }
}

// An entry below the tolerance is no pivot, even where it is the only one of its row or column.
TEST(HardBases, TinyEntriesAreNoPivots) {
  for (const bool column_alone : {false, true}) {
    constexpr double kTiny = 1e-14;
    // Row 0 has an entry in column 0 alone, or column 0 in row 0 alone; the rest is a full block.
    const test::DenseLines full = {{kTiny, 0, 0, 0}, {1, 1, 2, 1}, {1, 2, 1, 5}, {0, 1, 3, 1}};
    const SparseMatrix lines = test::sparse_lines(full, 4);
    const SparseMatrix a = column_alone ? lines : transpose(lines);
    Vector<int> header = leading_columns(4);
    BasisFactor factor(a, FactorSettings{}, nullptr);
    Vector<BasisRepair> repairs;
    EXPECT_EQ(factor.factorize(header, true, repairs), FactorOutcome::repaired);
    ASSERT_EQ(repairs.size(), 1U);
    EXPECT_EQ(column_alone ? repairs[0].position : repairs[0].row, 0);
  }
}

// Pivots as small as this make a factor doubtful: the threshold rises, and the solves stay
// backward stable.
TEST(HardBases, NearlySingularOnesRaiseTheThreshold) {
  int raised = 0;
  for (int seed = 740; seed < 764; ++seed) {
    const double epsilon = std::pow(10.0, -6 - seed % 6);
    SCOPED_TRACE(testing::Message() << seed << " epsilon " << epsilon);
    Random random(seed);
    const int m = 20 + random.below(40);
    SparseMatrix a = sheared_identity(random, m, 4 * m);
    Vector<int> header = leading_columns(m);
    // The determinant becomes epsilon times an entry of the inverse: it must not be zero.
    BasisWalk regular(a, header);
    regular.x.insert(0, 1.0);
    regular.factor.btran(regular.x, 1.0);
    int row = 0;
    while (std::fabs(regular.x.value[row]) < 0.5) ++row;
    make_dependent(a, 0, {m / 2, m / 3, m - 1}, random, epsilon, row);
    BasisFactor factor(a, FactorSettings{}, nullptr);
    Vector<BasisRepair> repairs;
    ASSERT_EQ(factor.factorize(header, false, repairs), FactorOutcome::ok);
    const double ratio = factor.statistics().pivot_ratio;
    EXPECT_GT(ratio, 1e-3 / epsilon);
    if (ratio > 1e9) {
      EXPECT_GE(factor.markowitz_threshold(), 0.1);
      ++raised;
    }
    expect_solves(factor, a, header, random, 1e-10);
  }
  EXPECT_GT(raised, 4);
}

TEST(HardBases, BadScalesLeaveEveryRowRight) {
  for (int seed = 770; seed < 790; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    const Shape shape{80, 200, 3.0, 2.5, false};
    const SparseMatrix a = random_matrix(random, shape);
    BasisWalk walk(a, random_header(random, a, 60));
    for (int k = 0; k < 30; ++k) walk.step(random);
    // Row by row, as the largest rows hide errors of the others.
    WorkVector x(80);
    random_rhs(random, 40, x);
    const Vector<double> rhs = x.value;
    walk.factor.ftran(x, 1.0);
    Vector<long double> residual(rhs.begin(), rhs.end()), size(80, 0.0L);
    for (int p = 0; p < 80; ++p) {
      for_column(a, walk.header[p], [&](int i, long double value) {
        residual[i] -= value * x.value[p];
        size[i] += std::fabs(value * x.value[p]);
      });
    }
    for (int i = 0; i < 80; ++i) EXPECT_LE(std::fabs(residual[i]), 1e-7 * (1.0 + size[i])) << i;
  }
}

TEST(HardBases, MultipliersKeepTheThreshold) {
  for (const double threshold : {0.01, 0.1, 0.5, 0.9}) {
    for (int seed = 800; seed < 806; ++seed) {
      SCOPED_TRACE(testing::Message() << threshold << ' ' << seed);
      Random random(seed);
      const SparseMatrix a = random_matrix(random, {120, 300, 4.0, 1.0, false});
      Vector<int> header = random_header(random, a, 110);
      BasisFactor repairer(a, FactorSettings{}, nullptr);
      Vector<BasisRepair> repairs;
      ASSERT_NE(repairer.factorize(header, true, repairs), FactorOutcome::singular);
      KernelSettings settings;
      settings.threshold = threshold;
      LuFactors lu;
      LuKernel kernel;
      ASSERT_EQ(kernel.run(a, header.data(), 120, settings, lu), KernelOutcome::ok);
      for (int k = lu.num_triangular; k < 120; ++k) {
        // A pivot alone in its row makes no fill, however small it is.
        if (lu.u_row[k].size() == 0) continue;
        for (int e = lu.l_column[k].begin; e < lu.l_column[k].end; ++e) {
          EXPECT_LE(std::fabs(lu.l_columns.value[e]) * threshold, 1.0 + 1e-12);
        }
      }
    }
  }
}

// An arrow: eliminated from its tip it fills completely, otherwise not at all.
TEST(HardBases, AnArrowDoesNotFill) {
  constexpr int m = 60;
  test::DenseLines columns(m, std::vector<double>(m));
  for (int j = 0; j < m; ++j) {
    for (int i = 0; i < m; ++i) {
      if (i == j || i <= 1 || j <= 1)
        columns[j][i] = i == j ? 4.0 + j : 1.0 + 0.1 * i + 0.01 * j * j;
    }
  }
  const SparseMatrix a = test::sparse_lines(columns, m);
  Vector<int> header = leading_columns(m);
  FactorSettings settings;
  settings.dense_switch_density = 10.0;
  BasisFactor factor(a, settings, nullptr);
  Vector<BasisRepair> repairs;
  ASSERT_EQ(factor.factorize(header, false, repairs), FactorOutcome::ok);
  EXPECT_EQ(factor.statistics().factor_nonzeros, a.num_nonzeros());
  Random random(1);
  expect_solves(factor, a, header, random);
}

// What touches few rows must cost little, however large the basis is.
TEST(HardBases, SparseSolvesTouchWhatTheyReach) {
  constexpr int m = 30000, kBlock = 6;
  Random random(2);
  SparseMatrix a;
  a.num_minor = a.num_major = m;
  for (int j = 0; j < m; ++j) {
    const int first = j - j % kBlock;
    for (int i = first; i < first + kBlock; ++i) {
      a.index.push_back(i);
      a.value.push_back(random.uniform() + (i == j ? 3.0 : 0.0));
    }
    a.start.push_back(static_cast<int>(a.index.size()));
  }
  BasisWalk walk(a, leading_columns(m));
  const double before = walk.factor.statistics().work;
  for (int k = 0; k < 10; ++k) {
    for (const bool transposed : {false, true}) {
      WorkVector& x = walk.x;
      x.clear();
      x.insert(random.below(m), 1.0);
      if (transposed) {
        walk.factor.btran(x, 0.0);
      } else {
        walk.factor.ftran(x, 0.0);
      }
      EXPECT_EQ(x.count, kBlock);
    }
  }
  EXPECT_LT(walk.factor.statistics().work - before, 20 * 10 * kBlock * kBlock);
}

TEST(Updates, AreRefusedWithNothingChanged) {
  Random random(810);
  const SparseMatrix a = random_matrix(random, {50, 120, 4.0, 0.0, false});
  FactorSettings settings;
  settings.update_limit = 12;
  BasisWalk walk(a, random_header(random, a, 40), settings);
  for (int k = 0; k < 20; ++k) walk.step(random);
  walk.factorize();
  WorkVector x(50), y(50);
  int refused = 0;
  for (int k = 0; k < 40; ++k) {
    const int entering = random.below(120);
    if (std::find(walk.header.begin(), walk.header.end(), entering) != walk.header.end()) continue;
    EXPECT_FALSE(walk.factor.update(k, 1.0)) << "no column was kept";
    x.clear();
    for_column(a, entering, [&](int i, double value) { x.insert(i, value); });
    walk.factor.ftran(x, 0.0, true);
    const auto solves = [&] { return fingerprint(walk.factor, 50); };
    const Vector<double> before = solves();
    for (int p = 0; p < 50; ++p) {
      const double pivot = x.value[p];
      // A zero pivot makes the basis singular; a wrong one says that the factor is not what the
      // caller believes.
      if (pivot == 0.0) {
        EXPECT_FALSE(walk.factor.update(p, 0.0));
      } else if (std::fabs(pivot) > 0.1) {
        EXPECT_FALSE(walk.factor.update(p, -pivot));
        EXPECT_FALSE(walk.factor.update(p, pivot * 1.001));
      }
      ++refused;
    }
    EXPECT_EQ(before, solves());
    walk.factor.ftran(x, 0.0);
    walk.step(random);
    EXPECT_LE(walk.factor.statistics().updates, 12);
    EXPECT_EQ(walk.factor.should_refactor(), walk.factor.statistics().updates == 12);
  }
  EXPECT_GT(refused, 500);
  expect_solves(walk.factor, a, walk.header, random, 1e-7);
}

}  // namespace
}  // namespace kelvo
