#include "lp/presolve/postsolve.h"

namespace kelvo {

void PostsolveStack::undo_all(PostsolveState& state, const Layers& layers) const {
  state.duals.basis = layers.basis ? &state.basis : nullptr;
  records.backward([&](const auto& record) {
    if (layers.values) record.restore_values(entries, state.x);
    if (layers.duals) record.restore_duals(entries, state.duals);
    if (layers.basis) record.restore_basis(entries, state);
  });
  state.duals.basis = nullptr;
}

}  // namespace kelvo
