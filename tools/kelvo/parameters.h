// Parameters by name: settings of the command line, and their list.
#pragma once

#include <string>
#include <vector>

#include "session.h"

namespace kelvo::command {

/// Reads a parameter file (unless its name is empty) and carries out settings "NAME=VALUE", whose
/// names may lack their prefix and be in any case. Throws Failure.
void read_parameters(Session& session, const std::string& file,
                     const std::vector<std::string>& settings);

/// Sets an integer or a real parameter by its name without prefix. Throws Failure.
void set_integer(Session& session, const char* name, int value);
void set_real(Session& session, const char* name, double value);

/// Sets an integer parameter to a value, or to its upper bound when that is smaller.
void set_at_most(Session& session, const char* name, int value);

/// Which parameters `kelvo params` lists.
struct ParameterList {
  std::string pattern;   // part of name or meaning, or a name with * and ?; empty: all
  bool changed = false;  // only those that differ from their defaults
  bool every = false;    // also those without an effect in this version
};

/// Prints parameters: name, value, range and meaning. Throws Failure when none fits.
void list_parameters(Session& session, const ParameterList& list);

}  // namespace kelvo::command
