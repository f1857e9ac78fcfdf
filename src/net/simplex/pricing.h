// Pricing of the network simplex: which nonbasic arc enters the tree.
//
// Arcs are priced through one list of 16-byte entries, each oriented so that its flow would grow:
// an arc at its lower bound as it is, one at its upper bound turned round with its cost negated, a
// free one in both directions by two entries. Basic and fixed arcs have entries that can never
// improve. An entry improves when  cost - pi[from] + pi[to] < -tolerance.
//
// Three strategies (KLV_PARAM_NETPPRIIND):
//   first_eligible  1     the first entry that improves, going round
//   best_of_list    2     a pass fills a list; the best of the list until none of it improves
//   block_search    3, 0  each iteration prices the next block of entries and a short list of the
//                         best candidates found before, and takes the best of both
//
// The block of the third strategy adapts itself: it grows while the work of the pivots outweighs
// that of pricing, so that fewer and better pivots are made where pivots are expensive.
#pragma once

#include <cstdint>

#include "base/containers.h"

namespace kelvo {

struct PricedArc {
  int from;
  int to;
  double cost;
};

/// What pricing looks at.
struct PricingView {
  const PricedArc* entries;
  int count;
  const double* potentials;  // by node
  double tolerance;

  double reduced_cost(int entry) const {
    const PricedArc& arc = entries[entry];
    return arc.cost - potentials[arc.from] + potentials[arc.to];
  }
};

enum class NetworkPricingRule { first_eligible = 1, best_of_list = 2, block_search = 3 };

class NetworkPricing {
 public:
  virtual ~NetworkPricing() = default;
  /// Begins a phase with so many entries; what was remembered of them is forgotten.
  virtual void start(int count) = 0;
  /// An entry that improves, or -1 when none does.
  virtual int select(const PricingView& view) = 0;
  /// Hears how much work the pivot after select() was, in potentials changed and path nodes
  /// visited.
  virtual void pivot_done(std::int64_t) {}
};

/// Throws std::bad_alloc.
Owned<NetworkPricing> make_network_pricing(NetworkPricingRule rule);

}  // namespace kelvo
