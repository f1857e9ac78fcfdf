#include "lp/simplex/primal_simplex.h"

namespace kelvo {

SimplexOutcome run_primal_simplex(SimplexState& state) {
  state.store_results();
  return SimplexOutcome::non_optimal;
}

}  // namespace kelvo
