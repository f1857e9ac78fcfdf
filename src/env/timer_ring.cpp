#include "env/timer_ring.h"

namespace kelvo {

void TimerRing::enter(TimingRecord& record) {
  const std::lock_guard lock(mutex_);
  record.previous = &own_;
  record.next = own_.next;
  own_.next->previous = &record;
  own_.next = &record;
}

void TimerRing::leave(TimingRecord& record) {
  const std::lock_guard lock(mutex_);
  own_.seconds += record.seconds;
  record.previous->next = record.next;
  record.next->previous = record.previous;
  record = TimingRecord();
}

double TimerRing::sum() const {
  const std::lock_guard lock(mutex_);
  double total = own_.seconds;
  for (const TimingRecord* r = own_.next; r != &own_; r = r->next) total += r->seconds;
  return total;
}

void TimerRing::reset() {
  const std::lock_guard lock(mutex_);
  own_.seconds = 0.0;
  for (TimingRecord* r = own_.next; r != &own_; r = r->next) r->seconds = 0.0;
}

}  // namespace kelvo
