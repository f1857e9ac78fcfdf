// How far a start basis is from being optimal.
#pragma once

#include "lp/solve/working_lp.h"

namespace kelvo {

struct StartQuality {
  bool factored = false;  // the basis is not singular; the counts are valid
  int primal_wrong = 0;   // basic variables outside their bounds
  int dual_wrong = 0;     // nonbasic variables with a reduced cost of the wrong sign
};

/// Factors the basis in force, computes its values and counts.
StartQuality judge_start(WorkingLp& working, const SimplexSettings& settings,
                         const RunContext& context);

/// True when the basic solution of the working LP satisfies its bounds.
bool is_primal_feasible(WorkingLp& working, const SimplexSettings& settings);

}  // namespace kelvo
