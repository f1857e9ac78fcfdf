#include "mip/tree/cutoff.h"

#include <gtest/gtest.h>

using namespace kelvo;

namespace {

MipProblem program(const Vector<double>& costs, const Vector<char>& is_integer, double offset) {
  MipProblem mip;
  mip.lp.num_cols = static_cast<int>(costs.size());
  mip.lp.cost = costs;
  mip.lp.lower.assign(costs.size(), 0.0);
  mip.lp.upper.assign(costs.size(), 1.0);
  mip.lp.offset = offset;
  mip.is_integer = is_integer;
  return mip;
}

TEST(Cutoff, GranularityIsTheCommonDivisorOfIntegerCosts) {
  EXPECT_DOUBLE_EQ(objective_granularity(program({6, -9, 0}, {1, 1, 0}, 0)), 3.0);
  EXPECT_NEAR(objective_granularity(program({0.3, 0.75}, {1, 1}, 0)), 0.15, 1e-12);
  EXPECT_DOUBLE_EQ(objective_granularity(program({6, 9}, {1, 0}, 0)), 0.0);
  EXPECT_DOUBLE_EQ(objective_granularity(program({1, 3.14159265358979}, {1, 1}, 0)), 0.0);
  EXPECT_DOUBLE_EQ(objective_granularity(program({1e9, 1}, {1, 1}, 0)), 0.0);
}

TEST(Cutoff, ALaterSolutionMustBeBetterByAUnit) {
  const MipProblem mip = program({2, 4}, {1, 1}, 0.5);
  Cutoff cutoff(mip, SearchSettings());
  EXPECT_GE(cutoff.value(), kNoValue);
  cutoff.improve(10.5);
  // 8.5 beats it, 10.5 does not.
  EXPECT_GT(cutoff.value(), 8.5);
  EXPECT_LT(cutoff.value(), 8.51);
  cutoff.improve(12.5);
  EXPECT_LT(cutoff.value(), 8.51);
  EXPECT_DOUBLE_EQ(cutoff.rounded_bound(6.7), 8.5);
  EXPECT_DOUBLE_EQ(cutoff.rounded_bound(8.5), 8.5);
}

TEST(Cutoff, ImprovementsAndGivenCutoffs) {
  const MipProblem mip = program({1}, {0}, 0.0);
  SearchSettings settings;
  settings.relative_improvement = 0.1;
  settings.cutoff = 50.0;
  Cutoff relative(mip, settings);
  EXPECT_GT(relative.value(), 50.0);
  relative.improve(-20.0);
  EXPECT_DOUBLE_EQ(relative.value(), -22.0);
  settings.absolute_improvement = 3.0;  // comes before the relative one
  Cutoff absolute(mip, settings);
  absolute.improve(-20.0);
  EXPECT_DOUBLE_EQ(absolute.value(), -23.0);
}

}  // namespace
