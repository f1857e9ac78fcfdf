// The dual simplex method on the shared state.
#pragma once

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

/// Runs the dual simplex from the state's basis, after SimplexState::begin_run(). Working costs and
/// bounds are the true ones on return, and the results are filled (store_results()) in every case.
SimplexOutcome run_dual_simplex(SimplexState& state);

/// After a run of either method has ended optimal: makes bounds hold as closely as rounding allows,
/// if the dual method gets there in a few iterations. The state stays optimal either way.
void polish_optimum(SimplexState& state);

}  // namespace kelvo
