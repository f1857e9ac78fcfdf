#include "env/stop.h"

namespace kelvo {
namespace {

// The clock is read at each of the first calls, at every so-many-th call, and whenever the calls
// since the last reading have probably taken longer than the given time.
constexpr int kFirstCalls = 100;
constexpr int kCallsBetweenReadings = 1000;
constexpr double kSecondsBetweenReadings = 0.1;
// The counter is halved beyond this, long before it could overflow.
constexpr int kMaxCalls = 2100000000;

constexpr auto kRelaxed = std::memory_order_relaxed;

}  // namespace

TimeLimit::TimeLimit(double now, double seconds)
    : start_(now), deadline_(now + seconds), reference_(now), last_reading_(now) {}

void TimeLimit::reset(double seconds) {
  deadline_.store(start_ + seconds, kRelaxed);
}

int TimeLimit::count_call() {
  int calls = calls_.load(kRelaxed) + 1;
  if (calls > kMaxCalls) {
    calls = calls / 2 + calls % 2;
    // Half the calls took half the time: the average per call stays.
    const double reference = reference_.load(kRelaxed);
    reference_.store(reference + 0.5 * (last_reading_.load(kRelaxed) - reference), kRelaxed);
  }
  calls_.store(calls, kRelaxed);
  return calls;
}

bool TimeLimit::must_read(int calls) const {
  // What has expired stays so: who hears of it may ask again for the reason.
  if (last_reading_.load(kRelaxed) > deadline_.load(kRelaxed)) return true;
  if (calls < kFirstCalls || calls % kCallsBetweenReadings == 0) return true;
  const int at_reading = calls_at_reading_.load(kRelaxed);
  const double elapsed = last_reading_.load(kRelaxed) - reference_.load(kRelaxed);
  const double per_call = elapsed / (at_reading + 1.0);
  return per_call * (calls - at_reading) > kSecondsBetweenReadings;
}

}  // namespace kelvo
