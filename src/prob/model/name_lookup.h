// Look-up of rows or columns by name: the first index with a name.
//
// The hash table is built at the first look-up and then kept in step where that is cheap: names
// appended at the end are entered at the next look-up, and a renamed item moves to its new name as
// long as all names are different. Everything else forgets the table.
#pragma once

#include <string_view>

#include "base/name_index.h"
#include "base/name_store.h"

namespace kelvo {

class NameLookup {
 public:
  /// The first index with that name, or -1. `names` must be the store of all calls since the last
  /// forget(), with names appended at the end. Throws std::bad_alloc.
  int find(std::string_view name, const NameStore& names);
  /// Must enclose every change of the name of item i.
  void before_rename(int i, const NameStore& names) noexcept;
  void after_rename(int i, const NameStore& names) noexcept;
  /// Must follow every change other than appending and renaming.
  void forget() noexcept;

 private:
  NameIndex index_;
  int num_entered_ = 0;  // names 0..num_entered_-1 of the store are in the table
  bool unique_ = true;   // no two of them are equal
};

}  // namespace kelvo
