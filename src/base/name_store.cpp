#include "base/name_store.h"

#include <algorithm>
#include <cstring>

namespace kelvo {

void NameStore::clear() {
  text_.clear();
  offset_.clear();
  present_ = false;
  packed_ = true;
}

void NameStore::reserve(int names, std::int64_t characters) {
  offset_.reserve(names);
  text_.reserve(characters);
}

void NameStore::make_room(int names, std::int64_t characters) {
  kelvo::make_room(offset_, names);
  grow_text(static_cast<std::size_t>(characters) + names);
}

void NameStore::grow_text(std::size_t extra) {
  if (text_.size() + extra <= text_.capacity()) return;
  if (packed_) {
    text_.reserve(std::max(text_.size() + extra, 2 * text_.size()));
    return;
  }
  std::size_t used = 0;
  for (int k = 0; k < size(); ++k) used += std::strlen((*this)[k]) + 1;
  Vector<char> packed;
  packed.reserve(std::max(used + extra, 2 * used));
  for (int k = 0; k < size(); ++k) {
    const char* const old = (*this)[k];
    offset_[k] = static_cast<std::int64_t>(packed.size());
    packed.insert(packed.end(), old, old + std::strlen(old) + 1);
  }
  text_.swap(packed);
  packed_ = true;
}

/// There is room.
void NameStore::append_text(std::string_view name) noexcept {
  const std::size_t start = text_.size();
  text_.resize(start + name.size() + 1);
  if (!name.empty()) std::memcpy(text_.data() + start, name.data(), name.size());
}

void NameStore::append(std::string_view name) {
  if (!name.empty()) name = name.substr(0, strnlen(name.data(), name.size()));
  kelvo::make_room(offset_, 1);
  grow_text(name.size() + 1);
  offset_.push_back(static_cast<std::int64_t>(text_.size()));
  append_text(name);
  present_ = true;
}

void NameStore::rename(int i, std::string_view name) {
  name = name.substr(0, name.find('\0'));
  if (name.size() <= std::strlen((*this)[i])) {
    std::memmove(text_.data() + offset_[i], name.data(), name.size());
    text_[offset_[i] + static_cast<std::int64_t>(name.size())] = '\0';
    packed_ = false;
    return;
  }
  grow_text(name.size() + 1);
  offset_[i] = static_cast<std::int64_t>(text_.size());
  append_text(name);
  packed_ = false;
}

}  // namespace kelvo
