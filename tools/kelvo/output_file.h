// A file that is written at the end of a long solve: that it can be is found out at the beginning.
#pragma once

#include <string>

namespace kelvo::command {

class OutputFile {
 public:
  /// An empty path makes a file that is not written, "-" means standard output. Throws Failure when
  /// the path cannot be written.
  explicit OutputFile(const std::string& path);

  bool wanted() const { return !path_.empty(); }
  /// Puts a text in the place of what the file held. Throws Failure.
  void write(const std::string& text) const;

 private:
  std::string path_;
};

}  // namespace kelvo::command
