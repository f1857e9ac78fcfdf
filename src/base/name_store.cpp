#include "base/name_store.h"

#include <algorithm>
#include <cstring>

namespace kelvo {

void NameStore::clear() {
  text_.clear();
  offset_.clear();
  present_ = false;
}

void NameStore::reserve(int names, std::int64_t characters) {
  offset_.reserve(names);
  text_.reserve(characters);
}

void NameStore::append(std::string_view name) {
  name = name.substr(0, name.find('\0'));
  const auto start = static_cast<std::int64_t>(text_.size());
  if (offset_.size() == offset_.capacity()) offset_.reserve(2 * offset_.size() + 8);
  const std::size_t needed = text_.size() + name.size() + 1;
  if (needed > text_.capacity()) text_.reserve(std::max(needed, 2 * text_.size()));
  text_.insert(text_.end(), name.begin(), name.end());
  text_.push_back('\0');
  offset_.push_back(start);
  present_ = true;
}

void NameStore::rename(int i, std::string_view name) {
  name = name.substr(0, name.find('\0'));
  if (name.size() <= std::strlen((*this)[i])) {
    std::memmove(text_.data() + offset_[i], name.data(), name.size());
    text_[offset_[i] + static_cast<std::int64_t>(name.size())] = '\0';
    return;
  }
  const auto start = static_cast<std::int64_t>(text_.size());
  const std::size_t needed = text_.size() + name.size() + 1;
  if (needed > text_.capacity()) {
    // Old texts of renamed entries are dropped whenever the pool has to grow.
    Vector<char> packed;
    std::size_t used = 0;
    for (int k = 0; k < size(); ++k) used += std::strlen((*this)[k]) + 1;
    packed.reserve(2 * used + name.size() + 1);
    for (int k = 0; k < size(); ++k) {
      const char* const old = (*this)[k];
      offset_[k] = static_cast<std::int64_t>(packed.size());
      packed.insert(packed.end(), old, old + std::strlen(old) + 1);
    }
    text_ = std::move(packed);
    rename(i, name);
    return;
  }
  text_.insert(text_.end(), name.begin(), name.end());
  text_.push_back('\0');
  offset_[i] = start;
}

void NameStore::keep_marked(const char* keep) noexcept {
  int kept = 0;
  for (int i = 0; i < size(); ++i) {
    if (keep[i] != 0) offset_[kept++] = offset_[i];
  }
  offset_.resize(kept);
}

}  // namespace kelvo
