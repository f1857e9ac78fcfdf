// The primal simplex method on the shared state.
#pragma once

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {

/// Runs the primal simplex from the state's basis, after SimplexState::begin_run() or as the end of
/// a dual run. Working costs and bounds are the true ones on entry and on return; nothing else
/// needs to be fresh on entry. Fills the results (store_results()) in every case, and `ray` when
/// unbounded.
SimplexOutcome run_primal_simplex(SimplexState& state);

}  // namespace kelvo
