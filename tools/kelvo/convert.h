// `kelvo convert`: a model file in another format.
#pragma once

#include <string>

namespace kelvo::command {

/// Reads a model and writes it in the format that the name of the output says, with what reader and
/// writer find worth a warning on standard output. Throws Failure.
void convert(const std::string& input, const std::string& output);

}  // namespace kelvo::command
