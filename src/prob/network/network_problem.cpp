#include "prob/network/network_problem.h"

#include <cstring>
#include <utility>

#include "prob/model/default_names.h"

namespace kelvo {
namespace {

/// Renames aside, so that the store is replaced as a whole; names are created where there are none.
NameStore renamed(const NameStore& names, NameKind kind, int size, const int* items,
                  const char* const* texts, int count) {
  NameStore result = names.present() ? names : default_names(kind, size);
  for (int k = 0; k < count; ++k) result.rename(items[k], texts[k]);
  return result;
}

/// The entries of a status array that stay, at their new places.
Vector<char> kept_entries(const Vector<char>& values, const int* new_index) {
  Vector<char> kept;
  kept.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (new_index[i] >= 0) kept.push_back(values[i]);
  }
  return kept;
}

}  // namespace

void NetworkProblem::replace(Network&& network) noexcept {
  network_ = std::move(network);
  node_lookup_.forget();
  arc_lookup_.forget();
  basis = {};
  discard_solution();
}

void NetworkProblem::add_nodes(const NodeBlock& block) {
  if (basis.present) make_room(basis.node_basic, block.count);
  append_nodes(network_, block);
  if (basis.present) basis.node_basic.resize(network_.num_nodes(), 1);
  discard_solution();
}

void NetworkProblem::add_arcs(const ArcBlock& block) {
  if (basis.present) make_room(basis.arc_status, block.count);
  append_arcs(network_, block);
  if (basis.present) basis.arc_status.resize(network_.num_arcs(), kAtLower);
  discard_solution();
}

void NetworkProblem::remove(const int* new_node, const int* new_arc) {
  NetworkBasis kept;
  Network smaller;
  if (basis.present) {
    // The repair needs the ends of the arcs that stay.
    for (int a = 0; a < network_.num_arcs(); ++a) {
      if (new_arc[a] < 0) continue;
      smaller.from.push_back(new_node[network_.from[a]]);
      smaller.to.push_back(new_node[network_.to[a]]);
    }
    kept.node_basic = kept_entries(basis.node_basic, new_node);
    kept.arc_status = kept_entries(basis.arc_status, new_arc);
    kept.present = true;
    smaller.supply.resize(kept.node_basic.size());
    repair_basis(smaller, kept);
  }
  delete_nodes_and_arcs(network_, new_node, new_arc);
  basis = std::move(kept);
  node_lookup_.forget();
  arc_lookup_.forget();
  discard_solution();
}

void NetworkProblem::change_ends(const int* arcs, const int* from, const int* to, int count) {
  Vector<int> new_from(network_.from);
  Vector<int> new_to(network_.to);
  for (int k = 0; k < count; ++k) {
    new_from[arcs[k]] = from[k];
    new_to[arcs[k]] = to[k];
  }
  NetworkBasis kept(basis);
  network_.from.swap(new_from);
  network_.to.swap(new_to);
  try {
    if (kept.present) repair_basis(network_, kept);
  } catch (...) {
    network_.from.swap(new_from);
    network_.to.swap(new_to);
    throw;
  }
  basis = std::move(kept);
  discard_solution();
}

void NetworkProblem::change_bounds(const Vector<BoundChange>& changes) noexcept {
  for (const BoundChange& change : changes) {
    (change.upper ? network_.upper : network_.lower)[change.column] = change.value;
  }
  discard_solution();
}

void NetworkProblem::change_supplies(const int* nodes, const double* values, int count) noexcept {
  for (int k = 0; k < count; ++k) network_.supply[nodes[k]] = values[k];
  discard_solution();
}

void NetworkProblem::change_costs(const int* arcs, const double* values, int count) noexcept {
  for (int k = 0; k < count; ++k) network_.cost[arcs[k]] = values[k];
  discard_solution();
}

void NetworkProblem::change_sense(int sense) noexcept {
  network_.sense = sense;
  discard_solution();
}

void NetworkProblem::change_name(std::string_view name) {
  String text(name);
  network_.name.swap(text);
}

void NetworkProblem::rename_nodes(const int* nodes, const char* const* names, int count) {
  network_.node_names =
      renamed(network_.node_names, NameKind::node, network_.num_nodes(), nodes, names, count);
  node_lookup_.forget();
}

void NetworkProblem::rename_arcs(const int* arcs, const char* const* names, int count) {
  network_.arc_names =
      renamed(network_.arc_names, NameKind::arc, network_.num_arcs(), arcs, names, count);
  arc_lookup_.forget();
}

void NetworkProblem::create_names() {
  name_nodes(network_);
  name_arcs(network_);
}

}  // namespace kelvo
