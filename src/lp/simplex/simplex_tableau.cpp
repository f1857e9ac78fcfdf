#include "lp/simplex/simplex_tableau.h"

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

WorkVector& SimplexTableau::empty_column() const {
  state_.entering.clear();
  return state_.entering;
}

WorkVector& SimplexTableau::empty_vector() const {
  state_.full.clear();
  return state_.full;
}

void SimplexTableau::load_column(int variable, WorkVector& x) const {
  state_.program.load_column(variable, x);
}

void SimplexTableau::ftran(WorkVector& x, double expected_density) const {
  state_.factor().ftran(x, expected_density);
}

void SimplexTableau::btran(WorkVector& y, double expected_density) const {
  state_.factor().btran(y, expected_density);
}

const WorkVector& SimplexTableau::entering_column(int variable) const {
  WorkVector& x = empty_column();
  state_.program.load_column(variable, x);
  state_.factor().ftran(x, state_.density.entering, true);
  return x;
}

WorkVector& SimplexTableau::inverse_row(int position) const {
  state_.compute_row_ep(position);
  return state_.row_ep;
}

const WorkVector& SimplexTableau::row(int position) const {
  state_.compute_row_ep(position);
  state_.compute_pivot_row();
  return state_.pivot_row;
}

}  // namespace kelvo
