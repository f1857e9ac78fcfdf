#include <gtest/gtest.h>

#include "lp/factor/basis_factor.h"
#include "lp/factor/factor_support.h"

namespace kelvo {
namespace {

using namespace factor_testing;

constexpr Shape kShapes[] = {{1, 2, 1.0, 0.0, false},      {2, 4, 1.5, 0.0, true},
                             {7, 20, 2.0, 0.0, true},      {40, 80, 2.0, 0.0, true},
                             {60, 120, 6.0, 0.0, false},   {50, 90, 25.0, 0.0, false},
                             {300, 700, 2.5, 0.0, false},  {300, 700, 3.0, 2.0, false},
                             {2000, 3000, 1.8, 0.0, true}, {1200, 3000, 4.0, 0.0, false}};

TEST(BasisFactor, SolvesAgreeWithTheBasisOnManyShapes) {
  int seed = 0;
  for (const Shape& shape : kShapes) {
    for (double share : {0.0, 0.3, 0.8, 1.0}) {
      SCOPED_TRACE(testing::Message()
                   << "m " << shape.rows << " share " << share << " seed " << seed);
      Random random(seed++);
      const SparseMatrix a = random_matrix(random, shape);
      Vector<int> header = random_header(random, a, static_cast<int>(share * shape.rows));
      BasisFactor factor(a, FactorSettings{}, nullptr);
      Vector<BasisRepair> repairs;
      const Vector<int> before = header;
      const FactorOutcome outcome = factor.factorize(header, true, repairs);
      ASSERT_NE(outcome, FactorOutcome::singular);
      EXPECT_EQ(outcome == FactorOutcome::ok, repairs.empty());
      Vector<int> repaired = before;
      for (const BasisRepair& repair : repairs) {
        EXPECT_EQ(repaired[repair.position], repair.leaving);
        repaired[repair.position] = a.num_major + repair.row;
      }
      EXPECT_EQ(repaired, header);
      expect_solves(factor, a, header, random);
    }
  }
}

TEST(BasisFactor, UpdatesKeepTheFactorRight) {
  int seed = 100;
  for (const Shape& shape : kShapes) {
    SCOPED_TRACE(testing::Message() << "m " << shape.rows << " seed " << seed);
    Random random(seed++);
    const SparseMatrix a = random_matrix(random, shape);
    BasisWalk walk(a, random_header(random, a, shape.rows / 2));
    int refused = 0, done = 0;
    for (int step = 0; step < 400; ++step) {
      const BasisWalk::Step outcome = walk.step(random);
      refused += outcome == BasisWalk::Step::refused;
      done += outcome != BasisWalk::Step::none;
      if (done % 97 == 0) expect_solves(walk.factor, a, walk.header, random, 1e-6);
    }
    expect_solves(walk.factor, a, walk.header, random, 1e-6);
    EXPECT_LE(refused, 5);
  }
}

}  // namespace
}  // namespace kelvo
