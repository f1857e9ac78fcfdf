// Reading and writing of small text files (bases, priority orders) by name. A failure of the stream
// is reported as 1423 or 1422 with the name; a failure of the content is reported by its reader.
#pragma once

#include "base/error_code.h"
#include "base/file_stream.h"
#include "base/line_reader.h"
#include "env/error_table.h"

namespace kelvo {

/// Opens the file, with the ending added to a name that does not open, and runs
/// read(FileStream&) -> Status. What comes through a decompressor counts when that has succeeded.
template <class Read>
Status read_file(const char* filename, const char* ending, MessageSink& sink, Read read) {
  const auto unreadable = [&] { return report_error(sink, error::kCannotReadFile, filename); };
  FileStream stream;
  if (!open_input(filename, ending, stream).ok()) return unreadable();
  const Status status = read(stream);
  const bool closed = close_file(stream).ok();
  const bool stream_failed = status.code() == error::kCannotReadFile && !status.is_reported();
  return stream_failed || (status.ok() && !closed) ? unreadable() : status;
}

/// The same with read(LineReader&) -> Status.
template <class Read>
Status read_text_file(const char* filename, const char* ending, MessageSink& sink, Read read) {
  return read_file(filename, ending, sink, [&read](FileStream& stream) {
    LineReader lines(stream);
    return read(lines);
  });
}

/// Creates the file and runs write(FileStream&).
template <class Write>
Status write_text_file(const char* filename, MessageSink& sink, Write write) {
  FileStream stream;
  if (open_output(filename, true, stream).ok()) {
    write(stream);
    if (close_file(stream).ok()) return Status();
  }
  return report_error(sink, error::kCannotWriteFile, filename);
}

/// 1421 unless a file is named.
inline Status check_file_name(const char* filename) {
  const bool named = filename != nullptr && filename[0] != '\0';
  return named ? Status() : Status::failure(error::kNoFileName);
}

}  // namespace kelvo
