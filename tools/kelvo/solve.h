// `kelvo MODEL`: read, solve, tell.
#pragma once

#include "options.h"

namespace kelvo::command {

/// Throws Failure when the solve did not end with a status of its own.
void solve(const Options& options);

}  // namespace kelvo::command
