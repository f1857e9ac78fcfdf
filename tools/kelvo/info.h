// `kelvo info MODEL`: what a model holds.
#pragma once

#include "session.h"

namespace kelvo::command {

/// Reads a model and prints its sizes, its types, and the ranges of its numbers. Throws Failure.
void show_info(const std::string& path);

}  // namespace kelvo::command
