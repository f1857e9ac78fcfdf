// Time spent by the threads that work in an environment.
//
// Each thread brings a TimingRecord and registers it while it works; records form a ring. When a
// record leaves, its seconds are added to the environment's own.
#pragma once

#include <mutex>

namespace kelvo {

struct TimingRecord {
  double seconds = 0.0;
  TimingRecord* previous = nullptr;
  TimingRecord* next = nullptr;
};

class TimerRing {
 public:
  TimerRing() { own_.previous = own_.next = &own_; }
  TimerRing(const TimerRing&) = delete;
  TimerRing& operator=(const TimerRing&) = delete;

  void enter(TimingRecord& record);
  void leave(TimingRecord& record);
  /// Seconds of all registered records and of those that have left.
  double sum() const;
  /// Sets all seconds to 0.
  void reset();

 private:
  mutable std::mutex mutex_;
  TimingRecord own_;
};

}  // namespace kelvo
