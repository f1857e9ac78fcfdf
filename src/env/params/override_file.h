// The parameter file that the user of a program may name in the environment variable
// ZEPH_KELVO_PARAMETER_FILE.
#pragma once

#include "env/environment.h"

namespace kelvo {

/// Reads the file, if one is named, into a new environment and says on the warning channel and on
/// the screen whether that succeeded. Screen output is off afterwards, whatever the file says.
/// Throws std::bad_alloc.
void apply_override_file(Environment& environment);

}  // namespace kelvo
