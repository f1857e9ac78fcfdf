#include "mip/presolve/symmetry/colored_graph.h"

#include <array>
#include <numeric>

namespace kelvo {

namespace {

// What distinguishes a node: its kind first.
using Key = std::array<double, 9>;
enum Kind { kColumn, kRow, kSet, kIndicator };

Vector<Key> node_keys(const MipProblem& mip) {
  const LpProblem& lp = mip.lp;
  Vector<Key> keys;
  for (int j = 0; j < lp.num_cols; ++j) {
    const bool ordered = !mip.priority.empty();
    keys.push_back({kColumn, lp.cost[j], lp.lower[j], lp.upper[j],
                    static_cast<double>(mip.is_integer[j]), -kInf, kInf,
                    ordered ? static_cast<double>(mip.priority[j]) : 0.0,
                    ordered ? static_cast<double>(mip.direction[j]) : 0.0});
  }
  for (const SemiColumn& semi : mip.semis) {
    keys[semi.column][5] = semi.lower;
    keys[semi.column][6] = semi.upper;
  }
  for (int v = lp.num_cols; v < lp.num_vars(); ++v)
    keys.push_back({kRow, lp.lower[v], lp.upper[v]});
  for (const OrderedSet& set : mip.sets) {
    keys.push_back({kSet, static_cast<double>(set.type), static_cast<double>(set.members.size())});
  }
  for (const Indicator& indicator : mip.indicators) {
    keys.push_back(
        {kIndicator, static_cast<double>(indicator.active), indicator.lower, indicator.upper});
  }
  return keys;
}

/// Equal keys get equal numbers.
template <class T>
int number_keys(const Vector<T>& keys, Vector<int>& number) {
  Vector<int> order(keys.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&keys](int a, int b) { return keys[a] < keys[b]; });
  number.assign(keys.size(), 0);
  int count = 0;
  for (std::size_t k = 0; k < order.size(); ++k) {
    if (k == 0 || keys[order[k - 1]] < keys[order[k]]) ++count;
    number[order[k]] = count - 1;
  }
  return count;
}

struct RawEdge {
  int a, b;
};

}  // namespace

ColoredGraph::ColoredGraph(const MipProblem& mip) : num_columns(mip.num_cols()) {
  num_colors = number_keys(node_keys(mip), color);
  Vector<RawEdge> raw;
  Vector<double> weight;
  const auto connect = [&](int a, int b, double value) {
    raw.push_back({a, b});
    weight.push_back(value);
  };
  const SparseMatrix& columns = mip.lp.columns;
  for (int j = 0; j < num_columns; ++j) {
    for (int k = columns.start[j]; k < columns.start[j + 1]; ++k) {
      connect(j, num_columns + columns.index[k], columns.value[k]);
    }
  }
  int node = num_columns + mip.num_rows();
  for (const OrderedSet& set : mip.sets) {
    for (std::size_t k = 0; k < set.members.size(); ++k) {
      connect(set.members[k], node, set.type == 1 ? 0.0 : static_cast<double>(k));
    }
    ++node;
  }
  for (const Indicator& indicator : mip.indicators) {
    connect(indicator.binary, node, 0.0);
    connect(num_columns + indicator.row, node, 1.0);
    ++node;
  }
  Vector<int> edge_color;
  number_keys(weight, edge_color);
  start.assign(num_nodes() + 1, 0);
  for (const RawEdge& edge : raw) {
    ++start[edge.a + 1];
    ++start[edge.b + 1];
  }
  for (int v = 0; v < num_nodes(); ++v) start[v + 1] += start[v];
  edges.resize(2 * raw.size());
  Vector<int> place(start);
  for (std::size_t k = 0; k < raw.size(); ++k) {
    edges[place[raw[k].a]++] = {raw[k].b, edge_color[k]};
    edges[place[raw[k].b]++] = {raw[k].a, edge_color[k]};
  }
}

}  // namespace kelvo
