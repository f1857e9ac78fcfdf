// Networks: files whose names end in .net or .min, read, solved and written as what they are.
#pragma once

#include <string>

#include "options.h"
#include "outcome.h"
#include "session.h"

namespace kelvo::command {

/// True for the name of a network file, compressed or not.
bool is_network_file(const std::string& path);

/// Reads, solves and writes the files that the options ask for; fills the outcome. Returns the
/// lines "arc flow" of the non-zero flows when a flow that satisfies the constraints was found.
/// Throws Failure.
std::string solve_network(Session& session, const Options& options, Outcome& outcome);

/// Prints what a network file holds. Throws Failure.
void show_network_info(Session& session, const std::string& path);

/// Writes the network file `input` as what the name of the other one says. Throws Failure.
void convert_network(Session& session, const std::string& input, const std::string& output);

}  // namespace kelvo::command
