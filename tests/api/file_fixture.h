// A problem with a folder of its own for the files that a test reads and writes.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "prob_fixture.h"

class FileTest : public ProblemTest {
 protected:
  FileTest() {
    char pattern[] = "/tmp/kelvo_files_XXXXXX";
    folder_ = mkdtemp(pattern);
  }
  ~FileTest() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }
  std::string put(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }
  std::string text_of(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }
  /// The line of an error with a finished text.
  static std::string error_line(int code, const std::string& text) {
    char line[1024];
    std::snprintf(line, sizeof(line), "KELVO Error %5d: %s.\n", code, text.c_str());
    return line;
  }

  std::filesystem::path folder_;
};
