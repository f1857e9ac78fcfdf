// Iterations of the network simplex.
#include <algorithm>
#include <cmath>

#include "net/simplex/network_engine.h"

namespace kelvo {

void NetworkEngine::set_goal(Goal goal) {
  goal_ = goal;
  if (goal == Goal::feasibility) penalty_ = 1.0;
  compute_potentials();
  fill_entries();
  pricing_->start(static_cast<int>(entries_.size()));
  if (goal == Goal::feasibility) {
    objective_ = infeasibility_;
    return;
  }
  Vector<double> flow;
  double infeasibility = 0.0;
  (void)recompute_flows(flow, infeasibility);
  objective_ = program_.sense * objective(flow);
  if (goal == Goal::penalized) objective_ += penalty_ * infeasibility_;
}

void NetworkEngine::compute_potentials() {
  tree_.set_potential(tree_.root(), 0.0);
  for (int i = tree_.next(tree_.root()); i != tree_.root(); i = tree_.next(i)) {
    const TreeNode& node = tree_[i];
    const double cost = cost_of(node.arc_index());
    const double above = tree_.potential(node.parent);
    tree_.set_potential(i, node.leads_up() ? above + cost : above - cost);
  }
}

void NetworkEngine::fill_entries() {
  for (int a = 0; a < num_arcs(); ++a) set_entry(a);
}

/// Writes what pricing sees of an arc.
void NetworkEngine::set_entry(int arc) {
  const int from = node_of_[program_.from[arc]], to = node_of_[program_.to[arc]];
  const double cost = cost_of(arc);
  const char status = status_[arc];
  PricedArc& entry = entries_[arc];
  if (status == kBasic || fixed_[arc]) {
    entry = {0, 0, 0.0};
  } else if (status == kAtUpper) {
    entry = {to, from, 0.0 - cost};
  } else {
    entry = {from, to, cost};
  }
  if (free_arcs_.empty()) return;
  const auto found = std::lower_bound(free_arcs_.begin(), free_arcs_.end(), arc);
  if (found == free_arcs_.end() || *found != arc) return;
  const auto twin = num_arcs() + (found - free_arcs_.begin());
  entries_[twin] = status == kBasic ? PricedArc{0, 0, 0.0} : PricedArc{to, from, 0.0 - cost};
}

/// Limits, the line of the log and the callback.
bool NetworkEngine::must_stop() {
  if (iterations_ >= settings_.iteration_limit) {
    stopped_as_ = NetworkOutcome::iteration_limit;
    return true;
  }
  if (const StopReason reason = stop_.check(); reason != StopReason::none) {
    stopped_as_ =
        reason == StopReason::time_limit ? NetworkOutcome::time_limit : NetworkOutcome::aborted;
    return true;
  }
  if (events_ == nullptr || iterations_ == last_reported_ || !events_->due(iterations_)) {
    return false;
  }
  last_reported_ = iterations_;
  if (events_->iteration(iterations_, goal_ != Goal::costs, objective_, infeasibility_) == 0) {
    return false;
  }
  stopped_as_ = NetworkOutcome::aborted;
  return true;
}

NetworkEngine::PhaseEnd NetworkEngine::iterate() {
  // Potentials are added up by pivots; before the end of a phase is believed they are computed from
  // scratch, a few times where the numbers are such that this changes the result.
  constexpr int kMostChecks = 10;
  int checks = 0;
  bool fresh = true;
  for (;;) {
    if (goal_ != Goal::costs && infeasibility_ <= settings_.feasibility_tolerance) {
      return PhaseEnd::feasible;
    }
    const PricingView view{entries_.data(), static_cast<int>(entries_.size()), tree_.potentials(),
                           settings_.optimality_tolerance};
    const int entry = pricing_->select(view);
    if (entry < 0) {
      if (fresh || checks == kMostChecks) return PhaseEnd::no_entry;
      compute_potentials();
      fresh = true;
      ++checks;
      continue;
    }
    if (must_stop()) return PhaseEnd::stopped;
    fresh = false;
    const int before = iterations_;
    pivot(entry);
    if (iterations_ == before) return PhaseEnd::unbounded;
    if (goal_ != Goal::costs) ++phase_one_iterations_;
    renumber_if_due();
  }
}

/// One iteration; none when nothing limits the step.
void NetworkEngine::pivot(int entry) {
  const PricedArc entering = entries_[entry];
  const int arc = arc_of_entry(entry);
  const int tail = entering.from, head = entering.to;
  const bool was_free = status_[arc] == kFreeSuper;
  const double lower = program_.lower[arc], upper = program_.upper[arc];
  const bool one_sided = lower <= -kInfiniteFlow || upper >= kInfiniteFlow;
  const double range = one_sided ? kUnlimited : upper - lower;
  const double reduced_cost = entering.cost - tree_.potential(tail) + tree_.potential(head);

  const int join = tree_.common_ancestor(tail, head);
  const Leaving leaving = ratio_test(tail, head, join, range);
  if (leaving.step == kUnlimited) return;
  ++iterations_;
  if (leaving.step > 0.0) {
    send_flow(tail, head, join, leaving.step);
    objective_ += reduced_cost * leaving.step;
  }
  if (leaving.node < 0) {  // the arc moves to its other bound
    status_[arc] = status_[arc] == kAtLower ? kAtUpper : kAtLower;
    set_entry(arc);
    pricing_->pivot_done(1);
    return;
  }
  release_leaving_arc(leaving);
  const int inner = leaving.on_tail_side ? tail : head;
  const int outer = leaving.on_tail_side ? head : tail;
  const bool leads_up = node_of_[program_.from[arc]] == inner;
  tree_.rehang(leaving.node, inner, outer, join);
  const double forward = range - leaving.step;
  const double backward = was_free ? kUnlimited : leaving.step;
  TreeNode& node = tree_[inner];
  node.arc = 2 * arc + (leads_up ? 1 : 0);
  node.up = leaving.on_tail_side ? forward : backward;
  node.down = leaving.on_tail_side ? backward : forward;
  status_[arc] = kBasic;
  set_entry(arc);
  const int touched =
      tree_.shift_potentials(inner, leaving.on_tail_side ? reduced_cost : -reduced_cost);
  work_since_renumbering_ += touched;
  pricing_->pivot_done(touched);
}

NetworkEngine::Leaving NetworkEngine::ratio_test(int tail, int head, int join, double range) const {
  // The cycle runs from the common ancestor down to the tail, over the arc, and from the head up.
  // Its last limiting arc is the one nearest to the ancestor on the head's side, or else the one
  // nearest to the tail.
  Leaving leaving;
  double step = range;
  for (int i = tail; i != join; i = tree_[i].parent) {
    const double residual = tree_[i].down;
    if (residual < step - kTie) {
      step = residual;
      leaving.node = i;
      leaving.on_tail_side = true;
    }
  }
  for (int i = head; i != join; i = tree_[i].parent) {
    const double residual = tree_[i].up;
    if (residual <= step + kTie && residual < kUnlimited) {
      step = std::min(step, residual);
      leaving.node = i;
      leaving.on_tail_side = false;
    }
  }
  leaving.step = std::max(step, 0.0);
  return leaving;
}

void NetworkEngine::send_flow(int tail, int head, int join, double step) {
  const auto reduced = [step](double residual) {
    const double left = residual - step;
    return left < kTie ? 0.0 : left;
  };
  // Only the uppermost arc of either side can be artificial.
  const auto count_artificial = [&](const TreeNode& node, bool upward) {
    if (!is_artificial(node.arc_index())) return;
    infeasibility_ += upward == node.leads_up() ? step : -step;
  };
  for (int i = tail; i != join; i = tree_[i].parent) {
    TreeNode& node = tree_[i];
    node.down = reduced(node.down);
    node.up += step;
    if (node.parent == join) count_artificial(node, false);
  }
  for (int i = head; i != join; i = tree_[i].parent) {
    TreeNode& node = tree_[i];
    node.up = reduced(node.up);
    node.down += step;
    if (node.parent == join) count_artificial(node, true);
  }
}

/// Makes the leaving arc nonbasic at the bound where it is; an artificial one is forgotten.
void NetworkEngine::release_leaving_arc(const Leaving& leaving) {
  const TreeNode& node = tree_[leaving.node];
  const int arc = node.arc_index();
  if (is_artificial(arc)) return;
  // On the head's side the flow went up.
  const bool grew = node.leads_up() != leaving.on_tail_side;
  status_[arc] = grew ? kAtUpper : kAtLower;
  set_entry(arc);
}

void NetworkEngine::renumber_if_due() {
  // Numbering costs about so much as changing this many potentials that are scattered in memory.
  const std::int64_t due = 2 * (std::int64_t{program_.num_nodes} + num_arcs());
  if (work_since_renumbering_ < due) return;
  work_since_renumbering_ = 0;
  tree_.renumber(new_number_);
  for (PricedArc& entry : entries_) {
    entry.from = new_number_[entry.from];
    entry.to = new_number_[entry.to];
  }
  for (int& number : node_of_) number = new_number_[number];
}

/// Makes artificial arcs without a flow worth mentioning such that they will never have one.
void NetworkEngine::clear_artificials() {
  for (int i = 0; i < program_.num_nodes; ++i) {
    TreeNode& node = tree_[i];
    if (!is_artificial(node.arc_index())) continue;
    node.arc |= 1;
    node.up = kUnlimited;
    node.down = 0.0;
  }
  infeasibility_ = 0.0;
}

}  // namespace kelvo
