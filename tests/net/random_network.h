// Small random networks with every feature: lower bounds, negative and infinite ones, negative
// costs, parallel arcs, loops, separate parts, supplies that do not balance.
#pragma once

#include <cmath>

#include "base/random.h"
#include "prob/model/model.h"
#include "prob/network/network.h"

namespace kelvo::test {

struct RandomNetworkShape {
  int most_nodes = 8;
  int most_arcs = 24;
  double largest = 10.0;  // of supplies, bounds and costs
};

inline Network random_network(std::uint64_t seed, const RandomNetworkShape& shape = {}) {
  Random random(seed);
  const auto integer = [&](double low, double high) {
    return std::floor(low + random.uniform() * (high - low + 1.0));
  };
  Network network;
  network.sense = random.below(2) == 0 ? 1 : -1;
  const int nodes = 1 + random.below(shape.most_nodes);
  network.supply.assign(nodes, 0.0);
  for (int k = random.below(nodes + 1); k > 0; --k) {
    const double amount = integer(0, shape.largest);
    network.supply[random.below(nodes)] += amount;
    network.supply[random.below(nodes)] -= amount;
  }
  if (random.below(12) == 0) network.supply[0] += 1.0;
  const int arcs = random.below(shape.most_arcs + 1);
  for (int a = 0; a < arcs; ++a) {
    network.from.push_back(random.below(nodes));
    network.to.push_back(random.below(nodes));
    const double lower = random.below(3) == 0 ? integer(-shape.largest, shape.largest) : 0.0;
    const int kind = random.below(8);
    network.lower.push_back(kind == 0 ? -kInfiniteBound : lower);
    network.upper.push_back(random.below(6) == 0 ? kInfiniteBound
                                                 : lower + integer(0, shape.largest));
    network.cost.push_back(integer(-shape.largest / 4, shape.largest));
  }
  return network;
}

}  // namespace kelvo::test
