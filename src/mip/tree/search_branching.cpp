// Branching of a node whose LP has been solved.
#include <cmath>

#include "mip/tree/search.h"

namespace kelvo {

void Search::collect_candidates() {
  candidates_.clear();
  const Vector<double>& x = lp_.x();
  int highest = 0;
  for (int j = 0; j < mip_.num_cols(); ++j) {
    if (!mip_.is_integer[j] || bounds_.lower(j) == bounds_.upper(j)) continue;
    if (std::abs(x[j] - std::round(x[j])) <= settings_.integrality) continue;
    if (!mip_.priority.empty()) {
      if (mip_.priority[j] < highest) continue;
      if (mip_.priority[j] > highest) {
        highest = mip_.priority[j];
        candidates_.clear();
      }
    }
    candidates_.push_back({j, x[j]});
  }
}

Search::Branched Search::branch(Node& node) {
  collect_candidates();
  if (candidates_.empty()) {
    const MipTolerances tolerances{settings_.feasibility, settings_.integrality};
    if (const auto found = find_constraint_branch(mip_, lp_, lp_.x(), tolerances)) {
      make_children(node, *found);
      observer_.on_node(state(), {NodeResult::Kind::value, lp_.objective(), 1}, origin(node));
      return Branched::children;
    }
    offer_integral(node);
    return Branched::none;
  }
  if (cutoff_.value() < kNoValue && !bounds_.tighten_by_reduced_costs(lp_, cutoff_.value())) {
    close(node, NodeResult::Kind::cutoff);
    return Branched::none;
  }
  return branch_on_column(node);
}

Search::Branched Search::branch_on_column(Node& node) {
  const RunContext context{nullptr, stop_, nullptr, nullptr};
  const BranchingContext branching{
      mip_,   settings_, lp_, pseudocosts_, cutoff_.value(), node_iterations_, probe_iterations_,
      context};
  const BranchChoice choice = rule_->choose(candidates_, branching);
  switch (choice.kind) {
    case BranchChoice::Kind::stopped:
      return Branched::stopped;
    case BranchChoice::Kind::tighten:
      if (!bounds_.tighten(choice.tightenings)) {
        close(node, NodeResult::Kind::infeasible);
        return Branched::none;
      }
      return Branched::again;
    case BranchChoice::Kind::branch:
      break;
  }
  const int missing = static_cast<int>(candidates_.size());
  make_children(node, choice);
  observer_.on_node(state(), {NodeResult::Kind::value, lp_.objective(), missing}, origin(node));
  return Branched::children;
}

double Search::estimate(double objective) const {
  double sum = objective;
  for (const BranchCandidate& candidate : candidates_) {
    const int j = candidate.column;
    sum += std::min(pseudocosts_.gain(j, false, candidate.down()),
                    pseudocosts_.gain(j, true, candidate.up()));
  }
  return sum;
}

bool Search::prefers_up(const BranchCandidate& candidate) const {
  const int j = candidate.column;
  if (!mip_.direction.empty() && mip_.direction[j] != 0) return mip_.direction[j] > 0;
  if (settings_.branch_direction != 0) return settings_.branch_direction > 0;
  // Towards the incumbent in guided dives; otherwise to where the point is nearer.
  if (settings_.dive_type == DiveType::guided && !incumbent_x_.empty()) {
    return incumbent_x_[j] > candidate.value;
  }
  return candidate.up() <= candidate.down();
}

Node Search::child_of(const Node& node, const Vector<Decision>& decisions, double bound) {
  Node child;
  child.bound = std::max(node.bound, cutoff_.rounded_bound(bound));
  child.parent_objective = lp_.objective();
  child.id = next_id_++;
  child.parent = node.id;
  child.path = NodePath(node.path, decisions);
  return child;
}

void Search::place_children(Node&& first, Node&& second) {
  flush_dive();
  const SharedBasis basis = lp_.snapshot();
  first.basis = second.basis = basis;
  child_ = std::move(first);
  sibling_ = std::move(second);
}

void Search::make_children(const Node& node, const BranchChoice& choice) {
  const BranchCandidate& candidate = choice.candidate;
  const double below = std::floor(candidate.value);
  const double expected = estimate(lp_.objective());
  const auto side = [&](bool up) {
    const Vector<Decision> decision{{candidate.column, !up, up ? below + 1.0 : below}};
    Node child = child_of(node, decision, up ? choice.up_bound : choice.down_bound);
    child.branched_on = candidate.column;
    child.direction = up ? 'U' : 'D';
    child.distance = up ? candidate.up() : candidate.down();
    const double expected_here =
        expected -
        std::min(pseudocosts_.gain(candidate.column, false, candidate.down()),
                 pseudocosts_.gain(candidate.column, true, candidate.up())) +
        pseudocosts_.gain(candidate.column, up, child.distance);
    child.estimate = std::max(child.bound, expected_here);
    return child;
  };
  const bool up = prefers_up(candidate);
  Node first = side(up);
  Node second = side(!up);
  place_children(std::move(first), std::move(second));
}

void Search::make_children(const Node& node, const ConstraintBranch& branch) {
  const auto side = [&](bool up) {
    Node child = child_of(node, up ? branch.up : branch.down, lp_.objective());
    child.branched_on = branch.column;
    child.direction = branch.direction;
    child.estimate = child.bound;
    return child;
  };
  Node first = side(settings_.branch_direction > 0);
  Node second = side(settings_.branch_direction <= 0);
  place_children(std::move(first), std::move(second));
}

bool Search::split_unfixed(const Node& node) {
  for (int j = 0; j < mip_.num_cols(); ++j) {
    const double low = bounds_.lower(j), high = bounds_.upper(j);
    if (!mip_.is_integer[j] || low == high) continue;
    double split = std::floor(std::clamp(lp_.x()[j], low, high));
    if (split >= high) split = high - 1.0;
    Node down = child_of(node, {{j, true, split}}, node.bound);
    Node up = child_of(node, {{j, false, split + 1.0}}, node.bound);
    for (Node* child : {&down, &up}) {
      child->branched_on = j;
      child->direction = child == &up ? 'U' : 'D';
      child->estimate = child->bound;
    }
    place_children(std::move(down), std::move(up));
    return true;
  }
  return false;
}

}  // namespace kelvo
