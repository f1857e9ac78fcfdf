// The settings of mixed-integer optimization, read once from the parameters when it starts.
#pragma once

#include "env/params/settings.h"
#include "mip/solve/mip_solver.h"

namespace kelvo {

/// `sense` is that of the objective, 1 or -1.
MipSolverSettings read_mip_settings(const Settings& settings, int sense);

}  // namespace kelvo
