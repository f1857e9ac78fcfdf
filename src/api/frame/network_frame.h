// The frame of exported functions that take an environment and a network: the steps of
// api/frame/api_frame.h with the membership and validity of the network between them.
//
// A body is called as body(Environment&, NetworkProblem&) -> Status, where the environment is the
// one the caller handed in (its channels take the messages, its parameters count) and the network
// may belong to the environment's root. api_net_value's body returns the value.
#pragma once

#include "api/frame/api_frame.h"
#include "prob/network/network_problem.h"

namespace kelvo {

inline KLVnet to_handle(NetworkProblem* problem) {
  return reinterpret_cast<KLVnet>(problem);
}

/// The network behind a handle, or null.
inline NetworkProblem* to_network(KLVnet handle) {
  auto* const problem = reinterpret_cast<NetworkProblem*>(handle);
  return problem != nullptr && problem->is_valid() ? problem : nullptr;
}

/// Frees a network and takes it out of its environment's books.
void free_network(NetworkProblem* problem) noexcept;

template <class Body>
int api_net(KLVenv env, KLVnet net, Body&& body) noexcept {
  Environment* const environment = to_environment(env);
  if (environment == nullptr) return error::kNoEnvironment;
  NetworkProblem* const problem = to_network(net);
  return record_error(*environment, run_guarded([&]() -> Status {
    const Caller caller = resolve_root(*environment);
    if (problem != nullptr) KELVO_TRY(check_membership(caller, &problem->environment()));
    KELVO_TRY(check_callback_guard(caller));
    if (problem == nullptr) return Status::failure(error::kNoProblem);
    return body(*environment, *problem);
  }));
}

/// body(const NetworkProblem&) -> int; 0 when a check fails.
template <class Body>
int api_net_value(KLVenv env, KLVnet net, Body&& body) noexcept {
  int value = 0;
  const int code = api_net(env, net, [&](Environment&, NetworkProblem& problem) -> Status {
    value = body(problem);
    return Status();
  });
  return code == 0 ? value : 0;
}

}  // namespace kelvo
