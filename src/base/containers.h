// Containers on the library's allocator.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "base/memory.h"

namespace kelvo {

template <class T>
using Vector = std::vector<T, Allocator<T>>;

using String = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

/// Makes room for `extra` more elements, growing geometrically, so that adding them does not throw.
/// Throws std::bad_alloc, leaving the vector as it was.
template <class T>
void make_room(Vector<T>& vector, std::size_t extra) {
  const std::size_t needed = vector.size() + extra;
  if (needed > vector.capacity()) vector.reserve(std::max(needed, 2 * vector.size()));
}

}  // namespace kelvo
