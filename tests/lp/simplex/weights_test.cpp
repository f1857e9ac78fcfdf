// Steepest-edge weights are norms that the factor can tell: after many updates they must still be
// those norms, but for rounding.
#include <gtest/gtest.h>

#include "lp/simplex/dual/dual_engine.h"
#include "lp/simplex/primal/primal_pricing.h"
#include "lp/simplex/simplex_support.h"

namespace kelvo {
namespace {

using test::random_feasible_lp;

constexpr double kRounding = 1e-6;        // relative error allowed to an updated weight
constexpr double kSmallestWeight = 1e-4;  // the dual method keeps none below this

double squared_norm(const WorkVector& x) {
  double sum = 0.0;
  for (int i = 0; i < x.size(); ++i) sum += x.value[i] * x.value[i];
  return sum;
}

/// |e_p'B^-1|^2, or |e_p'B^-1 [A I]|^2.
double exact_dual_weight(SimplexState& state, int p, bool full) {
  state.compute_row_ep(p);
  double sum = squared_norm(state.row_ep);
  for (int j = 0; full && j < state.n; ++j) {
    WorkVector column(state.m);
    state.program.load_column(j, column);
    double product = 0.0;
    for (int i = 0; i < state.m; ++i) product += column.value[i] * state.row_ep.value[i];
    sum += product * product;
  }
  return sum;
}

/// 1 + |B^-1 a_j|^2.
double exact_primal_weight(SimplexState& state, int j) {
  WorkVector column(state.m);
  state.program.load_column(j, column);
  state.factor().ftran(column, 1.0);
  return 1.0 + squared_norm(column);
}

void expect_dual_norms(SimplexState& state, bool full) {
  for (int p = 0; p < state.m; ++p) {
    const double exact = std::max(exact_dual_weight(state, p, full), kSmallestWeight);
    EXPECT_NEAR(state.weights.dual[p], exact, kRounding * exact) << "position " << p;
  }
}

void expect_primal_norms(SimplexState& state, const PrimalPricer& pricer) {
  for (int j = 0; j < state.num_vars; ++j) {
    if (state.basis.move[j] == Basis::kStays) continue;
    const double exact = exact_primal_weight(state, j);
    EXPECT_NEAR(pricer.weight(j), exact, kRounding * exact) << "variable " << j;
  }
}

TEST(DualWeights, RemainNormsOverIterationsAndFactorizations) {
  int iterations = 0;
  for (int seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    LpProblem lp = random_feasible_lp(random, 14 + seed % 3, 25, seed % 2 == 0);
    const bool full = seed % 3 == 0;
    SimplexState state(lp);
    DualEngine engine(state);
    SimplexSettings settings;
    settings.dual_pricing = full ? DualPricing::steepest_slack : DualPricing::steepest_unit;
    settings.refactor_frequency = 4 + seed % 5;
    settings.iteration_limit = 6 + 2 * seed;
    state.begin_run(settings);
    engine.run();
    ASSERT_TRUE(state.weights.valid());
    expect_dual_norms(state, full);
    iterations += state.run.iterations;
  }
  EXPECT_GT(iterations, 300);
}

TEST(DualWeights, AreMeasuredAgainAfterARepair) {
  // Two equal columns cannot both be basic, so the weights given for this basis belong to none.
  LpProblem lp = test::dense_lp({{1, 0, 9}, {2, 0, 9}, {3, 0, 9}}, {{2, 2, 1}, {3, 3, 2}},
                                {{1, kInf}, {2, kInf}});
  SimplexState state(lp);
  DualEngine engine(state);
  state.set_basis(Vector<int>{kBasic, kBasic, kAtLower, kAtLower, kAtLower}, nullptr);
  state.weights.dual.assign(2, 17.0);
  state.weights.set_valid(false);
  SimplexSettings settings;
  settings.dual_pricing = DualPricing::steepest;
  settings.iteration_limit = 0;
  state.begin_run(settings);
  engine.run();
  expect_dual_norms(state, false);
}

/// Exchanges a random movable variable for the one with the largest pivot of its column.
bool exchange_at_random(SimplexState& state, PrimalPricer& pricer, Random& random) {
  const int entering = random.below(state.num_vars);
  if (state.basis.move[entering] == Basis::kStays) return false;
  state.entering.clear();
  state.program.load_column(entering, state.entering);
  state.factor().ftran(state.entering, 1.0, true);
  int p = 0;
  for (int i = 1; i < state.m; ++i) {
    if (std::fabs(state.entering.value[i]) > std::fabs(state.entering.value[p])) p = i;
  }
  const double pivot = state.entering.value[p];
  if (std::fabs(pivot) < 0.1) return false;
  state.compute_row_ep(p);
  state.compute_pivot_row();
  pricer.update_weights(entering, p, state.pivot_row.value[entering]);
  if (!state.exchange(p, entering, 0.0, kAtLower, pivot)) state.refactorize();
  return true;
}

TEST(PrimalWeights, RemainNormsOverIterations) {
  int exchanges = 0;
  for (int seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    const bool few_columns = seed % 2 == 0;  // norms are computed by columns then, else by rows
    LpProblem lp = random_feasible_lp(random, 14, few_columns ? 8 : 30, true);
    SimplexState state(lp);
    SimplexSettings settings;
    settings.primal_pricing = PrimalPricing::steepest;
    state.begin_run(settings);
    ASSERT_EQ(state.refactorize(), Refactored::ok);
    PrimalPricer pricer(state);
    pricer.begin();
    for (int k = 0; k < 60; ++k) exchanges += exchange_at_random(state, pricer, random);
    expect_primal_norms(state, pricer);
    pricer.reinitialize();
    expect_primal_norms(state, pricer);
  }
  EXPECT_GT(exchanges, 300);
}

}  // namespace
}  // namespace kelvo
