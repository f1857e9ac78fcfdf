// The last digits of an optimum: taken where a few iterations get them, and given up without a
// trace where they do not.
#include "lp/simplex/simplex_support.h"

namespace kelvo {
namespace {

using test::dense_lp;

constexpr double kTiny = 5e-9;  // below the working tolerance, above what polishing aims at

/// min 1000 x + y,  x >= kTiny,  y >= 1,  x, y >= 0, with the limits on x and y as rows. From the
/// slack basis one iteration leads to a basis that is optimal but for the limit on x; its objective
/// lacks 1000 kTiny.
LpProblem program() {
  return dense_lp({{1000.0, 0.0, kInf}, {1.0, 0.0, kInf}}, {{1.0, 0.0}, {0.0, 1.0}},
                  {{kTiny, kInf}, {1.0, kInf}});
}

struct DualRun {
  explicit DualRun(const LpProblem& lp, int polls = 2100000000)
      : stop(polls, StopReason::time_limit), simplex(lp) {
    simplex.set_slack_basis();
  }
  SimplexOutcome dual() { return simplex.run_dual(SimplexSettings(), {.stop = &stop}); }

  test::StopAt stop;
  Simplex simplex;
};

TEST(Polish, TakesWhatTheWorkingToleranceHid) {
  const LpProblem lp = program();
  DualRun run(lp);
  ASSERT_EQ(run.dual(), SimplexOutcome::optimal);
  EXPECT_EQ(run.simplex.iterations(), 2);
  EXPECT_EQ(run.simplex.values()[0], kTiny);
  EXPECT_DOUBLE_EQ(run.simplex.objective(), 1.0 + 1000.0 * kTiny);
}

/// What the run found before it polished, and what is kept for the next one.
void expect_unpolished(DualRun& run) {
  EXPECT_EQ(run.simplex.values()[0], 0.0);
  EXPECT_EQ(run.simplex.objective(), 1.0);
  EXPECT_EQ(run.simplex.status()[0], kAtLower);
  EXPECT_EQ(run.simplex.status()[1], kBasic);
  EXPECT_EQ(run.simplex.row_duals()[0], 0.0);
  EXPECT_EQ(run.simplex.row_duals()[1], 1.0);
  EXPECT_EQ(run.simplex.reduced_costs()[0], 1000.0);
  const int before = run.simplex.iterations();
  run.stop.never_again();
  ASSERT_EQ(run.dual(), SimplexOutcome::optimal);
  EXPECT_EQ(run.simplex.iterations(), before + 1);
  EXPECT_EQ(run.simplex.values()[0], kTiny);
}

TEST(Polish, LeavesAnOptimalStartWhenTold) {
  const LpProblem lp = program();
  DualRun run(lp);
  const Vector<int> start{kAtLower, kBasic, kBasic, kAtUpper};
  SimplexSettings settings;
  settings.keep_optimal_start = true;
  for (const bool dual : {true, false}) {
    run.simplex.set_basis(start);
    ASSERT_EQ(dual ? run.simplex.run_dual(settings) : run.simplex.run_primal(settings),
              SimplexOutcome::optimal);
    EXPECT_EQ(run.simplex.iterations(), 0);
    EXPECT_EQ(run.simplex.status(), start);
  }
  settings.keep_optimal_start = false;
  ASSERT_EQ(run.simplex.run_dual(settings), SimplexOutcome::optimal);
  EXPECT_EQ(run.simplex.values()[0], kTiny);
}

TEST(Polish, LeavesTheOptimumAsItWasWhenItGetsNowhere) {
  const LpProblem lp = program();
  int given_up = 0;
  // Stopped at every poll: before the optimum, while polishing, and never.
  for (int polls = 0;; ++polls) {
    SCOPED_TRACE(polls);
    ASSERT_LT(polls, 100);
    DualRun run(lp, polls);
    const SimplexOutcome outcome = run.dual();
    if (outcome == SimplexOutcome::time_limit) continue;
    ASSERT_EQ(outcome, SimplexOutcome::optimal);
    if (run.simplex.values()[0] == kTiny) break;
    ++given_up;
    expect_unpolished(run);
  }
  EXPECT_GT(given_up, 0);
}

}  // namespace
}  // namespace kelvo
