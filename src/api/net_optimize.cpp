// Solving networks, and the basis from which they start.
#include "api/frame/network_frame.h"
#include "env/params/param_numbers.h"
#include "net/network_log.h"
#include "net/network_settings.h"
#include "prob/data/data_check.h"

namespace kelvo {
namespace {

/// The caller's network callback.
class CallerCallback final : public NetworkCallback {
 public:
  CallerCallback(Environment& environment, NetworkProblem& problem)
      : environment_(environment),
        problem_(problem),
        callback_(environment.settings().callback(CallbackKind::network)) {}

  bool active() const { return callback_.function != nullptr; }
  int call() override {
    constexpr int kFromNetwork = 3;
    return callback_.function(to_handle(&environment_), &problem_, kFromNetwork, callback_.handle);
  }

 private:
  Environment& environment_;
  NetworkProblem& problem_;
  const Callback callback_;
};

Status solve(Environment& environment, NetworkProblem& problem) {
  const Network& network = problem.network();
  CallerCallback callback(environment, problem);
  const TimeLimitScope time_limit(environment);
  NetworkLog log(environment.messages(), environment.get_int(param::NETDISPLAY), network.num_arcs(),
                 network.sense, callback.active() ? &callback : nullptr);
  const bool use_basis = environment.get_int(param::ADVIND) != 0 && problem.basis.present;
  NetworkAnswer answer =
      solve_network(NetworkProgram(network), read_network_settings(environment.settings()),
                    use_basis ? problem.basis : NetworkBasis(), &log, environment.stop_check());
  log.end(answer.outcome);
  answer.solution.status = status_of(answer.outcome);
  problem.solution = std::move(answer.solution);
  problem.basis = std::move(answer.basis);
  return Status();
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVNETprimopt(KLVenv env, KLVnet net) {
  return api_net(env, net, solve);
}

int KLVNETcopybase(KLVenv env, KLVnet net, const int* astat, const int* nstat) {
  return api_net(env, net, [&](Environment& environment, NetworkProblem& problem) -> Status {
    const Network& network = problem.network();
    KELVO_TRY(check_pointers(astat));
    const DataCheck check(environment);
    KELVO_TRY(check.basis_statuses(astat, network.num_arcs()));
    KELVO_TRY(check.basis_statuses(nstat, network.num_nodes()));
    NetworkBasis basis;
    basis.present = true;
    basis.arc_status.resize(network.num_arcs());
    basis.node_basic.assign(network.num_nodes(), 0);
    for (int a = 0; a < network.num_arcs(); ++a) {
      const bool known = astat[a] >= kAtLower && astat[a] <= kFreeSuper;
      basis.arc_status[a] = static_cast<char>(known ? astat[a] : kAtLower);
    }
    for (int i = 0; nstat != nullptr && i < network.num_nodes(); ++i) {
      basis.node_basic[i] = nstat[i] == kBasic;
    }
    repair_basis(network, basis);
    problem.store_basis(std::move(basis));
    return Status();
  });
}

int KLVNETgetbase(KLVenv env, KLVnet net, int* astat, int* nstat) {
  return api_net(env, net, [&](Environment&, NetworkProblem& problem) -> Status {
    const NetworkBasis& basis = problem.basis;
    if (!basis.present) return Status::failure(error::kNoBasis);
    if (astat != nullptr) std::copy(basis.arc_status.begin(), basis.arc_status.end(), astat);
    if (nstat != nullptr) std::copy(basis.node_basic.begin(), basis.node_basic.end(), nstat);
    return Status();
  });
}
