#include "prob/data/mip_starts.h"

#include <utility>

#include "prob/model/default_names.h"

namespace kelvo {

std::int64_t MipStartSet::num_entries(int first, int last) const {
  std::int64_t entries = 0;
  for (int k = first; k <= last; ++k) entries += start[k].size();
  return entries;
}

int MipStartSet::find(std::string_view name) const {
  for (int k = 0; k < size(); ++k) {
    if (start[k].name == name) return k;
  }
  return -1;
}

void MipStartSet::append(Vector<MipStart>&& more) {
  make_room(start, more.size());
  int number = size();
  for (MipStart& added : more) {
    if (added.name.empty()) added.name = DefaultName(NameKind::mip_start, number).view();
    ++number;
  }
  // From here on nothing throws.
  for (MipStart& added : more) start.push_back(std::move(added));
}

void MipStartSet::keep_marked(const char* keep) noexcept {
  std::size_t kept = 0;
  for (std::size_t k = 0; k < start.size(); ++k) {
    if (keep[k] == 0) continue;
    if (kept != k) start[kept] = std::move(start[k]);
    ++kept;
  }
  start.erase(start.begin() + static_cast<std::ptrdiff_t>(kept), start.end());
}

void MipStartSet::delete_columns(const int* new_index) noexcept {
  for (MipStart& each : start) {
    int kept = 0;
    for (int p = 0; p < each.size(); ++p) {
      const int column = new_index[each.column[p]];
      if (column < 0) continue;
      each.column[kept] = column;
      each.value[kept++] = each.value[p];
    }
    each.column.resize(kept);
    each.value.resize(kept);
  }
}

}  // namespace kelvo
