#include "base/name_index.h"

namespace kelvo {

std::uint64_t NameIndex::hash(std::string_view name) noexcept {
  const char* at = name.data();
  std::size_t left = name.size();
  std::uint64_t state = kMultiplierA ^ left;
  for (; left > 8; at += 8, left -= 8) state = fold(state ^ load(at, 8), kMultiplierB);
  return fold(state ^ load(at, left), kMultiplierA);
}

void NameIndex::clear() noexcept {
  Vector<Slot>().swap(slot_);
  size_ = 0;
}

void NameIndex::reserve(int names) {
  std::size_t slots = 16;
  while (slots < slots_for(names)) slots *= 2;
  if (slots <= slot_.size()) return;
  Vector<Slot> fresh(slots);
  const std::size_t mask = slots - 1;
  for (const Slot& slot : slot_) {
    if (slot.index == kNone) continue;
    std::size_t at = home(slot.bits, mask);
    while (fresh[at].index != kNone) at = (at + 1) & mask;
    fresh[at] = slot;
  }
  slot_.swap(fresh);
}

}  // namespace kelvo
