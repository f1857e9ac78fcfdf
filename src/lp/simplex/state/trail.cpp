#include "lp/simplex/state/trail.h"

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

void Trail::clear() {
  variables_.clear();
  bounds_.clear();
  costs_.clear();
  exchanges_.clear();
  positions_.clear();
  reduced_costs_.clear();
  row_duals_.clear();
  everything_.taken = false;
}

void Trail::note_variable(const SimplexState& state, int j) {
  if (!noting()) return;
  variables_.push_back({j, state.basis.status[j], state.basis.move[j], state.basis.value[j]});
}

void Trail::note_bounds(const SimplexState& state, int j) {
  if (!noting()) return;
  bounds_.push_back({j, state.problem.lower[j], state.problem.upper[j]});
}

void Trail::note_cost(const SimplexState& state, int j) {
  if (!noting()) return;
  costs_.push_back({j, state.program.cost[j]});
}

void Trail::note_exchange(const SimplexState& state, int p) {
  if (!noting()) return;
  exchanges_.push_back({p, state.basis.header[p]});
}

void Trail::note_position(const SimplexState& state, int p) {
  if (!noting()) return;
  positions_.push_back({p, state.basics.value[p], state.weights.dual[p]});
}

void Trail::note_positions(const SimplexState& state, const WorkVector& column) {
  if (!noting()) return;
  const int count = column.is_dense() ? column.size() : column.count;
  for (int k = 0; k < count; ++k) note_position(state, column.is_dense() ? k : column.index[k]);
}

void Trail::note_reduced_cost(const SimplexState& state, int j) {
  if (!noting()) return;
  reduced_costs_.push_back({j, state.duals.reduced_cost[j]});
}

void Trail::note_reduced_costs(const SimplexState& state, const WorkVector& row) {
  if (!noting()) return;
  for (int k = 0; k < row.count; ++k) note_reduced_cost(state, row.index[k]);
}

void Trail::note_row_duals(const SimplexState& state, const WorkVector& y) {
  if (!noting()) return;
  for (int k = 0; k < y.count; ++k) {
    row_duals_.push_back({y.index[k], state.duals.row_duals[y.index[k]]});
  }
}

void Trail::note_everything(const SimplexState& state) {
  if (!noting()) return;
  everything_.header = state.basis.header;
  everything_.status = state.basis.status;
  everything_.move = state.basis.move;
  everything_.held = state.basis.held;
  everything_.value = state.basis.value;
  everything_.cost = state.program.cost;
  everything_.lower = state.program.lower;
  everything_.upper = state.program.upper;
  everything_.reduced_cost = state.duals.reduced_cost;
  everything_.basic_value = state.basics.value;
  everything_.dual_weights = state.weights.dual;
  everything_.row_duals = state.duals.row_duals;
  everything_.taken = true;
}

}  // namespace kelvo
