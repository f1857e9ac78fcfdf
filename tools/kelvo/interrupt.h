// Ctrl-C: the first one asks the solve to stop, the second one ends the program.
#pragma once

namespace kelvo::command {

/// Takes over the interrupt signal and returns the flag that the first one sets to 1.
volatile int* watch_for_interrupt();

}  // namespace kelvo::command
