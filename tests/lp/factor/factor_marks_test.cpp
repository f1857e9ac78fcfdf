#include <gtest/gtest.h>

#include "lp/factor/basis_factor.h"
#include "lp/factor/factor_support.h"

namespace kelvo {
namespace {

using namespace factor_testing;

/// A mark and all that must be as it was after a return to it.
struct Saved {
  FactorMark mark;
  Vector<int> header;
  Vector<double> bits;
};

constexpr Shape kShapes[] = {{6, 14, 2.0, 0.0, true},
                             {40, 90, 3.0, 0.0, false},
                             {70, 160, 30.0, 0.0, false},
                             {400, 900, 2.5, 1.0, false},
                             {600, 1400, 5.0, 0.0, false}};

void random_walk(const SparseMatrix& a, Random& random, int& returns) {
  const int m = a.num_minor;
  BasisWalk walk(a, random_header(random, a, m));
  Vector<Saved> saved;
  for (int turn = 0; turn < 120; ++turn) {
    const int move = random.below(12);
    if (move < 2) {
      saved.push_back({walk.factor.checkpoint(), walk.header, {}});
      saved.back().bits = fingerprint(walk.factor, m);
    } else if (move == 2) {
      walk.factorize();
    } else if (move == 3) {
      walk.factor.raise_markowitz();
    } else if (move == 4 && !saved.empty()) {
      const int level = random.below(static_cast<int>(saved.size()));
      const FactorMark later = saved.back().mark;
      walk.factor.release(saved[level].mark);
      saved.resize(level);
      EXPECT_FALSE(walk.factor.rollback(later));
    } else if (move < 7 && !saved.empty()) {
      const int level = random.below(static_cast<int>(saved.size()));
      ASSERT_TRUE(walk.factor.rollback(saved[level].mark));
      saved.resize(level + 1);
      walk.header = saved[level].header;
      EXPECT_EQ(saved[level].bits, fingerprint(walk.factor, m)) << "turn " << turn;
      ++returns;
    } else {
      for (int k = random.below(8); k >= 0; --k) walk.step(random);
    }
  }
  walk.x.clear();
  random_rhs(random, 3, walk.x);
  const Vector<double> rhs = walk.x.value;
  walk.factor.ftran(walk.x, 0.0);
  EXPECT_LT(ftran_error(a, walk.header, walk.x.value, rhs), 1e-6);
}

TEST(FactorMarks, ReturnToTheSameBits) {
  int seed = 300, returns = 0;
  for (const Shape& shape : kShapes) {
    for (int repeat = 0; repeat < 4; ++repeat) {
      SCOPED_TRACE(testing::Message() << "m " << shape.rows << " seed " << seed);
      Random random(seed++);
      const SparseMatrix a = random_matrix(random, shape);
      random_walk(a, random, returns);
    }
  }
  EXPECT_GT(returns, 100);
}

// What a probe does must not show in what comes after it.
TEST(FactorMarks, AProbeLeavesNoTrace) {
  Random random(400);
  const SparseMatrix a = random_matrix(random, {300, 700, 4.0, 0.0, false});
  const Vector<int> header = random_header(random, a, 300);
  Vector<double> bits[2];
  for (const bool probed : {false, true}) {
    Random steps(1), probe(2);
    BasisWalk walk(a, header);
    for (int k = 0; k < 30; ++k) {
      if (probed) {
        const FactorMark mark = walk.factor.checkpoint();
        const Vector<int> before = walk.header;
        for (int side = 0; side < 2; ++side) {
          for (int i = 0; i < 3; ++i) walk.step(probe);
          if (k % 5 == 0) walk.factorize();
          if (k % 5 < 2) walk.step(probe);
          ASSERT_TRUE(walk.factor.rollback(mark));
          walk.header = before;
        }
        walk.factor.release(mark);
      }
      walk.step(steps);
      if (k == 20) walk.factorize();
    }
    bits[probed] = fingerprint(walk.factor, a.num_minor);
  }
  EXPECT_EQ(bits[0], bits[1]);
}

}  // namespace
}  // namespace kelvo
