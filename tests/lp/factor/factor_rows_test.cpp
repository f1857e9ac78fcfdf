#include <gtest/gtest.h>

#include "lp/factor/basis_factor.h"
#include "lp/factor/factor_support.h"

namespace kelvo {
namespace {

using namespace factor_testing;

/// `rows` dense-ish random rows over the structural columns, by rows.
SparseMatrix random_rows(Random& random, int rows, int columns) {
  SparseMatrix result;
  result.num_minor = columns;
  for (int i = 0; i < rows; ++i) {
    const int step = 1 + random.below(columns / 2);
    for (int j = random.below(step); j < columns; j += step) {
      result.index.push_back(j);
      result.value.push_back(random.uniform() - 0.5);
    }
    result.start.push_back(static_cast<int>(result.index.size()));
    ++result.num_major;
  }
  return result;
}

/// The matrix (by columns) without the rows of `dropped` and with further ones below.
SparseMatrix other_rows(const SparseMatrix& a, const Vector<int>& dropped,
                        const SparseMatrix& added) {
  const SparseMatrix by_rows = transpose(a);
  SparseMatrix result;
  result.num_minor = by_rows.num_minor;
  for (const SparseMatrix* from : {&by_rows, &added}) {
    for (int i = 0; i < from->num_major; ++i) {
      if (from == &by_rows && std::count(dropped.begin(), dropped.end(), i) > 0) continue;
      for (int e = from->start[i]; e < from->start[i + 1]; ++e) {
        result.index.push_back(from->index[e]);
        result.value.push_back(from->value[e]);
      }
      result.start.push_back(static_cast<int>(result.index.size()));
      ++result.num_major;
    }
  }
  return transpose(result);
}

/// A basis whose matrix grows and shrinks.
struct GrowingBasis {
  SparseMatrix a;
  BasisWalk walk;

  GrowingBasis(Random& random, const Shape& shape)
      : a(random_matrix(random, shape)), walk(a, random_header(random, a, shape.rows * 3 / 4)) {}

  bool add(Random& random, int count) {
    const int m = a.num_minor;
    const SparseMatrix rows = random_rows(random, count, a.num_major);
    SparseMatrix basic;  // the rows in the basic columns
    for (int i = 0; i < count; ++i) {
      for (int p = 0; p < m; ++p) {
        for (int e = rows.start[i]; e < rows.start[i + 1]; ++e) {
          if (rows.index[e] != walk.header[p]) continue;
          basic.index.push_back(p);
          basic.value.push_back(rows.value[e]);
        }
      }
      basic.start.push_back(static_cast<int>(basic.index.size()));
      ++basic.num_major;
    }
    basic.num_minor = m;
    a = other_rows(a, {}, rows);
    for (int i = 0; i < count; ++i) walk.header.push_back(a.num_major + m + i);
    return walk.factor.add_rows(basic);
  }

  /// Deletes about `count` rows whose logicals are basic.
  bool drop(Random& random, int count) {
    Vector<int> positions, rows;
    for (int p = 0; p < a.num_minor && count > 0; ++p) {
      if (walk.header[p] < a.num_major || random.below(2) == 0) continue;
      positions.push_back(p);
      rows.push_back(walk.header[p] - a.num_major);
      --count;
    }
    std::sort(rows.begin(), rows.end());
    Vector<int> header;
    for (int p = 0; p < a.num_minor; ++p) {
      if (std::find(positions.begin(), positions.end(), p) != positions.end()) continue;
      const int row = walk.header[p] - a.num_major;
      const auto before = std::lower_bound(rows.begin(), rows.end(), row) - rows.begin();
      header.push_back(walk.header[p] - (row < 0 ? 0 : static_cast<int>(before)));
    }
    a = other_rows(a, rows, {});
    walk.header = header;
    return walk.factor.delete_rows(rows, positions);
  }
};

constexpr Shape kShapes[] = {{5, 12, 2.0, 0.0, true},
                             {60, 140, 4.0, 0.0, false},
                             {70, 160, 30.0, 0.0, false},
                             {500, 1100, 2.5, 1.0, false}};

TEST(FactorRows, ComeAndGoWithoutFactorization) {
  int seed = 500;
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(testing::Message() << "m " << shape.rows << " seed " << seed);
    Random random(seed++);
    GrowingBasis basis(random, shape);
    BasisFactor& factor = basis.walk.factor;
    int refused = 0, done = 0;
    for (int turn = 0; turn < 60; ++turn) {
      const int factorizations = factor.statistics().factorizations;
      const bool added = random.below(2) == 0;
      const bool kept = added ? basis.add(random, 1 + random.below(6))
                              : basis.drop(random, 1 + random.below(shape.rows / 8 + 2));
      EXPECT_EQ(factor.statistics().factorizations, factorizations);
      if (!kept) {
        EXPECT_FALSE(added);
        ++refused;
        basis.walk.factorize();
      }
      ++done;
      expect_solves(factor, basis.a, basis.walk.header, random, 1e-7);
      for (int k = random.below(12); k > 0; --k) basis.walk.step(random);
      expect_solves(factor, basis.a, basis.walk.header, random, 1e-7);
    }
    EXPECT_LT(refused, done / 4);
  }
}

// Added rows make the solves more expensive at once: that alone is no reason to factorize.
TEST(FactorRows, DoNotAskForAFactorization) {
  Random random(650);
  GrowingBasis basis(random, {200, 500, 3.0, 0.0, false});
  BasisWalk& walk = basis.walk;
  while (walk.factor.statistics().updates < 62) {
    walk.factor.add_work(1e5 / (1 + walk.factor.statistics().updates));  // so that the mean falls
    walk.step(random);
  }
  ASSERT_FALSE(walk.factor.should_refactor());
  ASSERT_TRUE(basis.add(random, 150));
  const int updates = walk.factor.statistics().updates;
  while (walk.factor.statistics().updates == updates) walk.step(random);
  EXPECT_FALSE(walk.factor.should_refactor());
}

// A probe may add cuts: all of them are gone after the return, and what follows is the same.
TEST(FactorRows, AreTakenBackByMarks) {
  for (int seed = 600; seed < 606; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    GrowingBasis basis(random, {50, 120, 5.0, 0.0, false});
    BasisWalk& walk = basis.walk;
    basis.drop(random, seed % 3 * 3);
    for (int k = 0; k < 20; ++k) walk.step(random);
    const FactorMark mark = walk.factor.checkpoint();
    const Vector<int> header = walk.header;
    const SparseMatrix a = basis.a;
    EXPECT_FALSE(walk.factor.delete_rows({}, {}));
    for (int repeat = 0; repeat < 6; ++repeat) {
      EXPECT_TRUE(basis.add(random, 3));
      for (int k = 0; k < 5; ++k) walk.step(random);
      EXPECT_TRUE(basis.add(random, 2));
      if (repeat % 2 == 1) walk.factorize();
      for (int k = 0; k < 5; ++k) walk.step(random);
      expect_solves(walk.factor, basis.a, walk.header, random, 1e-7);
      if (repeat == 3) {
        if (!basis.drop(random, 2)) walk.factorize();
        expect_solves(walk.factor, basis.a, walk.header, random, 1e-7);
      }
      ASSERT_TRUE(walk.factor.rollback(mark));
      basis.a = a;
      walk.header = header;
      expect_solves(walk.factor, basis.a, walk.header, random, 1e-7);
    }
  }
}

}  // namespace
}  // namespace kelvo
