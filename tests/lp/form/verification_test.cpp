#include "lp/form/verification.h"

#include <gtest/gtest.h>

#include "lp/model_solver.h"
#include "lp/small_model.h"

namespace kelvo {
namespace {

using test::complete_and_measure;
using test::small_model;
using test::verify_farkas;
using test::verify_ray;

// max 3x + 2y,  x + y <= 4,  x + 3y <= 6,  x <= 3: optimum (3, 1), objective 11.
Model textbook() {
  Model model = small_model(-1, {3, 2}, {{'L', 4, {1, 1}}, {'L', 6, {1, 3}}});
  model.upper[0] = 3;
  return model;
}

const Vector<int> kTextbookStatus = {kAtUpper, kBasic, kAtLower, kBasic};

TEST(Verify, AcceptsAnOptimumAndCompletesIt) {
  SolutionRecord record;
  record.x = {3, 1};
  record.pi = {2, 0};
  const Violations violations = complete_and_measure(textbook(), kTextbookStatus, record);
  EXPECT_EQ(violations.primal, 0.0);
  EXPECT_EQ(violations.dual, 0.0);
  EXPECT_EQ(record.objective, 11.0);
  EXPECT_EQ(record.activity, (Vector<double>{4, 6}));
  EXPECT_EQ(record.dj, (Vector<double>{1, 0}));
}

TEST(Verify, MeasuresWhatIsWrong) {
  const Model model = textbook();
  SolutionRecord record;
  record.x = {3.5, 1};
  record.pi = {2, 0};
  EXPECT_NEAR(complete_and_measure(model, kTextbookStatus, record).primal, 0.5, 1e-12);
  record.x = {3, -0.25};
  EXPECT_NEAR(complete_and_measure(model, kTextbookStatus, record).primal, 0.25, 1e-12);

  record.x = {3, 1};
  record.pi = {2.5, 0};  // the basic column's reduced cost is -0.5
  EXPECT_NEAR(complete_and_measure(model, kTextbookStatus, record).dual, 0.5, 1e-12);
  record.pi = {4, 0};  // x at its upper bound has reduced cost -1
  EXPECT_GE(complete_and_measure(model, kTextbookStatus, record).dual, 1.0);
  // A dual of the wrong sign: the slack of a '<=' row of a maximization needs pi >= 0.
  record.pi = {-0.125, 0.5 + 1.0 / 3.0};
  const Vector<int> both_rows = {kAtUpper, kBasic, kAtLower, kAtLower};
  EXPECT_GE(complete_and_measure(model, both_rows, record).dual, 0.125);
}

TEST(Verify, FixedVariablesMayHaveAnyReducedCost) {
  Model model = small_model(1, {-5, 1}, {{'E', 3, {1, 1}}});
  model.lower[0] = model.upper[0] = 1;
  SolutionRecord record;
  record.x = {1, 2};
  record.pi = {1};
  const Violations violations = complete_and_measure(model, {kAtLower, kBasic, kAtLower}, record);
  EXPECT_EQ(violations.dual, 0.0);
  EXPECT_EQ(record.dj[0], -6.0);
}

TEST(Verify, RoundingOfLargeSumsIsNoViolation) {
  Model model = small_model(1, {0, 0}, {{'E', 0, {1e9, -1e9}}});
  SolutionRecord record;
  record.x = {1.0 / 3.0, 1.0 / 3.0 * (1 + 4e-16)};
  record.pi = {0};
  const Vector<int> status = {kBasic, kAtLower, kAtLower};
  EXPECT_LE(complete_and_measure(model, status, record).primal, 1e-6);
  record.x[1] = 1.0 / 3.0 + 1e-13;
  EXPECT_GE(complete_and_measure(model, status, record).primal, 9e-5);
}

TEST(Verify, FarkasProofs) {
  // x + y >= 5 contradicts x + y <= 4 and, with the bounds 0 <= x, y <= 2, also stands alone.
  Model model = small_model(1, {0, 0}, {{'G', 5, {1, 1}}, {'L', 4, {1, 1}}});
  for (const double sign : {1.0, -1.0}) {
    Vector<double> y = {sign, -sign};
    EXPECT_TRUE(verify_farkas(model, y));
    EXPECT_EQ(y, (Vector<double>{1, -1}));
  }
  Vector<double> one_row = {1, 0};
  EXPECT_FALSE(verify_farkas(model, one_row));
  model.upper.assign(2, 2.0);
  one_row = {-1, 0};
  EXPECT_TRUE(verify_farkas(model, one_row));
  EXPECT_EQ(one_row[0], 1.0);

  // The right direction but no contradiction, nothing at all, and not a number.
  model.upper.assign(2, 2.5);
  Vector<double> tight = {1, 0};
  EXPECT_FALSE(verify_farkas(model, tight));
  Vector<double> nothing = {0, 0};
  EXPECT_FALSE(verify_farkas(model, nothing));
  Vector<double> nan = {std::numeric_limits<double>::quiet_NaN(), 1};
  EXPECT_FALSE(verify_farkas(model, nan));
}

TEST(Verify, Rays) {
  // min -x,  x - y <= 1: unbounded along (1, 1).
  Model model = small_model(1, {-1, 0}, {{'L', 1, {1, -1}}});
  Vector<double> ray = {4, 4};
  EXPECT_TRUE(verify_ray(model, ray));
  EXPECT_EQ(ray, (Vector<double>{1, 1}));
  Vector<double> leaves_row = {1, 0.5};
  EXPECT_FALSE(verify_ray(model, leaves_row));
  Vector<double> gains_nothing = {0, 1};
  EXPECT_FALSE(verify_ray(model, gains_nothing));
  Vector<double> leaves_bound = {-1, -1};
  EXPECT_FALSE(verify_ray(model, leaves_bound));
  // However slowly a row is broken; but the rounding of a third breaks none.
  Model slow = small_model(1, {-1, 0}, {{'L', 1, {1, -1 + 1e-13}}, {'L', 5, {-1, 1}}});
  Vector<double> seems = {1, 1};
  EXPECT_FALSE(verify_ray(slow, seems));
  Model thirds = small_model(1, {-1, 0, 0}, {{'E', 1, {0.1, -0.3, 0}}, {'E', 0, {0, 0.7, -1.1}}});
  Vector<double> rounded = {1, 0.1 / 0.3, 0.1 / 0.3 * 0.7 / 1.1};
  EXPECT_TRUE(verify_ray(thirds, rounded));
  model.upper[1] = 100;
  ray = {1, 1};
  EXPECT_FALSE(verify_ray(model, ray));
  model.sense = -1;
  model.objective[0] = 1;
  model.upper[1] = 1e20;
  EXPECT_TRUE(verify_ray(model, ray));
}

}  // namespace
}  // namespace kelvo
