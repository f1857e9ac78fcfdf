// Seconds since the program started.
#pragma once

namespace kelvo::command {

double seconds_since_start();

}  // namespace kelvo::command
