// The names of the columns, rows, ... of an LP file.
//
// Texts lie one behind the other, so that a name is reached with its length from one place. In a
// large model a look-up waits for memory that is in no cache; prefetch(), some time before it,
// overlaps these waits.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/containers.h"
#include "base/name_index.h"
#include "base/name_store.h"

namespace kelvo {

class LpNames {
 public:
  int size() const { return static_cast<int>(start_.size()); }
  std::string_view view(int i) const {
    const auto begin = static_cast<std::size_t>(start_[i]);
    const std::size_t end = i + 1 < size() ? static_cast<std::size_t>(start_[i + 1]) : used_;
    return {text_.data() + begin, end - begin - 1};
  }

  void reserve(std::size_t names, std::size_t characters);
  /// The first entry of that name, or -1.
  int find(std::string_view name) const { return index_.find(name, *this); }
  /// The first entry of that name, added when it is new: then it is the old size(). Throws
  /// std::bad_alloc.
  int find_or_add(std::string_view name);
  /// Asks for the memory that a find_or_add() a little later needs.
  void prefetch(std::string_view name) const { index_.prefetch(name); }
  /// Adds an entry even when another one has its name.
  void append(std::string_view name);

  /// Hands over the names; no other function may be called afterwards.
  NameStore release();

 private:
  void append_text(std::string_view name);

  Vector<char> text_;           // the names, each ended by a zero
  std::size_t used_ = 0;        // characters of text_ in use
  Vector<std::int64_t> start_;  // [size] where names begin in text_
  NameIndex index_;
};

}  // namespace kelvo
