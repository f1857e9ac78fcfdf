#include "base/file_stream.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <ctime>

#include "base/error_code.h"

namespace kelvo {
namespace {

constexpr std::size_t kWriteBuffer = 1 << 16;
/// What may follow the part of a file that a reader wants, and is still checked by the program.
constexpr std::size_t kMostDrained = 1 << 20;

struct Program {
  const char* name;
  const char* paths[3];  // the first is looked up along the search path
  int accepted_status;   // gzip ends with 2 after a warning such as trailing zeros
};
constexpr Program kGzip = {"gzip", {"gzip", "/usr/bin/gzip", "/usr/sbin/gzip"}, 2};
constexpr Program kBzip2 = {"bzip2", {"bzip2", "/usr/bin/bzip2", "/usr/sbin/bzip2"}, 0};

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool ends_in(std::string_view name, std::string_view suffix) {
  if (name.size() < suffix.size()) return false;
  name.remove_prefix(name.size() - suffix.size());
  for (std::size_t i = 0; i < suffix.size(); ++i) {
    if (upper(name[i]) != suffix[i]) return false;
  }
  return true;
}

/// Keeps SIGPIPE from the caller while a pipe is written to.
class PipeSignalGuard {
 public:
  PipeSignalGuard() {
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    sigset_t waiting;
    sigemptyset(&waiting);
    sigpending(&waiting);
    was_pending_ = sigismember(&waiting, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  ~PipeSignalGuard() {
    const int error = errno;
    if (!was_pending_) {
      const timespec at_once{0, 0};
      while (sigtimedwait(&pipe_, nullptr, &at_once) < 0 && errno == EINTR) {
      }
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = error;
  }
  PipeSignalGuard(const PipeSignalGuard&) = delete;
  PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

 private:
  sigset_t pipe_;
  sigset_t before_;
  bool was_pending_ = false;
};

/// The same file under a number above the three standard ones, which a program's own input and
/// output would overwrite; -1 when there is none.
int above_standard(int descriptor) {
  if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
  const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  ::close(descriptor);
  return moved;
}

int open_plain(const char* name, int flags) {
  int file = -1;
  do {
    file = ::open(name, flags | O_CLOEXEC, 0666);
  } while (file < 0 && errno == EINTR);
  file = above_standard(file);
  if (file < 0) return -1;
  struct stat info;
  if (fstat(file, &info) == 0 && S_ISDIR(info.st_mode)) {
    ::close(file);
    return -1;
  }
  return file;
}

bool write_all(int descriptor, const char* data, std::size_t size) {
  const PipeSignalGuard guard;
  while (size > 0) {
    const ssize_t written = ::write(descriptor, data, size);
    if (written < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

/// Starts `program` with the given standard input and output; 0 when it cannot be started.
pid_t spawn(const Program& program, const char* option, int input, int output) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  if (posix_spawn_file_actions_init(&actions) != 0) return 0;
  if (posix_spawnattr_init(&attributes) != 0) {
    posix_spawn_file_actions_destroy(&actions);
    return 0;
  }
  sigset_t signals;
  sigemptyset(&signals);
  bool ready = posix_spawnattr_setsigmask(&attributes, &signals) == 0;
  sigaddset(&signals, SIGPIPE);
  ready =
      ready && posix_spawnattr_setsigdefault(&attributes, &signals) == 0 &&
      posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF) == 0 &&
      posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO) == 0 &&
      posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO) == 0;
  pid_t child = 0;
  if (ready) {
    char name[8], argument[8];
    std::snprintf(name, sizeof(name), "%s", program.name);
    std::snprintf(argument, sizeof(argument), "%s", option);
    char* const arguments[] = {name, argument, nullptr};
    for (const char* path : program.paths) {
      if (posix_spawnp(&child, path, &actions, &attributes, arguments, environ) == 0) break;
      child = 0;
    }
  }
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

bool make_pipe(int ends[2]) {
  if (pipe2(ends, O_CLOEXEC) != 0) return false;
  ends[0] = above_standard(ends[0]);
  ends[1] = above_standard(ends[1]);
  if (ends[0] >= 0 && ends[1] >= 0) return true;
  if (ends[0] >= 0) ::close(ends[0]);
  if (ends[1] >= 0) ::close(ends[1]);
  return false;
}

}  // namespace

Compression input_compression(std::string_view name) {
  if (name.size() < 3) return Compression::none;
  if (ends_in(name, ".BZ2")) return Compression::bzip2;
  return ends_in(name, ".GZ") || ends_in(name, ".Z") ? Compression::gzip : Compression::none;
}

Compression output_compression(std::string_view name) {
  if (name.size() >= 2 && name.substr(name.size() - 2) == ".z") return Compression::none;
  return input_compression(name);
}

FileStream::~FileStream() {
  close();
}

bool FileStream::start_program(Compression compression, int file) {
  const Program& program = compression == Compression::gzip ? kGzip : kBzip2;
  int ends[2];
  if (!make_pipe(ends)) return false;
  program_ = writing_ ? spawn(program, "-c", ends[0], file) : spawn(program, "-cd", file, ends[1]);
  accepted_status_ = program.accepted_status;
  ::close(writing_ ? ends[0] : ends[1]);
  descriptor_ = writing_ ? ends[1] : ends[0];
  if (program_ > 0) return true;
  ::close(descriptor_);
  descriptor_ = -1;
  return false;
}

std::size_t FileStream::read(char* into, std::size_t size) {
  if (failed_ || at_end_ || descriptor_ < 0) return 0;
  ssize_t got = 0;
  do {
    got = ::read(descriptor_, into, size);
  } while (got < 0 && errno == EINTR);
  if (got > 0) {
    received_ = true;
    return static_cast<std::size_t>(got);
  }
  at_end_ = true;
  failed_ = got < 0 || (program_ > 0 && !program_succeeded());
  return 0;
}

std::size_t FileStream::size_hint() const {
  struct stat info;
  if (descriptor_ < 0 || fstat(descriptor_, &info) != 0 || !S_ISREG(info.st_mode)) return 0;
  return static_cast<std::size_t>(info.st_size);
}

void FileStream::write(std::string_view text) {
  if (pending_.size() + text.size() > pending_.capacity()) flush();
  if (text.size() > pending_.capacity()) {
    failed_ = failed_ || !write_all(descriptor_, text.data(), text.size());
    return;
  }
  pending_.insert(pending_.end(), text.begin(), text.end());
}

void FileStream::print(const char* format, ...) {
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(text, sizeof(text), format, arguments);
  va_end(arguments);
  if (length >= 0 && static_cast<std::size_t>(length) < sizeof(text)) {
    write(std::string_view(text, static_cast<std::size_t>(length)));
  } else if (length >= 0) {
    Vector<char> large(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(large.data(), large.size(), format, again);
    write(std::string_view(large.data(), static_cast<std::size_t>(length)));
  }
  va_end(again);
}

void FileStream::flush() {
  if (!pending_.empty() && !failed_) {
    failed_ = !write_all(descriptor_, pending_.data(), pending_.size());
  }
  pending_.clear();
}

/// Lets the program reach the end of its data, so that it can judge the rest of the file.
void FileStream::drain() {
  char rest[4096];
  std::size_t drained = 0;
  while (!at_end_ && drained < kMostDrained) drained += read(rest, sizeof(rest));
}

bool FileStream::program_succeeded() {
  int status = 0;
  pid_t ended = 0;
  do {
    ended = waitpid(program_, &status, 0);
  } while (ended < 0 && errno == EINTR);
  program_ = 0;
  // A host that ignores SIGCHLD leaves no status behind; then data must have come.
  if (ended < 0) return writing_ || received_;
  if (!writing_ && !at_end_) return true;
  if (!WIFEXITED(status)) return false;
  return WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == accepted_status_;
}

bool FileStream::close() {
  if (descriptor_ < 0) return !failed_;
  if (writing_) {
    flush();
  } else if (program_ > 0) {
    drain();
  }
  if (::close(descriptor_) != 0 && errno != EINTR) failed_ = true;
  descriptor_ = -1;
  if (program_ > 0 && !program_succeeded()) failed_ = true;
  return !failed_;
}

Status open_input(const char* name, const char* default_extension, FileStream& stream) {
  stream.close();
  stream.writing_ = stream.at_end_ = stream.received_ = stream.failed_ = false;
  const Compression compression = input_compression(name);
  int file = open_plain(name, O_RDONLY);
  if (file < 0 && compression == Compression::none && default_extension != nullptr) {
    String longer(name);
    longer += default_extension;
    file = open_plain(longer.c_str(), O_RDONLY);
  }
  if (file < 0) return Status::failure(error::kCannotReadFile);
  if (compression == Compression::none) {
    stream.descriptor_ = file;
    return {};
  }
  const bool started = stream.start_program(compression, file);
  ::close(file);
  return started ? Status() : Status::failure(error::kCannotReadFile);
}

Status open_standard_input(FileStream& stream) {
  stream.close();
  stream.writing_ = stream.at_end_ = stream.received_ = stream.failed_ = false;
  stream.descriptor_ = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  return stream.is_open() ? Status() : Status::failure(error::kCannotReadFile);
}

Status open_output(const char* name, bool compress, FileStream& stream) {
  stream.close();
  stream.at_end_ = stream.received_ = stream.failed_ = false;
  stream.writing_ = true;
  stream.pending_.clear();
  stream.pending_.reserve(kWriteBuffer);
  const Compression compression = compress ? output_compression(name) : Compression::none;
  const int file = open_plain(name, O_WRONLY | O_CREAT | O_TRUNC);
  if (file < 0) return Status::failure(error::kCannotWriteFile);
  if (compression == Compression::none) {
    stream.descriptor_ = file;
    return {};
  }
  const bool started = stream.start_program(compression, file);
  ::close(file);
  return started ? Status() : Status::failure(error::kCannotWriteFile);
}

Status close_file(FileStream& stream) {
  const int code = stream.writing_ ? error::kCannotWriteFile : error::kCannotReadFile;
  const bool good = stream.close();
  stream.failed_ = false;
  return good ? Status() : Status::failure(code);
}

}  // namespace kelvo
