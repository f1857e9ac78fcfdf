#include "prob/network/network_model.h"

#include <algorithm>

namespace kelvo {

Model network_to_model(const Network& network) {
  const int nodes = network.num_nodes(), arcs = network.num_arcs();
  Model model;
  model.name = network.name;
  model.sense = network.sense;
  model.num_rows = nodes;
  model.num_cols = arcs;
  model.rhs = network.supply;
  model.row_sense.assign(nodes, 'E');
  model.objective = network.cost;
  model.lower = network.lower;
  model.upper = network.upper;
  for (Vector<double>* bounds : {&model.lower, &model.upper}) {
    for (double& bound : *bounds) {
      if (bound >= kInfiniteFlow) bound = kInfiniteBound;
      if (bound <= -kInfiniteFlow) bound = -kInfiniteBound;
    }
  }
  SparseMatrix matrix;
  matrix.num_major = arcs;
  matrix.num_minor = nodes;
  matrix.start.assign(arcs + 1, 0);
  matrix.index.reserve(2 * static_cast<std::size_t>(arcs));
  matrix.value.reserve(2 * static_cast<std::size_t>(arcs));
  for (int a = 0; a < arcs; ++a) {
    const int from = network.from[a], to = network.to[a];
    if (from != to) {
      const bool in_order = from < to;
      matrix.index.insert(matrix.index.end(), {std::min(from, to), std::max(from, to)});
      matrix.value.insert(matrix.value.end(), {in_order ? 1.0 : -1.0, in_order ? -1.0 : 1.0});
    }
    matrix.start[a + 1] = static_cast<int>(matrix.index.size());
  }
  model.matrix.assign(std::move(matrix));
  model.row_names = network.node_names;
  model.col_names = network.arc_names;
  return model;
}

}  // namespace kelvo
