// A minimum-cost flow problem, as plain data in the caller's own units.
//
//     minimize (sense 1) or maximize (sense -1)   sum c_a x_a
//     subject to   sum over arcs out of i of x_a - sum over arcs into i of x_a = supply_i
//                  lower_a <= x_a <= upper_a
//
// A bound of magnitude 1e17 or more is infinite. Readers and edits build what they need aside and
// swap it in when it is complete; functions that need memory throw std::bad_alloc and leave the
// network as it was.
#pragma once

#include "base/basis_status.h"
#include "base/name_store.h"

namespace kelvo {

/// Bounds of this magnitude or more are infinite.
inline constexpr double kInfiniteFlow = 1e17;

struct Network {
  String name;
  int sense = 1;
  Vector<double> supply;  // [nodes]
  Vector<int> from;       // [arcs]
  Vector<int> to;         // [arcs]
  Vector<double> lower;   // [arcs]
  Vector<double> upper;   // [arcs]
  Vector<double> cost;    // [arcs]
  NameStore node_names;   // absent until a node gets a name
  NameStore arc_names;

  int num_nodes() const { return static_cast<int>(supply.size()); }
  int num_arcs() const { return static_cast<int>(from.size()); }
};

/// A basis: basic arcs and basic nodes together are as many as nodes, and the basic arcs make a
/// forest in each tree of which one node is basic, its root.
struct NetworkBasis {
  Vector<char> arc_status;  // [arcs] codes of base/basis_status.h
  Vector<char> node_basic;  // [nodes] 1: a root, else 0
  bool present = false;
};

/// Makes codes of any kind a basis of the network: arcs that would close a cycle become nonbasic,
/// and each tree keeps the first of its roots or gets its first node as one. Throws std::bad_alloc.
void repair_basis(const Network& network, NetworkBasis& basis);

/// What a run leaves, in the caller's units and sense.
struct NetworkSolution {
  int status = 0;  // SolutionStatus
  int iterations = 0;
  int phase_one_iterations = 0;
  bool primal_feasible = false;
  bool dual_feasible = false;
  double objective = 0.0;
  Vector<double> flow;   // [arcs]
  Vector<double> pi;     // [nodes] multipliers of the node equations
  Vector<double> dj;     // [arcs] c - pi[from] + pi[to]
  Vector<double> slack;  // [nodes] supply - (out - in)
};

/// Nodes to append; null arrays stand for their defaults.
struct NodeBlock {
  int count = 0;
  const double* supply = nullptr;      // default 0
  const char* const* names = nullptr;  // null entries: default names
};

/// Arcs to append between nodes that exist.
struct ArcBlock {
  int count = 0;
  const int* from = nullptr;
  const int* to = nullptr;
  const double* lower = nullptr;  // default 0
  const double* upper = nullptr;  // default infinite
  const double* cost = nullptr;   // default 0
  const char* const* names = nullptr;
};

void append_nodes(Network& network, const NodeBlock& block);
void append_arcs(Network& network, const ArcBlock& block);

/// Keeps what has a new index >= 0; the new indices ascend. Arcs at nodes that are deleted must be
/// deleted, too. Throws nothing.
void delete_nodes_and_arcs(Network& network, const int* new_node, const int* new_arc) noexcept;

/// Gives all nodes (arcs) default names when they have none.
void name_nodes(Network& network);
void name_arcs(Network& network);

}  // namespace kelvo
