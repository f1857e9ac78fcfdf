// The names that rows, columns, sets and the like carry when a caller names only some of them: a
// letter and the position, "c1", "c2", ... for rows, "x1", "x2", ... for columns.
#pragma once

#include <string_view>

#include "base/name_store.h"

namespace kelvo {

enum class NameKind : char {
  row = 'c',
  column = 'x',
  set = 's',
  quadratic = 'q',
  indicator = 'i',
  user_cut = 'u',
  lazy_constraint = 'l',
  mip_start = 'm',
  node = 'n',
  arc = 'a'
};

/// The text of a default name, in a buffer of its own.
class DefaultName {
 public:
  /// Name of the item with this index, counted from 0.
  DefaultName(NameKind kind, int index);
  std::string_view view() const { return {text_, length_}; }
  const char* c_str() const { return text_; }

 private:
  char text_[16];
  std::size_t length_ = 0;
};

/// True when an array of `count` names, which may be null, holds at least one.
bool gives_names(const char* const* names, int count);

/// Room for `count` names of which `given` (may be null, as may its entries) are to be taken and
/// the rest by default. Throws std::bad_alloc, leaving the names as they were.
void make_room_for_names(NameStore& names, const char* const* given, int count);

/// Appends `count` names for the indices `first_index`, ... as make_room_for_names() prepared it;
/// throws nothing after that.
void append_names(NameStore& names, NameKind kind, int first_index, const char* const* given,
                  int count);

/// A store of `count` default names. Throws std::bad_alloc.
NameStore default_names(NameKind kind, int count);

/// What a list of `old_count` items needs before `count` more are appended: room in its names, or,
/// when the new items bring the first names, default names for the old ones in `fresh`. Throws
/// std::bad_alloc, leaving the names as they were. Returns whether there will be names.
bool prepare_names(NameStore& names, NameStore& fresh, NameKind kind, int old_count,
                   const char* const* given, int count);

/// Completes what prepare_names() began; throws nothing.
void append_prepared_names(NameStore& names, NameStore& fresh, NameKind kind, int old_count,
                           const char* const* given, int count);

}  // namespace kelvo
