// The network simplex: the primal simplex method on spanning trees.
//
// A run starts from the statuses that the bounds and costs suggest, or from a basis. What the
// nonbasic flows leave unbalanced goes over artificial arcs between each root of the basis and one
// artificial node. Phase one removes that: first with the costs of the arcs and a penalty on each
// unit of artificial flow, since the basis where it ends is then close to an optimum; should the
// penalty turn out too small, or the costs unbounded, with the artificial flow alone. Phase two
// minimizes the costs; artificial arcs that are still in the tree carry nothing and never will: all
// of them lead to the artificial node, so a flow on one would have to come back over another.
//
// The trees are strongly feasible: from every node some flow can still be sent up its tree arc. The
// last arc of the cycle that limits the step, seen from the common ancestor in the direction of the
// flow, leaves the tree. Then no tree comes twice and the method ends after finitely many pivots.
//
// Flows and potentials of integral data are integers below 2^53 throughout, so every comparison is
// exact. Flows, potentials and objective of the answer are computed from the final basis from
// scratch.
//
// Source: Cunningham, "A network simplex method", Mathematical Programming 11 (1976); Ahuja,
// Magnanti and Orlin, "Network Flows", Prentice Hall 1993, chapter 11.
#pragma once

#include "base/stop_check.h"
#include "net/simplex/network_program.h"
#include "net/simplex/pricing.h"
#include "net/simplex/spanning_tree.h"

namespace kelvo {

struct NetworkSettings {
  double optimality_tolerance = 1e-6;   // on reduced costs
  double feasibility_tolerance = 1e-6;  // on flows, and on the range of a fixed arc
  int iteration_limit = 2100000000;
  NetworkPricingRule pricing = NetworkPricingRule::block_search;
};

/// Hears of each iteration that is due for a line of the log.
class NetworkEvents {
 public:
  virtual ~NetworkEvents() = default;
  /// Whether the iteration is due; asked before the others.
  virtual bool due(int iteration) = 0;
  /// `objective` is that of the minimization, in phase one with the penalties; `infeasibility` the
  /// sum of the artificial flows. A result other than 0 ends the run.
  virtual int iteration(int iteration, bool phase_one, double objective, double infeasibility) = 0;
};

/// Solves the problem; `start` may be empty, `events` null. Throws std::bad_alloc.
NetworkAnswer solve_network(const NetworkProgram& program, const NetworkSettings& settings,
                            const NetworkBasis& start, NetworkEvents* events, StopCheck& stop);

}  // namespace kelvo
