// Parameter files: the parameters that differ from their defaults, one per line.
//
//   KELVO Parameter File Version VERSION
//   KLV_PARAM_EPOPT                  1.00000000000000e-07
//   KLV_PARAM_ITLIM                  5000
//   KLV_PARAM_WORKDIR                "/tmp"
//   1075                             1
//
// A public parameter is written by its name, a hidden one by its number, padded to 32 characters.
// The text of a string goes from the first to the last quotation mark of its line. When a file is
// read, blanks separate the tokens, blank lines are skipped, and what follows a number is ignored.
#pragma once

#include "base/status.h"
#include "env/environment.h"

namespace kelvo {

/// Replaces all parameters by what a file says; those that it does not mention get their defaults.
/// The name is tried with the extension ".prm" as well. All or nothing: on failure no parameter
/// changes. Failures have been reported, most with the number of the line: 1423 unreadable, 1661
/// bad header, 1013/1028 unknown parameter, 1660 no value, 1434 no number, 1026 text too long, 1465
/// line too long, and the refusals of the setters. Throws std::bad_alloc.
Status read_parameter_file(Environment& environment, const char* name);

enum class ParameterFileUse {
  settings,  // all that is changed
  snapshot,  // for repeating a run: without what only concerns the screen or the host
};

/// Writes a file. Failures: 1421 for a null or empty name; 1422, reported. Throws std::bad_alloc.
Status write_parameter_file(Environment& environment, const char* name, ParameterFileUse use);

}  // namespace kelvo
