// Trials: changes that are written down in the trail, and put back.
#include <algorithm>
#include <cassert>

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

void SimplexState::begin_trial() {
  assert(!trail.recording_ && factor_current());
  trail.clear();
  before_ = {program.mark(),   weights.mark(),   basics.validity(),
             duals.validity(), duals.feasible(), optimum.solved(),
             basis.num_held(), duals.objective,  factor().checkpoint()};
  trail.recording_ = true;
}

void SimplexState::undo_trial() noexcept {
  trail.recording_ = false;
  basics.moves.clear();
  if (trail.everything_.taken) put_back_everything();
  put_back_notes();
  program.return_to(before_.program);
  weights.return_to(before_.weights);
  basis.set_num_held(before_.num_held);
  basics.set_validity(before_.basics);
  duals.set_validity(before_.duals);
  duals.set_feasible(before_.dual_feasible);
  duals.objective = before_.dual_objective;
  optimum.set_solved(before_.solved);
  inverse.return_to(before_.factor);
}

void SimplexState::put_back_everything() noexcept {
  // Copied, not swapped: others hold pointers into the arrays.
  const auto copy = [](const auto& from, auto& to) {
    std::copy(from.begin(), from.end(), to.begin());
  };
  const Trail::Everything& all = trail.everything_;
  copy(all.held, basis.held);
  copy(all.move, basis.move);
  copy(all.value, basis.value);
  copy(all.cost, program.cost);
  copy(all.lower, program.lower);
  copy(all.upper, program.upper);
  copy(all.reduced_cost, duals.reduced_cost);
  copy(all.row_duals, duals.row_duals);
  copy(all.basic_value, basics.value);
  copy(all.dual_weights, weights.dual);
  basis.adopt(all.header, all.status);
  basis.refresh_partition();
  basics.refresh_all_bounds();
}

// Backwards, because an entry may have been noted more than once.
void SimplexState::put_back_notes() noexcept {
  const auto backwards = [](const auto& notes, auto put_back) {
    for (std::size_t k = notes.size(); k > 0; --k) put_back(notes[k - 1]);
  };
  backwards(trail.bounds_,
            [this](const Trail::Bounds& b) { program.set_bounds(b.variable, b.lower, b.upper); });
  backwards(trail.variables_, [this](const Trail::Variable& v) {
    basis.status[v.variable] = v.status;
    basis.move[v.variable] = v.move;
    basis.value[v.variable] = v.value;
    basis.follow_movement(v.variable);
  });
  backwards(trail.costs_, [this](const Trail::Number& c) { program.cost[c.index] = c.value; });
  backwards(trail.exchanges_, [this](const Trail::Exchange& e) {
    basis.header[e.position] = e.variable;
    basis.position[e.variable] = e.position;
  });
  // Movements are noted with their variables: the bounds alone follow.
  for (const Trail::Exchange& e : trail.exchanges_) basics.refresh_bounds(e.position);
  for (const Trail::Bounds& b : trail.bounds_) {
    if (basis.is_basic(b.variable)) basics.refresh_bounds(basis.position[b.variable]);
  }
  backwards(trail.positions_, [this](const Trail::Position& p) {
    basics.value[p.position] = p.value;
    weights.dual[p.position] = p.weight;
  });
  backwards(trail.reduced_costs_,
            [this](const Trail::Number& d) { duals.reduced_cost[d.index] = d.value; });
  backwards(trail.row_duals_,
            [this](const Trail::Number& y) { duals.row_duals[y.index] = y.value; });
}

}  // namespace kelvo
