#include <gtest/gtest.h>

#include <cmath>

#include "lp/simplex/primal/primal_perturbation.h"
#include "lp/simplex/simplex_support.h"
#include "lp/simplex/state/simplex_state.h"

namespace kelvo {
namespace {

using test::dense_lp;
using test::expect_infeasibility_proof;
using test::expect_optimal;
using test::random_feasible_lp;
using test::RecordingSink;
using test::StopAt;

class PrimalSimplex : public ::testing::Test {
 protected:
  SimplexSettings settings;
};

TEST_F(PrimalSimplex, RandomProgramsUnderEveryPricing) {
  for (std::uint64_t seed = 1; seed <= 120; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed * 7919);
    const LpProblem lp =
        random_feasible_lp(random, 1 + random.below(30), 1 + random.below(50), seed % 2 == 0);
    settings.perturb_at_start = seed % 3 == 0;
    settings.price_limit = seed % 5 == 0 ? 1 : 0;
    double first = 0.0;
    for (int pricing = -1; pricing <= 4; ++pricing) {
      SCOPED_TRACE(pricing);
      Simplex simplex(lp);
      settings.primal_pricing = static_cast<PrimalPricing>(pricing);
      ASSERT_EQ(simplex.run_primal(settings), SimplexOutcome::optimal);
      expect_optimal(lp, simplex);
      if (pricing == -1) first = simplex.objective();
      EXPECT_NEAR(simplex.objective(), first, 1e-6 * (1.0 + std::fabs(first)));
      const int before = simplex.iterations();
      ASSERT_EQ(simplex.run_primal(settings), SimplexOutcome::optimal);
      if (!settings.perturb_at_start) {
        EXPECT_EQ(simplex.iterations(), before) << "not warm";
      }
    }
  }
}

// A transportation program with equal costs in blocks: many ties, many iterations, so that
// automatic pricing goes through all of its rules.
LpProblem transportation(Random& random, int sources, int sinks) {
  std::vector<test::ColumnSpec> columns;
  std::vector<std::vector<double>> rows(sources + sinks, std::vector<double>(sources * sinks, 0.0));
  std::vector<std::pair<double, double>> limits;
  for (int a = 0; a < sources; ++a) {
    for (int b = 0; b < sinks; ++b) {
      rows[a][columns.size()] = 1.0;
      rows[sources + b][columns.size()] = 1.0;
      columns.push_back({1.0 + random.below(6), 0.0, kInf});
    }
    limits.emplace_back(-kInf, 2.0 * sinks);
  }
  for (int b = 0; b < sinks; ++b) limits.emplace_back(sources, sources);
  return dense_lp(columns, rows, limits);
}

TEST_F(PrimalSimplex, AutomaticPricingChangesItsRuleAndStaysRight) {
  Random random(3);
  const LpProblem lp = transportation(random, 60, 70);
  Simplex reference(lp);
  ASSERT_EQ(reference.run_dual(settings), SimplexOutcome::optimal);
  for (const int threshold : {0, 1}) {
    RecordingSink text;
    settings.display = 1;
    settings.perturbation_limit = threshold;
    settings.refactor_frequency = 20;
    Simplex simplex(lp);
    ASSERT_EQ(simplex.run_primal(settings, {.sink = &text}), SimplexOutcome::optimal);
    expect_optimal(lp, simplex);
    EXPECT_NEAR(simplex.objective(), reference.objective(), 1e-6);
    const std::size_t steepest = text.all().find("Switched to steepest-edge.\n");
    const std::size_t devex = text.all().find("Switched to devex.\n");
    EXPECT_NE(steepest, std::string::npos);
    EXPECT_NE(devex, std::string::npos);
    EXPECT_LT(steepest, devex);
    const bool perturbed = text.all().find("Perturbation started.\n") != std::string::npos;
    EXPECT_EQ(perturbed, text.all().find("Removing perturbation.\n") != std::string::npos);
    EXPECT_TRUE(perturbed || threshold == 0);
  }
}

TEST_F(PrimalSimplex, LogLines) {
  // min -x - y over x + y <= 4, x <= 3, y <= 3.
  const LpProblem lp = dense_lp({{-1, 0, 3}, {-1, 0, 3}}, {{1, 1}}, {{-kInf, 4}});
  settings.display = 1;
  struct {
    PrimalPricing pricing;
    const char* start;
  } const cases[] = {
      {PrimalPricing::reduced_cost, "\nIteration log . . .\n"},
      {PrimalPricing::automatic, "\nIteration log . . .\n"},
      {PrimalPricing::devex, "Using devex.\n\nIteration log . . .\n"},
      {PrimalPricing::steepest,
       "Using steepest-edge.\nInitializing primal norms rowwise . . .\n\nIteration log . . .\n"},
      {PrimalPricing::steepest_slack, "Using steepest-edge.\n\nIteration log . . .\n"},
      {PrimalPricing::full, "\nIteration log . . .\n"},
  };
  for (const auto& c : cases) {
    RecordingSink text;
    settings.primal_pricing = c.pricing;
    Simplex simplex(lp);
    ASSERT_EQ(simplex.run_primal(settings, {.sink = &text}), SimplexOutcome::optimal);
    EXPECT_NEAR(simplex.objective(), -4.0, 1e-9);
    const std::string expected =
        std::string(c.start) + "Iteration:     0    Objective     =             0.000000\n";
    EXPECT_EQ(text.all().substr(0, expected.size()), expected);
  }
}

TEST_F(PrimalSimplex, PerturbationsBecomeSmallerButNotLostInRounding) {
  LpProblem lp = dense_lp({{1, 0, 10}, {2, 0, 10}}, {{1, 1}}, {{4, kInf}});
  SimplexState state(lp);
  state.set_basis(Vector<int>{kBasic, kAtLower, kAtUpper}, nullptr);
  settings.perturbation_limit = 1;
  state.begin_run(settings);
  PrimalPerturbation perturbation(state);
  perturbation.begin();
  std::vector<double> tolerances;
  for (int k = 0; k < 50; ++k) {
    perturbation.observe(0.0);
    if (perturbation.due()) tolerances.push_back(perturbation.feasibility_tolerance());
  }
  ASSERT_EQ(tolerances.size(), 3u);  // magnitudes of 1e-6, 1e-7, 1e-8
  EXPECT_NEAR(tolerances[0], 1e-8, 1e-12);
  EXPECT_NEAR(tolerances[2], 1e-10, 1e-14);
}

TEST_F(PrimalSimplex, DroppedVariablesArePricedAtTheEnd) {
  // Two equal columns cannot both be basic: one is dropped, and held until the end. Whichever it
  // is, it is missed under one order of the costs and not under the other.
  int satisfied = 0;
  int reincluded = 0;
  for (const double first : {-1.0, -2.0}) {
    const LpProblem lp = dense_lp({{first, 0, 10}, {-3.0 - first, 0, 10}, {2, 0, 1}},
                                  {{1, 1, 2}, {1, 1, 1}}, {{3, 8}, {2, kInf}});
    RecordingSink text;
    settings.display = 1;
    Simplex simplex(lp);
    simplex.set_basis(Vector<int>{kBasic, kBasic, kAtLower, kAtLower, kAtLower});
    ASSERT_EQ(simplex.run_primal(settings, {.sink = &text}), SimplexOutcome::optimal);
    expect_optimal(lp, simplex);
    EXPECT_NE(text.all().find("fixed because of singularity.\n"), std::string::npos);
    satisfied +=
        text.all().find("Dropped variables satisfy optimality criteria.\n") != std::string::npos;
    const std::size_t price = text.all().find("Reduced cost of dropped variable '");
    const std::size_t again = text.all().find(
        "There are 1 violations to optimality.\nAttempting to reinclude dropped variables.\n");
    reincluded += price != std::string::npos && again != std::string::npos && price < again;
  }
  EXPECT_EQ(satisfied, 1);
  EXPECT_EQ(reincluded, 1);
}

TEST_F(PrimalSimplex, SuperbasicsAreCountedAndPriced) {
  const LpProblem lp = dense_lp({{1, 0, 10}, {2, 0, 10}, {-1, 0, 5}}, {{1, 1, 1}}, {{4, kInf}});
  RecordingSink text;
  settings.display = 1;
  Simplex simplex(lp);
  const double values[] = {2.5, 0.0, 1.0, 0.0};
  simplex.set_basis(Vector<int>{kFreeSuper, kAtLower, kFreeSuper, kBasic}, values);
  ASSERT_EQ(simplex.run_primal(settings, {.sink = &text}), SimplexOutcome::optimal);
  EXPECT_NE(text.all().find("Primal superbasis exists (2).\n"), std::string::npos);
  EXPECT_NEAR(simplex.objective(), -5.0, 1e-9);
}

TEST_F(PrimalSimplex, AnOptimumBetweenVerticesIsMovedToOne) {
  // x + y + z >= 4 costs the same whoever pays; f is free and stands anywhere between -9 and 1.
  const LpProblem lp = dense_lp({{1, 0, 3}, {1, -1, 3}, {1, -kInf, 2}, {0, -kInf, kInf}},
                                {{1, 1, 1, 0}, {0, 0, 0, 1}}, {{4, kInf}, {-9, 1}});
  Simplex simplex(lp);
  const double values[] = {1.5, 2.0, 0.5, 0.75, 0.0, 0.0};
  simplex.set_basis(Vector<int>{kFreeSuper, kFreeSuper, kFreeSuper, kFreeSuper, kBasic, kBasic},
                    values);
  ASSERT_EQ(simplex.run_primal(settings), SimplexOutcome::optimal);
  EXPECT_NEAR(simplex.objective(), 4.0, 1e-9);
  int basic = 0;
  for (int v = 0; v < lp.num_vars(); ++v) {
    const int status = simplex.status()[v];
    const double x = simplex.values()[v];
    basic += status == kBasic;
    const double place = status == kAtLower ? lp.lower[v] : status == kAtUpper ? lp.upper[v] : 0.0;
    if (status != kBasic) {
      EXPECT_EQ(x, place) << v;
    }
  }
  EXPECT_EQ(basic, 2);
}

TEST_F(PrimalSimplex, FreeSuperbasicsAreMovedWithinTheRows) {
  const LpProblem lp = dense_lp({{0, -kInf, kInf}}, {{1}}, {{1, 5}});
  Simplex simplex(lp);
  const double values[] = {3.0, -3.0};
  simplex.set_basis(Vector<int>{kFreeSuper, kBasic}, values);
  ASSERT_EQ(simplex.run_primal(settings), SimplexOutcome::optimal);
  EXPECT_EQ(simplex.values()[0], 1.0);
  EXPECT_LE(simplex.iterations(), 1);
}

TEST_F(PrimalSimplex, ProofsOfInfeasibilityAndUnboundedness) {
  for (int pricing = -1; pricing <= 4; ++pricing) {
    settings.primal_pricing = static_cast<PrimalPricing>(pricing);
    // x + y >= 5 with x, y in [0, 2].
    const LpProblem none = dense_lp({{1, 0, 2}, {1, 0, 2}}, {{1, 1}}, {{5, kInf}});
    Simplex infeasible(none);
    ASSERT_EQ(infeasible.run_primal(settings), SimplexOutcome::infeasible);
    expect_infeasibility_proof(none, infeasible.farkas_dual());
    // min -x, x - y <= 1, x, y >= 0.
    const LpProblem open = dense_lp({{-1, 0, kInf}, {0, 0, kInf}}, {{1, -1}}, {{-kInf, 1}});
    Simplex unbounded(open);
    ASSERT_EQ(unbounded.run_primal(settings), SimplexOutcome::unbounded);
    const Vector<double>& ray = unbounded.primal_ray();
    EXPECT_GT(ray[0], 0.0);
    EXPECT_NEAR(ray[0] - ray[1] + ray[2], 0.0, 1e-12);
    EXPECT_GE(ray[1], 0.0);
    EXPECT_GE(ray[2], 0.0);
  }
}

TEST_F(PrimalSimplex, LimitsStopTheRun) {
  Random random(5);
  const LpProblem lp = random_feasible_lp(random, 20, 30, false);
  Simplex full(lp);
  ASSERT_EQ(full.run_primal(settings), SimplexOutcome::optimal);
  const double optimum = full.objective();

  settings.iteration_limit = 3;
  Simplex limited(lp);
  EXPECT_EQ(limited.run_primal(settings), SimplexOutcome::iteration_limit);
  EXPECT_EQ(limited.iterations(), 3);
  settings.iteration_limit = 100000;
  EXPECT_EQ(limited.run_primal(settings), SimplexOutcome::optimal);
  expect_optimal(lp, limited);
  for (const int at : {0, 1, 5}) {
    StopAt time(at, StopReason::time_limit);
    Simplex timed(lp);
    EXPECT_EQ(timed.run_primal(settings, {.stop = &time}), SimplexOutcome::time_limit);
    StopAt hook(at);
    Simplex hooked(lp);
    EXPECT_EQ(hooked.run_primal(settings, {.hook = &hook}), SimplexOutcome::aborted);
  }

  // The objective limit stops at a feasible point below it, perturbed bounds or not, and never
  // above.
  for (const bool perturbed : {false, true}) {
    settings.perturb_at_start = perturbed;
    settings.objective_lower_limit = optimum + 0.5;
    Simplex below(lp);
    ASSERT_EQ(below.run_primal(settings), SimplexOutcome::objective_limit);
    EXPECT_LT(below.objective(), optimum + 0.5);
    for (int j = 0; j < lp.num_vars(); ++j) {
      EXPECT_GE(below.values()[j], lp.lower[j] - 1e-6);
      EXPECT_LE(below.values()[j], lp.upper[j] + 1e-6);
    }
    settings.objective_lower_limit = optimum - 0.5;
    Simplex above(lp);
    EXPECT_EQ(above.run_primal(settings), SimplexOutcome::optimal);
  }
}

}  // namespace
}  // namespace kelvo
