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
    std::size_t at = home(slot.key, mask);
    while (fresh[at].index != kNone) at = (at + 1) & mask;
    fresh[at] = slot;
  }
  slot_.swap(fresh);
}

void NameIndex::erase_slot(std::size_t at) noexcept {
  const std::size_t mask = slot_.size() - 1;
  std::size_t hole = at;
  for (std::size_t next = (at + 1) & mask; slot_[next].index != kNone; next = (next + 1) & mask) {
    // The slot may move to the hole when its search begins at the hole or before it.
    const std::size_t searched = (next - home(slot_[next].key, mask)) & mask;
    if (searched < ((next - hole) & mask)) continue;
    slot_[hole] = slot_[next];
    hole = next;
  }
  slot_[hole] = Slot();
  --size_;
}

}  // namespace kelvo
