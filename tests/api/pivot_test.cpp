// Functions that step through bases, and those that look at one.
#include <algorithm>

#include "random_lp.h"

namespace {

class PivotTest : public ProblemTest {
 protected:
  void solve(const DenseLp& data) {
    data.load(env, lp);
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    take(log);
  }
  std::vector<int> head(const DenseLp& data) {
    std::vector<int> result(data.m);
    EXPECT_EQ(KLVgetbhead(env, lp, result.data(), nullptr), 0);
    return result;
  }
  bool basic(const DenseLp& data, int variable) {
    const std::vector<int> now = head(data);
    return std::count(now.begin(), now.end(), variable) == 1;
  }
  double objective() {
    double value = 0.0;
    EXPECT_EQ(KLVgetobjval(env, lp, &value), 0);
    return value;
  }
  /// The stored solution must be the basic solution of the stored header: nonbasic columns at a
  /// bound (or 0), rows satisfied by the slacks, reduced costs 0 at basic columns.
  void expect_basic_solution(const DenseLp& data) {
    const int m = data.m, n = data.n;
    std::vector<double> x(n), slack(m), dj(n), pi(m);
    int status = 0;
    ASSERT_EQ(KLVsolution(env, lp, &status, nullptr, x.data(), pi.data(), slack.data(), dj.data()),
              0);
    for (int j = 0; j < n; ++j) {
      double d = data.obj[j];
      for (int i = 0; i < m; ++i) d -= data.a[i][j] * pi[i];
      EXPECT_NEAR(d, dj[j], 1e-7 * (1 + std::fabs(data.obj[j])));
      if (basic(data, j)) {
        EXPECT_NEAR(d, 0.0, 1e-7);
      } else {
        const double off = std::min(std::fabs(x[j] - data.lb[j]), std::fabs(x[j] - data.ub[j]));
        EXPECT_LE(off, 1e-9);
      }
    }
    for (int i = 0; i < m; ++i) {
      if (basic(data, -i - 1)) {
        EXPECT_NEAR(pi[i], 0.0, 1e-9);
      } else {
        const double off = std::min(std::fabs(slack[i]), std::fabs(slack[i] - data.rng[i]));
        EXPECT_LE(off, 1e-7 * (1 + std::fabs(data.rhs[i])));
      }
    }
  }
};

TEST_F(PivotTest, SlacksPivotIn) {
  EXPECT_EQ(KLVpivotin(env, lp, nullptr, 0), 0);
  EXPECT_EQ(take(log), "No rows to pivot in.\n");
  EXPECT_EQ(KLVpivotin(env, lp, nullptr, 1), 1003);
  for (unsigned seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const DenseLp data = random_lp(seed, {.m = 8, .n = 12, .wide_scales = seed % 2 == 0});
    solve(data);
    std::vector<int> missing;
    for (int i = 0; i < data.m; ++i) {
      if (!basic(data, -i - 1)) missing.push_back(i);
    }
    const int listed = static_cast<int>(missing.size());
    ASSERT_GT(listed, 1);
    const double best = objective();
    // One, then the rest together with those that are in already.
    ASSERT_EQ(KLVpivotin(env, lp, missing.data(), 1), 0);
    EXPECT_EQ(take(log), "1 row pivoted in.\n");
    EXPECT_TRUE(basic(data, -missing[0] - 1));
    expect_basic_solution(data);
    ASSERT_EQ(KLVpivotin(env, lp, missing.data(), listed), 0);
    EXPECT_EQ(take(log), listed == 2 ? "1 row pivoted in.\n"
                                     : std::to_string(listed - 1) + " rows pivoted in.\n");
    for (const int row : missing) EXPECT_TRUE(basic(data, -row - 1));
    expect_basic_solution(data);
    ASSERT_EQ(KLVpivotin(env, lp, missing.data(), listed), 0);
    EXPECT_EQ(take(log), "All indicated row variables are basic.\n");
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    EXPECT_NEAR(objective(), best, 1e-6 * (1 + std::fabs(best)));
  }
  const int rows[] = {0, 8};
  take(errors);
  EXPECT_EQ(KLVpivotin(env, lp, rows, 2), 1203);
  EXPECT_EQ(take(errors), "KELVO Error  1203: Row index 8 out of range.\n");
  EXPECT_EQ(KLVpivotin(env, lp, rows, 9), 1003);
  EXPECT_EQ(KLVpivotin(env, lp, nullptr, 1), 1004);
}

TEST_F(PivotTest, FixedVariablesPivotOut) {
  EXPECT_EQ(KLVpivotout(env, lp, nullptr, 0), 1262);
  int exchanges = 0;
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    DenseLp data = random_lp(seed, {.m = 8, .n = 12, .wide_scales = seed % 2 == 0});
    solve(data);
    // Fix every other basic column where it stands.
    std::vector<int> fixed;
    std::vector<double> values(data.n);
    ASSERT_EQ(KLVgetx(env, lp, values.data(), 0, data.n - 1), 0);
    for (const int v : head(data)) {
      if (v < 0 || (v + seed) % 2 == 0) continue;
      ASSERT_EQ(KLVchgbds(env, lp, 1, &v, "B", &values[v]), 0);
      ASSERT_EQ(KLVgetlb(env, lp, &data.lb[v], v, v), 0);
      data.ub[v] = data.lb[v];
      fixed.push_back(v);
    }
    if (fixed.empty()) continue;
    ASSERT_EQ(KLVprimopt(env, lp), 0);
    const double best = objective();
    int still = 0;
    for (const int v : fixed) still += basic(data, v);
    take(log);
    ASSERT_EQ(KLVpivotout(env, lp, fixed.data(), static_cast<int>(fixed.size())), 0);
    EXPECT_EQ(take(log), still == 0   ? "All indicated variables are nonbasic.\n"
                         : still == 1 ? "One variable pivoted out.\n"
                                      : std::to_string(still) + " variables pivoted out.\n");
    for (const int v : fixed) EXPECT_FALSE(basic(data, v));
    exchanges += still;
    expect_basic_solution(data);
    // Neither primal nor dual feasibility was lost.
    EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    EXPECT_NEAR(objective(), best, 1e-7 * (1 + std::fabs(best)));
  }
  EXPECT_GT(exchanges, 20);
  take(warnings);
  EXPECT_EQ(KLVpivotout(env, lp, nullptr, 0), 0);
  EXPECT_EQ(take(warnings), "No variables to pivot out.\n");
  const int column_out_of_range = 12, not_fixed = 0;
  const double bounds[] = {0, 1};
  const int twice[] = {0, 0};
  ASSERT_EQ(KLVchgbds(env, lp, 2, twice, "LU", bounds), 0);
  EXPECT_EQ(KLVpivotout(env, lp, &column_out_of_range, 1), 1203);
  EXPECT_EQ(KLVpivotout(env, lp, &not_fixed, 1), 1221);
}

TEST_F(PivotTest, SinglePivots) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const DenseLp data = random_lp(seed, {.m = 6, .n = 9, .wide_scales = seed % 2 == 0});
    data.load(env, lp);
    // Without a solution the basis is set up first; then steepest descent by hand, with the library
    // choosing who leaves, must get better at every step once the basis is primal feasible.
    ASSERT_EQ(KLVsetphase2(env, lp), 0);
    int infeasible = 0;
    ASSERT_EQ(KLVcheckpfeas(env, lp, &infeasible), 0);
    if (infeasible != KLV_NO_VARIABLE) {
      // By the dual ratio test instead: the library chooses who enters.
      double x = 0.0;
      int row = 0;
      const int i = infeasible < 0 ? -infeasible - 1 : -1;
      ASSERT_EQ(KLVgetijrow(env, lp, i, infeasible < 0 ? -1 : infeasible, &row), 0);
      std::vector<double> values(data.m);
      ASSERT_EQ(KLVgetbhead(env, lp, nullptr, values.data()), 0);
      x = values[row];
      const int at = x < 0 && (infeasible >= 0 || data.senses[i] != 'G') ? 0 : 2;
      const int code = KLVpivot(env, lp, KLV_NO_VARIABLE, infeasible, at);
      EXPECT_TRUE(code == 0 || code == 1267) << code;
      EXPECT_EQ(basic(data, infeasible), code != 0);
      expect_basic_solution(data);
      continue;
    }
    for (int step = 0; step < 100; ++step) {
      const double before = data.sense * objective();
      int entering = 0;
      ASSERT_EQ(KLVcheckdfeas(env, lp, &entering), 0);
      if (entering == KLV_NO_VARIABLE) break;
      ASSERT_EQ(KLVpivot(env, lp, entering, KLV_NO_VARIABLE, 0), 0);
      EXPECT_LE(data.sense * objective(), before + 1e-7 * (1 + std::fabs(before)));
    }
    EXPECT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    expect_basic_solution(data);
    const double by_hand = objective();
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 0), 0);
    ASSERT_EQ(KLVdualopt(env, lp), 0);
    ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 1), 0);
    EXPECT_NEAR(objective(), by_hand, 1e-6 * (1 + std::fabs(by_hand)));
  }
}

TEST_F(PivotTest, PivotsThereAndBackAndIllegalOnes) {
  const DenseLp data = random_lp(7, {.m = 6, .n = 9});
  solve(data);
  const double best = objective();
  const std::vector<int> before = head(data);
  std::vector<double> row(data.n);
  ASSERT_EQ(KLVbinvarow(env, lp, 0, row.data()), 0);
  int entering = -1;
  for (int j = 0; j < data.n; ++j) {
    if (!basic(data, j) && std::fabs(row[j]) > 1e-3) entering = j;
  }
  ASSERT_GE(entering, 0);
  std::vector<double> x(data.n);
  ASSERT_EQ(KLVgetx(env, lp, x.data(), 0, data.n - 1), 0);
  const int side = x[entering] == data.ub[entering] ? 2 : 0;
  ASSERT_EQ(KLVpivot(env, lp, entering, before[0], 0), 0);
  EXPECT_TRUE(basic(data, entering));
  EXPECT_FALSE(basic(data, before[0]));
  EXPECT_EQ(head(data)[0], entering);  // the positions of the others stay
  expect_basic_solution(data);
  ASSERT_EQ(KLVpivot(env, lp, before[0], entering, side), 0);
  EXPECT_EQ(head(data), before);
  EXPECT_NEAR(objective(), best, 1e-7 * (1 + std::fabs(best)));

  EXPECT_EQ(KLVpivot(env, lp, before[0], KLV_NO_VARIABLE, 0), 1267);  // basic already
  EXPECT_EQ(KLVpivot(env, lp, KLV_NO_VARIABLE, entering, 0), 1267);   // not basic
  EXPECT_EQ(KLVpivot(env, lp, KLV_NO_VARIABLE, KLV_NO_VARIABLE, 0), 1003);
  EXPECT_EQ(KLVpivot(env, lp, data.n, KLV_NO_VARIABLE, 0), 1200);
  EXPECT_EQ(KLVpivot(env, lp, -data.m - 1, KLV_NO_VARIABLE, 0), 1200);
  EXPECT_EQ(KLVpivot(env, lp, entering, data.n, 0), 1200);
  EXPECT_EQ(KLVpivot(env, lp, entering, before[0], 7), 1003);
  EXPECT_EQ(head(data), before);
}

TEST_F(PivotTest, RatioTestsAgreeWithTheTableau) {
  double ratio[2];
  const int one = 0;
  EXPECT_EQ(KLVdratio(env, lp, &one, 1, ratio, ratio, nullptr, nullptr, nullptr, nullptr), 1258);
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const DenseLp data = random_lp(seed, {.m = 6, .n = 9, .wide_scales = seed % 2 == 0});
    solve(data);
    const std::vector<int> now = head(data);
    std::vector<double> basics(data.m), x(data.n), slack(data.m), alpha(data.m);
    ASSERT_EQ(KLVgetbhead(env, lp, nullptr, basics.data()), 0);
    ASSERT_EQ(KLVgetx(env, lp, x.data(), 0, data.n - 1), 0);
    const auto bounds_of = [&](int v) -> std::pair<double, double> {
      if (v >= 0) return {data.lb[v], data.ub[v]};
      const char sense = data.senses[-v - 1];
      const double range = data.rng[-v - 1];
      if (sense == 'L') return {0.0, kNone};
      if (sense == 'G') return {-kNone, 0.0};
      if (sense == 'E') return {0.0, 0.0};
      return {std::min(0.0, range), std::max(0.0, range)};
    };
    for (int v = -data.m; v < data.n; ++v) {
      double down = -1, up = -1;
      int down_leave = -77, up_leave = -77, down_at = -77, up_at = -77, down_code = -77,
          up_code = -77;
      ASSERT_EQ(KLVpratio(env, lp, &v, 1, &down, &up, &down_leave, &up_leave, &down_at, &up_at,
                          &down_code, &up_code),
                0);
      if (std::count(now.begin(), now.end(), v)) {
        EXPECT_EQ(down_code, 1267);
        EXPECT_EQ(up_leave, KLV_NO_VARIABLE);
        continue;
      }
      ASSERT_EQ(KLVbinvacol(env, lp, v, alpha.data()), 0);
      for (const int direction : {-1, 1}) {
        const auto [own_low, own_high] = bounds_of(v);
        double step = own_high - own_low;
        if (own_high == kNone || own_low == -kNone) step = kNone;
        for (int p = 0; p < data.m; ++p) {
          if (std::fabs(alpha[p]) < 1e-10) continue;
          const auto [low, high] = bounds_of(now[p]);
          const double rate = -direction * alpha[p];
          const double bound = rate < 0 ? low : high;
          if (std::fabs(bound) == kNone) continue;
          step = std::min(step, std::max(0.0, std::fabs(basics[p] - bound)) / std::fabs(rate));
        }
        const double got = direction < 0 ? down : up;
        EXPECT_NEAR(got, step, 1e-7 * (1 + std::fabs(step))) << v << " " << direction;
        EXPECT_EQ(direction < 0 ? down_code : up_code, 0);
        const int leaves = direction < 0 ? down_leave : up_leave;
        EXPECT_EQ(leaves == KLV_NO_VARIABLE, step == kNone);
      }
    }
    // Dual: |d_j / alpha_j| over the nonbasic variables that may move the right way.
    std::vector<double> dj(data.n), pi(data.m), row(data.n), inverse(data.m);
    ASSERT_EQ(KLVgetdj(env, lp, dj.data(), 0, data.n - 1), 0);
    ASSERT_EQ(KLVgetpi(env, lp, pi.data(), 0, data.m - 1), 0);
    for (int p = 0; p < data.m; ++p) {
      double down = -1, up = -1;
      int down_enter = -77, up_enter = -77, codes[2] = {-77, -77};
      ASSERT_EQ(
          KLVdratio(env, lp, &now[p], 1, &down, &up, &down_enter, &up_enter, &codes[0], &codes[1]),
          0);
      EXPECT_EQ(codes[0], 0);
      EXPECT_EQ(codes[1], 0);
      ASSERT_EQ(KLVbinvarow(env, lp, p, row.data()), 0);
      ASSERT_EQ(KLVbinvrow(env, lp, p, inverse.data()), 0);
      for (const int direction : {-1, 1}) {
        double best = kNone;
        for (int v = -data.m; v < data.n; ++v) {
          if (std::count(now.begin(), now.end(), v)) continue;
          const auto [low, high] = bounds_of(v);
          if (low == high) continue;
          const int i = -v - 1;
          const double sign = v < 0 && data.senses[i] == 'R' ? -1 : 1;
          const double entry = v >= 0 ? row[v] : sign * inverse[i];
          const double reduced = data.sense * (v >= 0 ? dj[v] : -sign * pi[i]);
          if (std::fabs(entry) < 1e-10) continue;
          double value = v >= 0 ? x[v] : 0.0;
          if (v < 0) {
            ASSERT_EQ(KLVgetslack(env, lp, &value, i, i), 0);
          }
          const bool at_upper = std::fabs(value - high) < std::fabs(value - low);
          const bool rises = direction * entry < 0;
          if (rises == at_upper) continue;
          best = std::min(best, std::fabs(reduced / entry));
        }
        const double got = direction < 0 ? down : up;
        EXPECT_NEAR(got, best, 1e-6 * (1 + std::fabs(best))) << now[p] << " " << direction;
        EXPECT_EQ((direction < 0 ? down_enter : up_enter) == KLV_NO_VARIABLE, best == kNone);
      }
      if (now[p] < 0) continue;
      double md_down = 0, md_up = 0;
      ASSERT_EQ(KLVmdleave(env, lp, &now[p], 1, &md_down, &md_up, &codes[0], &codes[1]), 0);
      EXPECT_EQ(md_down, data.sense * down);
      EXPECT_EQ(md_up, data.sense * up);
      EXPECT_EQ(codes[0], down == kNone ? 1267 : 0);
      EXPECT_EQ(codes[1], up == kNone ? 1267 : 0);
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
  take(errors);
  EXPECT_EQ(KLVmdleave(env, lp, &far, 1, ratio, ratio, nullptr, nullptr), 1201);
  EXPECT_EQ(take(errors), "KELVO Error  1201: Column index 9 out of range.\n");
  int code = 0;
  EXPECT_EQ(KLVdratio(env, lp, &far, 1, ratio, ratio, nullptr, nullptr, &code, nullptr), 0);
  EXPECT_EQ(code, 1267);
}

TEST_F(PivotTest, ChecksOfBasisAndSolution) {
  const DenseLp data = random_lp(11, {.m = 6, .n = 9});
  int found = -1;
  data.load(env, lp);
  EXPECT_EQ(KLVcheckpfeas(env, lp, nullptr), 1004);
  EXPECT_EQ(KLVcheckpfeas(env, lp, &found), 1262);
  EXPECT_EQ(KLVchecksoln(env, lp, &found), 1217);
  EXPECT_EQ(KLVchecksoln(env, lp, nullptr), 1004);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(KLVcheckpfeas(env, lp, &found), 0);
  EXPECT_EQ(found, KLV_NO_VARIABLE);
  EXPECT_EQ(KLVcheckdfeas(env, lp, &found), 0);
  EXPECT_EQ(found, KLV_NO_VARIABLE);
  EXPECT_EQ(KLVchecksoln(env, lp, &found), 0);
  EXPECT_EQ(found, KLV_STATUS_OPTIMAL);
  // A bound cuts a basic column off; a cost makes a nonbasic one attractive.
  for (const int v : head(data)) {
    if (v < 0) continue;
    double x = 0.0;
    ASSERT_EQ(KLVgetx(env, lp, &x, v, v), 0);
    if (!(x - 0.5 > data.lb[v])) continue;
    KLVprob trial = KLVcloneprob(env, lp, &found);
    const double bound = x - 0.25;
    ASSERT_EQ(KLVchgbds(env, trial, 1, &v, "U", &bound), 0);
    EXPECT_EQ(KLVcheckpfeas(env, trial, &found), 0);
    EXPECT_EQ(found, v);
    EXPECT_EQ(KLVcheckdfeas(env, trial, &found), 0);
    EXPECT_EQ(found, KLV_NO_VARIABLE);
    EXPECT_EQ(KLVgetstat(env, trial), 0);  // nothing was stored
    EXPECT_EQ(KLVfreeprob(env, &trial), 0);
  }
  std::vector<double> dj(data.n), x(data.n);
  ASSERT_EQ(KLVgetdj(env, lp, dj.data(), 0, data.n - 1), 0);
  ASSERT_EQ(KLVgetx(env, lp, x.data(), 0, data.n - 1), 0);
  for (int j = 0; j < data.n; ++j) {
    if (basic(data, j) || data.lb[j] == data.ub[j]) continue;
    KLVprob trial = KLVcloneprob(env, lp, &found);
    const double cost = data.obj[j] - 2 * dj[j];
    ASSERT_EQ(KLVchgobj(env, trial, 1, &j, &cost), 0);
    EXPECT_EQ(KLVcheckdfeas(env, trial, &found), 0);
    EXPECT_EQ(found, std::fabs(dj[j]) > 1e-6 ? j : KLV_NO_VARIABLE);
    EXPECT_EQ(KLVfreeprob(env, &trial), 0);
  }
}

TEST_F(PivotTest, StrongBranching) {
  for (unsigned seed = 0; seed < 16; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const DenseLp data = random_lp(seed, {.m = 7, .n = 12, .wide_scales = seed % 2 == 0});
    solve(data);
    const double best = objective();
    const std::vector<int> before = head(data);
    std::vector<double> x(data.n), again(data.n);
    ASSERT_EQ(KLVgetx(env, lp, x.data(), 0, data.n - 1), 0);
    std::vector<int> list(data.n);
    for (int j = 0; j < data.n; ++j) list[j] = j;
    std::vector<double> down(data.n), up(data.n), few_down(data.n), few_up(data.n);
    ASSERT_EQ(KLVstrongbranch(env, lp, list.data(), data.n, down.data(), up.data(), 1000), 0);
    ASSERT_EQ(KLVstrongbranch(env, lp, list.data(), data.n, few_down.data(), few_up.data(), 1), 0);
    // Nothing has changed: the solution, the basis, the order of its positions.
    ASSERT_EQ(KLVgetx(env, lp, again.data(), 0, data.n - 1), 0);
    EXPECT_EQ(x, again);
    EXPECT_EQ(head(data), before);
    EXPECT_EQ(objective(), best);
    int found = 0;
    EXPECT_EQ(KLVcheckpfeas(env, lp, &found), 0);
    EXPECT_EQ(found, KLV_NO_VARIABLE);
    for (int j = 0; j < data.n; ++j) {
      const double whole = std::round(x[j]);
      const bool integral = std::fabs(x[j] - whole) < 1e-9;
      for (const bool is_down : {true, false}) {
        KLVprob trial = KLVcloneprob(env, lp, &found);
        const double bound = integral ? whole : is_down ? std::floor(x[j]) : std::ceil(x[j]);
        double expected = data.sense * 1e75;
        const bool crossed = is_down ? bound < data.lb[j] : bound > data.ub[j];
        if (!crossed) {
          ASSERT_EQ(KLVchgbds(env, trial, 1, &j, is_down ? "U" : "L", &bound), 0);
          ASSERT_EQ(KLVdualopt(env, trial), 0);
          if (KLVgetstat(env, trial) == KLV_STATUS_OPTIMAL) {
            ASSERT_EQ(KLVgetobjval(env, trial, &expected), 0);
          }
        }
        const double got = is_down ? down[j] : up[j];
        EXPECT_NEAR(got, expected, 1e-6 * (1 + std::fabs(expected))) << j << " " << is_down;
        // Fewer iterations give a bound that is no stronger.
        const double weaker = is_down ? few_down[j] : few_up[j];
        EXPECT_LE(data.sense * weaker, data.sense * got + 1e-6 * (1 + std::fabs(got)));
        EXPECT_GE(data.sense * weaker, data.sense * best - 1e-6 * (1 + std::fabs(best)));
        EXPECT_EQ(KLVfreeprob(env, &trial), 0);
      }
    }
    if (HasFailure()) return;
  }
  double value = 0;
  const int far = 12, first = 0;
  // Stopped at once, and everything is as before.
  volatile int flag = 1;
  ASSERT_EQ(KLVsetterminate(env, &flag), 0);
  const double best = objective();
  EXPECT_EQ(KLVstrongbranch(env, lp, &first, 1, &value, &value, 10), 1263);
  EXPECT_EQ(objective(), best);
  EXPECT_EQ(KLVsetphase2(env, lp), 0);
  EXPECT_EQ(objective(), best);
  ASSERT_EQ(KLVsetterminate(env, nullptr), 0);
  EXPECT_EQ(KLVstrongbranch(env, lp, &far, 1, &value, &value, 5), 1201);
  EXPECT_EQ(KLVstrongbranch(env, lp, &first, 1, &value, &value, -1), 1003);
  EXPECT_EQ(KLVstrongbranch(env, lp, nullptr, 1, &value, &value, 1), 1004);
  const double zero = 0;
  ASSERT_EQ(KLVchgobj(env, lp, 1, &first, &zero), 0);
  EXPECT_EQ(KLVstrongbranch(env, lp, &first, 1, &value, &value, 1), 1217);
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ITLIM, 0), 0);
  ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 0), 0);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(KLVstrongbranch(env, lp, &first, 1, &value, &value, 1), 1252);
}

TEST_F(PivotTest, OnlyLinearProblems) {
  ASSERT_EQ(KLVnewcols(env, lp, 1, nullptr, nullptr, nullptr, "I", nullptr), 0);
  const int one = 0;
  int found = 0;
  double value = 0;
  EXPECT_EQ(KLVpivotin(env, lp, &one, 0), 1017);
  EXPECT_EQ(KLVpivotout(env, lp, &one, 0), 1017);
  EXPECT_EQ(KLVpivot(env, lp, 0, KLV_NO_VARIABLE, 0), 1017);
  EXPECT_EQ(KLVsetphase2(env, lp), 1017);
  EXPECT_EQ(KLVcheckpfeas(env, lp, &found), 1017);
  EXPECT_EQ(KLVcheckdfeas(env, lp, &found), 1017);
  EXPECT_EQ(KLVchecksoln(env, lp, &found), 1017);
  EXPECT_EQ(KLVmdleave(env, lp, &one, 1, &value, &value, nullptr, nullptr), 1017);
  EXPECT_EQ(KLVdratio(env, lp, &one, 1, &value, &value, nullptr, nullptr, nullptr, nullptr), 1017);
  EXPECT_EQ(KLVpratio(env, lp, &one, 1, &value, &value, nullptr, nullptr, nullptr, nullptr, nullptr,
                      nullptr),
            1017);
  EXPECT_EQ(KLVstrongbranch(env, lp, &one, 1, &value, &value, 1), 1017);
  EXPECT_EQ(KLVpivotin(env, nullptr, &one, 0), 1009);
}

}  // namespace
