// Functions that step through bases, and those that look at one.
#include "random_lp.h"

namespace {

class PivotTest : public RandomLpTest {
 protected:
  /// The stored solution must be the basic solution of the stored header: nonbasic columns at a
  /// bound (or 0), rows satisfied by the slacks, reduced costs 0 at basic columns.
  void expect_basic_solution() {
    const std::vector<double> x = columns(KLVgetx), dj = columns(KLVgetdj), pi = rows(KLVgetpi),
                              slack = rows(KLVgetslack);
    const std::vector<int> now = head();
    for (int v = -data.m; v < data.n; ++v) {
      const bool is_basic = std::count(now.begin(), now.end(), v) == 1;
      if (v >= 0) {
        double d = data.obj[v];
        for (int i = 0; i < data.m; ++i) d -= data.a[i][v] * pi[i];
        EXPECT_NEAR(d, dj[v], 1e-7 * (1 + std::fabs(data.obj[v])));
      }
      if (is_basic) {
        EXPECT_NEAR(v >= 0 ? dj[v] : pi[-v - 1], 0.0, 1e-7);
        continue;
      }
      const auto [low, high] = data.bounds(v);
      const double value = v >= 0 ? x[v] : slack[-v - 1];
      EXPECT_LE(std::min(std::fabs(value - low), std::fabs(value - high)),
                1e-7 * (1 + (v >= 0 ? 0 : std::fabs(data.rhs[-v - 1]))));
    }
  }
  void expect_objective(double expected) {
    EXPECT_NEAR(objective(), expected, 1e-6 * (1 + std::fabs(expected)));
  }
  template <class Check>
  int found_by(Check check, KLVprob of = nullptr) {
    int found = -77;
    EXPECT_EQ(check(env, of == nullptr ? lp : of, &found), 0);
    return found;
  }
};

TEST_F(PivotTest, SlacksPivotIn) {
  EXPECT_EQ(KLVpivotin(env, lp, nullptr, 0), 0);
  EXPECT_EQ(take(log), "No rows to pivot in.\n");
  EXPECT_EQ(KLVpivotin(env, lp, nullptr, 1), 1003);
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(seed);
    solve(seed, {.m = 8, .n = 12, .wide_scales = seed % 2 == 0});
    std::vector<int> missing;
    for (int i = 0; i < data.m; ++i) {
      if (!basic(-i - 1)) missing.push_back(i);
    }
    const int listed = static_cast<int>(missing.size());
    ASSERT_GT(listed, 1);
    const double best = objective();
    const auto pivot_in = [&](int count) {
      take(log);
      EXPECT_EQ(KLVpivotin(env, lp, missing.data(), count), 0);
      for (int k = 0; k < count; ++k) EXPECT_TRUE(basic(-missing[k] - 1));
      expect_basic_solution();
      return take(log);
    };
    // One, then the rest together with those that are in already.
    EXPECT_EQ(pivot_in(1), "1 row pivoted in.\n");
    EXPECT_EQ(pivot_in(listed), listed == 2 ? "1 row pivoted in.\n"
                                            : std::to_string(listed - 1) + " rows pivoted in.\n");
    EXPECT_EQ(pivot_in(listed), "All indicated row variables are basic.\n");
    solve_again();
    expect_objective(best);
  }
  const int list[] = {0, 8};
  take(errors);
  EXPECT_EQ(KLVpivotin(env, lp, list, 2), 1203);
  EXPECT_EQ(take(errors), "KELVO Error  1203: Row index 8 out of range.\n");
  EXPECT_EQ(KLVpivotin(env, lp, list, 9), 1003);
  EXPECT_EQ(KLVpivotin(env, lp, nullptr, 1), 1004);
}

TEST_F(PivotTest, FixedVariablesPivotOut) {
  EXPECT_EQ(KLVpivotout(env, lp, nullptr, 0), 1262);
  int exchanges = 0;
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    solve(seed, {.m = 8, .n = 12, .wide_scales = seed % 2 == 0});
    // Fix every other basic column where it is.
    std::vector<int> fixed;
    const std::vector<double> x = columns(KLVgetx);
    for (const int v : head()) {
      if (v < 0 || (v + seed) % 2 == 0) continue;
      change_bound(v, 'B', x[v]);
      data.lb[v] = data.ub[v] = columns(KLVgetlb)[v];
      fixed.push_back(v);
    }
    if (fixed.empty()) continue;
    ASSERT_EQ(KLVprimopt(env, lp), 0);
    const double best = objective();
    int still = 0;
    for (const int v : fixed) still += basic(v);
    take(log);
    ASSERT_EQ(KLVpivotout(env, lp, fixed.data(), static_cast<int>(fixed.size())), 0);
    EXPECT_EQ(take(log), still == 0   ? "All indicated variables are nonbasic.\n"
                         : still == 1 ? "One variable pivoted out.\n"
                                      : std::to_string(still) + " variables pivoted out.\n");
    for (const int v : fixed) EXPECT_FALSE(basic(v));
    exchanges += still;
    expect_basic_solution();
    // Neither primal nor dual feasibility was lost.
    EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    expect_objective(best);
  }
  EXPECT_GT(exchanges, 20);
  take(warnings);
  EXPECT_EQ(KLVpivotout(env, lp, nullptr, 0), 0);
  EXPECT_EQ(take(warnings), "No variables to pivot out.\n");
  const int beyond = 12, not_fixed = 0;
  change_bound(0, 'L', 0);
  change_bound(0, 'U', 1);
  EXPECT_EQ(KLVpivotout(env, lp, &beyond, 1), 1203);
  EXPECT_EQ(KLVpivotout(env, lp, &not_fixed, 1), 1221);
}

TEST_F(PivotTest, SinglePivots) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    load(seed, {.m = 6, .n = 9, .wide_scales = seed % 2 == 0});
    // Without a solution the basis is set up first; then steepest descent by hand, with the library
    // choosing who leaves, must get better at every step once the basis is primal feasible.
    ASSERT_EQ(KLVsetphase2(env, lp), 0);
    const int infeasible = found_by(KLVcheckpfeas);
    if (infeasible != KLV_NO_VARIABLE) {
      // By the dual ratio test instead: the library chooses who enters.
      int row = 0;
      const int i = infeasible < 0 ? -infeasible - 1 : -1;
      ASSERT_EQ(KLVgetijrow(env, lp, i, infeasible < 0 ? -1 : infeasible, &row), 0);
      const double x = basic_values()[row];
      const int at = x < 0 && (infeasible >= 0 || data.senses[i] != 'G') ? 0 : 2;
      const int code = KLVpivot(env, lp, KLV_NO_VARIABLE, infeasible, at);
      EXPECT_TRUE(code == 0 || code == 1267) << code;
      EXPECT_EQ(basic(infeasible), code != 0);
      expect_basic_solution();
      continue;
    }
    for (int step = 0; step < 100; ++step) {
      const double before = data.sense * objective();
      const int entering = found_by(KLVcheckdfeas);
      if (entering == KLV_NO_VARIABLE) break;
      ASSERT_EQ(KLVpivot(env, lp, entering, KLV_NO_VARIABLE, 0), 0);
      EXPECT_LE(data.sense * objective(), before + 1e-7 * (1 + std::fabs(before)));
    }
    EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    expect_basic_solution();
    const double by_hand = objective();
    set(KLV_PARAM_ADVIND, 0);
    solve_again();
    set(KLV_PARAM_ADVIND, 1);
    expect_objective(by_hand);
  }
}

TEST_F(PivotTest, PivotsThereAndBackAndIllegalOnes) {
  solve(7, {.m = 6, .n = 9});
  const double best = objective();
  const std::vector<int> before = head();
  const std::vector<double> row = inverse(KLVbinvarow, 0);
  int entering = -1;
  for (int j = 0; j < data.n; ++j) {
    if (!basic(j) && std::fabs(row[j]) > 1e-3) entering = j;
  }
  ASSERT_GE(entering, 0);
  const int side = columns(KLVgetx)[entering] == data.ub[entering] ? 2 : 0;
  ASSERT_EQ(KLVpivot(env, lp, entering, before[0], 0), 0);
  EXPECT_FALSE(basic(before[0]));
  EXPECT_EQ(head()[0], entering);  // the positions of the others stay
  expect_basic_solution();
  ASSERT_EQ(KLVpivot(env, lp, before[0], entering, side), 0);
  EXPECT_EQ(head(), before);
  expect_objective(best);

  EXPECT_EQ(KLVpivot(env, lp, before[0], KLV_NO_VARIABLE, 0), 1267);  // basic already
  EXPECT_EQ(KLVpivot(env, lp, KLV_NO_VARIABLE, entering, 0), 1267);   // not basic
  EXPECT_EQ(KLVpivot(env, lp, KLV_NO_VARIABLE, KLV_NO_VARIABLE, 0), 1003);
  EXPECT_EQ(KLVpivot(env, lp, data.n, KLV_NO_VARIABLE, 0), 1200);
  EXPECT_EQ(KLVpivot(env, lp, -data.m - 1, KLV_NO_VARIABLE, 0), 1200);
  EXPECT_EQ(KLVpivot(env, lp, entering, data.n, 0), 1200);
  EXPECT_EQ(KLVpivot(env, lp, entering, before[0], 7), 1003);
  EXPECT_EQ(head(), before);
}

// A basis that is kept from one pivot to the next must hear of every edit between them.
TEST_F(PivotTest, AnEditBetweenTwoPivotsCounts) {
  for (const char sense : {'R', 'E', 'G'}) {
    SCOPED_TRACE(sense);
    for (int row = 0; row < 6; ++row) {
      solve(7, {.m = 6, .n = 9});
      ASSERT_EQ(KLVpivotin(env, lp, &row, 1), 0);
      const double range = 1.5;
      ASSERT_EQ(KLVchgsense(env, lp, 1, &row, "R"), 0);
      ASSERT_EQ(KLVpivotin(env, lp, &row, 1), 0);
      if (sense == 'R') {
        ASSERT_EQ(KLVchgrngval(env, lp, 1, &row, &range), 0);
        data.rng[row] = range;
      } else {
        ASSERT_EQ(KLVchgsense(env, lp, 1, &row, &sense), 0);
      }
      EXPECT_EQ(KLVgetstat(env, lp), 0);
      data.senses[row] = sense;
      ASSERT_EQ(KLVsetphase2(env, lp), 0);
      expect_basic_solution();
      KLVprob copy = clone();
      EXPECT_EQ(found_by(KLVcheckpfeas), found_by(KLVcheckpfeas, copy));
      ASSERT_EQ(KLVdualopt(env, copy), 0);
      ASSERT_EQ(KLVdualopt(env, lp), 0);
      EXPECT_EQ(KLVgetstat(env, lp), KLVgetstat(env, copy));
      EXPECT_EQ(KLVfreeprob(env, &copy), 0);
    }
  }
}

TEST_F(PivotTest, RatioTestsAgreeWithTheTableau) {
  double ratio[2];
  const int one = 0;
  EXPECT_EQ(KLVdratio(env, lp, &one, 1, ratio, ratio, nullptr, nullptr, nullptr, nullptr), 1258);
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    solve(seed, {.m = 6, .n = 9, .wide_scales = seed % 2 == 0});
    const std::vector<int> now = head();
    const auto is_basic = [&](int v) { return std::count(now.begin(), now.end(), v) > 0; };
    const std::vector<double> basics = basic_values(), x = columns(KLVgetx),
                              slack = rows(KLVgetslack), dj = columns(KLVgetdj),
                              pi = rows(KLVgetpi);
    for (int v = -data.m; v < data.n; ++v) {
      double step[2] = {-1, -1};  // down, up
      int leaves[2], at[2], code[2];
      ASSERT_EQ(KLVpratio(env, lp, &v, 1, &step[0], &step[1], &leaves[0], &leaves[1], &at[0],
                          &at[1], &code[0], &code[1]),
                0);
      if (is_basic(v)) {
        EXPECT_EQ(code[0], 1267);
        EXPECT_EQ(leaves[1], KLV_NO_VARIABLE);
        continue;
      }
      const std::vector<double> alpha = inverse(KLVbinvacol, v);
      for (const int direction : {-1, 1}) {
        const int side = direction > 0;
        const auto [own_low, own_high] = data.bounds(v);
        double best = own_high == kNone || own_low == -kNone ? kNone : own_high - own_low;
        for (int p = 0; p < data.m; ++p) {
          if (std::fabs(alpha[p]) < 1e-10) continue;
          const auto [low, high] = data.bounds(now[p]);
          const double rate = -direction * alpha[p];
          const double bound = rate < 0 ? low : high;
          if (std::fabs(bound) == kNone) continue;
          best = std::min(best, std::fabs(basics[p] - bound) / std::fabs(rate));
        }
        EXPECT_NEAR(step[side], best, 1e-7 * (1 + std::fabs(best))) << v << " " << direction;
        EXPECT_EQ(code[side], 0);
        EXPECT_EQ(leaves[side] == KLV_NO_VARIABLE, best == kNone);
      }
    }
    // Dual: |d_j / alpha_j| over the nonbasic variables that may move the right way.
    for (int p = 0; p < data.m; ++p) {
      double step[2] = {-1, -1};
      int enters[2], code[2];
      ASSERT_EQ(KLVdratio(env, lp, &now[p], 1, &step[0], &step[1], &enters[0], &enters[1], &code[0],
                          &code[1]),
                0);
      EXPECT_EQ(code[0] + code[1], 0);
      const std::vector<double> row = inverse(KLVbinvarow, p), y = inverse(KLVbinvrow, p);
      for (const int direction : {-1, 1}) {
        const int side = direction > 0;
        double best = kNone;
        for (int v = -data.m; v < data.n; ++v) {
          const auto [low, high] = data.bounds(v);
          if (is_basic(v) || low == high) continue;
          const int i = -v - 1;
          const double sign = v < 0 && data.senses[i] == 'R' ? -1 : 1;
          const double entry = v >= 0 ? row[v] : sign * y[i];
          const double reduced = data.sense * (v >= 0 ? dj[v] : -sign * pi[i]);
          const double value = v >= 0 ? x[v] : slack[i];
          if (std::fabs(entry) < 1e-10) continue;
          const bool at_upper = std::fabs(value - high) < std::fabs(value - low);
          const bool rises = direction * entry < 0;
          if (rises != at_upper) best = std::min(best, std::fabs(reduced / entry));
        }
        EXPECT_NEAR(step[side], best, 1e-6 * (1 + std::fabs(best))) << now[p] << " " << direction;
        EXPECT_EQ(enters[side] == KLV_NO_VARIABLE, best == kNone);
      }
      if (now[p] < 0) continue;
      double md[2] = {0, 0};
      ASSERT_EQ(KLVmdleave(env, lp, &now[p], 1, &md[0], &md[1], &code[0], &code[1]), 0);
      for (const int side : {0, 1}) {
        EXPECT_EQ(md[side], data.sense * step[side]);
        EXPECT_EQ(code[side], step[side] == kNone ? 1267 : 0);
      }
    }
    if (HasFailure()) return;
  }
  take(warnings);
  EXPECT_EQ(KLVdratio(env, lp, &one, 0, ratio, ratio, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(take(warnings), "Variable list empty.\n");
  EXPECT_EQ(KLVmdleave(env, lp, &one, 0, ratio, ratio, nullptr, nullptr), 0);
  EXPECT_EQ(take(warnings), "Variable list empty.\n");
  EXPECT_EQ(KLVdratio(env, lp, nullptr, 1, ratio, ratio, nullptr, nullptr, nullptr, nullptr), 1004);
  EXPECT_EQ(KLVdratio(env, lp, &one, -1, ratio, ratio, nullptr, nullptr, nullptr, nullptr), 1003);
  EXPECT_EQ(KLVdratio(env, lp, &one, 1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  const int far = 9;
  int code = 0;
  take(errors);
  EXPECT_EQ(KLVmdleave(env, lp, &far, 1, ratio, ratio, nullptr, nullptr), 1201);
  EXPECT_EQ(take(errors), "KELVO Error  1201: Column index 9 out of range.\n");
  EXPECT_EQ(KLVdratio(env, lp, &far, 1, ratio, ratio, nullptr, nullptr, &code, nullptr), 0);
  EXPECT_EQ(code, 1267);
}

TEST_F(PivotTest, ChecksOfBasisAndSolution) {
  load(11, {.m = 6, .n = 9});
  int found = -1;
  EXPECT_EQ(KLVcheckpfeas(env, lp, nullptr), 1004);
  EXPECT_EQ(KLVcheckpfeas(env, lp, &found), 1262);
  EXPECT_EQ(KLVchecksoln(env, lp, &found), 1217);
  EXPECT_EQ(KLVchecksoln(env, lp, nullptr), 1004);
  solve_again();
  EXPECT_EQ(found_by(KLVcheckpfeas), KLV_NO_VARIABLE);
  EXPECT_EQ(found_by(KLVcheckdfeas), KLV_NO_VARIABLE);
  EXPECT_EQ(found_by(KLVchecksoln), KLV_STATUS_OPTIMAL);
  // A bound cuts a basic column off; a cost makes a nonbasic one attractive: the basis that is kept
  // hears of each, and of its end.
  const std::vector<double> dj = columns(KLVgetdj), x = columns(KLVgetx);
  const std::vector<int> now = head();
  for (int j = 0; j < data.n; ++j) {
    const bool is_basic = std::count(now.begin(), now.end(), j) == 1;
    if (is_basic && x[j] - 0.5 > data.lb[j]) {
      change_bound(j, 'U', x[j] - 0.25);
      EXPECT_EQ(found_by(KLVcheckpfeas), j);
      EXPECT_EQ(found_by(KLVcheckdfeas), KLV_NO_VARIABLE);
      EXPECT_EQ(KLVgetstat(env, lp), 0);  // nothing was stored
      change_bound(j, 'U', data.ub[j]);
      EXPECT_EQ(found_by(KLVcheckpfeas), KLV_NO_VARIABLE);
    } else if (!is_basic && data.lb[j] != data.ub[j]) {
      change_cost(j, data.obj[j] - 2 * dj[j]);
      EXPECT_EQ(found_by(KLVcheckdfeas), std::fabs(dj[j]) > 1e-6 ? j : KLV_NO_VARIABLE);
      change_cost(j, data.obj[j]);
    }
  }
}

TEST_F(PivotTest, StrongBranching) {
  for (unsigned seed = 0; seed < 16; ++seed) {
    SCOPED_TRACE(seed);
    solve(seed, {.m = 7, .n = 12, .wide_scales = seed % 2 == 0});
    const double best = objective();
    const std::vector<int> before = head();
    const std::vector<double> x = columns(KLVgetx);
    std::vector<int> list(data.n);
    for (int j = 0; j < data.n; ++j) list[j] = j;
    std::vector<double> down(data.n), up(data.n), few_down(data.n), few_up(data.n);
    ASSERT_EQ(KLVstrongbranch(env, lp, list.data(), data.n, down.data(), up.data(), 1000), 0);
    ASSERT_EQ(KLVstrongbranch(env, lp, list.data(), data.n, few_down.data(), few_up.data(), 1), 0);
    // Nothing has changed: the solution, the basis, the order of its positions.
    EXPECT_EQ(columns(KLVgetx), x);
    EXPECT_EQ(head(), before);
    EXPECT_EQ(objective(), best);
    EXPECT_EQ(found_by(KLVcheckpfeas), KLV_NO_VARIABLE);
    for (int j = 0; j < data.n; ++j) {
      const double whole = std::round(x[j]);
      const bool integral = std::fabs(x[j] - whole) < 1e-9;
      for (const bool is_down : {true, false}) {
        KLVprob trial = clone();
        const double bound = integral ? whole : is_down ? std::floor(x[j]) : std::ceil(x[j]);
        double expected = data.sense * 1e75;
        if (is_down ? bound >= data.lb[j] : bound <= data.ub[j]) {
          change_bound(j, is_down ? 'U' : 'L', bound, trial);
          ASSERT_EQ(KLVdualopt(env, trial), 0);
          if (KLVgetstat(env, trial) == KLV_STATUS_OPTIMAL) expected = objective(trial);
        }
        const double got = is_down ? down[j] : up[j], weaker = is_down ? few_down[j] : few_up[j];
        EXPECT_NEAR(got, expected, 1e-6 * (1 + std::fabs(expected))) << j << " " << is_down;
        // Fewer iterations give a bound that is no stronger.
        EXPECT_LE(data.sense * weaker, data.sense * got + 1e-6 * (1 + std::fabs(got)));
        EXPECT_GE(data.sense * weaker, data.sense * best - 1e-6 * (1 + std::fabs(best)));
        EXPECT_EQ(KLVfreeprob(env, &trial), 0);
      }
    }
    if (HasFailure()) return;
  }
  double value = 0;
  const int far = 12, first = 0;
  const auto probe = [&](const int* list, int limit) {
    return KLVstrongbranch(env, lp, list, 1, &value, &value, limit);
  };
  // Stopped at once, and everything is as before.
  volatile int flag = 1;
  ASSERT_EQ(KLVsetterminate(env, &flag), 0);
  const double best = objective();
  EXPECT_EQ(probe(&first, 10), 1263);
  EXPECT_EQ(objective(), best);
  EXPECT_EQ(KLVsetphase2(env, lp), 0);
  EXPECT_EQ(objective(), best);
  ASSERT_EQ(KLVsetterminate(env, nullptr), 0);
  EXPECT_EQ(probe(&far, 5), 1201);
  EXPECT_EQ(probe(&first, -1), 1003);
  EXPECT_EQ(probe(nullptr, 1), 1004);
  change_cost(0, 0);
  EXPECT_EQ(probe(&first, 1), 1217);
  set(KLV_PARAM_ITLIM, 0);
  set(KLV_PARAM_ADVIND, 0);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(probe(&first, 1), 1252);
}

TEST_F(PivotTest, OnlyLinearProblems) {
  ASSERT_EQ(KLVnewcols(env, lp, 1, nullptr, nullptr, nullptr, "I", nullptr), 0);
  const int one = 0;
  int i = 0;
  double v = 0;
  const Codes codes = {
      KLVpivotin(env, lp, &one, 0),
      KLVpivotout(env, lp, &one, 0),
      KLVpivot(env, lp, 0, KLV_NO_VARIABLE, 0),
      KLVsetphase2(env, lp),
      KLVcheckpfeas(env, lp, &i),
      KLVcheckdfeas(env, lp, &i),
      KLVchecksoln(env, lp, &i),
      KLVmdleave(env, lp, &one, 1, &v, &v, nullptr, nullptr),
      KLVdratio(env, lp, &one, 1, &v, &v, nullptr, nullptr, nullptr, nullptr),
      KLVpratio(env, lp, &one, 1, &v, &v, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
      KLVstrongbranch(env, lp, &one, 1, &v, &v, 1)};
  EXPECT_EQ(codes, Codes(11, 1017));
  EXPECT_EQ(KLVpivotin(env, nullptr, &one, 0), 1009);
}

}  // namespace
