// What presolve of a mixed-integer program may do and what it counted, as plain data.
#pragma once

#include "lp/form/lp_problem.h"
#include "lp/presolve/presolve_settings.h"

namespace kelvo {

struct MipPresolveSettings {
  PresolveSettings lp;            // what it shares with the presolve of linear programs
  int coefficient_reduction = 2;  // 0 none, 1 of binary columns, 2 of all integer columns
  int bound_strengthening = -1;   // 0 none, 1 always, -1 while it is cheap
  int probing = 0;                // -1 none, 0 automatic, 1 to 3 more and more
  double probing_time = kInf;     // seconds
  int symmetry = -1;              // 0 not looked for, 1 to 5 more and more effort, -1 automatic
};

struct MipPresolveStats {
  int sets_removed = 0;
  int indicators_removed = 0;
  int implied_integers = 0;
  int probing_rounds = 0;
  int probing_fixed = 0;  // columns fixed or found to be an affine function of another one
  int probing_bounds = 0;
  double probing_seconds = 0.0;
};

/// Is told now and then how far presolve has come.
class MipPresolveProgress : public PresolveProgress {
 public:
  /// `share` of the candidates of probing are done, and so many columns fixed.
  virtual void probing(double share, int fixed) = 0;
};

}  // namespace kelvo
