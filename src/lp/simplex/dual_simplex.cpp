#include "lp/simplex/dual_simplex.h"

namespace kelvo {

SimplexOutcome run_dual_simplex(SimplexState& state) {
  state.store_results();
  return SimplexOutcome::non_optimal;
}

}  // namespace kelvo
