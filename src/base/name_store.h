// A list of names, one text per row (column, set, ...), in one pool of characters.
//
// Names are zero-terminated inside the pool, so a pointer can be handed to C callers; it stays
// valid until the next change of the store. A store with zero names and `present() == false` means
// that the model has no names of that kind.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "base/containers.h"

namespace kelvo {

class NameStore {
 public:
  bool present() const { return present_; }
  int size() const { return static_cast<int>(offset_.size()); }
  const char* operator[](int i) const { return text_.data() + offset_[i]; }
  std::string_view view(int i) const { return std::string_view((*this)[i]); }

  /// Ask for the memory of a name that is wanted later: for the place where it is noted, and, some
  /// time after that, for its text.
  void prefetch_place(int i) const { __builtin_prefetch(offset_.data() + i); }
  void prefetch_text(int i) const { __builtin_prefetch((*this)[i]); }

  /// Makes the store present without adding a name.
  void create() { present_ = true; }
  /// Removes all names; present() is false afterwards.
  void clear();
  void reserve(int names, std::int64_t characters);
  /// Makes room for `names` more names with together `characters` characters (without the ends),
  /// growing geometrically, so that appending them does not throw. Throws std::bad_alloc.
  void make_room(int names, std::int64_t characters);
  /// Takes over names that follow one another in one pool, each ended by a zero: name i
  /// begins at text[offset[i]]. The store is present afterwards.
  void adopt(Vector<char>&& text, Vector<std::int64_t>&& offset) noexcept {
    text_ = std::move(text);
    offset_ = std::move(offset);
    present_ = packed_ = true;
  }
  /// Adds a name at the end (zeros inside it end it). Throws std::bad_alloc, leaving the store as
  /// it was.
  void append(std::string_view name);
  /// Replaces name i. Throws std::bad_alloc, leaving the store as it was.
  void rename(int i, std::string_view name);
  /// Keeps only the names i with keep[i] != 0, in order. Never throws.
  void keep_marked(const char* keep) noexcept {
    keep_if([keep](int i) { return keep[i] != 0; });
  }
  /// Keeps only the names i with keep(i), in order. Never throws.
  template <class Keep>
  void keep_if(Keep keep) noexcept {
    int kept = 0;
    for (int i = 0; i < size(); ++i) {
      if (keep(i)) offset_[kept++] = offset_[i];
    }
    packed_ = packed_ && kept == size();
    offset_.resize(kept);
  }

 private:
  /// Makes room for `extra` characters; texts that no name uses any more are dropped whenever the
  /// pool has to grow.
  void grow_text(std::size_t extra);
  void append_text(std::string_view name) noexcept;

  Vector<char> text_;            // the names, each followed by a zero; may hold unused stretches
  Vector<std::int64_t> offset_;  // [size] start of each name in text_
  bool present_ = false;
  bool packed_ = true;  // text_ holds the names one behind the other and nothing else
};

}  // namespace kelvo
