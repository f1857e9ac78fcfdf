// Files of the library's formats that the user asks for: models, solutions, bases,
// priority orders, reports.
#pragma once

#include <string>

#include "session.h"

namespace kelvo::command {

/// True for a file that a solve has to come before.
bool needs_solve(const std::string& path);

/// Writes what the name says: the solution (.sol, .mst), the basis (.bas), the priority order
/// (.ord) or else the model, each also compressed. Throws Failure.
void write_file(Session& session, const std::string& path);

/// Writes the basic solution as a report, binary when the name ends in .bin. Throws Failure.
void write_report(Session& session, const std::string& path);

}  // namespace kelvo::command
