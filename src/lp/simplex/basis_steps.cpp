#include "lp/simplex/basis_steps.h"

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

BasisSteps::BasisSteps(Simplex& simplex, const RunContext& context) : state_(*simplex.state_) {
  state_.set_context(context);
}

BasisSteps::~BasisSteps() {
  state_.set_context({});
}

double BasisSteps::basic_value(int position) const {
  return state_.basics.value[position];
}

bool BasisSteps::exchange(int position, int entering, BasisStatus leaves_at) {
  const double pivot = state_.entering.value[position];
  state_.basis.value[state_.basis.header[position]] = state_.basics.value[position];
  return state_.exchange(position, entering, 0.0, leaves_at, pivot) ||
         state_.refactorize() == Refactored::ok;
}

void BasisSteps::move_to(int variable, BasisStatus bound) {
  state_.basis.place(variable, bound);
  state_.basics.lose_freshness();
}

void BasisSteps::compute_primals() {
  state_.compute_primals();
}

void BasisSteps::compute_duals() {
  state_.compute_duals();
}

void BasisSteps::store_results() {
  state_.store_results();
}

}  // namespace kelvo
