// The columns of the first work program: those that mend what the slack basis violates at the least
// reduced cost by approximate duals (row_prices.h).
#pragma once

#include "base/stop_check.h"
#include "lp/sifting/sifting_settings.h"

namespace kelvo {

/// Statuses [num_vars] of the slack basis with boxed columns on the side that their costs prefer.
Vector<int> slack_basis_by_costs(const LpProblem& lp);

/// Marks [num_cols] 1: the column takes part; all free ones do. The others are at the bounds that
/// `status` [num_vars] says. The program has its rows. A stop leaves a choice of less quality.
Vector<char> choose_first_columns(const LpProblem& lp, const Vector<int>& status,
                                  const SiftingSettings& settings, StopCheck& stop);

}  // namespace kelvo
