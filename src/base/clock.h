// Time in seconds from a fixed but unknown origin.
#pragma once

#include <ctime>

namespace kelvo {

/// Monotone elapsed time.
inline double wall_seconds() {
  timespec t{};
  clock_gettime(CLOCK_MONOTONIC, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

/// Processor time of the whole process.
inline double cpu_seconds() {
  timespec t{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

}  // namespace kelvo
