// A program as a graph whose automorphisms are the symmetries of the program.
//
// A node for each column, row, set and indicator, an edge for each entry of the matrix and each
// membership. Nodes of one colour have the same numbers (cost and bounds, limits, type); edges of
// one colour the same entry. Members of a set of type 2 are told apart by their places.
#pragma once

#include "mip/form/mip_problem.h"

namespace kelvo {

struct ColoredGraph {
  explicit ColoredGraph(const MipProblem& mip);

  struct Edge {
    int node;
    int color;
  };

  int num_columns;    // nodes 0.. are the columns in their order
  Vector<int> color;  // [nodes] 0..num_colors-1
  int num_colors = 0;
  Vector<int> start;   // [nodes + 1]
  Vector<Edge> edges;  // both directions

  int num_nodes() const { return static_cast<int>(color.size()); }
};

}  // namespace kelvo
