// The linear relaxation of a model: the same model without its discrete parts.
#pragma once

#include "session.h"

namespace kelvo::command {

/// True when the problem has column types, sets or indicator constraints.
bool is_mixed_integer(const Session& session);

/// Drops them and lets semi-continuous columns take every value from 0 to their bounds; names and
/// everything else stay. Throws Failure.
void relax(Session& session);

}  // namespace kelvo::command
