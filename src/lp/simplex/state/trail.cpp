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
  variables_.push_back({j, state.status[j], state.move[j], state.value[j]});
}

void Trail::note_bounds(const SimplexState& state, int j) {
  if (!noting()) return;
  bounds_.push_back({j, state.problem.lower[j], state.problem.upper[j]});
}

void Trail::note_cost(const SimplexState& state, int j) {
  if (!noting()) return;
  costs_.push_back({j, state.cost[j]});
}

void Trail::note_exchange(const SimplexState& state, int p) {
  if (!noting()) return;
  exchanges_.push_back({p, state.header[p]});
}

void Trail::note_position(const SimplexState& state, int p) {
  if (!noting()) return;
  positions_.push_back({p, state.basic_value[p], state.dual_weights[p]});
}

void Trail::note_positions(const SimplexState& state, const WorkVector& column) {
  if (!noting()) return;
  const int count = column.is_dense() ? column.size() : column.count;
  for (int k = 0; k < count; ++k) note_position(state, column.is_dense() ? k : column.index[k]);
}

void Trail::note_reduced_cost(const SimplexState& state, int j) {
  if (!noting()) return;
  reduced_costs_.push_back({j, state.reduced_cost[j]});
}

void Trail::note_reduced_costs(const SimplexState& state, const WorkVector& row) {
  if (!noting()) return;
  for (int k = 0; k < row.count; ++k) note_reduced_cost(state, row.index[k]);
}

void Trail::note_row_duals(const SimplexState& state, const WorkVector& y) {
  if (!noting()) return;
  for (int k = 0; k < y.count; ++k) {
    row_duals_.push_back({y.index[k], state.row_duals[y.index[k]]});
  }
}

void Trail::note_everything(const SimplexState& state) {
  if (!noting()) return;
  everything_.header = state.header;
  everything_.status = state.status;
  everything_.move = state.move;
  everything_.held = state.held;
  everything_.value = state.value;
  everything_.cost = state.cost;
  everything_.lower = state.lower;
  everything_.upper = state.upper;
  everything_.reduced_cost = state.reduced_cost;
  everything_.basic_value = state.basic_value;
  everything_.dual_weights = state.dual_weights;
  everything_.row_duals = state.row_duals;
  everything_.taken = true;
}

}  // namespace kelvo
