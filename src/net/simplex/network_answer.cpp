// The course of a run, and its answer.
#include <algorithm>
#include <cmath>

#include "net/simplex/network_engine.h"
#include "net/simplex/product_sum.h"

namespace kelvo {

NetworkAnswer NetworkEngine::run(const NetworkBasis& start) {
  NetworkAnswer answer;
  pricing_ = make_network_pricing(settings_.pricing);
  set_up();
  if (bounds_cross()) {
    start_from(NetworkBasis{});
    goal_ = Goal::costs;
    compute_potentials();
    give_answer(answer);
    answer.outcome = NetworkOutcome::infeasible;
    answer.solution.primal_feasible = false;
    return answer;
  }
  // Rounding may leave flows off their bounds; then the basis is loaded again and the run
  // continues.
  constexpr int kMostStarts = 5;
  NetworkBasis from = start;
  for (int k = 0; k < kMostStarts; ++k) {
    start_from(from);
    answer.outcome = run_phases();
    give_answer(answer);
    const bool off = answer.outcome == NetworkOutcome::optimal && !answer.solution.primal_feasible;
    if (!off) return answer;
    from = answer.basis;
  }
  answer.outcome = NetworkOutcome::numerical;
  return answer;
}

NetworkOutcome NetworkEngine::run_phases() {
  if (infeasibility_ > settings_.feasibility_tolerance) {
    set_goal(Goal::penalized);
    PhaseEnd end = iterate();
    if (end == PhaseEnd::stopped) return stopped_as_;
    if (end != PhaseEnd::feasible && !artificials_are_small()) {
      set_goal(Goal::feasibility);
      end = iterate();
      if (end == PhaseEnd::stopped) return stopped_as_;
      if (end != PhaseEnd::feasible && !artificials_are_small()) {
        return NetworkOutcome::infeasible;
      }
    }
  }
  clear_artificials();
  set_goal(Goal::costs);
  switch (iterate()) {
    case PhaseEnd::stopped:
      return stopped_as_;
    case PhaseEnd::unbounded:
      return NetworkOutcome::unbounded;
    case PhaseEnd::no_entry:
    case PhaseEnd::feasible:
      break;
  }
  return NetworkOutcome::optimal;
}

/// True when no artificial arc carries more than the tolerance.
bool NetworkEngine::artificials_are_small() const {
  for (int i = 0; i < program_.num_nodes; ++i) {
    const TreeNode& node = tree_[i];
    if (is_artificial(node.arc_index()) &&
        artificial_flow(node) > settings_.feasibility_tolerance) {
      return false;
    }
  }
  return true;
}

/// Flows from the basis alone, by the program's numbers. `infeasibility` receives the sum of what
/// the roots of the trees cannot place. Returns the largest violation of a bound by a basic arc.
double NetworkEngine::recompute_flows(Vector<double>& flow, double& infeasibility) const {
  const int n = program_.num_nodes;
  flow.resize(num_arcs());
  Vector<double> need(n + 1, 0.0);  // by number in the tree
  for (int i = 0; i < n; ++i) need[node_of_[i]] = program_.supply[i];
  for (int a = 0; a < num_arcs(); ++a) {
    flow[a] = status_[a] == kBasic ? 0.0 : nonbasic_flow(a);
    if (flow[a] == 0.0) continue;
    need[node_of_[program_.from[a]]] -= flow[a];
    need[node_of_[program_.to[a]]] += flow[a];
  }
  double worst = 0.0;
  infeasibility = 0.0;
  for (int i = tree_.previous(tree_.root()); i != tree_.root(); i = tree_.previous(i)) {
    const TreeNode& node = tree_[i];
    const int arc = node.arc_index();
    if (is_artificial(arc)) {
      infeasibility += std::fabs(need[i]);
      continue;
    }
    need[node.parent] += need[i];
    flow[arc] = node.leads_up() ? need[i] : 0.0 - need[i];
    worst = std::max({worst, program_.lower[arc] - flow[arc], flow[arc] - program_.upper[arc]});
  }
  return worst;
}

NetworkBasis NetworkEngine::basis() const {
  NetworkBasis result;
  result.present = true;
  result.arc_status = status_;
  result.node_basic.resize(program_.num_nodes);
  for (int i = 0; i < program_.num_nodes; ++i) {
    result.node_basic[i] = tree_[node_of_[i]].parent == tree_.root();
  }
  return result;
}

double NetworkEngine::objective(const Vector<double>& flow) const {
  ProductSum sum;
  for (int a = 0; a < num_arcs(); ++a) sum.add(program_.cost[a], flow[a]);
  return sum.value();
}

void NetworkEngine::give_answer(NetworkAnswer& answer) {
  const int n = program_.num_nodes;
  NetworkSolution& solution = answer.solution;
  goal_ = Goal::costs;
  compute_potentials();
  solution.iterations = iterations_;
  solution.phase_one_iterations = phase_one_iterations_;
  const double worst = recompute_flows(solution.flow, answer.infeasibility);
  solution.objective = objective(solution.flow);
  solution.pi.resize(n);
  for (int i = 0; i < n; ++i) {
    solution.pi[i] = program_.sense * tree_.potential(node_of_[i]) + 0.0;
  }
  solution.slack.assign(program_.supply, program_.supply + n);
  solution.dj.resize(num_arcs());
  for (int a = 0; a < num_arcs(); ++a) {
    const int from = program_.from[a], to = program_.to[a];
    solution.dj[a] = program_.cost[a] - solution.pi[from] + solution.pi[to];
    solution.slack[from] -= solution.flow[a];
    solution.slack[to] += solution.flow[a];
  }
  double largest_slack = 0.0;
  for (const double slack : solution.slack) {
    largest_slack = std::max(largest_slack, std::fabs(slack));
  }
  solution.primal_feasible = std::max(worst, largest_slack) <= settings_.feasibility_tolerance;
  solution.dual_feasible = true;
  for (int a = 0; a < num_arcs() && solution.dual_feasible; ++a) {
    if (status_[a] == kBasic || fixed_[a]) continue;
    const double gain = program_.sense * solution.dj[a];
    const double wrong = status_[a] == kAtLower   ? -gain
                         : status_[a] == kAtUpper ? gain
                                                  : std::fabs(gain);
    solution.dual_feasible = wrong <= settings_.optimality_tolerance;
  }
  answer.basis = basis();
}

NetworkAnswer solve_network(const NetworkProgram& program, const NetworkSettings& settings,
                            const NetworkBasis& start, NetworkEvents* events, StopCheck& stop) {
  return NetworkEngine(program, settings, events, stop).run(start);
}

}  // namespace kelvo
