// A minimum-cost flow problem as the engine sees it, and what a run of the network simplex leaves.
//
//     minimize  sum c_a x_a
//     subject to  sum over arcs out of i of x_a - sum over arcs into i of x_a = b_i   for each node
//     i
//                 lower_a <= x_a <= upper_a                                          for each arc a
//
// A bound of magnitude kInfiniteFlow or more is absent. The potentials pi are the multipliers of
// the node equations: the reduced cost of an arc is c_a - pi[from] + pi[to].
#pragma once

#include "prob/network/network.h"

namespace kelvo {

/// The data; the arrays belong to the caller and outlive the run.
struct NetworkProgram {
  NetworkProgram() = default;
  explicit NetworkProgram(const Network& network)
      : num_nodes(network.num_nodes()),
        num_arcs(network.num_arcs()),
        supply(network.supply.data()),
        from(network.from.data()),
        to(network.to.data()),
        lower(network.lower.data()),
        upper(network.upper.data()),
        cost(network.cost.data()),
        sense(network.sense) {}

  int num_nodes = 0;
  int num_arcs = 0;
  const double* supply = nullptr;  // [num_nodes]
  const int* from = nullptr;       // [num_arcs]
  const int* to = nullptr;         // [num_arcs]
  const double* lower = nullptr;   // [num_arcs]
  const double* upper = nullptr;   // [num_arcs]
  const double* cost = nullptr;    // [num_arcs]
  double sense = 1.0;  // 1: minimize, -1: maximize c'x; pi and dj are in that sense, too
};

enum class NetworkOutcome {
  optimal,
  unbounded,
  infeasible,
  iteration_limit,
  time_limit,
  aborted,
  numerical  // could not be brought to an end within the precision of the numbers
};

struct NetworkAnswer {
  NetworkOutcome outcome = NetworkOutcome::numerical;
  double infeasibility = 0.0;  // the supply that no arc carries
  NetworkSolution solution;    // its objective is rounded once when flows and costs are integral
  NetworkBasis basis;
};

}  // namespace kelvo
