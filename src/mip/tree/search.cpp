#include "mip/tree/search.h"

#include <cmath>

namespace kelvo {

Search::Search(const MipProblem& mip, const SearchSettings& settings, NodeLp& lp,
               NodeBounds& bounds, Cutoff& cutoff, SolutionSink& sink, SearchObserver& observer,
               double incumbent)
    : mip_(mip),
      settings_(settings),
      lp_(lp),
      cutoff_(cutoff),
      sink_(sink),
      observer_(observer),
      bounds_(bounds),
      queue_(settings.node_selection),
      pseudocosts_(mip.num_cols()),
      rule_(branching_rule(settings.variable_selection).make()),
      incumbent_(incumbent) {}

SearchState Search::state() const {
  return {nodes_, nodes_left(), incumbent_, best_bound(), iterations(), tree_bytes()};
}

NodeOrigin Search::origin(const Node& node) const {
  return {node.branched_on, node.direction, node.id, node.parent, node.depth()};
}

std::optional<SearchEnd> Search::limit_reached() const {
  constexpr double kMegabyte = 1048576.0;
  constexpr double kAboveTolerance = 1.0000000000001;
  switch (stop_->check()) {
    case StopReason::time_limit:
      return SearchEnd::time_limit;
    case StopReason::user_abort:
      return SearchEnd::aborted;
    case StopReason::none:
      break;
  }
  if (incumbent_ < kNoValue && nodes_left() > 0) {
    const double gap = std::abs(incumbent_ - best_bound());
    if (gap < settings_.absolute_gap * kAboveTolerance ||
        gap < settings_.relative_gap * (std::abs(incumbent_) + 1e-10)) {
      return SearchEnd::gap;
    }
  }
  if (nodes_left() == 0) return SearchEnd::exhausted;
  if (solutions_ >= settings_.solution_limit) return SearchEnd::solution_limit;
  // The root is not counted.
  if (nodes_ >= settings_.node_limit) return SearchEnd::node_limit;
  if (iterations() >= settings_.iteration_limit) return SearchEnd::iteration_limit;
  if (static_cast<double>(tree_bytes()) >= settings_.tree_limit_megabytes * kMegabyte) {
    return SearchEnd::memory_limit;
  }
  return std::nullopt;
}

SearchEnd Search::run(StopCheck& stop) {
  stop_ = &stop;
  Node root;
  root.id = next_id_++;
  root.basis = lp_.snapshot();
  current_bound_ = root.bound;
  hot_ = true;
  std::optional<Node> node = std::move(root);
  while (node) {
    current_bound_ = node->bound;
    const Verdict verdict = process(*node);
    if (verdict == Verdict::stopped) {
      // What was not finished stays open.
      hot_ = false;
      queue_.insert(std::move(*node));
      current_bound_ = kNoValue;
      return limit_reached().value_or(SearchEnd::aborted);
    }
    current_bound_ = kNoValue;
    if (const std::optional<SearchEnd> end = limit_reached()) {
      if (*end == SearchEnd::exhausted && unresolved_bound_ < cutoff_.value()) {
        return SearchEnd::failed;
      }
      return *end;
    }
    node = next();
    if (node) ++nodes_;
  }
  return unresolved_bound_ < cutoff_.value() ? SearchEnd::failed : SearchEnd::exhausted;
}

NodeLpOutcome Search::solve(Node& node) {
  bounds_.push_to(lp_);
  if (!hot_ && node.basis != nullptr) lp_.start_from(*node.basis);
  hot_ = true;
  const RunContext context{nullptr, stop_, nullptr, nullptr};
  const double left = settings_.iteration_limit - iterations();
  const int limit = static_cast<int>(std::clamp(left, 1.0, double{kNoCountLimit}));
  const double before = lp_.iterations();
  const NodeLpOutcome outcome = lp_.solve(cutoff_.value(), limit, context);
  node_iterations_ += lp_.iterations() - before;
  return outcome;
}

void Search::learn(const Node& node, double objective) {
  if (node.branched_on < 0 || node.distance <= 0.0) return;
  const bool up = node.direction == 'U';
  if (objective >= kNoValue) {
    pseudocosts_.observe_cutoff(node.branched_on, up);
  } else {
    pseudocosts_.observe(node.branched_on, up, objective - node.parent_objective, node.distance);
  }
}

void Search::close(const Node& node, NodeResult::Kind kind) {
  observer_.on_node(state(), {kind, kNoValue, 0}, origin(node));
}

Search::Verdict Search::process(Node& node) {
  if (!beats_cutoff(node.bound)) {
    close(node, NodeResult::Kind::cutoff);
    return Verdict::done;
  }
  if (!bounds_.enter(node.path)) {
    learn(node, kNoValue);
    close(node, NodeResult::Kind::infeasible);
    return Verdict::done;
  }
  bool first = true;
  for (;;) {
    const NodeLpOutcome outcome = solve(node);
    switch (outcome) {
      case NodeLpOutcome::optimal:
        if (first) learn(node, lp_.objective());
        break;
      case NodeLpOutcome::infeasible:
      case NodeLpOutcome::cutoff:
        if (first) learn(node, kNoValue);
        learn_from(outcome);
        close(node, outcome == NodeLpOutcome::cutoff ? NodeResult::Kind::cutoff
                                                     : NodeResult::Kind::infeasible);
        return Verdict::done;
      case NodeLpOutcome::iteration_limit:
      case NodeLpOutcome::time_limit:
      case NodeLpOutcome::aborted:
        return Verdict::stopped;
      case NodeLpOutcome::unbounded:
      case NodeLpOutcome::failed:
        hot_ = false;
        if (!split_unfixed(node)) unresolved_bound_ = std::min(unresolved_bound_, node.bound);
        return Verdict::done;
    }
    first = false;
    node.bound = std::max(node.bound, cutoff_.rounded_bound(lp_.objective()));
    current_bound_ = node.bound;
    if (!beats_cutoff(node.bound)) {
      close(node, NodeResult::Kind::cutoff);
      return Verdict::done;
    }
    switch (branch(node)) {
      case Branched::children:
      case Branched::none:
        return Verdict::done;
      case Branched::again:
        break;
      case Branched::stopped:
        return Verdict::stopped;
    }
  }
}

void Search::learn_from(NodeLpOutcome outcome) {
  if (outcome != NodeLpOutcome::infeasible) return;
  if (lp_.infeasibility_proof(proof_)) bounds_.learn_from_proof(proof_);
}

void Search::offer_integral(Node& node) {
  double objective = 0.0;
  const double bound = node.bound;
  if (sink_.offer(lp_.x(), SolutionSource::node_lp, objective)) {
    ++solutions_;
    incumbent_ = objective;
    incumbent_x_ = lp_.x();
    cutoff_.improve(objective);
    bounds_.set_cutoff(cutoff_.value());
    queue_.prune(cutoff_.value());
    if (child_ && !beats_cutoff(child_->bound)) child_.reset();
    if (sibling_ && !beats_cutoff(sibling_->bound)) sibling_.reset();
    current_bound_ = kNoValue;
    observer_.on_incumbent(state(), {NodeResult::Kind::integral, objective, 0}, false,
                           origin(node));
  } else if (!sink_.last_was_feasible()) {
    // The point failed a check: the node is searched on, as far as something can be decided there.
    if (!split_unfixed(node)) unresolved_bound_ = std::min(unresolved_bound_, bound);
    return;
  }
  // A point whose objective is above the bound leaves nothing better behind: the LP's optimum was
  // the point itself, but for what rounding moved.
}

}  // namespace kelvo
