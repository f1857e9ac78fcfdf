// A simplex that stays hot: whatever has changed, the next run must find what a cold one finds.
#include <algorithm>

#include "lp/simplex/simplex_support.h"

namespace kelvo {
namespace {

using test::expect_optimal;
using test::random_feasible_lp;
using test::RecordingSink;

double cold_objective(const LpProblem& lp, SimplexOutcome& outcome) {
  Simplex simplex(lp);
  outcome = simplex.run_dual({});
  return simplex.objective();
}

/// Runs, and compares with a cold run on the same problem.
void expect_as_cold(Simplex& simplex, bool dual) {
  SimplexOutcome outcome;
  const double objective = cold_objective(simplex.problem(), outcome);
  ASSERT_EQ(dual ? simplex.run_dual({}) : simplex.run_primal({}), outcome);
  if (outcome != SimplexOutcome::optimal) return;
  expect_optimal(simplex.problem(), simplex);
  EXPECT_NEAR(simplex.objective(), objective, 1e-6 * (1.0 + std::fabs(objective)));
}

/// New bounds of a random variable near its value, or new bounds around the old ones.
VariableBounds random_bounds(Random& random, const Simplex& simplex) {
  const LpProblem& lp = simplex.problem();
  const int j = random.below(lp.num_vars());
  const double x = std::clamp(simplex.values()[j], -20.0, 20.0);
  switch (random.below(4)) {
    case 0:
      return {j, lp.lower[j], std::max(lp.lower[j], std::floor(x - 0.01))};
    case 1:
      return {j, std::min(lp.upper[j], std::ceil(x + 0.01)), lp.upper[j]};
    case 2:
      return {j, x, x};
    default:
      return {j, std::min(lp.lower[j], x) - random.below(3), std::max(lp.upper[j], x) + 1.0};
  }
}

class HotSimplex : public ::testing::TestWithParam<int> {
 protected:
  Random random{static_cast<std::uint64_t>(100 + GetParam())};
  LpProblem lp =
      random_feasible_lp(random, 10 + 4 * GetParam(), 20 + 6 * GetParam(), GetParam() % 2 == 0);
  Simplex simplex{lp};
};

TEST_P(HotSimplex, ChangedBoundsAndCosts) {
  ASSERT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  for (int round = 0; round < 25; ++round) {
    SCOPED_TRACE(round);
    Vector<VariableBounds> bounds;
    const Vector<double> lower = lp.lower, upper = lp.upper;
    for (int k = random.below(3); k >= 0; --k) bounds.push_back(random_bounds(random, simplex));
    simplex.change_bounds(bounds);
    if (round % 5 == 4) {
      const int j = random.below(lp.num_cols);
      simplex.change_costs({{j, lp.cost[j] + random.below(7) - 3.0}});
    }
    expect_as_cold(simplex, round % 7 != 6);
    if (HasFatalFailure()) return;
    if (round % 3 != 2) continue;
    Vector<VariableBounds> back;  // all bounds as they were, which must be found again
    for (const VariableBounds& b : bounds)
      back.push_back({b.variable, lower[b.variable], upper[b.variable]});
    simplex.change_bounds(back);
    expect_as_cold(simplex, true);
  }
}

TEST_P(HotSimplex, ARunWithNothingChangedTouchesNothing) {
  ASSERT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  const double work = simplex.work();
  const int iterations = simplex.iterations();
  const Vector<double> values = simplex.values();
  EXPECT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  EXPECT_EQ(simplex.run_primal({}), SimplexOutcome::optimal);
  EXPECT_EQ(simplex.work(), work);
  EXPECT_EQ(simplex.iterations(), iterations);
  EXPECT_EQ(simplex.values(), values);
  SimplexSettings limited;
  limited.objective_upper_limit = simplex.objective() - 1.0;
  EXPECT_EQ(simplex.run_dual(limited), SimplexOutcome::objective_limit);
}

TEST_P(HotSimplex, AProbeBoundsTheOptimumAndLeavesNoTrace) {
  ASSERT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  const Vector<int> status = simplex.status(), header = simplex.header();
  const Vector<double> values = simplex.values(), duals = simplex.row_duals();
  const Vector<double> reduced = simplex.reduced_costs();
  for (int k = 0; k < 30; ++k) {
    SCOPED_TRACE(k);
    const VariableBounds bounds = random_bounds(random, simplex);
    if (bounds.lower > bounds.upper) continue;
    SimplexSettings settings;
    settings.iteration_limit = k % 3 == 0 ? 2100000000 : k % 5;
    if (k % 4 == 1) settings.refactor_frequency = 1;  // factorizations within the probe
    if (k % 4 == 2) settings.objective_upper_limit = simplex.objective() + 1.0;
    const ProbeResult probe = simplex.probe({bounds}, settings);
    EXPECT_LE(probe.iterations, settings.iteration_limit);
    LpProblem changed = lp;
    changed.lower[bounds.variable] = bounds.lower;
    changed.upper[bounds.variable] = bounds.upper;
    SimplexOutcome outcome;
    const double optimum = cold_objective(changed, outcome);
    if (outcome == SimplexOutcome::optimal) {
      EXPECT_NE(probe.outcome, SimplexOutcome::infeasible);
      EXPECT_LE(probe.bound, optimum + 1e-6 * (1.0 + std::fabs(optimum)));
    }
    if (probe.outcome == SimplexOutcome::infeasible) {
      EXPECT_EQ(outcome, probe.outcome);
    }
    if (probe.outcome == SimplexOutcome::optimal) {
      EXPECT_NEAR(probe.bound, optimum, 1e-4 * (1.0 + std::fabs(optimum)));
    }
    EXPECT_EQ(simplex.header(), header);
    EXPECT_EQ(simplex.status(), status);
    EXPECT_EQ(simplex.values(), values);
    EXPECT_EQ(simplex.row_duals(), duals);
    EXPECT_EQ(simplex.reduced_costs(), reduced);
    if (k % 10 == 9) {  // the factor is right as well
      simplex.change_bounds({random_bounds(random, simplex)});
      expect_as_cold(simplex, true);
      return;
    }
  }
}

SparseMatrix random_lines(Random& random, int count, int length) {
  test::DenseLines lines(count, std::vector<double>(length));
  for (std::vector<double>& line : lines) {
    for (double& value : line) value = random.below(4) == 0 ? random.below(9) - 4.0 : 0.0;
  }
  return test::sparse_lines(lines, length);
}

TEST_P(HotSimplex, RowsAndColumnsJoinAndLeave) {
  ASSERT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  const auto some_of = [&](int size, int count) {
    Vector<int> list;
    for (int k = 0; k < count; ++k) list.push_back(random.below(size));
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
    return list;
  };
  for (int round = 0; round < 16; ++round) {
    SCOPED_TRACE(round);
    const Vector<double> x = simplex.values();
    const int count = 1 + random.below(3);
    if (round % 4 == 0) {  // rows that the optimum violates a little, as cuts do
      const SparseMatrix rows = random_lines(random, count, lp.num_cols);
      Vector<double> least(count, -kInf), most(count, kInf);
      for (int k = 0; k < count; ++k) {
        double activity = 0.0;
        for (int e = rows.start[k]; e < rows.start[k + 1]; ++e) {
          activity += rows.value[e] * x[rows.index[e]];
        }
        (random.below(2) == 0 ? most : least)[k] = activity + random.below(3) - 1.0;
      }
      simplex.add_rows(rows, least, most);
    } else if (round % 4 == 1) {
      const SparseMatrix columns = random_lines(random, count, lp.num_rows);
      Vector<double> cost, lower, upper;
      for (int k = 0; k < count; ++k) {
        cost.push_back(random.below(21) - 10.0);
        lower.push_back(random.below(3) - 1.0);
        upper.push_back(lower[k] + random.below(3));
      }
      simplex.add_columns(columns, cost, lower, upper);
    } else if (round % 4 == 2) {
      simplex.delete_rows(some_of(lp.num_rows, count));
    } else {
      // Mostly nonbasic ones, and sometimes whatever comes.
      Vector<int> list = some_of(lp.num_cols, count);
      if (round % 8 != 7) {
        std::erase_if(list, [&](int j) { return simplex.status()[j] == kBasic; });
      }
      simplex.delete_columns(list);
    }
    EXPECT_EQ(transpose(lp.columns).index, lp.rows.index);
    EXPECT_EQ(transpose(lp.columns).value, lp.rows.value);
    expect_as_cold(simplex, true);
    if (HasFatalFailure() || HasNonfatalFailure()) return;
    if (simplex.status().empty()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Sizes, HotSimplex, ::testing::Range(0, 12));

TEST(BasisSnapshot, BringsABasisBack) {
  Random random(5);
  LpProblem lp = random_feasible_lp(random, 40, 70, true);
  Simplex simplex(lp);
  ASSERT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  const SharedBasis basis = simplex.snapshot(true);
  const Vector<int> status = simplex.status();
  EXPECT_LE(simplex.snapshot()->bytes(), sizeof(BasisSnapshot) + lp.num_vars() / 4 + 64);
  simplex.set_slack_basis();
  simplex.start_from(*basis);
  EXPECT_EQ(simplex.status(), status);
  const int before = simplex.iterations();
  ASSERT_EQ(simplex.run_dual({}), SimplexOutcome::optimal);
  EXPECT_EQ(simplex.iterations(), before);
  expect_optimal(lp, simplex);
}

TEST(SimplexLimits, WorkEndsARun) {
  Random random(6);
  const LpProblem lp = random_feasible_lp(random, 60, 90, true);
  SimplexSettings settings;
  settings.work_limit = 2000.0;
  for (const bool dual : {true, false}) {
    Simplex simplex(lp);
    ASSERT_EQ(dual ? simplex.run_dual(settings) : simplex.run_primal(settings),
              SimplexOutcome::work_limit);
    EXPECT_GT(simplex.iterations(), 0);
    EXPECT_EQ(dual ? simplex.run_dual({}) : simplex.run_primal({}), SimplexOutcome::optimal);
  }
}

TEST(Perturbation, WaitsUntilItIsWorthIt) {
  // Optimal at the start.
  const LpProblem at_optimum =
      test::dense_lp({{1.0, 0.0, 9.0}, {2.0, 0.0, 9.0}}, {{1.0, 1.0}}, {{-kInf, 4.0}});
  Random random(31);
  const LpProblem lp = random_feasible_lp(random, 30, 60, false);
  for (const bool dual : {true, false}) {
    SCOPED_TRACE(dual);
    const auto log_of = [&](const LpProblem& problem, const SimplexSettings& settings) {
      RecordingSink text;
      Simplex simplex(problem);
      const RunContext context{.sink = &text};
      EXPECT_EQ(dual ? simplex.run_dual(settings, context) : simplex.run_primal(settings, context),
                SimplexOutcome::optimal);
      return text.all();
    };
    SimplexSettings settings;
    settings.display = 1;
    settings.perturb_at_start = true;
    EXPECT_NE(log_of(lp, settings).find("Perturbation started."), std::string::npos);
    settings.perturbation_limit = 100000;  // so many stalled iterations first
    EXPECT_EQ(log_of(lp, settings).find("Perturbation started."), std::string::npos);
    settings.perturbation_limit = 0;
    const std::string text = log_of(at_optimum, settings);
    EXPECT_EQ(
        text,
        dual ? "\nIteration log . . .\nIteration:     0   Dual objective     =             "
               "0.000000\n"
             : "\nIteration log . . .\nIteration:     0    Objective     =             0.000000\n");
  }
}

// Both values announce their norms, also at the slack basis, and measure differently.
TEST(DualNorms, SlackSpaceAndFullSpace) {
  Random random(8);
  const LpProblem lp = random_feasible_lp(random, 60, 90, true);
  int iterations[2];
  for (const bool full : {false, true}) {
    SimplexSettings settings;
    settings.display = 1;
    settings.dual_pricing = full ? DualPricing::steepest_slack : DualPricing::steepest;
    RecordingSink text;
    Simplex simplex(lp);
    ASSERT_EQ(simplex.run_dual(settings, {.sink = &text}), SimplexOutcome::optimal);
    expect_optimal(lp, simplex);
    EXPECT_EQ(text.all().find(full ? "Initializing dual full norms . . .\n"
                                   : "Initializing dual steep norms . . .\n"),
              0U);
    iterations[full] = simplex.iterations();
  }
  EXPECT_NE(iterations[0], iterations[1]);
}

}  // namespace
}  // namespace kelvo
