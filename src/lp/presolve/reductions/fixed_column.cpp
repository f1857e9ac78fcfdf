#include "lp/presolve/reductions/fixed_column.h"

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

void PresolveLp::fix_column(int j, double value, int status) {
  stack.push(FixedColumn{j, status, record_column(j), value, cost[j]});
  if (value != 0.0) {
    for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
      const int i = matrix[e].row;
      const double shift = matrix[e].value * value;
      const bool equation = is_equation(i);
      row_lower[i] -= shift;
      row_upper[i] = equation ? row_lower[i] : row_upper[i] - shift;
    }
    offset += cost[j] * value;
  }
  erase_column(j);
}

bool FixedColumn::reprice(const UndoEntries&, Repricing& repricing) {
  cost = repricing.cost[col];
  const bool prefers =
      (cost >= 0.0 && status == kAtLower) || (cost <= 0.0 && status == kAtUpper) || cost == 0.0;
  if (column.empty() && !prefers) return false;
  repricing.offset += static_cast<long double>(cost) * value;
  repricing.cost[col] = 0.0;
  return true;
}

}  // namespace kelvo
