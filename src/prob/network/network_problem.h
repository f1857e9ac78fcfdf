// The network problem object: a network, the result of its last optimization and the basis from
// which the next one starts.
//
// Every edit goes through this class; it changes the network as a whole or not at all. What an edit
// leaves valid:
//
//   names                          everything
//   costs, sense, bounds, supply   the basis; the solution is discarded
//   nodes or arcs appended         the basis, in which new nodes are basic and new arcs nonbasic
//   arcs deleted or re-attached    what remains of the basis, completed to one
//   the network replaced           nothing
//
// Functions that need memory throw std::bad_alloc and leave the problem as it was.
#pragma once

#include <string_view>

#include "prob/model/name_lookup.h"
#include "prob/network/network.h"
#include "prob/problem.h"

namespace kelvo {

class NetworkProblem {
 public:
  /// An empty network that belongs to a root environment.
  explicit NetworkProblem(Environment& root) : environment_(&root) {}
  ~NetworkProblem() { self_ = nullptr; }
  NetworkProblem(const NetworkProblem&) = delete;
  NetworkProblem& operator=(const NetworkProblem&) = delete;

  /// False once the problem has been destroyed, as far as a stale pointer can tell.
  bool is_valid() const { return self_ == this; }
  Environment& environment() const { return *environment_; }
  const Network& network() const { return network_; }

  // Edits; arguments have been checked.

  void replace(Network&& network) noexcept;
  void add_nodes(const NodeBlock& block);
  void add_arcs(const ArcBlock& block);
  /// Deletes what new_node [nodes] and new_arc [arcs] mark with -1; see delete_nodes_and_arcs().
  void remove(const int* new_node, const int* new_arc);
  void change_ends(const int* arcs, const int* from, const int* to, int count);
  void change_bounds(const Vector<BoundChange>& changes) noexcept;
  void change_supplies(const int* nodes, const double* values, int count) noexcept;
  void change_costs(const int* arcs, const double* values, int count) noexcept;
  void change_sense(int sense) noexcept;
  void change_name(std::string_view name);
  void rename_nodes(const int* nodes, const char* const* names, int count);
  void rename_arcs(const int* arcs, const char* const* names, int count);
  /// Gives nodes and arcs without names their default ones.
  void create_names();

  /// The first index with that name, or -1.
  int node_index(std::string_view name) { return node_lookup_.find(name, network_.node_names); }
  int arc_index(std::string_view name) { return arc_lookup_.find(name, network_.arc_names); }

  bool has_solution() const { return solution.status != 0; }
  void store_basis(NetworkBasis&& start) noexcept { basis = std::move(start); }

  NetworkSolution solution;
  NetworkBasis basis;
  ObjectNode* node = nullptr;  // where an environment's object list holds this problem

 private:
  void discard_solution() noexcept { solution = {}; }

  const NetworkProblem* volatile self_ = this;
  Environment* environment_;
  Network network_;
  NameLookup node_lookup_;
  NameLookup arc_lookup_;
};

}  // namespace kelvo
