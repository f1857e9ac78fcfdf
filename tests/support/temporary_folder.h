// A folder of its own for the files that a test reads and writes.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

inline std::string text_of_file(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class TemporaryFolder {
 public:
  TemporaryFolder() {
    char pattern[] = "/tmp/kelvo_test_XXXXXX";
    folder_ = mkdtemp(pattern);
  }
  ~TemporaryFolder() { std::filesystem::remove_all(folder_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(const std::string& name = "") const { return (folder_ / name).string(); }
  /// Writes a file and returns its path.
  std::string put(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }
  std::string text_of(const std::string& name) const { return text_of_file(path(name)); }

 private:
  std::filesystem::path folder_;
};
