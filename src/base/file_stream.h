// Files of bytes, plain or compressed, for every reader and writer.
//
// The name decides: one of three or more characters that ends in ".BZ2" (any case) goes through the
// program bzip2, one that ends in ".GZ" (any case) or ".Z" through gzip; for writing only the
// capital ".Z" counts. The program gets the opened file as its standard input or output and is
// started from an argument vector without a shell, so no character of a name means anything. It is
// looked up along the search path, then in /usr/bin and /usr/sbin.
//
// A program that fails (broken or truncated data, full disk) is noticed at the end of the data,
// where failed() tells it, and at the latest by close_file(): a reader closes its stream before it
// trusts what it has read. No descriptor is inherited by
// other programs, and a program that stops early never kills the caller by SIGPIPE.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string_view>

#include "base/containers.h"
#include "base/status.h"

namespace kelvo {

enum class Compression { none, gzip, bzip2 };

/// How a file of this name is compressed when it is read.
Compression input_compression(std::string_view name);
/// How a file of this name is compressed when it is written.
Compression output_compression(std::string_view name);

class FileStream {
 public:
  FileStream() = default;
  ~FileStream();
  FileStream(const FileStream&) = delete;
  FileStream& operator=(const FileStream&) = delete;

  bool is_open() const { return descriptor_ >= 0; }

  /// Reads up to `size` bytes; 0 at the end of the data or after a failure, see failed().
  std::size_t read(char* into, std::size_t size);
  /// The size of a plain file that is open; 0 for what comes through a program.
  std::size_t size_hint() const;
  /// Writes through a buffer; a failure is remembered and comes out of close_file().
  void write(std::string_view text);
  /// Formats with the printf rules (any length) and writes.
  void print(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// True when reading or writing has failed.
  bool failed() const { return failed_; }

  friend Status open_input(const char* name, const char* default_extension, FileStream& stream);
  friend Status open_standard_input(FileStream& stream);
  friend Status open_output(const char* name, bool compress, FileStream& stream);
  friend Status close_file(FileStream& stream);

 private:
  bool start_program(Compression compression, int file);
  void flush();
  void drain();
  bool program_succeeded();
  bool close();

  int descriptor_ = -1;      // the file, or our end of the pipe; -1 when closed
  pid_t program_ = 0;        // 0 for a plain file
  int accepted_status_ = 0;  // exit status of the program that is only a warning
  bool writing_ = false;
  bool at_end_ = false;    // reading has reached the end of the data
  bool received_ = false;  // at least one byte was read
  bool failed_ = false;
  Vector<char> pending_;  // text not yet written
};

/// Opens a file for reading. When a plain file does not open and `default_extension` (such as
/// ".mps") is not null, the name with that extension is tried. Failure: 1423, not reported (its
/// text takes the file name).
Status open_input(const char* name, const char* default_extension, FileStream& stream);

/// Opens the standard input of the process; close_file() does not close that. Failure: 1423.
Status open_standard_input(FileStream& stream);

/// Creates or empties a file for writing; compressed suffixes count when `compress` is set.
/// Failure: 1422, not reported (its text takes the file name).
Status open_output(const char* name, bool compress, FileStream& stream);

/// Closes and waits for the program. Failure: 1423 or 1422, not reported, when anything has gone
/// wrong since the opening. A closed stream is accepted.
Status close_file(FileStream& stream);

}  // namespace kelvo
