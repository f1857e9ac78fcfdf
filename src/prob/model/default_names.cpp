#include "prob/model/default_names.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utility>

namespace kelvo {
namespace {

/// Letter and ten digits.
constexpr std::size_t kLongestDefaultName = 11;

}  // namespace

DefaultName::DefaultName(NameKind kind, int index) {
  text_[0] = static_cast<char>(kind);
  char* const end = std::to_chars(text_ + 1, text_ + sizeof text_, std::int64_t{index} + 1).ptr;
  *end = '\0';
  length_ = static_cast<std::size_t>(end - text_);
}

bool gives_names(const char* const* names, int count) {
  return names != nullptr &&
         std::any_of(names, names + count, [](const char* name) { return name != nullptr; });
}

void make_room_for_names(NameStore& names, const char* const* given, int count) {
  std::size_t characters = 0;
  for (int k = 0; k < count; ++k) {
    const bool named = given != nullptr && given[k] != nullptr;
    characters += named ? std::strlen(given[k]) : kLongestDefaultName;
  }
  names.make_room(count, static_cast<std::int64_t>(characters));
}

void append_names(NameStore& names, NameKind kind, int first_index, const char* const* given,
                  int count) {
  for (int k = 0; k < count; ++k) {
    if (given != nullptr && given[k] != nullptr) {
      names.append(given[k]);
    } else {
      names.append(DefaultName(kind, first_index + k).view());
    }
  }
  names.create();
}

NameStore default_names(NameKind kind, int count) {
  NameStore names;
  make_room_for_names(names, nullptr, count);
  append_names(names, kind, 0, nullptr, count);
  return names;
}

bool prepare_names(NameStore& names, NameStore& fresh, NameKind kind, int old_count,
                   const char* const* given, int count) {
  if (!names.present()) {
    if (!gives_names(given, count)) return false;
    fresh = default_names(kind, old_count);
  }
  make_room_for_names(names.present() ? names : fresh, given, count);
  return true;
}

void append_prepared_names(NameStore& names, NameStore& fresh, NameKind kind, int old_count,
                           const char* const* given, int count) {
  if (!names.present()) names = std::move(fresh);
  append_names(names, kind, old_count, given, count);
}

}  // namespace kelvo
