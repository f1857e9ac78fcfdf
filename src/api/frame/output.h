// What functions of the interface hand out, by the surplus convention: the outputs are filled as
// far as the space goes, the surplus is space - needed, and a negative one is failure 1207. With
// space 0 and a surplus pointer only the room is asked for and nothing is printed.
#pragma once

#include <cstdint>
#include <string_view>

#include "api/frame/api_frame.h"
#include "base/name_store.h"
#include "base/sparse_matrix.h"

namespace kelvo {

/// What every such function does first, before any check.
inline void reset_counts(int* count_p, int* surplus_p) {
  if (count_p != nullptr) *count_p = 0;
  if (surplus_p != nullptr) *surplus_p = 0;
}

/// Space, surplus and count of one group of output arrays.
struct OutputRoom {
  int* count;
  int space;
  int* surplus;

  bool asks_for_room() const { return space == 0 && surplus != nullptr; }

  /// The answer to a call that asks for room.
  Status room(std::int64_t needed) const {
    *surplus = static_cast<int>(-needed);
    return needed > 0 ? Status::reported(error::kInsufficientLength) : Status();
  }

  /// The arrays of a call that wants to have them filled.
  template <class... Pointers>
  Status check(const Pointers*... arrays) const {
    if (space < 0) return Status::failure(error::kBadArgument);
    return check_pointers(count, surplus, arrays...);
  }

  /// The last step of a call whose arrays have been filled.
  Status finish(std::int64_t total) const {
    *surplus = static_cast<int>(space - total);
    *count = static_cast<int>(std::min<std::int64_t>(total, space));
    return total > space ? Status::failure(error::kInsufficientLength) : Status();
  }
};

/// The output arrays of a matrix query: `lines` starts, indices and values.
struct MatrixOutput {
  OutputRoom out;
  int* begin;
  int* index;
  double* value;

  bool asks_for_room() const { return out.asks_for_room(); }
  Status room(std::int64_t needed, int lines) const {
    if (begin != nullptr) std::fill_n(begin, std::max(lines, 0), 0);
    return out.room(needed);
  }
  Status check() const { return out.check(begin, index, value); }
  void start_line(int line, std::int64_t position) const {
    begin[line] = static_cast<int>(std::min<std::int64_t>(position, out.space));
  }
  void put(std::int64_t position, int i, double v) const {
    if (position >= out.space) return;
    index[position] = i;
    value[position] = v;
  }
  Status finish(std::int64_t total) const { return out.finish(total); }
};

/// Lines first..last of a compressed matrix.
Status put_lines(const SparseMatrix& matrix, const MatrixOutput& out, int first, int last);

/// One text in a buffer of `space` characters.
Status put_text(std::string_view text, char* buffer, int space, int* surplus_p);

/// Names first..last, one after the other in `store`; name[k] points to the k-th. 1219 when there
/// are no names.
Status put_names(const NameStore& names, char** name, char* store, int space, int* surplus_p,
                 int first, int last);

/// The result of a look-up by name; a name that is not found (-1) is no error to print.
inline Status put_index(int index, int* index_p) {
  if (index < 0) return Status::reported(error::kNameNotFound);
  *index_p = index;
  return Status();
}

}  // namespace kelvo
