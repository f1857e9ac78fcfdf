// What a search tells while it runs: the node log, and later callbacks.
#pragma once

#include "base/containers.h"

namespace kelvo {

/// Where the search is. Values are of the internal minimization; 1e75 stands for none.
struct SearchState {
  int nodes = 0;  // processed
  int nodes_left = 0;
  double incumbent = 1e75;
  double best_bound = -1e75;
  double iterations = 0.0;
  std::size_t tree_bytes = 0;
};

/// What became of a node.
struct NodeResult {
  enum class Kind { heuristic, integral, infeasible, cutoff, value };
  Kind kind = Kind::value;
  double objective = 0.0;
  int infeasibilities = 0;  // requirements that the point of its LP misses
};

/// The branching that made a node.
struct NodeOrigin {
  int column = -1;       // -1 for the root
  char direction = ' ';  // U, D, or C, A, X of a constraint branch; ' ' for the root
  int node = 0;
  int parent = -1;
  int depth = 0;
};

class SearchObserver {
 public:
  virtual ~SearchObserver() = default;
  virtual void on_incumbent(const SearchState& state, const NodeResult& result, bool heuristic,
                            const NodeOrigin& origin) = 0;
  virtual void on_node(const SearchState& state, const NodeResult& result,
                       const NodeOrigin& origin) = 0;
};

}  // namespace kelvo
