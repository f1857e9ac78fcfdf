// Stopping a computation: the time limit, the caller's termination flag and the host's stop hook.
#pragma once

#include <atomic>

namespace kelvo {

/// Answers of Environment::check_stop(); they are solution status codes at the same time.
inline constexpr int kStopTimeLimit = 11;
inline constexpr int kStopUserAbort = 13;

/// A deadline on a clock that is read rarely.
///
/// The stop check asks at every iteration of every optimizer, so a call counts itself, estimates
/// from earlier readings how long a call takes, and reads the clock only when enough time may have
/// passed. Nested computations share the record; `use_count` says how many of them beside the first
/// are running. Workers of a parallel computation ask the record of their parent, several at once:
/// the counters are atomic, and an update lost between threads only shifts the estimate.
class TimeLimit {
 public:
  /// Starts now; the deadline is `seconds` later.
  TimeLimit(double now, double seconds);

  /// Counts a call. True when the clock was read and has passed the deadline. `read_clock()` gives
  /// the time in seconds.
  template <class ReadClock>
  bool expired(ReadClock read_clock) {
    const int calls = count_call();
    if (!must_read(calls)) return false;
    const double now = read_clock();
    calls_at_reading_.store(calls, std::memory_order_relaxed);
    last_reading_.store(now, std::memory_order_relaxed);
    return now > deadline_.load(std::memory_order_relaxed);
  }

  /// Moves the deadline to `seconds` after the start.
  void reset(double seconds);

  double start() const { return start_; }
  double deadline() const { return deadline_.load(std::memory_order_relaxed); }

  int use_count = 0;

 private:
  int count_call();
  bool must_read(int calls) const;

  const double start_;
  std::atomic<double> deadline_;
  std::atomic<double> reference_;     // start of the stretch over which the calls are averaged
  std::atomic<double> last_reading_;  // of the clock
  std::atomic<int> calls_{0};
  std::atomic<int> calls_at_reading_{0};
};

}  // namespace kelvo
