// The rows alive, each in one piece, for searches that walk them again and again: entries of a row
// are far apart in the linked matrix, whose order is that of the columns.
#pragma once

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

class RowCopy {
 public:
  struct Entry {
    int col;
    int place;  // in the matrix
    double value;
  };
  struct Row {
    const Entry* first;
    const Entry* last;  // one behind
    const Entry* begin() const { return first; }
    const Entry* end() const { return last; }
    int size() const { return static_cast<int>(last - first); }
  };

  explicit RowCopy(PresolveLp& lp);

  /// The row as it was at the construction, by ascending columns.
  Row operator[](int i) const {
    return {entries_.data() + start_[i], entries_.data() + start_[i + 1]};
  }

 private:
  Vector<int> start_;      // [rows + 1]
  Vector<Entry> entries_;  // [nonzeros]
};

}  // namespace kelvo
