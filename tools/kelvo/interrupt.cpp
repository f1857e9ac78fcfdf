#include "interrupt.h"

#include <unistd.h>

#include <csignal>

namespace kelvo::command {
namespace {

// Both sides of the signal handler only ever write 1 and read; an int does.
volatile int stop_wanted = 0;

void on_interrupt(int) {
  stop_wanted = 1;
  constexpr char kText[] = "\nkelvo: stopping; Ctrl-C again ends at once\n";
  [[maybe_unused]] const auto written = write(STDERR_FILENO, kText, sizeof kText - 1);
}

}  // namespace

volatile int* watch_for_interrupt() {
  struct sigaction action = {};
  action.sa_handler = on_interrupt;
  // Once: the second signal meets the system's own handling. Reads in progress go on.
  action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  return &stop_wanted;
}

}  // namespace kelvo::command
