// What the user asked for.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "parameters.h"

namespace kelvo::command {

struct Options {
  enum class Action { solve, info, convert, params, done };

  Action action = Action::solve;
  std::string model;   // the file to read
  ParameterList list;  // of `kelvo params`
  std::string output;  // of `kelvo convert`

  std::string method;                 // empty: as the parameters say
  std::vector<std::string> settings;  // NAME=VALUE
  std::optional<double> time_limit;   // seconds from the start of the program
  std::optional<int> threads;
  std::optional<double> gap;      // relative, at which a mixed-integer search stops
  std::optional<int> node_limit;  // of a mixed-integer search
  bool first = false;             // stop at the first integer solution
  bool relax = false;
  bool quiet = false;
  std::string log_file;
  std::string basis_file;            // to start from
  std::string start_file;            // the same, values
  std::string parameter_file;        // read before the settings
  std::string write_parameter_file;  // written after them
  std::vector<std::string> write_files;
  std::string report_file;
  std::string values_file;
  std::string json_file;
};

/// Reads the command line. Action::done: everything is said (help, version). Throws Failure.
Options parse_options(int argc, char** argv);

}  // namespace kelvo::command
