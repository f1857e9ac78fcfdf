// The settings of a continuous optimizer, read once from the parameters when it starts.
#pragma once

#include "env/params/settings.h"
#include "lp/solve/driver.h"

namespace kelvo {

/// `sense` is that of the objective (1 or -1): the objective limits are turned into limits on the
/// minimized objective.
DriverSettings read_driver_settings(const Settings& settings, int sense);

PresolveSettings read_presolve_settings(const Settings& settings);

}  // namespace kelvo
