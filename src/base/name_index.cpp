#include "base/name_index.h"

#include <cstring>

namespace kelvo {
namespace {

// Odd constants with about as many ones as zeros, so that a product spreads every bit.
constexpr std::uint64_t kMultiplierA = 0x9e3779b97f4a7c15u;
constexpr std::uint64_t kMultiplierB = 0xd6e8feb86659fd93u;

/// Both halves of a 128-bit product, folded together.
std::uint64_t fold(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t load(const char* from, std::size_t bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, from, bytes);
  return word;
}

}  // namespace

std::uint32_t NameIndex::hash(std::string_view name) noexcept {
  const char* at = name.data();
  std::size_t left = name.size();
  std::uint64_t state = kMultiplierA ^ left;
  while (left > 8) {
    state = fold(state ^ load(at, 8), kMultiplierB);
    at += 8;
    left -= 8;
  }
  if (left > 0) state ^= load(at, left);
  state = fold(state, kMultiplierA);
  return static_cast<std::uint32_t>(state ^ (state >> 32));
}

void NameIndex::clear() noexcept {
  Vector<Slot>().swap(slot_);
  size_ = 0;
}

void NameIndex::reserve(int names) {
  std::size_t slots = 16;
  while (slots < 2 * static_cast<std::size_t>(names)) slots *= 2;
  if (slots <= slot_.size()) return;
  Vector<Slot> fresh(slots);
  const std::size_t mask = slots - 1;
  for (const Slot& slot : slot_) {
    if (slot.index == kNone) continue;
    std::size_t at = slot.hash & mask;
    while (fresh[at].index != kNone) at = (at + 1) & mask;
    fresh[at] = slot;
  }
  slot_.swap(fresh);
}

}  // namespace kelvo
