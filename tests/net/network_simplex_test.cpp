#include "net/simplex/network_simplex.h"

#include <gtest/gtest.h>

#include "lp/model_solver.h"
#include "lp/simplex/simplex_support.h"
#include "net/random_network.h"
#include "net/simplex/product_sum.h"
#include "net/simplex/spanning_tree.h"
#include "prob/network/network_model.h"
#include "prob/solution.h"

namespace kelvo {
namespace {

__extension__ using Wide = __int128;
using test::random_network;

NetworkAnswer solve(const Network& network, const NetworkBasis& start = {},
                    const NetworkSettings& settings = {}) {
  NeverStop never;
  return solve_network(NetworkProgram(network), settings, start, nullptr, never);
}

int status_as_lp(const Model& model, LpMethod method) {
  test::ModelSolver solver;
  solver.settings.presolve.on = false;
  return solver.solve(model, method).status;
}

/// Optimality by integers alone: balance, bounds, and a flow between its bounds, or at the wrong
/// one, only where the reduced cost admits it.
void expect_optimal(const Network& network, const NetworkAnswer& answer) {
  const NetworkSolution& solution = answer.solution;
  std::vector<Wide> balance(network.num_nodes());
  Wide objective = 0;
  for (int i = 0; i < network.num_nodes(); ++i) balance[i] = static_cast<Wide>(network.supply[i]);
  for (int a = 0; a < network.num_arcs(); ++a) {
    const double flow = solution.flow[a];
    ASSERT_EQ(flow, std::floor(flow));
    EXPECT_GE(flow, network.lower[a]);
    EXPECT_LE(flow, network.upper[a]);
    balance[network.from[a]] -= static_cast<Wide>(flow);
    balance[network.to[a]] += static_cast<Wide>(flow);
    objective += static_cast<Wide>(flow) * static_cast<Wide>(network.cost[a]);
    const double dj = network.cost[a] - solution.pi[network.from[a]] + solution.pi[network.to[a]];
    EXPECT_EQ(solution.dj[a], dj);
    if (dj * network.sense > 0) {
      EXPECT_EQ(flow, network.lower[a]);
    }
    if (dj * network.sense < 0) {
      EXPECT_EQ(flow, network.upper[a]);
    }
  }
  for (int i = 0; i < network.num_nodes(); ++i) {
    EXPECT_TRUE(balance[i] == 0);
    EXPECT_EQ(solution.slack[i], 0.0);
  }
  EXPECT_EQ(solution.objective, static_cast<double>(objective));
  EXPECT_TRUE(solution.primal_feasible && solution.dual_feasible);
}

void expect_basis(const Network& network, const NetworkBasis& basis) {
  NetworkBasis repaired(basis);
  repair_basis(network, repaired);
  EXPECT_EQ(repaired.arc_status, basis.arc_status);
  EXPECT_EQ(repaired.node_basic, basis.node_basic);
}

TEST(NetworkSimplex, RandomNetworksAreSolvedExactly) {
  int optimal = 0, infeasible = 0, unbounded = 0;
  for (std::uint64_t seed = 1; seed <= 3000; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const Network network = random_network(seed);
    NetworkSettings settings;
    settings.pricing = static_cast<NetworkPricingRule>(1 + seed % 3);
    const NetworkAnswer answer = solve(network, {}, settings);
    expect_basis(network, answer.basis);
    Model model = network_to_model(network);
    if (answer.outcome == NetworkOutcome::optimal) {
      ++optimal;
      expect_optimal(network, answer);
      const NetworkAnswer again = solve(network, answer.basis, settings);
      EXPECT_EQ(again.outcome, NetworkOutcome::optimal);
      EXPECT_EQ(again.solution.iterations, 0);
      EXPECT_EQ(again.solution.pi, answer.solution.pi);
    } else if (answer.outcome == NetworkOutcome::unbounded) {
      ++unbounded;
      EXPECT_NE(status_as_lp(model, LpMethod::primal), kOptimal);
      model.objective.assign(model.num_cols, 0.0);
      EXPECT_EQ(status_as_lp(model, LpMethod::dual), kOptimal);
    } else {
      ++infeasible;
      EXPECT_EQ(answer.outcome, NetworkOutcome::infeasible);
      model.objective.assign(model.num_cols, 0.0);
      EXPECT_EQ(status_as_lp(model, LpMethod::dual), kInfeasible);
    }
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_GT(optimal, 300);
  EXPECT_GT(infeasible, 300);
  EXPECT_GT(unbounded, 100);
}

TEST(NetworkSimplex, LargeIntegersStayExact) {
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const Network network = random_network(seed, {12, 60, 4e9});
    const NetworkAnswer answer = solve(network);
    if (answer.outcome == NetworkOutcome::optimal) expect_optimal(network, answer);
    if (::testing::Test::HasFailure()) return;
  }
}

TEST(NetworkSimplex, AnyStartBasisLeadsToTheSameOptimum) {
  Random random(7);
  for (std::uint64_t seed = 1; seed <= 500; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    const Network network = random_network(seed);
    const NetworkAnswer cold = solve(network);
    NetworkBasis start;
    start.present = true;
    for (int a = 0; a < network.num_arcs(); ++a) {
      start.arc_status.push_back(static_cast<char>(random.below(4)));
    }
    for (int i = 0; i < network.num_nodes(); ++i) {
      start.node_basic.push_back(static_cast<char>(random.below(2)));
    }
    const NetworkAnswer warm = solve(network, start);
    ASSERT_EQ(warm.outcome, cold.outcome);
    if (cold.outcome != NetworkOutcome::optimal) continue;
    expect_optimal(network, warm);
    EXPECT_EQ(warm.solution.objective, cold.solution.objective);
  }
}

TEST(NetworkSimplex, FractionalDataMeetTheTolerances) {
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE(::testing::Message() << "seed " << seed);
    Network network = random_network(seed, {20, 120, 1000});
    Random random(seed);
    for (double& cost : network.cost) cost += random.uniform() / 3.0;
    for (int a = 0; a < network.num_arcs(); ++a) {
      const double share = random.uniform() / 7.0;
      network.lower[a] += share;
      network.upper[a] += share;
    }
    const NetworkAnswer answer = solve(network);
    EXPECT_NE(answer.outcome, NetworkOutcome::numerical);
    if (answer.outcome != NetworkOutcome::optimal) continue;
    EXPECT_TRUE(answer.solution.primal_feasible && answer.solution.dual_feasible);
  }
}

TEST(NetworkSimplex, StopsLeaveABasisToContinueFrom) {
  Network network;
  NetworkAnswer whole;
  for (std::uint64_t seed = 1; whole.solution.iterations <= 20; ++seed) {
    ASSERT_LT(seed, 1000u);
    network = random_network(seed, {60, 400, 100});
    whole = solve(network);
    if (whole.outcome != NetworkOutcome::optimal) whole = {};
  }
  for (int limit = 0; limit < whole.solution.iterations; limit += 7) {
    NetworkSettings settings;
    settings.iteration_limit = limit;
    const NetworkAnswer part = solve(network, {}, settings);
    EXPECT_EQ(part.outcome, NetworkOutcome::iteration_limit);
    EXPECT_EQ(part.solution.iterations, limit);
    expect_basis(network, part.basis);
    const NetworkAnswer rest = solve(network, part.basis);
    EXPECT_EQ(rest.solution.objective, whole.solution.objective);
    test::StopAt stop(limit, StopReason::time_limit);
    EXPECT_EQ(solve_network(NetworkProgram(network), {}, {}, nullptr, stop).outcome,
              NetworkOutcome::time_limit);
  }
}

// The tree against a plain recomputation from the parents.
TEST(SpanningTree, LinksSurviveRandomExchanges) {
  Random random(3);
  constexpr int kNodes = 30;
  SpanningTree tree;
  tree.make_star(kNodes);
  Vector<int> new_number(kNodes + 1);
  for (int step = 0; step < 3000; ++step) {
    const int inner = random.below(kNodes);
    int top = inner;
    while (tree[top].parent != tree.root() && random.below(3) != 0) top = tree[top].parent;
    const auto inside = [&](int node) {
      for (; node != tree.root(); node = tree[node].parent) {
        if (node == top) return true;
      }
      return false;
    };
    const int outer = random.below(kNodes + 1);
    if (inside(outer)) continue;
    tree.rehang(top, inner, outer, tree.common_ancestor(inner, outer));
    const double before = tree.potential(inner) - tree.potential(tree.root());
    tree.shift_potentials(inner, 2.0);
    EXPECT_EQ(tree.potential(inner) - tree.potential(tree.root()), before + 2.0);
    if (step % 100 == 0) tree.renumber(new_number);
    int visited = 0;
    std::vector<int> size(kNodes + 1, 1);
    for (int i = tree.previous(tree.root()); i != tree.root(); i = tree.previous(i)) {
      ++visited;
      EXPECT_EQ(tree.next(tree.previous(i)), i);
      EXPECT_EQ(tree[i].size, size[i]);
      size[tree[i].parent] += size[i];
      int last = i;
      for (int k = 1; k < size[i]; ++k) last = tree.next(last);
      EXPECT_EQ(tree[i].last, last);
    }
    ASSERT_EQ(visited, kNodes);
    ASSERT_FALSE(::testing::Test::HasFailure());
  }
}

TEST(ProductSum, RoundsOnce) {
  ProductSum sum;
  const double big = 9007199254740991.0;
  for (int k = 0; k < 1000; ++k) sum.add(big, big);
  sum.add(3.0, 1.0);
  for (int k = 0; k < 1000; ++k) sum.add(-big, big);
  EXPECT_EQ(sum.value(), 3.0);
  sum.add(0.1, 10.0);
  sum.add(1e300, 1e10);
  EXPECT_EQ(sum.value(), std::numeric_limits<double>::infinity());
  ProductSum fractions;
  fractions.add(1e16, 1.5);
  fractions.add(0.1, 3.0);
  fractions.add(-1e16, 1.5);
  EXPECT_DOUBLE_EQ(fractions.value(), 0.1 * 3.0);
}

}  // namespace
}  // namespace kelvo
