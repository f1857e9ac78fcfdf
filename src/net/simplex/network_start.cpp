// The start of a run: statuses, tree and flows.
#include <algorithm>
#include <cmath>

#include "net/simplex/network_engine.h"

namespace kelvo {
namespace {

bool no_lower(double lower) {
  return lower <= -kInfiniteFlow;
}

bool no_upper(double upper) {
  return upper >= kInfiniteFlow;
}

}  // namespace

bool NetworkEngine::bounds_cross() const {
  for (int a = 0; a < num_arcs(); ++a) {
    if (program_.lower[a] > program_.upper[a] + settings_.feasibility_tolerance) return true;
  }
  return false;
}

char NetworkEngine::initial_status(int arc) const {
  const bool below = no_lower(program_.lower[arc]), above = no_upper(program_.upper[arc]);
  if (below && above) return kFreeSuper;
  const bool prefers_upper = program_.sense * program_.cost[arc] < 0.0 && !fixed_[arc];
  return below || (prefers_upper && !above) ? kAtUpper : kAtLower;
}

/// A nonbasic status that the bounds admit.
char NetworkEngine::valid_status(int arc, char wanted) const {
  const bool below = no_lower(program_.lower[arc]), above = no_upper(program_.upper[arc]);
  if (wanted == kAtLower && !below) return kAtLower;
  if (wanted == kAtUpper && !above) return kAtUpper;
  return initial_status(arc);
}

double NetworkEngine::nonbasic_flow(int arc) const {
  switch (status_[arc]) {
    case kAtLower:
      return program_.lower[arc];
    case kAtUpper:
      return program_.upper[arc];
    default:
      return 0.0;
  }
}

void NetworkEngine::set_up() {
  const int n = program_.num_nodes, m = num_arcs();
  node_of_.resize(n + 1);
  new_number_.resize(n + 1);
  for (int i = 0; i <= n; ++i) node_of_[i] = i;
  status_.assign(m, kAtLower);
  fixed_.assign(m, 0);
  free_arcs_.clear();
  double largest_cost = 0.0;
  for (int a = 0; a < m; ++a) {
    fixed_[a] = program_.upper[a] - program_.lower[a] < settings_.feasibility_tolerance;
    if (no_lower(program_.lower[a]) && no_upper(program_.upper[a])) free_arcs_.push_back(a);
    largest_cost = std::max(largest_cost, std::fabs(program_.cost[a]));
  }
  entries_.resize(m + free_arcs_.size());
  // A path from a node in need to one with supply rarely costs more than this.
  constexpr double kLeastFactor = 100.0;
  penalty_ = (std::ceil(largest_cost) + 1.0) *
             std::max(kLeastFactor, std::ceil(std::sqrt(static_cast<double>(n))));
}

void NetworkEngine::start_from(const NetworkBasis& start) {
  const int m = num_arcs();
  for (int a = 0; a < m; ++a) {
    const bool given = start.present;
    status_[a] = given ? start.arc_status[a] : initial_status(a);
  }
  tree_.make_star(program_.num_nodes);
  plant(start);
  for (int i = 0; i <= program_.num_nodes; ++i) node_of_[i] = i;
  Vector<double> need(program_.num_nodes);
  for (int i = 0; i < program_.num_nodes; ++i) need[i] = program_.supply[i];
  for (int a = 0; a < m; ++a) {
    if (status_[a] == kBasic) continue;
    status_[a] = valid_status(a, status_[a]);
    const double flow = nonbasic_flow(a);
    need[program_.from[a]] -= flow;
    need[program_.to[a]] += flow;
  }
  load_flows(need);
  measure_infeasibility();
}

/// Makes the basic arcs a forest that hangs from the artificial root; those that would close a
/// cycle become nonbasic. Fixed arcs may be basic.
void NetworkEngine::plant(const NetworkBasis& start) {
  const int n = program_.num_nodes;
  Vector<int> begin(n + 2, 0);
  const auto visit_ends = [&](auto visit) {
    for (int a = 0; a < num_arcs(); ++a) {
      if (status_[a] != kBasic) continue;
      visit(program_.from[a], a);
      visit(program_.to[a], a);
    }
  };
  visit_ends([&](int node, int) { ++begin[node + 2]; });
  for (int i = 2; i <= n + 1; ++i) begin[i] += begin[i - 1];
  if (begin[n + 1] == 0) return;
  Vector<int> incident(begin[n + 1]);
  visit_ends([&](int node, int a) { incident[begin[node + 1]++] = a; });
  for (int a = 0; a < num_arcs(); ++a) {
    if (status_[a] == kBasic) status_[a] = initial_status(a);
  }
  Vector<char> reached(n, 0);
  Vector<int> queue;
  queue.reserve(n);
  std::size_t done = 0;
  const auto grow = [&](int root) {
    if (reached[root]) return;
    reached[root] = 1;
    queue.push_back(root);
    for (; done < queue.size(); ++done) {
      const int at = queue[done];
      for (int p = begin[at]; p < begin[at + 1]; ++p) {
        const int a = incident[p];
        const bool outward = program_.from[a] == at;
        const int other = outward ? program_.to[a] : program_.from[a];
        if (reached[other]) continue;
        reached[other] = 1;
        queue.push_back(other);
        tree_[other].parent = at;
        tree_[other].arc = 2 * a + (outward ? 0 : 1);
        status_[a] = kBasic;
      }
    }
  };
  for (int i = 0; i < n && !start.node_basic.empty(); ++i) {
    if (start.node_basic[i]) grow(i);
  }
  for (int i = 0; i < n; ++i) grow(i);
  tree_.link_from_parents();
}

/// Sets the residuals of the tree arcs from the leaves up; `need` holds the supply that the
/// nonbasic flows leave at each node. An arc whose flow would pass a bound, or through which
/// nothing more can be sent up, is put at that bound, and its subtree hangs from the root by an
/// artificial arc.
void NetworkEngine::load_flows(Vector<double>& need) {
  bool cut = false;
  for (int i = tree_.previous(tree_.root()); i != tree_.root(); i = tree_.previous(i)) {
    TreeNode& node = tree_[i];
    if (node.parent == tree_.root()) {
      hang_artificial(i, need[i]);
      continue;
    }
    const int parent = node.parent;
    double carried = need[i];
    if (!load_tree_arc(i, need[i], carried)) {
      hang_artificial(i, need[i] - carried);
      cut = true;
    }
    need[parent] += carried;
  }
  if (cut) tree_.link_from_parents();
}

/// False when the arc cannot stay in the tree; it has become nonbasic then.
bool NetworkEngine::load_tree_arc(int node, double need, double& carried) {
  TreeNode& at = tree_[node];
  const int arc = at.arc_index();
  const double lower = program_.lower[arc], upper = program_.upper[arc];
  const double flow = at.leads_up() ? need : 0.0 - need;
  double more = no_upper(upper) ? kUnlimited : upper - flow;
  double less = no_lower(lower) ? kUnlimited : flow - lower;
  const double tolerance = settings_.feasibility_tolerance;
  double& up = at.leads_up() ? more : less;
  const bool inside = more >= -tolerance && less >= -tolerance;
  if (inside && up > kTie) {
    at.up = at.leads_up() ? more : less;
    at.down = std::max(at.leads_up() ? less : more, 0.0);
    return true;
  }
  const bool at_upper = more < less;
  status_[arc] = at_upper ? kAtUpper : kAtLower;
  carried = at_upper ? upper : lower;
  if (!at.leads_up()) carried = 0.0 - carried;
  return false;
}

void NetworkEngine::hang_artificial(int node, double need) {
  if (std::fabs(need) <= kTie) need = 0.0;
  const bool leads_up = need >= 0.0;
  TreeNode& at = tree_[node];
  at.parent = tree_.root();
  at.arc = 2 * num_arcs() + (leads_up ? 1 : 0);
  at.up = leads_up ? kUnlimited : -need;
  at.down = leads_up ? need : kUnlimited;
}

void NetworkEngine::measure_infeasibility() {
  infeasibility_ = 0.0;
  for (int i = 0; i < program_.num_nodes; ++i) {
    if (is_artificial(tree_[i].arc_index())) infeasibility_ += artificial_flow(tree_[i]);
  }
}

}  // namespace kelvo
