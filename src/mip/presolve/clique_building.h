// The clique and implication tables that the search works with: from the rows of the reduced
// program and from what probing has found, merged and grown.
#pragma once

#include "base/messages.h"
#include "base/stop_check.h"
#include "mip/domain/domain.h"
#include "mip/presolve/presolve_mip.h"

namespace kelvo {

struct CliqueBuildingContext {
  MessageSink& sink;
  StopCheck& stop;
  bool reports;  // long phases tell how far they are
};

/// Fills the tables that `domain` works on; it is settled at level 0. Returns the literals found to
/// be true everywhere, for the caller to apply.
Vector<int> build_cliques(const Domain& domain, const Vector<FoundImplication>& found,
                          const CliqueBuildingContext& context, CliqueTable& cliques,
                          ImplicationTable& implications);

}  // namespace kelvo
