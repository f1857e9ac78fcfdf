#include "prob/model/name_lookup.h"

namespace kelvo {

int NameLookup::find(std::string_view name, const NameStore& names) {
  if (num_entered_ == 0) index_.reserve(names.size());
  for (; num_entered_ < names.size(); ++num_entered_) {
    const int first = index_.insert(names.view(num_entered_), num_entered_, names);
    if (first != num_entered_) unique_ = false;
  }
  return index_.find(name, names);
}

void NameLookup::before_rename(int i, const NameStore& names) noexcept {
  if (i >= num_entered_) return;  // it will be entered under its new name
  if (unique_) {
    index_.erase(names.view(i), names);
  } else {
    forget();  // a later item may have the same name
  }
}

void NameLookup::after_rename(int i, const NameStore& names) noexcept {
  if (i >= num_entered_) return;
  try {
    if (index_.insert(names.view(i), i, names) != i) forget();
  } catch (const std::bad_alloc&) {
    forget();
  }
}

void NameLookup::forget() noexcept {
  index_.clear();
  num_entered_ = 0;
  unique_ = true;
}

}  // namespace kelvo
