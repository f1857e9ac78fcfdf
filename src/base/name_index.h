// From a name to the index that carries it: a hash table with open addressing.
//
// The table stores no characters. A slot keeps an index and 32 bits of the name's hash; the name
// itself is asked of the caller's store, any object with `view(int) -> std::string_view` such as
// NameStore, and only when those 32 bits agree. The caller keeps table and store in step: renaming
// or removing a stored name means clear() and a new build().
//
// When a name occurs more than once, the table holds the index inserted first. Collisions are
// resolved by linear probing; the table doubles when it is half full, so a look-up touches about
// 1.5 slots when it succeeds and 2.5 when it fails.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/containers.h"

namespace kelvo {

class NameIndex {
 public:
  static constexpr int kNone = -1;

  /// 32 bits that depend on every byte of the name.
  static std::uint32_t hash(std::string_view name) noexcept;

  /// Number of distinct names in the table.
  int size() const { return size_; }
  /// Forgets every name and gives the memory back.
  void clear() noexcept;
  /// Makes room for `names` names. Throws std::bad_alloc, leaving the table as it was.
  void reserve(int names);

  /// The first index inserted under `name`, or kNone.
  template <class Names>
  int find(std::string_view name, const Names& names) const {
    return slot_.empty() ? kNone : slot_[probe(name, hash(name), names)].index;
  }

  /// Enters `name` for index `i` >= 0 unless it is there already. Returns the index that the name
  /// has in the table afterwards: `i` when it is new, the earlier one otherwise. `names` needs no
  /// entry for `i` yet. Throws std::bad_alloc, leaving the table as it was.
  template <class Names>
  int insert(std::string_view name, int i, const Names& names) {
    if (2 * static_cast<std::size_t>(size_ + 1) > slot_.size()) reserve(2 * size_ + 8);
    const std::uint32_t code = hash(name);
    Slot& slot = slot_[probe(name, code, names)];
    if (slot.index == kNone) {
      slot = {code, i};
      ++size_;
    }
    return slot.index;
  }

  /// Rebuilds the table for names 0..count-1 of a store. Throws std::bad_alloc, leaving the table
  /// as it was.
  template <class Names>
  void build(const Names& names, int count) {
    NameIndex fresh;
    fresh.reserve(count);
    for (int i = 0; i < count; ++i) fresh.insert(names.view(i), i, names);
    slot_.swap(fresh.slot_);
    std::swap(size_, fresh.size_);
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    int index = kNone;
  };

  /// Position of the name's slot, or of the empty slot where it belongs. The table is never full.
  template <class Names>
  std::size_t probe(std::string_view name, std::uint32_t code, const Names& names) const {
    const std::size_t mask = slot_.size() - 1;
    for (std::size_t at = code & mask;; at = (at + 1) & mask) {
      const Slot& slot = slot_[at];
      if (slot.index == kNone) return at;
      if (slot.hash == code && names.view(slot.index) == name) return at;
    }
  }

  Vector<Slot> slot_;  // empty, or a power of two of slots of which at most half are used
  int size_ = 0;
};

}  // namespace kelvo
