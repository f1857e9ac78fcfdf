#include "lp/presolve/reductions/removed_row.h"

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

void PresolveLp::remove_row(int i, RemovalCode reason) {
  stack.push(RemovedRow(i, reason));
  erase_row(i);
}

}  // namespace kelvo
