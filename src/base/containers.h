// Containers on the library's allocator.
#pragma once

#include <string>
#include <vector>

#include "base/memory.h"

namespace kelvo {

template <class T>
using Vector = std::vector<T, Allocator<T>>;

using String = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

}  // namespace kelvo
