// The reductions of mixed-integer programs: each has a file of its own with its algebra.
//
// They look at what changed since the moment given (0: at everything) and stop early when
// mip.ended(). The records of the linear part undo them; those that only change numbers leave
// none.
#pragma once

#include "mip/presolve/presolve_mip.h"

namespace kelvo {

void tighten_bounds(PresolveMip& mip, int since);
void tighten_coefficients(PresolveMip& mip, int since);
void tidy_integer_rows(PresolveMip& mip, int since);
void find_implied_integers(PresolveMip& mip, int since);
void reduce_sets(PresolveMip& mip, int since);
void reduce_semi_columns(PresolveMip& mip, int since);
void reduce_indicators(PresolveMip& mip, int since);
void fix_dominated_columns(PresolveMip& mip, int since);
void stuff_singletons(PresolveMip& mip, int since);
void probe_binaries(PresolveMip& mip, int since);

}  // namespace kelvo
