// Which columns' bounds have changed lately: a short list, so that a copy of the model that missed
// a few changes need not look at all columns.
#pragma once

#include <algorithm>
#include <cstdint>

#include "prob/change_kind.h"

namespace kelvo {

class BoundTrail {
 public:
  /// Notes a changed column. `revision` is that of the column bounds after the change.
  void note(std::uint64_t revision, int column) noexcept {
    if (count_ == kLongest) return forget(revision);
    if (revision == since_) return;  // part of a change that was too long
    revisions_[count_] = revision;
    columns_[count_++] = column;
  }
  /// What came before and with this revision is not known by column.
  void forget(std::uint64_t revision) noexcept {
    since_ = revision;
    count_ = 0;
  }
  /// The columns changed after a revision; all of them when that is too long ago.
  void list_since(std::uint64_t revision, ModelChanges& changes) const {
    if (revision < since_) return;
    const auto first = std::upper_bound(revisions_, revisions_ + count_, revision) - revisions_;
    changes.columns = columns_ + first;
    changes.num_columns = count_ - static_cast<int>(first);
  }

 private:
  static constexpr int kLongest = 128;

  std::uint64_t since_ = 0;
  int count_ = 0;
  std::uint64_t revisions_[kLongest];  // ascending
  int columns_[kLongest];
};

}  // namespace kelvo
