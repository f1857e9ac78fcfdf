// What ends the command with exit code 1: its text is the one line that the user sees.
#pragma once

#include <stdexcept>
#include <string>

namespace kelvo::command {

class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& text) : std::runtime_error(text) {}
};

}  // namespace kelvo::command
