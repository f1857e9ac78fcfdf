// Queries of solutions.
#include <array>
#include <cstring>

#include "lp_fixture.h"

namespace {

using Pair = std::array<double, 2>;

void expect_near(const double* actual, const Pair& expected) {
  for (int k = 0; k < 2; ++k) EXPECT_NEAR(actual[k], expected[k], 1e-9) << k;
}

TEST(SolutionQueries, WithoutASolution) {
  SmallLp p;
  Pair values;
  int method = 7, type = 7, primal = 7, dual = 7;
  EXPECT_EQ(KLVgetstat(p.env, p.lp), 0);
  EXPECT_EQ(KLVsolninfo(p.env, p.lp, &method, &type, &primal, &dual), 0);
  EXPECT_EQ(method, -1);
  EXPECT_EQ(type, KLV_SOLUTION_NONE);
  EXPECT_EQ(primal, 0);
  EXPECT_EQ(dual, 0);
  EXPECT_EQ(p.errors, "");
  EXPECT_EQ(KLVgetx(p.env, p.lp, values.data(), 0, 1), 1217);
  EXPECT_EQ(KLVgetpi(p.env, p.lp, values.data(), 0, 1), 1217);
  EXPECT_EQ(KLVgetdj(p.env, p.lp, values.data(), 0, 1), 1217);
  EXPECT_EQ(KLVgetslack(p.env, p.lp, values.data(), 0, 1), 1217);
  EXPECT_EQ(KLVgetax(p.env, p.lp, values.data(), 0, 1), 1217);
  EXPECT_EQ(KLVgetobjval(p.env, p.lp, values.data()), 1217);
  EXPECT_EQ(KLVgetrowinfeas(p.env, p.lp, nullptr, values.data(), 0, 1), 1217);
  EXPECT_EQ(KLVsolution(p.env, p.lp, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1217);
  p.errors.clear();
  EXPECT_EQ(KLVgetmethod(p.env, p.lp), 0);
  EXPECT_NE(p.errors.find("1217"), std::string::npos);
  EXPECT_EQ(KLVgetitcnt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetstat(nullptr, p.lp), 0);
  EXPECT_EQ(KLVgetx(p.env, nullptr, values.data(), 0, 1), 1009);
}

TEST(SolutionQueries, TellTheSolution) {
  SmallLp p;
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  int status = 0, method = 0, type = 0, primal = 0, dual = 0;
  double objective = 0.0;
  Pair x, pi, slack, dj, ax, slice;
  EXPECT_EQ(
      KLVsolution(p.env, p.lp, &status, &objective, x.data(), pi.data(), slack.data(), dj.data()),
      0);
  EXPECT_EQ(status, KLV_STATUS_OPTIMAL);
  EXPECT_NEAR(objective, 11.0, 1e-9);
  expect_near(x.data(), {3, 1});
  expect_near(pi.data(), {2, 0});
  expect_near(slack.data(), {0, 1});
  expect_near(dj.data(), {1, 0});
  EXPECT_EQ(KLVgetax(p.env, p.lp, ax.data(), 0, 1), 0);
  expect_near(ax.data(), {4, 6});
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_OPTIMAL);
  EXPECT_EQ(KLVgetmethod(p.env, p.lp), 2);
  EXPECT_EQ(KLVsolninfo(p.env, p.lp, &method, &type, &primal, &dual), 0);
  EXPECT_EQ(method, 2);
  EXPECT_EQ(type, KLV_SOLUTION_BASIC);
  EXPECT_EQ(primal, 1);
  EXPECT_EQ(dual, 1);
  EXPECT_GT(KLVgetitcnt(p.env, p.lp), 0);
  EXPECT_LE(KLVgetphase1cnt(p.env, p.lp), KLVgetitcnt(p.env, p.lp));
  EXPECT_EQ(KLVgetbaritcnt(p.env, p.lp), 0);

  // Slices fill the array from its start; an empty one writes nothing.
  slice = {-7, -7};
  EXPECT_EQ(KLVgetx(p.env, p.lp, slice.data(), 1, 1), 0);
  EXPECT_EQ(KLVgetx(p.env, p.lp, slice.data() + 1, 1, 0), 0);
  expect_near(slice.data(), {1, -7});
  EXPECT_EQ(KLVgetobjval(p.env, p.lp, nullptr), 0);
  EXPECT_EQ(KLVsolninfo(p.env, p.lp, nullptr, nullptr, nullptr, nullptr), 0);

  p.errors.clear();
  EXPECT_EQ(KLVgetx(p.env, p.lp, nullptr, 0, 9), 1004);
  EXPECT_EQ(p.errors.find("1206"), std::string::npos);
  EXPECT_EQ(KLVgetx(p.env, p.lp, x.data(), 0, 2), 1200);
  EXPECT_NE(p.errors.find("KELVO Error  1206: KLVgetx: "), std::string::npos) << p.errors;
}

TEST(SolutionQueries, ChangesDiscardTheSolutionButNamesDoNot) {
  SmallLp p;
  Pair x;
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVchgname(p.env, p.lp, 'c', 0, "apples"), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_OPTIMAL);
  EXPECT_EQ(KLVchgcoef(p.env, p.lp, 0, 0, 2.0), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetx(p.env, p.lp, x.data(), 0, 1), 1217);

  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  // A row that waits to be merged makes the solution stale when somebody looks.
  EXPECT_EQ(KLVnewrows(p.env, p.lp, 1, nullptr, "L", nullptr, nullptr), 0);
  EXPECT_EQ(KLVgetstat(p.env, p.lp), 0);
}

TEST(SolutionQueries, InfeasibilitiesOfAPoint) {
  SmallLp p;
  const double point[] = {-1, 4};
  Pair rows, columns;
  EXPECT_EQ(KLVgetrowinfeas(p.env, p.lp, point, rows.data(), 0, 1), 0);
  EXPECT_EQ(KLVgetcolinfeas(p.env, p.lp, point, columns.data(), 0, 1), 0);
  expect_near(rows.data(), {0, 4});
  expect_near(columns.data(), {-1, 0});
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  EXPECT_EQ(KLVgetrowinfeas(p.env, p.lp, nullptr, rows.data(), 0, 1), 0);
  EXPECT_EQ(KLVgetcolinfeas(p.env, p.lp, nullptr, columns.data(), 0, 1), 0);
  expect_near(rows.data(), {0, 0});
  expect_near(columns.data(), {0, 0});
  EXPECT_EQ(KLVgetcolinfeas(p.env, p.lp, point, columns.data(), -1, 1), 1200);
  EXPECT_EQ(KLVgetrowinfeas(p.env, p.lp, point, nullptr, 0, 1), 1004);
}

TEST(SolutionQueries, SlackOfARangedRowLiesInItsRange) {
  SmallLp p;
  const int row = 1;
  const double range = -4, rhs = 7;  // 3 <= x + 3y <= 7
  EXPECT_EQ(KLVchgsense(p.env, p.lp, 1, &row, "R"), 0);
  EXPECT_EQ(KLVchgrngval(p.env, p.lp, 1, &row, &range), 0);
  ASSERT_EQ(KLVdualopt(p.env, p.lp), 0);
  double slack = 0, ax = 0;
  EXPECT_EQ(KLVgetslack(p.env, p.lp, &slack, 1, 1), 0);
  EXPECT_EQ(KLVgetax(p.env, p.lp, &ax, 1, 1), 0);
  EXPECT_NEAR(ax, 6, 1e-9);
  EXPECT_NEAR(slack, ax - rhs, 1e-9);
}

TEST(SolutionQueries, MixedIntegerProblemsHaveNoDuals) {
  SmallLp p;
  EXPECT_EQ(KLVnewcols(p.env, p.lp, 1, nullptr, nullptr, nullptr, "I", nullptr), 0);
  Pair values;
  EXPECT_EQ(KLVgetpi(p.env, p.lp, values.data(), 0, 1), 1017);
  EXPECT_EQ(KLVgetdj(p.env, p.lp, values.data(), 0, 1), 1017);
  EXPECT_EQ(KLVgetx(p.env, p.lp, values.data(), 0, 1), 1217);
  EXPECT_EQ(KLVgetobjval(p.env, p.lp, nullptr), 1004);
  EXPECT_EQ(KLVgetobjval(p.env, p.lp, values.data()), 1217);
  EXPECT_EQ(KLVsolution(p.env, p.lp, nullptr, nullptr, nullptr, values.data(), nullptr, nullptr),
            1017);
  EXPECT_EQ(KLVsolution(p.env, p.lp, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1217);
}

TEST(SolutionQueries, StatusTexts) {
  char buffer[52];
  EXPECT_EQ(KLVgetstatstring(nullptr, 107, buffer), buffer);
  EXPECT_STREQ(buffer, "time limit exceeded");
  EXPECT_EQ(KLVgetstatstring(nullptr, 129, buffer), buffer);
  EXPECT_STREQ(buffer, "all reachable solutions enumerated, integer optimal");
  EXPECT_EQ(KLVgetstatstring(nullptr, 999, buffer), nullptr);
  EXPECT_STREQ(buffer, "Unknown status value");
}

}  // namespace
