// A simplex run that starts from a point: variables off their bounds are basic, as far as they are
// independent, and superbasic otherwise.
#pragma once

#include "lp/solve/working_lp.h"

namespace kelvo {

/// Gives the working LP the basis of a point x [num_cols] in the program's units, which is near an
/// optimum.
void start_from_point(WorkingLp& working, Vector<double>&& x);

}  // namespace kelvo
