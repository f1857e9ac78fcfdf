// What the driver says in the log.
#pragma once

#include "base/clock.h"
#include "base/messages.h"

namespace kelvo {

class DriverLog {
 public:
  /// Silent when `display` is 0.
  DriverLog(MessageSink& sink, int display)
      : sink_(sink), display_(display), start_(wall_seconds()) {}

  /// A new phase begins after this many iterations.
  void new_phase(int iterations) {
    if (display_ == 0) return;
    sink_.print(Channel::log, "Elapsed time = %7.2f sec. (%d iterations).\n",
                wall_seconds() - start_, iterations);
  }

  /// The matrix of a working LP has been stored compactly since the log began.
  void compression(double plain_bytes, double compact_bytes) {
    constexpr double kMegabyte = 1024.0 * 1024.0;
    if (display_ == 0) return;
    sink_.print(Channel::log, "Compression time = %7.2f sec.\n", wall_seconds() - start_);
    sink_.print(Channel::log, "Compression reduced %.2f MB A matrix to %.2f MB\n",
                plain_bytes / kMegabyte, compact_bytes / kMegabyte);
  }

  /// A basis that was given becomes one of the presolved problem.
  void crushed_basis() {
    if (display_ != 0) sink_.send(Channel::log, "Start basis crushed through presolve.\n");
  }

  /// The run starts from a basis that it was given.
  void start_basis(int basic, int rows, bool has_factor) {
    if (display_ == 0) return;
    if (basic != rows) {
      sink_.print(Channel::log, "Start basis has %d basic variables for %d rows; slacks %s.\n",
                  basic, rows, basic < rows ? "complete it" : "and columns leave it");
    }
    sink_.send(Channel::log,
               has_factor ? "Start basis given, factor kept.\n" : "Start basis given.\n");
  }

 private:
  MessageSink& sink_;
  const int display_;
  const double start_;
};

}  // namespace kelvo
