#include "prob/network/network.h"

#include <numeric>

#include "prob/model/default_names.h"
#include "prob/model/model.h"

namespace kelvo {
namespace {

/// Appends `count` values, or a default when no array is given. The room has been made.
template <class T>
void append_values(Vector<T>& values, const T* given, int count, T standard) noexcept {
  if (given != nullptr) {
    values.insert(values.end(), given, given + count);
  } else {
    values.insert(values.end(), static_cast<std::size_t>(count), standard);
  }
}

template <class T>
void keep_indexed(Vector<T>& values, const int* new_index) noexcept {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (new_index[i] >= 0) values[new_index[i]] = values[i];
  }
}

int count_kept(const int* new_index, int count) {
  int kept = 0;
  for (int i = 0; i < count; ++i) kept += new_index[i] >= 0;
  return kept;
}

/// Which nodes are connected.
class Components {
 public:
  explicit Components(int nodes) : above_(nodes) { std::iota(above_.begin(), above_.end(), 0); }
  int find(int node) {
    while (above_[node] != node) node = above_[node] = above_[above_[node]];
    return node;
  }
  /// False when the two were connected already.
  bool join(int a, int b) {
    a = find(a);
    b = find(b);
    if (a == b) return false;
    above_[a] = b;
    return true;
  }

 private:
  Vector<int> above_;
};

}  // namespace

void repair_basis(const Network& network, NetworkBasis& basis) {
  Components components(network.num_nodes());
  Vector<char> has_root(network.num_nodes(), 0);
  for (int a = 0; a < network.num_arcs(); ++a) {
    if (basis.arc_status[a] != kBasic) continue;
    if (!components.join(network.from[a], network.to[a])) basis.arc_status[a] = kAtLower;
  }
  for (const bool wanted : {true, false}) {
    for (int i = 0; i < network.num_nodes(); ++i) {
      if (wanted != (basis.node_basic[i] != 0)) continue;
      char& taken = has_root[components.find(i)];
      basis.node_basic[i] = taken == 0;
      // A root that was dropped in the first pass is not looked at again: its tree has one.
      taken = 1;
    }
  }
}

void append_nodes(Network& network, const NodeBlock& block) {
  const int old_count = network.num_nodes();
  NameStore fresh;
  make_room(network.supply, block.count);
  const bool named =
      prepare_names(network.node_names, fresh, NameKind::node, old_count, block.names, block.count);
  append_values(network.supply, block.supply, block.count, 0.0);
  if (named) {
    append_prepared_names(network.node_names, fresh, NameKind::node, old_count, block.names,
                          block.count);
  }
}

void append_arcs(Network& network, const ArcBlock& block) {
  const int old_count = network.num_arcs();
  NameStore fresh;
  make_room(network.from, block.count);
  make_room(network.to, block.count);
  make_room(network.lower, block.count);
  make_room(network.upper, block.count);
  make_room(network.cost, block.count);
  const bool named =
      prepare_names(network.arc_names, fresh, NameKind::arc, old_count, block.names, block.count);
  append_values(network.from, block.from, block.count, 0);
  append_values(network.to, block.to, block.count, 0);
  append_values(network.lower, block.lower, block.count, 0.0);
  append_values(network.upper, block.upper, block.count, kInfiniteBound);
  append_values(network.cost, block.cost, block.count, 0.0);
  if (named) {
    append_prepared_names(network.arc_names, fresh, NameKind::arc, old_count, block.names,
                          block.count);
  }
}

void delete_nodes_and_arcs(Network& network, const int* new_node, const int* new_arc) noexcept {
  const int nodes = count_kept(new_node, network.num_nodes());
  const int arcs = count_kept(new_arc, network.num_arcs());
  network.node_names.keep_if([new_node](int i) { return new_node[i] >= 0; });
  network.arc_names.keep_if([new_arc](int a) { return new_arc[a] >= 0; });
  keep_indexed(network.supply, new_node);
  network.supply.resize(nodes);
  for (Vector<int>* ends : {&network.from, &network.to}) {
    keep_indexed(*ends, new_arc);
    ends->resize(arcs);
    for (int& node : *ends) node = new_node[node];
  }
  for (Vector<double>* values : {&network.lower, &network.upper, &network.cost}) {
    keep_indexed(*values, new_arc);
    values->resize(arcs);
  }
}

void name_nodes(Network& network) {
  if (network.node_names.present()) return;
  network.node_names = default_names(NameKind::node, network.num_nodes());
}

void name_arcs(Network& network) {
  if (network.arc_names.present()) return;
  network.arc_names = default_names(NameKind::arc, network.num_arcs());
}

}  // namespace kelvo
