// Deleting nodes and arcs of networks, changing their data and names.
#include "api/frame/network_frame.h"
#include "prob/bound_rules.h"
#include "prob/data/data_check.h"

namespace kelvo {
namespace {

enum class Item { node, arc };

int count_of(const Network& network, Item item) {
  return item == Item::node ? network.num_nodes() : network.num_arcs();
}

/// New indices from marks: 1 deletes. Arcs at deleted nodes are deleted, too.
void number_what_stays(const Network& network, int* nodes, int* arcs) {
  int kept = 0;
  for (int i = 0; i < network.num_nodes(); ++i) nodes[i] = nodes[i] == 1 ? -1 : kept++;
  kept = 0;
  for (int a = 0; a < network.num_arcs(); ++a) {
    const bool gone = arcs[a] == 1 || nodes[network.from[a]] < 0 || nodes[network.to[a]] < 0;
    arcs[a] = gone ? -1 : kept++;
  }
}

int delete_range(KLVenv env, KLVnet net, const char* function, Item item, int begin, int end) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, count_of(network, item)));
    if (begin > end) return Status();
    Vector<int> nodes(network.num_nodes(), 0);
    Vector<int> arcs(network.num_arcs(), 0);
    Vector<int>& marks = item == Item::node ? nodes : arcs;
    std::fill(marks.begin() + begin, marks.begin() + (end + 1), 1);
    number_what_stays(network, nodes.data(), arcs.data());
    problem.remove(nodes.data(), arcs.data());
    return Status();
  });
}

/// The common frame of changes by list: a negative count gives 1003, an empty list changes nothing,
/// a null array gives 1004; then `body`.
template <class Body, class... Pointers>
int change_list(KLVenv env, KLVnet net, int count, Body body, const Pointers*... pointers) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    if (count < 0) return Status::failure(error::kBadArgument);
    if (count == 0) return Status();
    KELVO_TRY(check_pointers(pointers...));
    return body(environment, problem);
  });
}

Status check_indices(Environment& environment, const Network& network, Item item,
                     const int* indices, int count) {
  return item == Item::node ? check_node_indices(environment, indices, count, network.num_nodes())
                            : check_arc_indices(environment, indices, count, network.num_arcs());
}

int rename_items(KLVenv env, KLVnet net, Item item, int count, const int* indices,
                 const char* const* names) {
  return change_list(
      env, net, count,
      [&](Environment& environment, NetworkProblem& problem) -> Status {
        KELVO_TRY(check_indices(environment, problem.network(), item, indices, count));
        KELVO_TRY(check_no_null_name(environment, names, count));
        if (item == Item::node) {
          problem.rename_nodes(indices, names, count);
        } else {
          problem.rename_arcs(indices, names, count);
        }
        return Status();
      },
      indices, names);
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVNETdelnodes(KLVenv env, KLVnet net, int begin, int end) {
  return delete_range(env, net, "KLVNETdelnodes", Item::node, begin, end);
}

int KLVNETdelarcs(KLVenv env, KLVnet net, int begin, int end) {
  return delete_range(env, net, "KLVNETdelarcs", Item::arc, begin, end);
}

int KLVNETdelset(KLVenv env, KLVnet net, int* whichnodes, int* whicharcs) {
  return api_net(env, net, [&](Environment&, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    // Either array may be null: nothing of that kind is marked.
    Vector<int> nodes(network.num_nodes(), 0);
    Vector<int> arcs(network.num_arcs(), 0);
    if (whichnodes != nullptr) std::copy_n(whichnodes, nodes.size(), nodes.begin());
    if (whicharcs != nullptr) std::copy_n(whicharcs, arcs.size(), arcs.begin());
    number_what_stays(network, nodes.data(), arcs.data());
    const auto deleted = [](const Vector<int>& numbers) {
      return std::find(numbers.begin(), numbers.end(), -1) != numbers.end();
    };
    if (deleted(nodes) || deleted(arcs)) problem.remove(nodes.data(), arcs.data());
    if (whichnodes != nullptr) std::copy(nodes.begin(), nodes.end(), whichnodes);
    if (whicharcs != nullptr) std::copy(arcs.begin(), arcs.end(), whicharcs);
    return Status();
  });
}

int KLVNETchgarcnodes(KLVenv env, KLVnet net, int cnt, const int* index, const int* fromnode,
                      const int* tonode) {
  return change_list(
      env, net, cnt,
      [&](Environment& environment, NetworkProblem& problem) -> Status {
        const Network& network = problem.network();
        KELVO_TRY(check_arc_indices(environment, index, cnt, network.num_arcs()));
        KELVO_TRY(check_node_indices(environment, fromnode, cnt, network.num_nodes()));
        KELVO_TRY(check_node_indices(environment, tonode, cnt, network.num_nodes()));
        problem.change_ends(index, fromnode, tonode, cnt);
        return Status();
      },
      index, fromnode, tonode);
}

int KLVNETchgbds(KLVenv env, KLVnet net, int cnt, const int* index, const char* lu,
                 const double* bd) {
  return change_list(
      env, net, cnt,
      [&](Environment& environment, NetworkProblem& problem) -> Status {
        const DataCheck check(environment);
        KELVO_TRY(check.numbers(bd, cnt));
        KELVO_TRY(check_arc_indices(environment, index, cnt, problem.network().num_arcs()));
        KELVO_TRY(check.bound_codes(lu, cnt));
        problem.change_bounds(bound_changes(environment.messages(), index, lu, bd, cnt));
        return Status();
      },
      index, lu, bd);
}

int KLVNETchgsupply(KLVenv env, KLVnet net, int cnt, const int* index, const double* supply) {
  return change_list(
      env, net, cnt,
      [&](Environment& environment, NetworkProblem& problem) -> Status {
        KELVO_TRY(DataCheck(environment).numbers(supply, cnt));
        KELVO_TRY(check_node_indices(environment, index, cnt, problem.network().num_nodes()));
        problem.change_supplies(index, supply, cnt);
        return Status();
      },
      index, supply);
}

int KLVNETchgobj(KLVenv env, KLVnet net, int cnt, const int* index, const double* obj) {
  return change_list(
      env, net, cnt,
      [&](Environment& environment, NetworkProblem& problem) -> Status {
        KELVO_TRY(DataCheck(environment).numbers(obj, cnt));
        KELVO_TRY(check_arc_indices(environment, index, cnt, problem.network().num_arcs()));
        problem.change_costs(index, obj, cnt);
        return Status();
      },
      index, obj);
}

int KLVNETchgobjsen(KLVenv env, KLVnet net, int maxormin) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    KELVO_TRY(DataCheck(environment).objective_sense(maxormin));
    problem.change_sense(maxormin < 0 ? -1 : 1);
    return Status();
  });
}

int KLVNETchgname(KLVenv env, KLVnet net, int key, int vindex, const char* name) {
  if (name != nullptr && key == 'n') return rename_items(env, net, Item::node, 1, &vindex, &name);
  if (name != nullptr && key == 'a') return rename_items(env, net, Item::arc, 1, &vindex, &name);
  return api_net(env, net, [&](Environment&, NetworkProblem&) -> Status {
    KELVO_TRY(check_pointers(name));
    return Status::failure(error::kBadArgument);
  });
}

int KLVNETchgarcname(KLVenv env, KLVnet net, int cnt, const int* index,
                     const char* const* newname) {
  return rename_items(env, net, Item::arc, cnt, index, newname);
}

int KLVNETchgnodename(KLVenv env, KLVnet net, int cnt, const int* index,
                      const char* const* newname) {
  return rename_items(env, net, Item::node, cnt, index, newname);
}
