#include "io/lp_format/reader/names.h"

#include <algorithm>
#include <cstring>

namespace kelvo {

void LpNames::reserve(std::size_t names, std::size_t characters) {
  start_.reserve(names);
  text_.reserve(characters);
}

int LpNames::find_or_add(std::string_view name) {
  const int next = size();
  const int found = index_.insert(name, next, *this);
  if (found == next) append_text(name);
  return found;
}

void LpNames::append(std::string_view name) {
  index_.insert(name, size(), *this);
  append_text(name);
}

void LpNames::append_text(std::string_view name) {
  const std::size_t needed = used_ + name.size() + 1;
  if (needed > text_.size()) text_.resize(std::max(2 * needed, text_.capacity()));
  std::memcpy(text_.data() + used_, name.data(), name.size());
  text_[needed - 1] = '\0';
  start_.push_back(static_cast<std::int64_t>(used_));
  used_ = needed;
}

NameStore LpNames::release() {
  NameStore names;
  if (size() == 0) return names;
  text_.resize(used_);
  names.adopt(std::move(text_), std::move(start_));
  return names;
}

}  // namespace kelvo
