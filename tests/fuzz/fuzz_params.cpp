// Fuzz target: any bytes as a parameter file. A refused file changes no parameter; an accepted one
// is written and read back to the same settings.
#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "env/params/param_file.h"
#include "fuzz_support.h"

namespace {

using kelvo::Environment;
using kelvo::ParameterFileUse;

/// A file in memory with a name that can be opened.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& content = {}) : descriptor_(memfd_create("params", 0)) {
    require(descriptor_ >= 0);
    require(::write(descriptor_, content.data(), content.size()) ==
            static_cast<ssize_t>(content.size()));
  }
  ~MemoryFile() { ::close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor_); }
  std::string content() const {
    const off_t size = lseek(descriptor_, 0, SEEK_END);
    std::string text(static_cast<std::size_t>(size), '\0');
    require(pread(descriptor_, text.data(), text.size(), 0) == size);
    return text;
  }

 private:
  int descriptor_;
};

std::string written(Environment& environment) {
  MemoryFile file;
  require(kelvo::write_parameter_file(environment, file.name().c_str(), ParameterFileUse::settings)
              .ok());
  return file.content();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Environment environment;
  const std::string before = written(environment);
  const MemoryFile file(std::string(as_text(data, size)));
  const bool accepted = kelvo::read_parameter_file(environment, file.name().c_str()).ok();
  environment.set_screen(false);
  const std::string after = written(environment);
  if (!accepted) {
    require(after == before);
    return 0;
  }
  const MemoryFile again(after);
  require(kelvo::read_parameter_file(environment, again.name().c_str()).ok());
  environment.set_screen(false);
  require(written(environment) == after);
  return 0;
}
