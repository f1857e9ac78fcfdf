// Which node comes next.
//
// The search dives: it goes on with a child of the node just branched, then with that child's
// sibling, as long as their bounds are worth it; otherwise both join the queue and the queue's
// first node is next.
#include "mip/tree/search.h"

namespace kelvo {

bool Search::continues_with(const Node& node) const {
  if (!beats_cutoff(node.bound)) return true;  // dropped at once, without an LP
  if (incumbent_ >= kNoValue) return true;
  // A dive may use up this share of the gap before another part of the tree has its turn.
  const double best = best_bound();
  if (best <= -kNoValue) return true;
  const double threshold = best + settings_.backtrack_tolerance * (incumbent_ - best);
  return node.bound < threshold;
}

bool Search::continues_with_sibling() const {
  constexpr double kNear = 0.2;  // of the gap above the best bound
  if (!beats_cutoff(sibling_->bound)) return true;
  if (settings_.backtrack_tolerance == 0.0) return false;
  if (incumbent_ >= kNoValue) return true;
  const double best = best_bound();
  return sibling_->bound < best + kNear * (incumbent_ - best);
}

void Search::flush_dive() {
  for (std::optional<Node>* waiting : {&child_, &sibling_}) {
    if (waiting->has_value() && beats_cutoff((*waiting)->bound)) {
      queue_.insert(std::move(**waiting));
    }
    waiting->reset();
  }
}

std::optional<Node> Search::next() {
  if (child_ && continues_with(*child_)) return std::exchange(child_, std::nullopt);
  if (!child_ && sibling_ && continues_with_sibling()) {
    hot_ = false;  // the relaxation is somewhere below the child
    return std::exchange(sibling_, std::nullopt);
  }
  flush_dive();
  hot_ = false;
  if (queue_.empty()) return std::nullopt;
  constexpr int kBoundPeriod = 7;  // nodes from the queue between two of the least bound
  const bool by_bound = settings_.node_selection != NodeSelection::best_bound &&
                        settings_.node_selection != NodeSelection::depth_first &&
                        ++backtracks_ % kBoundPeriod == 0;
  return by_bound ? queue_.take_best_bound() : queue_.take_first();
}

double Search::best_bound() const {
  double bound = std::min({queue_.best_bound(), current_bound_, unresolved_bound_});
  if (child_) bound = std::min(bound, child_->bound);
  if (sibling_) bound = std::min(bound, sibling_->bound);
  return std::min(bound, incumbent_);
}

}  // namespace kelvo
