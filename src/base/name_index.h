// From a name to the index that carries it: a hash table with open addressing.
//
// A slot keeps an index and a key of its name: the name itself when it has at most 16 bytes, so
// that it is found in one place of the memory, and hashes of it otherwise. Only when the key of
// such a long name agrees is the name asked of the caller's store, any object with `view(int) ->
// std::string_view` such as NameStore. Names hold no zero bytes. The caller keeps table and store
// in step: names may be inserted and, when all are different, erased; other changes of the store
// mean clear() and a new build().
//
// When a name occurs more than once, the table holds the index inserted first. Collisions are
// resolved by linear probing; the table doubles when it is two thirds full, so a look-up touches
// two slots on average when it succeeds and at most five when it fails.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/containers.h"

namespace kelvo {

class NameIndex {
 public:
  static constexpr int kNone = -1;

  /// Number of distinct names in the table.
  int size() const { return size_; }
  /// Forgets every name and gives the memory back.
  void clear() noexcept;
  /// Makes room for `names` names. Throws std::bad_alloc, leaving the table as it was.
  void reserve(int names);

  /// The first index inserted under `name`, or kNone.
  template <class Names>
  int find(std::string_view name, const Names& names) const {
    return slot_.empty() ? kNone : slot_[probe(name, make_key(name), names)].index;
  }

  /// Asks for the memory where the search for `name` begins, which a find() a little later needs.
  void prefetch(std::string_view name) const {
    if (slot_.empty()) return;
    __builtin_prefetch(&slot_[home(make_key(name), slot_.size() - 1)]);
  }

  /// Enters `name` for index `i` >= 0 unless it is there already. Returns the index that the name
  /// has in the table afterwards: `i` when it is new, the earlier one otherwise. `names` needs no
  /// entry for `i` yet. Throws std::bad_alloc, leaving the table as it was.
  template <class Names>
  int insert(std::string_view name, int i, const Names& names) {
    if (slots_for(size_ + 1) > slot_.size()) reserve(2 * size_ + 8);
    const Key key = make_key(name);
    Slot& slot = slot_[probe(name, key, names)];
    if (slot.index == kNone) {
      slot = {key, i};
      ++size_;
    }
    return slot.index;
  }

  /// Forgets a name. No name that was inserted for several indices may be forgotten this way; the
  /// store must still hold the names of all indices in the table.
  template <class Names>
  void erase(std::string_view name, const Names& names) noexcept {
    if (slot_.empty()) return;
    const std::size_t at = probe(name, make_key(name), names);
    if (slot_[at].index != kNone) erase_slot(at);
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

  /// The hash of a name, for tables of another shape.
  static std::uint64_t hash(std::string_view name) noexcept;

 private:
  static constexpr std::size_t kWords = 2;

  struct Key {
    std::uint64_t word[kWords] = {};
    int is_hash = 0;  // 0: the words are the name's bytes, padded with zeros

    bool operator==(const Key&) const = default;
  };
  struct Slot {
    Key key;
    int index = kNone;
  };

  /// Both halves of a 128-bit product, folded together.
  static std::uint64_t fold(std::uint64_t a, std::uint64_t b) {
    __extension__ using Wide = unsigned __int128;
    const Wide product = static_cast<Wide>(a) * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }

  /// 1 to 8 bytes as a number, padded with zeros, by loads of fixed size.
  static std::uint64_t load(const char* from, std::size_t bytes) {
    if (bytes >= 4) {
      std::uint32_t low = 0, high = 0;
      std::memcpy(&low, from, 4);
      std::memcpy(&high, from + bytes - 4, 4);
      return low | (std::uint64_t{high} >> (8 * (8 - bytes)) << 32);
    }
    std::uint64_t word = 0;
    for (std::size_t k = 0; k < bytes; ++k) {
      word |= std::uint64_t{static_cast<unsigned char>(from[k])} << (8 * k);
    }
    return word;
  }

  static Key make_key(std::string_view name) noexcept {
    if (name.size() > 8 * kWords) return {{hash(name), name.size()}, 1};
    Key key;
    const char* at = name.data();
    std::size_t left = name.size();
    std::uint64_t* word = key.word;
    for (; left > 8; at += 8, left -= 8) std::memcpy(word++, at, 8);
    *word = load(at, left);
    return key;
  }

  /// The number of slots that so many names need, before it is made a power of two.
  static std::size_t slots_for(int names) { return 3 * static_cast<std::size_t>(names) / 2 + 1; }

  /// Where the search for a key begins.
  static std::size_t home(const Key& key, std::size_t mask) {
    return fold(key.word[0] ^ kMultiplierB, key.word[1] ^ kMultiplierA) & mask;
  }

  /// Empties a slot and moves later ones forward, so that every search still finds its name.
  void erase_slot(std::size_t at) noexcept;

  /// Position of the name's slot, or of the empty slot where it belongs. The table is never full.
  template <class Names>
  std::size_t probe(std::string_view name, const Key& key, const Names& names) const {
    const std::size_t mask = slot_.size() - 1;
    for (std::size_t at = home(key, mask);; at = (at + 1) & mask) {
      const Slot& slot = slot_[at];
      if (slot.index == kNone) return at;
      if (slot.key != key) continue;
      if (key.is_hash == 0 || names.view(slot.index) == name) return at;
    }
  }

  // Odd constants with about as many ones as zeros, so that a product spreads every bit.
  static constexpr std::uint64_t kMultiplierA = 0x9e3779b97f4a7c15u;
  static constexpr std::uint64_t kMultiplierB = 0xd6e8feb86659fd93u;

  Vector<Slot> slot_;  // empty, or a power of two of slots of which two thirds are used at most
  int size_ = 0;
};

}  // namespace kelvo
