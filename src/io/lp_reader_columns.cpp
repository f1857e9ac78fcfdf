#include "io/lp_reader_columns.h"

#include <algorithm>

#include "base/name_index.h"

namespace kelvo {
namespace {

/// Names that are looked up together.
constexpr int kBatch = 32;
constexpr std::size_t kFirstSlots = 64;

}  // namespace

void LpColumnNames::reserve(std::size_t columns, std::size_t characters) {
  start_.reserve(columns + 1);
  text_.reserve(characters);
}

/// The place of the name's slot, or of the empty slot where it belongs. Some slot is empty.
std::size_t LpColumnNames::probe(std::string_view name, std::uint32_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.column < 0 || (slot.hash == hash && view(slot.column) == name)) return at;
  }
}

int LpColumnNames::find(std::string_view name) const {
  return slots_.empty() ? -1 : slots_[probe(name, NameIndex::hash(name))].column;
}

int LpColumnNames::find_or_add(std::string_view name) {
  make_room(1);
  return find_or_add(name, NameIndex::hash(name));
}

int LpColumnNames::find_or_add(std::string_view name, std::uint32_t hash) {
  Slot& slot = slots_[probe(name, hash)];
  if (slot.column >= 0) return slot.column;
  append_text(name);
  slot = {hash, size() - 1};
  return slot.column;
}

void LpColumnNames::append(std::string_view name) {
  make_room(1);
  const int added = size();
  if (find_or_add(name, NameIndex::hash(name)) != added) append_text(name);
}

void LpColumnNames::append_text(std::string_view name) {
  text_.insert(text_.end(), name.begin(), name.end());
  text_.push_back('\0');
  start_.push_back(static_cast<std::int64_t>(text_.size()));
}

void LpColumnNames::find_or_add(const std::string_view* names, int count, int* columns) {
  std::uint32_t hash[kBatch];
  for (int begin = 0; begin < count; begin += kBatch) {
    const int batch = std::min(kBatch, count - begin);
    make_room(batch);
    const std::size_t mask = slots_.size() - 1;
    for (int k = 0; k < batch; ++k) {
      hash[k] = NameIndex::hash(names[begin + k]);
      __builtin_prefetch(&slots_[hash[k] & mask]);
    }
    for (int k = 0; k < batch; ++k) {
      const int column = slots_[hash[k] & mask].column;
      columns[begin + k] = std::max(column, 0);
      __builtin_prefetch(&start_[columns[begin + k]]);
    }
    for (int k = 0; k < batch; ++k) {
      __builtin_prefetch(text_.data() + start_[columns[begin + k]]);
    }
    for (int k = 0; k < batch; ++k) columns[begin + k] = find_or_add(names[begin + k], hash[k]);
  }
}

/// Makes the table large enough for `more` further names.
void LpColumnNames::make_room(int more) {
  const std::size_t needed = 2 * (static_cast<std::size_t>(size()) + more);
  if (needed <= slots_.size()) return;
  std::size_t count = std::max(kFirstSlots, 2 * slots_.size());
  while (count < needed) count *= 2;
  Vector<Slot> fresh(count);
  const std::size_t mask = count - 1;
  for (const Slot& slot : slots_) {
    if (slot.column < 0) continue;
    std::size_t at = slot.hash & mask;
    while (fresh[at].column >= 0) at = (at + 1) & mask;
    fresh[at] = slot;
  }
  slots_.swap(fresh);
}

NameStore LpColumnNames::release() {
  slots_ = {};
  NameStore names;
  names.reserve(size(), static_cast<std::int64_t>(text_.size()));
  for (int j = 0; j < size(); ++j) names.append(view(j));
  text_ = {};
  start_.assign(1, 0);
  return names;
}

}  // namespace kelvo
