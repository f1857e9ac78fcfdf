// A network as a linear model: a row 'E' for each node (what leaves minus what arrives is the
// supply), a column for each arc.
#pragma once

#include "prob/model/model.h"
#include "prob/network/network.h"

namespace kelvo {

/// The model; names go with it when there are any. A loop becomes an empty column. Throws
/// std::bad_alloc.
Model network_to_model(const Network& network);

}  // namespace kelvo
