#include "lp/presolve/reductions/binding_row.h"

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

void bind_row(PresolveLp& lp, int i, int side) {
  const double limit = side == kAtLower ? lp.row_lower[i] : lp.row_upper[i];
  lp.stack.push(BindingRow(i, side));
  lp.change_limits(i, limit, limit);
}

}  // namespace kelvo
