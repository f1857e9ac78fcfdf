// Queries of solutions.
#include "prob_fixture.h"

namespace {

class SolutionQueries : public SmallLp {
 protected:
  static void expect_near(const std::vector<double>& actual, const std::vector<double>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t k = 0; k < actual.size(); ++k) EXPECT_NEAR(actual[k], expected[k], 1e-9) << k;
  }
  /// What KLVsolninfo says: method, type, primal and dual feasibility.
  Codes info() {
    Codes all(4, 7);
    EXPECT_EQ(KLVsolninfo(env, lp, &all[0], &all[1], &all[2], &all[3]), 0);
    return all;
  }
  double values[2] = {-7, -7};
};

TEST_F(SolutionQueries, WithoutASolution) {
  EXPECT_EQ(KLVgetstat(env, lp), 0);
  EXPECT_EQ(info(), (Codes{-1, KLV_SOLUTION_NONE, 0, 0}));
  EXPECT_EQ(errors, "");
  for (const auto query : {KLVgetx, KLVgetpi, KLVgetdj, KLVgetslack, KLVgetax}) {
    EXPECT_EQ(query(env, lp, values, 0, 1), 1217);
  }
  EXPECT_EQ(KLVgetobjval(env, lp, values), 1217);
  EXPECT_EQ(KLVgetrowinfeas(env, lp, nullptr, values, 0, 1), 1217);
  EXPECT_EQ(KLVsolution(env, lp, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1217);
  take(errors);
  EXPECT_EQ(KLVgetmethod(env, lp), 0);
  EXPECT_TRUE(contains(errors, "1217"));
  EXPECT_EQ(KLVgetitcnt(env, lp), 0);
  EXPECT_EQ(KLVgetstat(nullptr, lp), 0);
  EXPECT_EQ(KLVgetx(env, nullptr, values, 0, 1), 1009);
}

TEST_F(SolutionQueries, TellTheSolution) {
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  int status = 0;
  double value = 0.0;
  std::vector<double> x(2), pi(2), slack(2), dj(2);
  EXPECT_EQ(KLVsolution(env, lp, &status, &value, x.data(), pi.data(), slack.data(), dj.data()), 0);
  EXPECT_EQ(status, KLV_STATUS_OPTIMAL);
  EXPECT_NEAR(value, 11.0, 1e-9);
  expect_near(x, {3, 1});
  expect_near(pi, {2, 0});
  expect_near(slack, {0, 1});
  expect_near(dj, {1, 0});
  expect_near(rows(KLVgetax), {4, 6});
  EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
  EXPECT_EQ(KLVgetmethod(env, lp), 2);
  EXPECT_EQ(info(), (Codes{2, KLV_SOLUTION_BASIC, 1, 1}));
  EXPECT_GT(KLVgetitcnt(env, lp), 0);
  EXPECT_LE(KLVgetphase1cnt(env, lp), KLVgetitcnt(env, lp));
  EXPECT_EQ(KLVgetbaritcnt(env, lp), 0);

  // Slices fill the array from its start; an empty one writes nothing.
  EXPECT_EQ(KLVgetx(env, lp, values, 1, 1), 0);
  EXPECT_EQ(KLVgetx(env, lp, values + 1, 1, 0), 0);
  expect_near({values[0], values[1]}, {1, -7});
  EXPECT_EQ(KLVgetobjval(env, lp, nullptr), 0);
  EXPECT_EQ(KLVsolninfo(env, lp, nullptr, nullptr, nullptr, nullptr), 0);

  EXPECT_EQ(KLVgetx(env, lp, nullptr, 0, 9), 1004);
  EXPECT_FALSE(contains(take(errors), "1206"));
  EXPECT_EQ(KLVgetx(env, lp, values, 0, 2), 1200);
  EXPECT_TRUE(contains(errors, "KELVO Error  1206: KLVgetx: ")) << errors;
}

TEST_F(SolutionQueries, ChangesDiscardTheSolutionButNamesDoNot) {
  optimum(lp);
  EXPECT_EQ(KLVchgname(env, lp, 'c', 0, "apples"), 0);
  EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
  EXPECT_EQ(KLVchgcoef(env, lp, 0, 0, 2.0), 0);
  EXPECT_EQ(KLVgetstat(env, lp), 0);
  EXPECT_EQ(KLVgetx(env, lp, values, 0, 1), 1217);
  optimum(lp);
  // A row that waits to be merged makes the solution stale at the next query.
  EXPECT_EQ(KLVnewrows(env, lp, 1, nullptr, "L", nullptr, nullptr), 0);
  EXPECT_EQ(KLVgetstat(env, lp), 0);
}

TEST_F(SolutionQueries, InfeasibilitiesOfAPoint) {
  const double point[] = {-1, 4};
  const auto infeasibilities = [&](auto query, const double* x) {
    std::vector<double> out(2);
    EXPECT_EQ(query(env, lp, x, out.data(), 0, 1), 0);
    return out;
  };
  expect_near(infeasibilities(KLVgetrowinfeas, point), {0, 4});
  expect_near(infeasibilities(KLVgetcolinfeas, point), {-1, 0});
  optimum(lp);
  expect_near(infeasibilities(KLVgetrowinfeas, nullptr), {0, 0});
  expect_near(infeasibilities(KLVgetcolinfeas, nullptr), {0, 0});
  EXPECT_EQ(KLVgetcolinfeas(env, lp, point, values, -1, 1), 1200);
  EXPECT_EQ(KLVgetrowinfeas(env, lp, point, nullptr, 0, 1), 1004);
}

TEST_F(SolutionQueries, SlackOfARangedRowLiesInItsRange) {
  const int row = 1;
  const double range = -4;  // 3 <= x + 3y <= 7
  EXPECT_EQ(KLVchgsense(env, lp, 1, &row, "R"), 0);
  EXPECT_EQ(KLVchgrngval(env, lp, 1, &row, &range), 0);
  optimum(lp);
  EXPECT_NEAR(rows(KLVgetax)[1], 6, 1e-9);
  EXPECT_NEAR(rows(KLVgetslack)[1], 6 - 7, 1e-9);
}

TEST_F(SolutionQueries, MixedIntegerProblemsHaveNoDuals) {
  EXPECT_EQ(KLVnewcols(env, lp, 1, nullptr, nullptr, nullptr, "I", nullptr), 0);
  EXPECT_EQ(KLVgetpi(env, lp, values, 0, 1), 1017);
  EXPECT_EQ(KLVgetdj(env, lp, values, 0, 1), 1017);
  EXPECT_EQ(KLVgetx(env, lp, values, 0, 1), 1217);
  EXPECT_EQ(KLVgetobjval(env, lp, nullptr), 1004);
  EXPECT_EQ(KLVgetobjval(env, lp, values), 1217);
  EXPECT_EQ(KLVsolution(env, lp, nullptr, nullptr, nullptr, values, nullptr, nullptr), 1017);
  EXPECT_EQ(KLVsolution(env, lp, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 1217);
}

TEST_F(SolutionQueries, StatusTexts) {
  char buffer[52];
  EXPECT_EQ(KLVgetstatstring(nullptr, 107, buffer), buffer);
  EXPECT_STREQ(buffer, "time limit exceeded");
  EXPECT_EQ(KLVgetstatstring(nullptr, 129, buffer), buffer);
  EXPECT_STREQ(buffer, "all reachable solutions enumerated, integer optimal");
  EXPECT_EQ(KLVgetstatstring(nullptr, 999, buffer), nullptr);
  EXPECT_STREQ(buffer, "Unknown status value");
}

}  // namespace
