// Parameter files.
#pragma once

#include "base/status.h"
#include "env/environment.h"

namespace kelvo {

/// Replaces all parameters by what a parameter file says; on failure nothing changes and the
/// failure has been reported. Throws std::bad_alloc.
Status read_parameter_file(Environment& environment, const char* name);

}  // namespace kelvo
