// Merging and growth of cliques.
//
// Merging removes cliques that are contained in others. Growth adds literals to a clique that are
// in conflict with all its members, one after the other. Both find literals that are false: those
// in a clique that contains an equation but not in the equation, and those in conflict with all
// members of an equation (see CliqueTable::take_forced). Neither changes which pairs are in
// conflict, except that growth may state pairs directly.
#pragma once

#include "mip/domain/clique_table.h"

namespace kelvo {

/// How long a pass over the cliques may take.
struct CliqueEffort {
  double work_limit = kInf;  // list entries
  /// Called now and then with the share of the pass that is done; false ends it. May be null.
  bool (*proceed)(void* context, double share) = nullptr;
  void* context = nullptr;
};

/// Returns how many cliques were removed.
int merge_cliques(CliqueTable& table, const CliqueEffort& effort = {});

/// Returns how many literals were added to cliques. Worth a merge afterwards.
int grow_cliques(CliqueTable& table, const CliqueEffort& effort = {});

}  // namespace kelvo
