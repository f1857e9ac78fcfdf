// Starts for the search of a mixed-integer problem: values of some or all columns from which its
// first solution may be made.
//
// A problem holds any number of them, each with a name and an effort level. They belong to the
// problem rather than to its model: they are kept through every edit, lose the entries of deleted
// columns, and go when another model takes the place of theirs.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/containers.h"

namespace kelvo {

/// How much may be done to make a solution of a start. Higher levels than these count as the
/// highest.
enum MipStartEffort : int {
  kEffortAutomatic = 0,
  kEffortCheck = 1,     // only check whether the values are a solution
  kEffortFixed = 2,     // fix the integer columns at the values and solve what is left
  kEffortComplete = 3,  // complete a start of some columns by a small search
  kEffortRepair = 4     // also give up values that do not fit
};

struct MipStart {
  String name;
  int effort = kEffortAutomatic;
  Vector<int> column;    // each at most once, in the order given
  Vector<double> value;  // [column.size()]

  int size() const { return static_cast<int>(column.size()); }
};

struct MipStartSet {
  Vector<MipStart> start;

  int size() const { return static_cast<int>(start.size()); }
  std::int64_t num_entries(int first, int last) const;
  /// The first start with this name, or -1.
  int find(std::string_view name) const;
  /// Appends starts, all or none; one without a name gets "m" and its position, counted from 1.
  /// Throws std::bad_alloc.
  void append(Vector<MipStart>&& more);
  /// Keeps the starts k with keep[k] != 0.
  void keep_marked(const char* keep) noexcept;
  /// After columns were deleted: column j has become new_index[j], or is gone when that is below 0.
  void delete_columns(const int* new_index) noexcept;
};

}  // namespace kelvo
