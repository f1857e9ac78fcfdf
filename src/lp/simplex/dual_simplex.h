// The dual simplex method on the shared state.
#pragma once

#include "lp/simplex/simplex_state.h"

namespace kelvo {

/// Runs the dual simplex from the state's basis, after SimplexState::begin_run(). Working costs and
/// bounds are the true ones on return, and the results are filled (store_results()) in every case.
SimplexOutcome run_dual_simplex(SimplexState& state);

}  // namespace kelvo
