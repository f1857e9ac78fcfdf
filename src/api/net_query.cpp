// Reading networks back, and the results of their last optimization.
#include "api/frame/network_frame.h"
#include "api/frame/output.h"

namespace kelvo {
namespace {

enum class Item { node, arc };

/// A slice of an array with one element per node (arc): `select(problem)` gives the array.
template <class T, class Select>
int get_slice(KLVenv env, KLVnet net, const char* function, Item item, T* out, int begin, int end,
              Select select) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    const int n = item == Item::node ? network.num_nodes() : network.num_arcs();
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, n));
    KELVO_TRY(check_pointers(out));
    const Vector<T>* values = select(problem);
    if (values == nullptr) return Status::failure(error::kNoSolution);
    for (int k = begin; k <= end; ++k) out[k - begin] = (*values)[k];
    return Status();
  });
}

/// The same for a part of the solution.
int get_result(KLVenv env, KLVnet net, const char* function, Item item, double* out, int begin,
               int end, Vector<double> NetworkSolution::*part) {
  return get_slice<double>(env, net, function, item, out, begin, end, [part](auto& problem) {
    return problem.has_solution() ? &(problem.solution.*part) : nullptr;
  });
}

int get_data(KLVenv env, KLVnet net, const char* function, Item item, double* out, int begin,
             int end, Vector<double> Network::*part) {
  return get_slice<double>(env, net, function, item, out, begin, end,
                           [part](auto& problem) { return &(problem.network().*part); });
}

int get_names(KLVenv env, KLVnet net, const char* function, Item item, char** name, char* store,
              int space, int* surplus_p, int begin, int end) {
  if (surplus_p != nullptr) *surplus_p = 0;
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    const int n = item == Item::node ? network.num_nodes() : network.num_arcs();
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, n));
    const NameStore& names = item == Item::node ? network.node_names : network.arc_names;
    return put_names(names, name, store, space, surplus_p, begin, end);
  });
}

int find_name(KLVenv env, KLVnet net, Item item, const char* name, int* index_p) {
  return api_net(env, net, [&](Environment&, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    const NameStore& names = item == Item::node ? network.node_names : network.arc_names;
    if (!names.present()) return Status::failure(error::kNoNames);
    KELVO_TRY(check_pointers(name, index_p));
    return put_index(item == Item::node ? problem.node_index(name) : problem.arc_index(name),
                     index_p);
  });
}

/// The arcs at each node of a range, one after the other; a loop stands once.
Status put_incidence(const Network& network, const OutputRoom& out, int* begin_out, int* arcs,
                     int begin, int end) {
  const int lines = std::max(end - begin + 1, 0);
  const auto visit = [&](auto put) {
    for (int a = 0; a < network.num_arcs(); ++a) {
      const int from = network.from[a], to = network.to[a];
      if (from >= begin && from <= end) put(from - begin, a);
      if (to != from && to >= begin && to <= end) put(to - begin, a);
    }
  };
  if (!out.asks_for_room()) KELVO_TRY(out.check(begin_out, arcs));
  Vector<std::int64_t> place(lines + 1, 0);
  visit([&](int line, int) { ++place[line + 1]; });
  for (int k = 0; k < lines; ++k) place[k + 1] += place[k];
  const std::int64_t total = place[lines];
  if (out.asks_for_room()) return out.room(total);
  for (int k = 0; k < lines; ++k) {
    begin_out[k] = static_cast<int>(std::min<std::int64_t>(place[k], out.space));
  }
  visit([&](int line, int a) {
    const std::int64_t position = place[line]++;
    if (position < out.space) arcs[position] = a;
  });
  return out.finish(total);
}

template <class T>
void put(T* out, T value) {
  if (out != nullptr) *out = value;
}

void put_all(const Vector<double>& values, double* out) {
  if (out != nullptr) std::copy(values.begin(), values.end(), out);
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVNETgetnumnodes(KLVenv env, KLVnet net) {
  return api_net_value(env, net, [](const auto& problem) { return problem.network().num_nodes(); });
}

int KLVNETgetnumarcs(KLVenv env, KLVnet net) {
  return api_net_value(env, net, [](const auto& problem) { return problem.network().num_arcs(); });
}

int KLVNETgetobjsen(KLVenv env, KLVnet net) {
  return api_net_value(env, net, [](const auto& problem) { return problem.network().sense; });
}

int KLVNETgetprobname(KLVenv env, KLVnet net, char* buf, int bufspace, int* surplus_p) {
  if (surplus_p != nullptr) *surplus_p = 0;
  return api_net(env, net, [&](Environment&, NetworkProblem& problem) {
    return put_text(problem.network().name, buf, bufspace, surplus_p);
  });
}

int KLVNETgetsupply(KLVenv env, KLVnet net, double* supply, int begin, int end) {
  return get_data(env, net, "KLVNETgetsupply", Item::node, supply, begin, end, &Network::supply);
}

int KLVNETgetobj(KLVenv env, KLVnet net, double* obj, int begin, int end) {
  return get_data(env, net, "KLVNETgetobj", Item::arc, obj, begin, end, &Network::cost);
}

int KLVNETgetlb(KLVenv env, KLVnet net, double* low, int begin, int end) {
  return get_data(env, net, "KLVNETgetlb", Item::arc, low, begin, end, &Network::lower);
}

int KLVNETgetub(KLVenv env, KLVnet net, double* up, int begin, int end) {
  return get_data(env, net, "KLVNETgetub", Item::arc, up, begin, end, &Network::upper);
}

int KLVNETgetarcnodes(KLVenv env, KLVnet net, int* fromnode, int* tonode, int begin, int end) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    KELVO_TRY(
        check_index_range(environment, "KLVNETgetarcnodes", begin, end, 0, network.num_arcs()));
    KELVO_TRY(check_pointers(fromnode, tonode));
    for (int a = begin; a <= end; ++a) {
      fromnode[a - begin] = network.from[a];
      tonode[a - begin] = network.to[a];
    }
    return Status();
  });
}

int KLVNETgetnodearcs(KLVenv env, KLVnet net, int* arccnt_p, int* arcbeg, int* arc, int arcspace,
                      int* surplus_p, int begin, int end) {
  reset_counts(arccnt_p, surplus_p);
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    KELVO_TRY(
        check_index_range(environment, "KLVNETgetnodearcs", begin, end, 0, network.num_nodes()));
    return put_incidence(network, {arccnt_p, arcspace, surplus_p}, arcbeg, arc, begin, end);
  });
}

int KLVNETgetnodename(KLVenv env, KLVnet net, char** nnames, char* namestore, int namespc,
                      int* surplus_p, int begin, int end) {
  return get_names(env, net, "KLVNETgetnodename", Item::node, nnames, namestore, namespc, surplus_p,
                   begin, end);
}

int KLVNETgetarcname(KLVenv env, KLVnet net, char** anames, char* namestore, int namespc,
                     int* surplus_p, int begin, int end) {
  return get_names(env, net, "KLVNETgetarcname", Item::arc, anames, namestore, namespc, surplus_p,
                   begin, end);
}

int KLVNETgetnodeindex(KLVenv env, KLVnet net, const char* name, int* index_p) {
  return find_name(env, net, Item::node, name, index_p);
}

int KLVNETgetarcindex(KLVenv env, KLVnet net, const char* name, int* index_p) {
  return find_name(env, net, Item::arc, name, index_p);
}

int KLVNETsolution(KLVenv env, KLVnet net, int* netstat_p, double* objval_p, double* x, double* pi,
                   double* slack, double* dj) {
  return api_net(env, net, [&](Environment&, NetworkProblem& problem) -> Status {
    if (!problem.has_solution()) return Status::failure(error::kNoSolution);
    const NetworkSolution& solution = problem.solution;
    put(netstat_p, solution.status);
    put(objval_p, solution.objective);
    put_all(solution.flow, x);
    put_all(solution.pi, pi);
    put_all(solution.slack, slack);
    put_all(solution.dj, dj);
    return Status();
  });
}

int KLVNETsolninfo(KLVenv env, KLVnet net, int* pfeasind_p, int* dfeasind_p) {
  return api_net(env, net, [&](Environment&, NetworkProblem& problem) -> Status {
    put(pfeasind_p, static_cast<int>(problem.solution.primal_feasible));
    put(dfeasind_p, static_cast<int>(problem.solution.dual_feasible));
    return Status();
  });
}

int KLVNETgetstat(KLVenv env, KLVnet net) {
  return api_net_value(env, net, [](const auto& problem) { return problem.solution.status; });
}

int KLVNETgetobjval(KLVenv env, KLVnet net, double* objval_p) {
  return api_net(env, net, [&](Environment&, NetworkProblem& problem) -> Status {
    if (!problem.has_solution()) return Status::failure(error::kNoSolution);
    put(objval_p, problem.solution.objective);
    return Status();
  });
}

int KLVNETgetitcnt(KLVenv env, KLVnet net) {
  return api_net_value(env, net, [](const auto& problem) { return problem.solution.iterations; });
}

int KLVNETgetphase1cnt(KLVenv env, KLVnet net) {
  return api_net_value(env, net,
                       [](const auto& problem) { return problem.solution.phase_one_iterations; });
}

int KLVNETgetx(KLVenv env, KLVnet net, double* x, int begin, int end) {
  return get_result(env, net, "KLVNETgetx", Item::arc, x, begin, end, &NetworkSolution::flow);
}

int KLVNETgetpi(KLVenv env, KLVnet net, double* pi, int begin, int end) {
  return get_result(env, net, "KLVNETgetpi", Item::node, pi, begin, end, &NetworkSolution::pi);
}

int KLVNETgetslack(KLVenv env, KLVnet net, double* slack, int begin, int end) {
  return get_result(env, net, "KLVNETgetslack", Item::node, slack, begin, end,
                    &NetworkSolution::slack);
}

int KLVNETgetdj(KLVenv env, KLVnet net, double* dj, int begin, int end) {
  return get_result(env, net, "KLVNETgetdj", Item::arc, dj, begin, end, &NetworkSolution::dj);
}
