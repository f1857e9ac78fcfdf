// Presolve through the interface: what it says and what it leaves.
#include "file_fixture.h"

namespace {

class PresolveMessages : public SmallLp {
 protected:
  /// What presolve said up to the time, which is different each time.
  std::string said() {
    const std::string text = take(results);
    EXPECT_TRUE(contains(text, "Presolve time = "));
    return text.substr(0, text.find("Presolve time = "));
  }
};

TEST_F(PresolveMessages, Summary) {
  // Nothing to reduce; y <= 1 as a row makes it trivial.
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(said(), "Tried aggregator 1 time.\nNo LP presolve or aggregator reductions.\n");
  add_row(1, 'L', 1);
  set(KLV_PARAM_ADVIND, 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(said(),
            "Tried aggregator 1 time.\nLP Presolve eliminated 3 rows and 2 columns.\n"
            "All rows and columns eliminated.\n");
  EXPECT_NEAR(objective(), 11.0, 1e-9);
  EXPECT_EQ(columns(KLVgetx), (std::vector<double>{3, 1}));
  EXPECT_EQ(rows(KLVgetpi), (std::vector<double>{0, 0, 2}));
  EXPECT_EQ(columns(KLVgetdj), (std::vector<double>{3, 0}));

  set(KLV_PARAM_AGGIND, 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_FALSE(contains(said(), "Tried aggregator"));
  set(KLV_PARAM_REDUCE, 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(said(), "No LP presolve or aggregator reductions.\n");
  set(KLV_PARAM_PREIND, 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_FALSE(contains(results, "resolve"));
}

TEST_F(PresolveMessages, WhatIsWrongWithTheModel) {
  const auto expect = [&](int status, const char* text) {
    SCOPED_TRACE(text);
    ASSERT_EQ(KLVlpopt(env, lp), 0);
    EXPECT_EQ(KLVgetstat(env, lp), status);
    EXPECT_TRUE(contains(said(), text));
    double x[3];
    EXPECT_EQ(KLVgetx(env, lp, x, 0, 1), 1217);
    load();
  };
  const double five = 5, one = 1;
  EXPECT_EQ(KLVnewrows(env, lp, 1, &five, "E", nullptr, nullptr), 0);
  expect(KLV_STATUS_INFEASIBLE, "Infeasibility row 'c3':  0 == 5.\n");
  EXPECT_EQ(KLVnewcols(env, lp, 1, &one, nullptr, nullptr, nullptr, nullptr), 0);
  expect(KLV_STATUS_INFEASIBLE_OR_UNBOUNDED, "Dual infeasible due to empty column 'x3'.\n");
  add_row(0, 'G', 8);
  expect(KLV_STATUS_INFEASIBLE, "Bound infeasibility column 'x1'.\n");
  change_rhs(0, -1);
  expect(KLV_STATUS_INFEASIBLE, "Implied bounds make row 'c1' infeasible.\n");
}

/// min x + 2y + 3z + w,  x + y + z + w >= 3,  y + 2z - w >= 1,  x - y = 1,  w fixed at 1,
/// z in [0, 4], the others >= 0.
class PresolvedProblem : public FileTest {
 protected:
  PresolvedProblem() {
    EXPECT_EQ(KLVreadcopyprob(env, lp,
                              put("whole.lp",
                                  "min x + 2 y + 3 z + w\nst\n x + y + z + w >= 3\n"
                                  " y + 2 z - w >= 1\n x - y = 1\nbounds\n z <= 4\n w = 1\nend\n")
                                  .c_str(),
                              nullptr),
              0);
    // The forms are only interesting while something is left.
    set(KLV_PARAM_REDUCE, 1);
  }
  KLVprob reduced() {
    KLVprob found = nullptr;
    EXPECT_EQ(KLVgetredlp(env, lp, &found), 0);
    return found;
  }
};

TEST_F(PresolvedProblem, ValuesGoBothWays) {
  double prex[4], prepi[3], back[4] = {};
  EXPECT_EQ(KLVcrushx(env, lp, back, prex), 1103);
  ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
  EXPECT_EQ(KLVgetredlp(env, lp, nullptr), 1004);
  ASSERT_NE(reduced(), nullptr);
  const int left = KLVgetnumcols(env, reduced());
  EXPECT_LT(left, 4);
  int prestat = -1, pcstat[4], prstat[3], ocstat[4], orstat[3];
  ASSERT_EQ(KLVgetprestat(env, lp, &prestat, pcstat, prstat, ocstat, orstat), 0);
  EXPECT_EQ(prestat, 1);
  EXPECT_EQ(pcstat[3], -1);
  EXPECT_EQ(prstat[2], -4);
  for (int k = 0; k < left; ++k) EXPECT_EQ(pcstat[ocstat[k]], k);

  // The optimum of the whole problem, from a problem of its own, through the reduced one and back.
  KLVprob copy = clone();
  const double best = optimum(copy);
  const std::vector<double> x = columns(KLVgetx, copy), pi = rows(KLVgetpi, copy);
  ASSERT_EQ(KLVcrushx(env, lp, x.data(), prex), 0);
  ASSERT_EQ(KLVuncrushx(env, lp, back, prex), 0);
  for (int j = 0; j < 4; ++j) EXPECT_NEAR(back[j], x[j], 1e-9);
  ASSERT_EQ(KLVcrushpi(env, lp, pi.data(), prepi), 0);
  ASSERT_EQ(KLVuncrushpi(env, lp, back, prepi), 0);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(back[i], pi[i], 1e-9);

  // The objective as a form has the same value at the crushed point.
  const int all[] = {0, 1, 2, 3}, fixed = 3, beyond = 4;
  const double cost[] = {1, 2, 3, 1};
  int length = 0, indices[4];
  double offset = 0.0, values[4];
  ASSERT_EQ(KLVcrushform(env, lp, 4, all, cost, &length, &offset, indices, values), 0);
  double value = offset;
  for (int k = 0; k < length; ++k) value += values[k] * prex[indices[k]];
  EXPECT_NEAR(value, best, 1e-9);
  ASSERT_EQ(KLVcrushform(env, lp, 1, &fixed, cost, &length, &offset, indices, values), 0);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(offset, 1.0);
  EXPECT_EQ(KLVcrushform(env, lp, 1, &beyond, cost, &length, &offset, indices, values), 1201);

  double dj[4], slack[3];
  ASSERT_EQ(KLVdjfrompi(env, lp, pi.data(), dj), 0);
  EXPECT_NEAR(dj[0], 1 - pi[0] - pi[2], 1e-9);
  ASSERT_EQ(KLVslackfromx(env, lp, x.data(), slack), 0);
  EXPECT_NEAR(slack[1], 1 - (x[1] + 2 * x[2] - x[3]), 1e-9);
  EXPECT_EQ(KLVqpdjfrompi(env, lp, pi.data(), x.data(), dj), 5004);
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);
}

TEST_F(PresolvedProblem, ProtectionAndChanges) {
  const int kept[] = {0, 1, 2, 3}, last = 3;
  ASSERT_EQ(KLVcopyprotected(env, lp, 4, kept), 0);
  ASSERT_EQ(KLVpresolve(env, lp, 1), 0);
  ASSERT_NE(reduced(), nullptr);
  EXPECT_EQ(KLVgetnumcols(env, reduced()), 4);
  // Column 2 goes, the marks of the others move along; any change frees the presolved problem.
  ASSERT_EQ(KLVdelcols(env, lp, 2, 2), 0);
  EXPECT_EQ(reduced(), nullptr);
  ASSERT_EQ(KLVpresolve(env, lp, 1), 0);
  EXPECT_EQ(KLVgetnumcols(env, reduced()), 3);
  ASSERT_EQ(KLVfreepresolve(env, lp), 0);
  EXPECT_EQ(reduced(), nullptr);
  EXPECT_EQ(KLVcopyprotected(env, lp, 1, &last), 1201);
}

TEST_F(PresolvedProblem, BoundsAlone) {
  double lower[4], upper[4];
  int redundant[3];
  ASSERT_EQ(KLVbasicpresolve(env, lp, lower, upper, redundant), 0);
  EXPECT_NEAR(lower[0], 1.0, 1e-12);  // x = 1 + y
  EXPECT_EQ(upper[0], 1e20);
  EXPECT_EQ(redundant[0], 0);
  change_bound(0, 'U', 1);
  change_bound(1, 'L', 5);
  EXPECT_EQ(KLVbasicpresolve(env, lp, lower, upper, redundant), 1117);
}

/// x is 0 or in [2, 10]: its rows leave it less, and leave the others what they have where it is 0.
TEST_F(PresolvedProblem, BoundsBesideZero) {
  const auto expect = [&](const std::string& rows, const std::vector<double>& bounds,
                          int code = 0) {
    SCOPED_TRACE(rows);
    const std::string text =
        "min x + y\nst\n" + rows + "\nbounds\n 2 <= x <= 10\n y <= 5\nsemi-continuous\n x\nend\n";
    ASSERT_EQ(KLVreadcopyprob(env, lp, put("semi.lp", text).c_str(), nullptr), 0);
    double lower[2], upper[2];
    int redundant[2];
    ASSERT_EQ(KLVbasicpresolve(env, lp, lower, upper, redundant), code);
    if (code != 0) return;
    EXPECT_EQ(redundant[0], 0);
    for (int j = 0; j < 2; ++j) {
      EXPECT_NEAR(lower[j], bounds[2 * j], 1e-9);
      EXPECT_NEAR(upper[j], bounds[2 * j + 1], 1e-9);
    }
  };
  expect(" x + y <= 4\n y >= 0", {2, 4, 0, 4});
  expect(" x + y <= 4\n y >= 3", {0, 0, 3, 4});
  expect(" x + y >= 7\n y >= 3", {2, 10, 3, 5});
  expect(" x + y >= 2\n x + y <= 9", {2, 9, 0, 5});
  expect(" x + y <= 1.5\n x - y >= 1", {}, 1117);
}

/// Bounds that cross by more than the tolerance are never closed, whoever looks at them.
TEST_F(PresolvedProblem, BoundsThatCross) {
  const std::string text =
      "min 3 x1 + 2 x2 + 4 x3\nst\n x1 + 3 x2 + x3 >= 4\n 2 x1 + x2 + x3 >= 3\n"
      "bounds\n x1 <= 9\n 2.5 <= x2 <= 2.6\n x3 <= 9\nend\n";
  ASSERT_EQ(KLVreadcopyprob(env, lp, put("crossing.lp", text).c_str(), nullptr), 0);
  change_bound(1, 'U', 2.5 - 1e-7);
  EXPECT_EQ(KLVpresolve(env, lp, 0), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
  change_bound(1, 'U', 2);
  const char* const reason = "Bound infeasibility column 'x2'.\n";
  take(results);
  EXPECT_EQ(KLVpresolve(env, lp, 0), 1117);
  EXPECT_EQ(take(results), reason);
  EXPECT_EQ(KLVbasicpresolve(env, lp, nullptr, nullptr, nullptr), 1117);
  EXPECT_EQ(take(results), reason);
  for (const int presolve : {0, 1}) {
    EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_PREIND, presolve), 0);
    for (const auto optimize : {KLVprimopt, KLVdualopt}) {
      ASSERT_EQ(optimize(env, lp), 0);
      EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_INFEASIBLE);
      EXPECT_EQ(take(results), reason);
    }
  }
}

TEST_F(PresolvedProblem, Files) {
  double offset = 0.0;
  EXPECT_EQ(KLVpreslvwrite(env, lp, "unused.lp", &offset), 1103);
  ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
  EXPECT_EQ(KLVpreslvwrite(env, lp, nullptr, &offset), 1421);
  const std::string file = path("reduced.pre");
  ASSERT_EQ(KLVpreslvwrite(env, lp, file.c_str(), &offset), 0);
  KLVprob again = clone();
  ASSERT_EQ(KLVreadcopyprob(env, again, file.c_str(), "MPS"), 0);
  const double part = optimum(again);
  EXPECT_NEAR(part + offset, optimum(lp), 1e-9);
  EXPECT_EQ(KLVfreeprob(env, &again), 0);
}

}  // namespace
