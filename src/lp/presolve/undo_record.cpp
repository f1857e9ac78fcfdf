#include "lp/presolve/undo_record.h"

namespace kelvo {

void Repricing::substitute(int j, double a, double rhs, const UndoEntries& entries, Stretch row) {
  const double share = cost[j] / a;
  cost[j] = 0.0;
  if (share == 0.0) return;
  offset += static_cast<long double>(share) * rhs;
  for (int k = row.begin; k < row.end; ++k) cost[entries[k].index] -= share * entries[k].value;
}

void substitute_in_form(LinearForm& form, int j, double a, double rhs, const UndoEntries& entries,
                        Stretch row) {
  const double share = form.weight[j] / a;
  form.weight[j] = 0.0;
  if (share == 0.0) return;
  form.offset += share * rhs;
  for (int k = row.begin; k < row.end; ++k) {
    form.weight[entries[k].index] -= share * entries[k].value;
  }
}

}  // namespace kelvo
