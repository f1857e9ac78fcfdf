#include "mip/tree/node_bounds.h"

#include "mip/domain/dual_proof.h"
#include "mip/domain/reduced_costs.h"

namespace kelvo {
namespace {

int bound_of(const Decision& decision) {
  return decision.upper ? upper_of(decision.variable) : lower_of(decision.variable);
}

}  // namespace

NodeBounds::NodeBounds(const MipProblem& mip, const CliqueTable& cliques,
                       const ImplicationTable& implications)
    : domain_(mip, cliques, implications), analysis_(domain_) {}

bool NodeBounds::propagate() {
  if (domain_.propagate()) return true;
  if (domain_.level() > 0 && analysis_.analyze(ConflictCut::kFirstUip, learned_)) {
    // The level in conflict ends here, whatever the clause says about earlier ones: the search
    // decides where it goes on.
    domain_.backtrack_to_level(domain_.level() - 1);
    present_.resize(domain_.level());
    analysis_.learn(learned_);
  }
  return false;
}

bool NodeBounds::enter(const NodePath& path) {
  Vector<NodePath> steps;  // those that are not on the present path, from the node upwards
  NodePath at = path;
  const auto is_present = [this](const NodePath& step) {
    const int depth = step.depth();
    return depth <= static_cast<int>(present_.size()) && present_[depth - 1] == step;
  };
  while (!at.is_root() && !is_present(at)) {
    steps.push_back(at);
    at = at.parent();
  }
  domain_.backtrack_to_level(at.depth());
  present_.resize(at.depth());
  // What became known meanwhile is followed before anything is decided on top of it.
  if (!propagate()) return false;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    present_.push_back(*step);
    bool first = true;
    for (const Decision& decision : step->decisions()) {
      const int bound = bound_of(decision);
      const Tightening result = first ? domain_.decide(bound, decision.value)
                                      : domain_.tighten(bound, decision.value, kDecided);
      first = false;
      if (result == Tightening::kConflict) return false;
    }
    if (!propagate()) return false;
  }
  return true;
}

bool NodeBounds::tighten(const Vector<Decision>& bounds) {
  for (const Decision& bound : bounds) {
    const Reason reason = domain_.level() == 0 ? kGloballyTrue : kWithoutExplanation;
    if (domain_.tighten(bound_of(bound), bound.value, reason) == Tightening::kConflict) {
      return false;
    }
  }
  return propagate();
}

bool NodeBounds::tighten_globally(const Vector<Decision>& bounds) {
  for (const Decision& bound : bounds) {
    if (domain_.tighten_globally(bound_of(bound), bound.value) == Tightening::kConflict) {
      return false;
    }
  }
  return propagate();
}

bool NodeBounds::tighten_by_reduced_costs(const NodeLp& lp, double cutoff) {
  const int tightened = fix_by_reduced_costs(domain_, lp.reduced_costs(), lp.objective(), cutoff);
  return tightened == 0 || (tightened > 0 && propagate());
}

void NodeBounds::learn_from_proof(const Vector<double>& farkas) {
  if (domain_.level() == 0) return;
  if (!analysis_.analyze(farkas_proof(domain_, farkas), ConflictCut::kFirstUip, learned_)) return;
  domain_.backtrack_to_level(domain_.level() - 1);
  present_.resize(domain_.level());
  analysis_.learn(learned_);
}

void NodeBounds::push_to(NodeLp& lp) {
  changed_.clear();
  domain_.take_changed(changed_);
  for (const int v : changed_) lp.set_bounds(v, domain_.lower(v), domain_.upper(v));
}

}  // namespace kelvo
