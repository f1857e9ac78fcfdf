// Parameters by name: settings of the command line, and their list.
#pragma once

#include <string>

#include "session.h"

namespace kelvo::command {

/// Carries out "NAME=VALUE". The name may lack its prefix and be in any case. Throws Failure.
void apply_setting(Session& session, const std::string& setting);

/// Sets an integer or a real parameter by its name without prefix. Throws Failure.
void set_integer(Session& session, const char* name, int value);
void set_real(Session& session, const char* name, double value);

/// Sets an integer parameter to a value, or to its upper bound when that is smaller.
void set_at_most(Session& session, const char* name, int value);

/// Prints the parameters whose names fit a pattern: number, type, value, default and bounds.
/// Throws Failure when none does.
void list_parameters(Session& session, const std::string& pattern);

}  // namespace kelvo::command
