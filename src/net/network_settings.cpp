#include "net/network_settings.h"

#include "env/params/param_numbers.h"
#include "prob/solution.h"

namespace kelvo {

NetworkSettings read_network_settings(const Settings& settings) {
  NetworkSettings result;
  result.optimality_tolerance = settings.get_double(param::NETEPOPT);
  result.feasibility_tolerance = settings.get_double(param::NETEPRHS);
  result.iteration_limit = settings.get_int(param::NETITLIM);
  const int pricing = settings.get_int(param::NETPPRIIND);
  result.pricing =
      pricing == 0 ? NetworkPricingRule::block_search : static_cast<NetworkPricingRule>(pricing);
  return result;
}

int status_of(NetworkOutcome outcome) {
  switch (outcome) {
    case NetworkOutcome::optimal:
      return kOptimal;
    case NetworkOutcome::unbounded:
      return kUnbounded;
    case NetworkOutcome::infeasible:
      return kInfeasible;
    case NetworkOutcome::iteration_limit:
      return kIterationLimit;
    case NetworkOutcome::time_limit:
      return kTimeLimit;
    case NetworkOutcome::aborted:
      return kUserAborted;
    case NetworkOutcome::numerical:
      break;
  }
  return kNonOptimal;
}

}  // namespace kelvo
