#include "api/frame/output.h"

#include <cstring>

namespace kelvo {
namespace {

/// The first `room` characters of a text with its terminating zero.
void copy_text(char* to, std::string_view text, std::int64_t room) {
  const auto length = static_cast<std::int64_t>(text.size());
  const std::int64_t copied = std::min(length, room);
  if (copied > 0) std::memcpy(to, text.data(), static_cast<std::size_t>(copied));
  if (length < room) to[length] = '\0';
}

}  // namespace

Status put_lines(const SparseMatrix& matrix, const MatrixOutput& out, int first, int last) {
  const int begin = matrix.start[first];
  const int total = matrix.start[last + 1] - begin;
  if (out.asks_for_room()) return out.room(total, last - first + 1);
  KELVO_TRY(out.check());
  for (int k = first; k <= last; ++k) out.start_line(k - first, matrix.start[k] - begin);
  for (int p = 0; p < total; ++p) out.put(p, matrix.index[begin + p], matrix.value[begin + p]);
  return out.finish(total);
}

Status put_text(std::string_view text, char* buffer, int space, int* surplus_p) {
  if (space < 0) return Status::failure(error::kBadArgument);
  const int needed = static_cast<int>(text.size()) + 1;
  if (space == 0 && surplus_p != nullptr) {
    *surplus_p = -needed;
    return Status::reported(error::kInsufficientLength);
  }
  KELVO_TRY(check_pointers(buffer, surplus_p));
  copy_text(buffer, text, space);
  *surplus_p = space - needed;
  return *surplus_p < 0 ? Status::failure(error::kInsufficientLength) : Status();
}

Status put_names(const NameStore& names, char** name, char* store, int space, int* surplus_p,
                 int first, int last) {
  if (!names.present()) return Status::failure(error::kNoNames);
  if (space < 0) return Status::failure(error::kBadArgument);
  std::int64_t used = 0;
  if (space == 0 && surplus_p != nullptr) {
    for (int i = first; i <= last; ++i) {
      used += static_cast<std::int64_t>(names.view(i).size()) + 1;
      if (name != nullptr) name[i - first] = nullptr;
    }
    *surplus_p = static_cast<int>(-used);
    return used > 0 ? Status::reported(error::kInsufficientLength) : Status();
  }
  KELVO_TRY(check_pointers(name, store, surplus_p));
  for (int i = first; i <= last; ++i) {
    name[i - first] = used < space ? store + used : nullptr;
    if (used < space) copy_text(store + used, names.view(i), space - used);
    used += static_cast<std::int64_t>(names.view(i).size()) + 1;
  }
  *surplus_p = static_cast<int>(space - used);
  return *surplus_p < 0 ? Status::failure(error::kInsufficientLength) : Status();
}

}  // namespace kelvo
