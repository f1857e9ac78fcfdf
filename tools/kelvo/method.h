// The methods of --method.
#pragma once

#include <string>

namespace kelvo::command {

/// The names, separated by commas.
std::string method_names();

/// The value of the parameter LPMETHOD for a name. Throws Failure for an unknown name.
int method_code(const std::string& name);

}  // namespace kelvo::command
