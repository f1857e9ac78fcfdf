#include "clock.h"

#include <chrono>

namespace kelvo::command {
namespace {

// Set before main() begins.
const auto program_start = std::chrono::steady_clock::now();

}  // namespace

double seconds_since_start() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - program_start).count();
}

}  // namespace kelvo::command
