// The settings of the network optimizer from the parameters.
#pragma once

#include "env/params/settings.h"
#include "net/simplex/network_simplex.h"

namespace kelvo {

NetworkSettings read_network_settings(const Settings& settings);

/// The solution status of an outcome.
int status_of(NetworkOutcome outcome);

}  // namespace kelvo
