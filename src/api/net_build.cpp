// Creating, freeing and filling networks.
#include <limits>

#include "api/frame/network_frame.h"
#include "prob/data/data_check.h"

namespace kelvo {

void free_network(NetworkProblem* problem) noexcept {
  ObjectList::remove(problem->node);
  Owned<NetworkProblem> last_owner(problem);
}

namespace {

Status check_nodes(Environment& environment, int present, const NodeBlock& block) {
  if (block.count < 0) return Status::failure(error::kBadArgument);
  KELVO_TRY(check_growth(present, block.count));
  const DataCheck check(environment);
  KELVO_TRY(check.numbers(block.supply, block.count));
  return check.names(block.names, block.count);
}

Status check_arcs(Environment& environment, int present, int nodes, const ArcBlock& block) {
  if (block.count < 0) return Status::failure(error::kBadArgument);
  if (block.count == 0) return Status();
  KELVO_TRY(check_growth(present, block.count));
  KELVO_TRY(check_pointers(block.from, block.to));
  const DataCheck check(environment);
  KELVO_TRY(check.numbers(block.lower, block.count));
  KELVO_TRY(check.numbers(block.upper, block.count));
  KELVO_TRY(check.numbers(block.cost, block.count));
  KELVO_TRY(check_node_indices(environment, block.from, block.count, nodes));
  KELVO_TRY(check_node_indices(environment, block.to, block.count, nodes));
  return check.names(block.names, block.count);
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

KLVnet KLVNETcreateprob(KLVenv env, int* status_p, const char* name) {
  KLVnet result = nullptr;
  const int code = api_env(env, [&](Environment& environment) -> Status {
    KELVO_TRY(check_pointers(status_p, name));
    auto problem = make_owned<NetworkProblem>(environment.root());
    problem->change_name(name);
    problem->node = environment.objects().add(
        ObjectKind::network, problem.get(),
        [](void* object) noexcept { free_network(static_cast<NetworkProblem*>(object)); });
    result = to_handle(problem.release());
    return Status();
  });
  if (status_p != nullptr) *status_p = code;
  return result;
}

int KLVNETfreeprob(KLVenv env, KLVnet* net_p) {
  if (net_p == nullptr || *net_p == nullptr) {
    return api_env(env, [&](Environment&) { return check_pointers(net_p); });
  }
  return api_net(env, *net_p, [&](Environment&, NetworkProblem& problem) -> Status {
    free_network(&problem);
    *net_p = nullptr;
    return Status();
  });
}

int KLVNETcopynet(KLVenv env, KLVnet net, int objsen, int nnodes, const double* supply,
                  const char* const* nnames, int narcs, const int* fromnode, const int* tonode,
                  const double* low, const double* up, const double* obj,
                  const char* const* anames) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const NodeBlock nodes{nnodes, supply, nnames};
    const ArcBlock arcs{narcs, fromnode, tonode, low, up, obj, anames};
    KELVO_TRY(DataCheck(environment).objective_sense(objsen));
    KELVO_TRY(check_nodes(environment, 0, nodes));
    KELVO_TRY(check_arcs(environment, 0, nnodes, arcs));
    Network network;
    network.name = problem.network().name;
    network.sense = objsen < 0 ? -1 : 1;
    append_nodes(network, nodes);
    append_arcs(network, arcs);
    problem.replace(std::move(network));
    return Status();
  });
}

int KLVNETaddnodes(KLVenv env, KLVnet net, int nnodes, const double* supply,
                   const char* const* name) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const NodeBlock block{nnodes, supply, name};
    KELVO_TRY(check_nodes(environment, problem.network().num_nodes(), block));
    if (nnodes > 0) problem.add_nodes(block);
    return Status();
  });
}

int KLVNETaddarcs(KLVenv env, KLVnet net, int narcs, const int* fromnode, const int* tonode,
                  const double* low, const double* up, const double* obj,
                  const char* const* anames) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const ArcBlock block{narcs, fromnode, tonode, low, up, obj, anames};
    const Network& network = problem.network();
    KELVO_TRY(check_arcs(environment, network.num_arcs(), network.num_nodes(), block));
    if (narcs > 0) problem.add_arcs(block);
    return Status();
  });
}
