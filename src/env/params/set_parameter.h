// Setting a parameter with all its effects: the checks, the value, the screen output that follows
// SCRIND, and the line on the results channel while parameter 1075 is on.
#pragma once

#include "base/status.h"
#include "env/environment.h"

namespace kelvo {

/// Failures as those of Settings; nothing changes then, nor when std::bad_alloc is thrown.
Status set_int_parameter(Environment& environment, int number, int value);
Status set_double_parameter(Environment& environment, int number, double value);
Status set_text_parameter(Environment& environment, int number, const char* value);

/// All parameters to their defaults; screen output goes off.
void set_default_parameters(Environment& environment);

}  // namespace kelvo
