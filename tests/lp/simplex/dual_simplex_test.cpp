#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "lp/simplex/simplex_support.h"

namespace kelvo {
namespace {

using test::dense_lp;
using test::expect_infeasibility_proof;
using test::expect_optimal;
using test::random_feasible_lp;
using test::RecordingSink;
using test::StopAt;

class DualSimplex : public ::testing::Test {
 protected:
  SimplexSettings settings;

  void solve_to(const LpProblem& lp, double objective) {
    Simplex simplex(lp);
    ASSERT_EQ(simplex.run_dual(settings), SimplexOutcome::optimal);
    expect_optimal(lp, simplex);
    EXPECT_NEAR(simplex.objective(), objective, 1e-6);
  }
};

TEST_F(DualSimplex, SmallPrograms) {
  // No rows, no columns, neither.
  solve_to(dense_lp({}, {}, {}), 0.0);
  solve_to(dense_lp({{1, -2, 5}, {-1, -2, 5}, {0, -kInf, kInf}, {3, 4, 4}}, {}, {}), -2 - 5 + 12);
  solve_to(dense_lp({}, {{}, {}}, {{-1, 1}, {-kInf, 0}}), 0.0);
  // An empty row and an empty column beside real ones.
  solve_to(dense_lp({{1, 0, kInf}, {-2, 0, 3}}, {{1, 0}, {0, 0}}, {{2, kInf}, {0, 0}}), 2 - 6);
  // Dual feasible from the slack basis, and not.
  solve_to(dense_lp({{2, 0, kInf}, {3, 0, kInf}}, {{1, 1}, {1, 2}}, {{4, kInf}, {6, kInf}}), 10.0);
  solve_to(dense_lp({{-3, 0, kInf}, {-5, 0, kInf}}, {{1, 0}, {0, 2}, {3, 2}},
                    {{-kInf, 4}, {-kInf, 12}, {-kInf, 18}}),
           -36.0);
  // Free variables: minimize x + y with x - y = 1 and x + 2 y >= -5.
  solve_to(dense_lp({{1, -kInf, kInf}, {1, -kInf, kInf}}, {{1, -1}, {1, 2}}, {{1, 1}, {-5, kInf}}),
           -3.0);
  // Only upper bounds, and a fixed variable in the way.
  solve_to(dense_lp({{-1, -kInf, 2}, {-1, -kInf, 3}, {9, 1, 1}}, {{1, 1, 1}}, {{-kInf, 4}}), 6.0);
}

TEST_F(DualSimplex, ADegenerateProgramThatCyclesWithoutCare) {
  // E. M. L. Beale's example.
  solve_to(dense_lp({{-0.75, 0, kInf}, {150, 0, kInf}, {-0.02, 0, kInf}, {6, 0, kInf}},
                    {{0.25, -60, -0.04, 9}, {0.5, -90, -0.02, 3}, {0, 0, 1, 0}},
                    {{-kInf, 0}, {-kInf, 0}, {-kInf, 1}}),
           -0.05);
  // A transportation polytope whose every vertex is degenerate.
  std::vector<test::ColumnSpec> columns;
  std::vector<std::vector<double>> rows(12, std::vector<double>(36, 0.0));
  for (int k = 0; k < 36; ++k) {
    columns.push_back({static_cast<double>((k / 6) * (k % 6)), 0, kInf});
    rows[k / 6][k] = 1.0;
    rows[6 + k % 6][k] = 1.0;
  }
  solve_to(dense_lp(columns, rows, std::vector<std::pair<double, double>>(12, {1, 1})), 20.0);
}

TEST_F(DualSimplex, InfeasibleAndUnboundedPrograms) {
  const LpProblem infeasible[] = {
      dense_lp({{1, 0, kInf}, {1, 0, kInf}}, {{1, 1}, {1, 1}}, {{3, kInf}, {-kInf, 2}}),
      dense_lp({{1, 0, 1}, {-1, 0, 1}}, {{1, 1}}, {{3, kInf}}),
      dense_lp({{0, -kInf, kInf}, {-1, -kInf, kInf}}, {{1, 1}, {1, 1}}, {{1, 1}, {2, 2}}),
      dense_lp({{1, 0, 1}}, {{0}}, {{1, 2}}),
      dense_lp({{-1, 0, kInf}, {-1, 0, kInf}}, {{1, -1}, {-1, 1}}, {{1, kInf}, {1, kInf}}),
  };
  for (const LpProblem& lp : infeasible) {
    Simplex simplex(lp);
    ASSERT_EQ(simplex.run_dual(settings), SimplexOutcome::infeasible);
    expect_infeasibility_proof(lp, simplex.farkas_dual());
  }
  const LpProblem unbounded[] = {
      dense_lp({{-1, 0, kInf}}, {}, {}),
      dense_lp({{-1, 0, kInf}, {0, 0, kInf}}, {{1, -1}}, {{-kInf, 1}}),
      dense_lp({{1, -kInf, kInf}, {1, 0, kInf}}, {{1, 1}}, {{-kInf, 4}}),
  };
  for (const LpProblem& lp : unbounded) {
    Simplex simplex(lp);
    EXPECT_EQ(simplex.run_dual(settings), SimplexOutcome::unbounded);
  }
}

TEST_F(DualSimplex, RandomProgramsUnderEveryPricing) {
  for (std::uint64_t seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed * 7919);
    const LpProblem lp =
        random_feasible_lp(random, 1 + random.below(25), 1 + random.below(30), seed % 2 == 0);
    double first = 0.0;
    for (int pricing = 0; pricing <= 5; ++pricing) {
      Simplex simplex(lp);
      settings.dual_pricing = static_cast<DualPricing>(pricing);
      settings.refactor_frequency = pricing == 2 ? 3 : 0;
      ASSERT_EQ(simplex.run_dual(settings), SimplexOutcome::optimal);
      expect_optimal(lp, simplex);
      if (pricing == 0) first = simplex.objective();
      EXPECT_NEAR(simplex.objective(), first, 1e-6 * (1.0 + std::fabs(first)));
    }
  }
}

TEST_F(DualSimplex, RandomInfeasibleProgramsAreProved) {
  int infeasible = 0;
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed * 104729);
    LpProblem lp = random_feasible_lp(random, 2 + random.below(15), 2 + random.below(15), false);
    for (int i = lp.num_cols; i < lp.num_vars(); ++i) {
      const double push = 3.0 * random.below(5);
      lp.lower[i] += push;
      lp.upper[i] += push;
    }
    Simplex simplex(lp);
    Simplex other(lp);
    const SimplexOutcome outcome = simplex.run_dual(settings);
    ASSERT_EQ(outcome, other.run_primal(settings));
    if (outcome == SimplexOutcome::infeasible) {
      ++infeasible;
      expect_infeasibility_proof(lp, simplex.farkas_dual());
    } else {
      ASSERT_EQ(outcome, SimplexOutcome::optimal);
      expect_optimal(lp, simplex);
    }
  }
  EXPECT_GT(infeasible, 10);
  EXPECT_LT(infeasible, 95);
}

TEST_F(DualSimplex, WarmStartsAgreeWithColdOnesAndAreShort) {
  long warm_iterations = 0;
  long cold_iterations = 0;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed * 31337);
    LpProblem lp = random_feasible_lp(random, 20 + random.below(20), 40, false);
    Simplex warm(lp);
    ASSERT_EQ(warm.run_dual(settings), SimplexOutcome::optimal);
    for (int change = 0; change < 5; ++change) {
      // A branch: one variable loses half of its range, or is given it back.
      const int j = random.below(lp.num_cols);
      const double middle = std::floor(0.5 * (lp.lower[j] + lp.upper[j]));
      (warm.values()[j] <= middle ? lp.lower[j] : lp.upper[j]) = middle;
      warm.bounds_changed();
      const int before = warm.iterations();
      const SimplexOutcome outcome = warm.run_dual(settings);
      warm_iterations += warm.iterations() - before;
      Simplex cold(lp);
      ASSERT_EQ(outcome, cold.run_dual(settings));
      cold_iterations += cold.iterations();
      if (outcome != SimplexOutcome::optimal) break;
      expect_optimal(lp, warm);
      EXPECT_NEAR(warm.objective(), cold.objective(), 1e-6 * (1 + std::fabs(cold.objective())));
    }
  }
  EXPECT_LT(4 * warm_iterations, cold_iterations);
}

TEST_F(DualSimplex, AGivenBasisIsCompletedAndUsed) {
  Random random(5);
  const LpProblem lp = random_feasible_lp(random, 30, 40, true);
  Simplex first(lp);
  ASSERT_EQ(first.run_dual(settings), SimplexOutcome::optimal);
  Simplex again(lp);
  again.set_basis(first.status());
  ASSERT_EQ(again.run_dual(settings), SimplexOutcome::optimal);
  EXPECT_EQ(again.iterations(), 0);
  expect_optimal(lp, again);
  // Everything nonbasic, everything basic, twice the same column among the basic ones.
  Vector<int> status(lp.num_vars(), kAtUpper);
  for (int kind = 0; kind < 3; ++kind) {
    Simplex simplex(lp);
    if (kind == 1) status.assign(lp.num_vars(), kBasic);
    if (kind == 2) {
      status.assign(lp.num_vars(), kFreeSuper);
      for (int j = 0; j < lp.num_cols; ++j) status[j] = kBasic;
    }
    simplex.set_basis(status);
    ASSERT_EQ(simplex.run_dual(settings), SimplexOutcome::optimal) << kind;
    expect_optimal(lp, simplex);
    EXPECT_NEAR(simplex.objective(), first.objective(), 1e-6);
  }
}

TEST_F(DualSimplex, ASingularBasisIsRepaired) {
  const LpProblem lp =
      dense_lp({{1, 0, 10}, {1, 0, 10}, {2, 0, 10}}, {{1, 1, 2}, {1, 1, 1}}, {{3, 8}, {2, kInf}});
  RecordingSink text;
  settings.display = 1;
  Simplex simplex(lp);
  Vector<int> status{kBasic, kBasic, kAtLower, kAtLower, kAtLower};
  simplex.set_basis(status);
  ASSERT_EQ(simplex.run_dual(settings, {.sink = &text}), SimplexOutcome::optimal);
  expect_optimal(lp, simplex);
  EXPECT_NE(text.all().find("Repairing basis singularity.\n"), std::string::npos);
  EXPECT_NE(text.all().find("fixed because of singularity.\n"), std::string::npos);
}

TEST_F(DualSimplex, LimitsStopTheRun) {
  Random random(11);
  const LpProblem lp = random_feasible_lp(random, 40, 60, true);
  Simplex full(lp);
  ASSERT_EQ(full.run_dual(settings), SimplexOutcome::optimal);
  ASSERT_GT(full.iterations(), 10);

  settings.iteration_limit = 0;
  Simplex limited(lp);
  EXPECT_EQ(limited.run_dual(settings), SimplexOutcome::iteration_limit);
  EXPECT_EQ(limited.iterations(), 0);
  for (int i = 0; i < lp.num_rows; ++i) EXPECT_EQ(limited.status()[lp.num_cols + i], kBasic);
  settings.iteration_limit = 7;
  EXPECT_EQ(limited.run_dual(settings), SimplexOutcome::iteration_limit);
  EXPECT_EQ(limited.iterations(), 7);
  settings.iteration_limit = 2100000000;
  EXPECT_EQ(limited.run_dual(settings), SimplexOutcome::optimal);
  EXPECT_NEAR(limited.objective(), full.objective(), 1e-6);

  for (const int at : {0, 1, 5, 9}) {
    StopAt time(at, StopReason::time_limit);
    Simplex timed(lp);
    EXPECT_EQ(timed.run_dual(settings, {.stop = &time}), SimplexOutcome::time_limit);
    StopAt abort(at);
    Simplex aborted(lp);
    EXPECT_EQ(aborted.run_dual(settings, {.stop = &abort}), SimplexOutcome::aborted);
    StopAt hook(at);
    Simplex hooked(lp);
    EXPECT_EQ(hooked.run_dual(settings, {.hook = &hook}), SimplexOutcome::aborted);
    EXPECT_LE(hooked.iterations(), at);
  }
}

// A violation of half the working tolerance, at a dual of 1e5, is not left to the objective.
TEST_F(DualSimplex, AnOptimumIsPolished) {
  const LpProblem lp = dense_lp({{1e5, 0, 1}, {1, 0, 1}}, {{1, 0}, {1, 1}}, {{5e-9, kInf}, {0, 1}});
  for (const bool dual : {true, false}) {
    Simplex simplex(lp);
    ASSERT_EQ(dual ? simplex.run_dual(settings) : simplex.run_primal(settings),
              SimplexOutcome::optimal);
    EXPECT_NEAR(simplex.objective(), 5e-4, 1e-9);
    expect_optimal(lp, simplex);
  }
}

// Whatever the moment, within a factorization or between iterations, a stop leaves a state from
// which the next run reaches the optimum.
TEST_F(DualSimplex, AStopAtAnyMomentLeavesAStateToGoOnFrom) {
  Random random(23);
  const LpProblem lp = random_feasible_lp(random, 150, 200, true);
  settings.refactor_frequency = 10;
  Simplex full(lp);
  ASSERT_EQ(full.run_dual(settings), SimplexOutcome::optimal);
  int next = 0;
  for (const bool dual : {true, false}) {
    for (int at = 0; at < 400; at += 1 + next++ % 7) {
      SCOPED_TRACE(at);
      StopAt time(at, StopReason::time_limit);
      Simplex simplex(lp);
      const auto run = [&] {
        return dual ? simplex.run_dual(settings, {.stop = &time})
                    : simplex.run_primal(settings, {.stop = &time});
      };
      if (run() == SimplexOutcome::optimal) continue;
      EXPECT_EQ(std::count(simplex.status().begin(), simplex.status().end(), kBasic), lp.num_rows);
      for (const double x : simplex.values()) ASSERT_TRUE(std::isfinite(x));
      time.never_again();
      ASSERT_EQ(run(), SimplexOutcome::optimal);
      EXPECT_NEAR(simplex.objective(), full.objective(), 1e-6 * std::fabs(full.objective()));
    }
  }
}

TEST_F(DualSimplex, TheObjectiveLimitIsProved) {
  int stopped = 0;
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed * 65537);
    const LpProblem lp = random_feasible_lp(random, 30, 40, false);
    settings.objective_upper_limit = 1e75;
    Simplex full(lp);
    ASSERT_EQ(full.run_dual(settings), SimplexOutcome::optimal);
    const double optimum = full.objective();
    settings.objective_upper_limit = optimum + 1.0;
    Simplex above(lp);
    EXPECT_EQ(above.run_dual(settings), SimplexOutcome::optimal);
    settings.objective_upper_limit = optimum - 1.0;
    Simplex below(lp);
    const SimplexOutcome outcome = below.run_dual(settings);
    EXPECT_TRUE(outcome == SimplexOutcome::objective_limit || outcome == SimplexOutcome::optimal);
    stopped += outcome == SimplexOutcome::objective_limit;
  }
  EXPECT_GT(stopped, 30);
}

TEST_F(DualSimplex, LogLines) {
  const LpProblem lp =
      dense_lp({{2, 0, kInf}, {3, 0, kInf}}, {{1, 1}, {1, 2}}, {{4, kInf}, {6, kInf}});
  RecordingSink text;
  settings.display = 1;
  settings.perturbation = 1e-8;
  Simplex simplex(lp);
  ASSERT_EQ(simplex.run_dual(settings, {.sink = &text}), SimplexOutcome::optimal);
  const std::string start =
      "Perturbation started.\n\nIteration log . . .\n"
      "Iteration:     0   Dual objective     =             0.000000\n";
  EXPECT_EQ(text.all().substr(0, start.size()), start);
  EXPECT_NE(text.all().find("Removing perturbation.\n"), std::string::npos);

  // From the optimal basis there is one line and nothing else.
  text.take();
  ASSERT_EQ(simplex.run_dual(settings, {.sink = &text}), SimplexOutcome::optimal);
  EXPECT_EQ(
      text.all(),
      "\nIteration log . . .\nIteration:     2   Dual objective     =            10.000000\n");
  // The caller's sense turns objectives around.
  text.take();
  settings.sense = -1.0;
  ASSERT_EQ(simplex.run_dual(settings, {.sink = &text}), SimplexOutcome::optimal);
  EXPECT_NE(text.all().find("Dual objective     =           -10.000000\n"), std::string::npos);

  text.take();
  settings.scaled = true;
  const LpProblem open = dense_lp({{-2, 0, kInf}, {3, 0, kInf}}, {{1, 1}}, {{1, 7}});
  Simplex phased(open);
  ASSERT_EQ(phased.run_dual(settings, {.sink = &text}), SimplexOutcome::optimal);
  EXPECT_NE(text.all().find("Iteration:     0   Scaled dual infeas =             2.0000"),
            std::string::npos)
      << text.all();
}

}  // namespace
}  // namespace kelvo
