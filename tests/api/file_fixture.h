// A problem with a folder of its own for the files that a test reads and writes.
#pragma once

#include "prob_fixture.h"
#include "support/temporary_folder.h"

class FileTest : public ProblemTest {
 protected:
  std::string path(const std::string& name) const { return folder_.path(name); }
  std::string put(const std::string& name, const std::string& text) const {
    return folder_.put(name, text);
  }
  std::string text_of(const std::string& name) const { return folder_.text_of(name); }
  /// The line of an error with a finished text.
  static std::string error_line(int code, const std::string& text) {
    return "KELVO Error " + std::string(code < 10000 ? " " : "") + std::to_string(code) + ": " +
           text + ".\n";
  }

  TemporaryFolder folder_;
};
