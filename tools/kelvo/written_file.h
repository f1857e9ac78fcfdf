// Files of the library's formats that the user asks for: models, bases, priority orders.
#pragma once

#include <string>

#include "session.h"

namespace kelvo::command {

/// True for a file that a solve has to come before.
bool holds_basis(const std::string& path);

/// Writes what the name says: the basis (.bas), the priority order (.ord) or else the model, each
/// also compressed. Throws Failure.
void write_file(Session& session, const std::string& path);

}  // namespace kelvo::command
