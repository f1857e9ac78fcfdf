// The reductions of mixed-integer presolve in the order in which they take turns.
#pragma once

#include "mip/presolve/presolve_mip.h"

namespace kelvo {

/// How often a reduction comes: cheap ones in every round, those of medium cost when the cheap ones
/// have come to an end, expensive ones when those have, too.
enum class CostClass { cheap, medium, expensive };

struct MipReduction {
  const char* name;
  CostClass cost;
  bool dual;  // argues from the objective, too
  /// Looks at what changed since the moment given (see PresolveLp::moment).
  void (*run)(PresolveMip& mip, int since);
};

/// All reductions but the linear ones, which come first in every round, cheap ones first.
extern const MipReduction kMipReductions[];
extern const int kNumMipReductions;

}  // namespace kelvo
