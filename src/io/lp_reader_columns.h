// The columns of an LP file by name.
//
// A hash table with open addressing over names in one pool of characters. In a large model a
// look-up touches three places that are in no cache: the slot, the place of the name, the name.
// Looking up all names of a line together overlaps these waits: each stage is started for every
// name before the next stage begins.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/containers.h"
#include "base/name_store.h"

namespace kelvo {

class LpColumnNames {
 public:
  int size() const { return static_cast<int>(start_.size()) - 1; }
  std::string_view view(int column) const {
    return {text_.data() + start_[column],
            static_cast<std::size_t>(start_[column + 1] - start_[column] - 1)};
  }

  void reserve(std::size_t columns, std::size_t characters);
  /// The column of that name, or -1.
  int find(std::string_view name) const;
  /// The column of that name, added when it is new. Throws std::bad_alloc.
  int find_or_add(std::string_view name);
  /// The same for `count` names in their order; any number of them may be equal.
  void find_or_add(const std::string_view* names, int count, int* columns);

  /// Adds a column even when another one has its name; look-ups then find the first one.
  void append(std::string_view name);

  /// Hands over the names; the table is empty afterwards.
  NameStore release();

 private:
  struct Slot {
    std::uint32_t hash = 0;
    int column = -1;
  };

  std::size_t probe(std::string_view name, std::uint32_t hash) const;
  int find_or_add(std::string_view name, std::uint32_t hash);
  void append_text(std::string_view name);
  void make_room(int more);

  Vector<char> text_;                                     // the names, each ended by a zero
  Vector<std::int64_t> start_ = Vector<std::int64_t>(1);  // [size + 1] where names begin in text_
  Vector<Slot> slots_;  // a power of two, at most half of them used; empty at first
};

}  // namespace kelvo
