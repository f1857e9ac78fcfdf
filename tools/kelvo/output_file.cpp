#include "output_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "failure.h"

namespace kelvo::command {
namespace {

constexpr const char* kStandardOutput = "-";

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path) {
  if (!wanted() || path_ == kStandardOutput) return;
  std::FILE* probe = std::fopen(path_.c_str(), "a");
  if (probe == nullptr) throw Failure("cannot write " + path_ + ": " + std::strerror(errno));
  std::fclose(probe);
}

void OutputFile::write(const std::string& text) const {
  if (!wanted()) return;
  const bool to_screen = path_ == kStandardOutput;
  std::FILE* file = to_screen ? stdout : std::fopen(path_.c_str(), "w");
  if (file == nullptr) throw Failure("cannot write " + path_ + ": " + std::strerror(errno));
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  const bool closed = (to_screen ? std::fflush(file) : std::fclose(file)) == 0;
  if (!written || !closed) throw Failure("cannot write " + path_ + ": " + std::strerror(errno));
}

}  // namespace kelvo::command
