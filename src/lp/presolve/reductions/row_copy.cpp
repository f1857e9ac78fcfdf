#include "lp/presolve/reductions/row_copy.h"

namespace kelvo {

RowCopy::RowCopy(PresolveLp& lp)
    : start_(lp.num_rows() + 1, 0), entries_(lp.matrix.num_nonzeros()) {
  for (int i = 0; i < lp.num_rows(); ++i) start_[i + 1] = start_[i] + lp.matrix.row_count(i);
  Vector<int> place(start_);
  for (int j = 0; j < lp.num_cols(); ++j) {
    for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
      entries_[place[lp.matrix[e].row]++] = {j, e, lp.matrix[e].value};
    }
  }
  lp.work += lp.matrix.num_nonzeros();
}

}  // namespace kelvo
