#include "mip/tree/node.h"

namespace kelvo {

NodePath::NodePath(const NodePath& parent, const Vector<Decision>& decisions) {
  // A copy in two steps: nothing is held while the decisions are copied, which may throw.
  Owned<Step> step = make_owned<Step>(Step{nullptr, 1, parent.depth() + 1, decisions});
  NodePath held(parent);
  step->parent = std::exchange(held.step_, nullptr);
  step_ = step.release();
}

void NodePath::release() noexcept {
  // A loop, not recursion: paths may be as long as the tree is deep.
  Step* step = std::exchange(step_, nullptr);
  while (step != nullptr && --step->users == 0) {
    Step* const parent = step->parent;
    Owned<Step>(step).reset();
    step = parent;
  }
}

std::size_t NodePath::bytes() const {
  return is_root() ? 0 : sizeof(Step) + step_->decisions.capacity() * sizeof(Decision);
}

}  // namespace kelvo
