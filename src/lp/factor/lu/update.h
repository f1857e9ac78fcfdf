// Forrest-Tomlin update of the factors after one column of the basis was replaced.
//
// The column t of U is replaced by the partially transformed entering column ("spike": L and all
// row etas applied), the pivot t moves to the end of the sequence, and row t is eliminated by the
// row eta r with r'U = (row t), whose entries then leave U. Published: Forrest and Tomlin, Updated
// triangular factors of the basis (1972).
#pragma once

#include "lp/factor/lu/factors.h"
#include "lp/factor/lu/journal.h"

namespace kelvo {

/// The nonzeros of a row eta or of a partially transformed column, by pivot.
struct PackedVector {
  Vector<int> index;     // [m] or longer, the first `count` are valid
  Vector<double> value;  // likewise
  int count = 0;
  int position = -1;  // the basis position it belongs to, where that matters
  bool valid = false;

  void setup(int m) {
    valid = false;
    if (static_cast<int>(value.size()) >= m) return;
    index.resize(m);
    value.resize(m);
  }
};

/// Replaces the column at `position`. `row_eta` holds the multipliers r. `diagonal` is the new
/// pivot. With a journal, undo_update() can take the update back. Throws std::bad_alloc before
/// anything has changed.
void replace_column(LuFactors& lu, int position, const PackedVector& spike,
                    const PackedVector& row_eta, double diagonal, LuJournal* journal,
                    Vector<int>& scratch);

}  // namespace kelvo
