// Textbook ratio tests on the caller's tableau, for callers that step through bases themselves.
// Nothing here changes the basis. Ties go to the larger tableau entry.
#pragma once

#include "lp/tableau/caller_tableau.h"

namespace kelvo {

/// How far a nonbasic variable can move in one direction.
struct PrimalRatio {
  double step = kInf;                // infinite when nothing blocks
  int position = -1;                 // where the variable that blocks is basic; -1 when none does
  bool itself = false;               // the moving variable reaches its own other bound first
  BasisStatus leaves_at = kAtLower;  // the bound at which the blocking variable leaves
};

/// The step of variable v, upwards for direction +1, downwards for -1, until it or a basic variable
/// reaches a bound. A basic variable outside its bounds blocks at once unless it moves back.
PrimalRatio primal_ratio(CallerTableau& tableau, int v, int direction);

/// How fast the objective of the minimization gets worse when a basic variable is forced to move.
struct DualRatio {
  double ratio = kInf;  // |d_j / alpha_j| of the entering variable; infinite when there is none
  int entering = -1;
};

/// For the variable basic at `position`, forced up (direction +1) or down (-1): the nonbasic
/// variable that must enter so that the reduced costs keep their signs.
DualRatio dual_ratio(CallerTableau& tableau, int position, int direction);

}  // namespace kelvo
