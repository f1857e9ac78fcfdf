// The views of types 3, 8 and 13: the problem that is left when the integer decisions are made.
#include <gtest/gtest.h>
#include <kelvo.h>

#include <vector>

#include "api/frame/problem_frame.h"

namespace kelvo {
namespace {

class FixedView : public ::testing::Test {
 protected:
  /// max x0 + x1 + ... + x5 with the types B I S S C C and bounds 0..4, x0 + ... + x5 <= 10.
  FixedView() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "fixed");
    problem = to_problem(lp);
    const std::vector<double> ones(6, 1.0), lower = {0, 0, 2, 2, 0, 0}, upper = {1, 4, 4, 4, 4, 4};
    const int begin = 0, columns[] = {0, 1, 2, 3, 4, 5};
    const double rhs = 10;
    EXPECT_EQ(KLVnewcols(env, lp, 6, ones.data(), lower.data(), upper.data(), "BISSCC", nullptr),
              0);
    EXPECT_EQ(
        KLVaddrows(env, lp, 0, 1, 6, &rhs, "L", &begin, columns, ones.data(), nullptr, nullptr), 0);
    EXPECT_EQ(KLVchgobjsen(env, lp, -1), 0);
  }
  ~FixedView() override { EXPECT_EQ(KLVcloseKELVO(&env), 0); }

  void set_incumbent(const Vector<double>& x) {
    problem->incumbent.present = problem->incumbent.has_values = true;
    problem->incumbent.x = x;
    problem->solution_status = 101;
  }
  std::vector<std::pair<double, double>> bounds() {
    const int n = KLVgetnumcols(env, lp);
    std::vector<double> lower(n), upper(n);
    EXPECT_EQ(KLVgetlb(env, lp, lower.data(), 0, n - 1), 0);
    EXPECT_EQ(KLVgetub(env, lp, upper.data(), 0, n - 1), 0);
    std::vector<std::pair<double, double>> result;
    for (int j = 0; j < n; ++j) result.push_back({lower[j], upper[j]});
    return result;
  }

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
  Problem* problem = nullptr;
};

using Bounds = std::vector<std::pair<double, double>>;

TEST_F(FixedView, FixesWhatTheSearchDecides) {
  set_incumbent({0.9999999, 2, 0, 3, 0, 1});
  ASSERT_EQ(KLVchgprobtype(env, lp, 3), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 3);
  EXPECT_EQ(bounds(), (Bounds{{1, 1}, {2, 2}, {0, 0}, {2, 4}, {0, 4}, {0, 4}}));
  EXPECT_EQ(KLVchgobjsen(env, lp, 1), 1023) << "a view is not changed";
  EXPECT_EQ(KLVcopyctype(env, lp, "CCCCCC"), 1023);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  double objective = 0, duals = 0;
  EXPECT_EQ(KLVgetobjval(env, lp, &objective), 0);
  EXPECT_EQ(objective, 10.0);
  EXPECT_EQ(KLVgetpi(env, lp, &duals, 0, 0), 0);
  EXPECT_EQ(duals, 1.0);
  // Back, and the integer solution is still there.
  ASSERT_EQ(KLVchgprobtype(env, lp, 1), 0);
  EXPECT_EQ(KLVgetpi(env, lp, &duals, 0, 0), 1017);
  std::vector<double> x(6);
  EXPECT_EQ(KLVgetx(env, lp, x.data(), 0, 5), 0);
  EXPECT_EQ(x[1], 2.0);
  EXPECT_EQ(bounds()[1], std::pair(0.0, 4.0));
}

TEST_F(FixedView, KeepsSetsIndicatorsAndLazyConstraints) {
  const int begin = 0, set[] = {3, 4, 5}, row[] = {4, 5};
  const double weights[] = {1, 2, 3}, values[] = {1, 1};
  const double lazy_rhs = 7;
  ASSERT_EQ(KLVaddsos(env, lp, 1, 3, "2", &begin, set, weights, nullptr), 0);
  ASSERT_EQ(KLVaddindconstr(env, lp, 0, 0, 2, 5.0, 'L', row, values, nullptr), 0);
  ASSERT_EQ(KLVaddindconstr(env, lp, 0, 1, 2, 0.0, 'E', row, values, nullptr), 0);
  ASSERT_EQ(KLVaddlazyconstraints(env, lp, 1, 2, &lazy_rhs, "G", &begin, row, values, nullptr), 0);
  set_incumbent({1, 2, 0, 0, 3, 1e-9});
  ASSERT_EQ(KLVchgprobtype(env, lp, 3), 0);
  EXPECT_EQ(bounds()[3], std::pair(0.0, 0.0)) << "a member of the set that is 0";
  EXPECT_EQ(bounds()[4], std::pair(0.0, 4.0));
  EXPECT_EQ(bounds()[5], std::pair(0.0, 0.0)) << "a member within the tolerance of 0";
  ASSERT_EQ(KLVgetnumrows(env, lp), 3);
  double rhs[3];
  char sense[4] = "";
  EXPECT_EQ(KLVgetrhs(env, lp, rhs, 0, 2), 0);
  EXPECT_EQ(KLVgetsense(env, lp, sense, 0, 2), 0);
  EXPECT_EQ(std::vector<double>(rhs, rhs + 3), (std::vector<double>{10, 5, 7}));
  EXPECT_EQ(std::string(sense), "LLG");
  // Another solution: given again, the view is made anew.
  problem->incumbent.x[0] = 0;
  ASSERT_EQ(KLVchgprobtype(env, lp, 3), 0);
  EXPECT_EQ(KLVgetrhs(env, lp, rhs, 0, 2), 0);
  EXPECT_EQ(rhs[1], 0.0);
}

TEST_F(FixedView, AsksForASolutionOfTheRightProblem) {
  EXPECT_EQ(KLVchgprobtype(env, lp, 3), 1217);
  set_incumbent({0, 0, 0, 0, 0, 0});
  problem->incumbent.has_values = false;
  EXPECT_EQ(KLVchgprobtype(env, lp, 3), 3023);
  problem->incumbent.has_values = true;
  EXPECT_EQ(KLVchgprobtype(env, lp, 8), 1029);
  EXPECT_EQ(KLVchgprobtype(env, lp, 13), 1030);
  ASSERT_EQ(KLVchgqpcoef(env, lp, 4, 5, -1.0), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 7);
  set_incumbent({0, 0, 0, 0, 0, 0});
  EXPECT_EQ(KLVchgprobtype(env, lp, 3), 1024);
  ASSERT_EQ(KLVchgprobtypesolnpool(env, lp, 8, -1), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 8);
  EXPECT_EQ(KLVgetnumquad(env, lp), 2);
  // From a view to a type of its own: the model is that of the problem, the bounds are as before.
  ASSERT_EQ(KLVchgprobtype(env, lp, 0), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 0);
  EXPECT_EQ(KLVgetnumquad(env, lp), 0);
  EXPECT_EQ(bounds()[1], std::pair(0.0, 4.0));
}

}  // namespace
}  // namespace kelvo
