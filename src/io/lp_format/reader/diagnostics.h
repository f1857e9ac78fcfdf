// Messages of the LP reader: errors and warnings with the line they belong to.
//
// Warnings about names may be as many as a file has names, so only the first 20 are printed and the
// others are counted.
#pragma once

#include <string_view>

#include "base/messages.h"
#include "base/status.h"

namespace kelvo {

class LpDiagnostics {
 public:
  explicit LpDiagnostics(MessageSink& sink) : sink_(&sink) {}

  /// Number of the physical line being read, counted from 1.
  int line = 0;

  MessageSink& sink() { return *sink_; }
  /// Redirects all messages; the caller keeps the sink alive.
  void set_sink(MessageSink& sink) { sink_ = &sink; }
  /// Forgets the warnings about names that have been counted.
  void restart_name_warnings() { name_warnings_ = 0; }

  /// Prints an error whose text takes the line number alone, or none.
  Status error(int code) { return error_at(line, code); }
  Status error_at(int at_line, int code);
  /// Prints an error whose text takes the line number and a character; a zero, the end of a line,
  /// is shown as a blank.
  Status error_found(int code, char found);
  /// Prints an error whose text takes the line number and a word of the file.
  Status error_word(int code, std::string_view word);
  /// Prints an error about two neighbouring tokens.
  Status error_pair(int code, int first_line);
  /// Prints "Exponent '...' not started/ended with number".
  Status error_exponent(std::string_view word, const char* which);
  /// Prints that the name of a row, set, ... has been used before.
  Status error_repeated(int at_line, const char* kind, std::string_view name);

  void warn_unexpected_character(int code);
  void warn_objective_ended();
  void warn_after_rhs();
  void warn_unfinished_constraint();
  void warn_deprecated_bracket();
  void warn_sense_conflict();
  void warn_end_missing();

  /// Warnings about names; they count towards the limit.
  void warn_truncated(std::string_view name);
  void warn_unknown_name(std::string_view name);
  void warn_invalid_name(std::string_view name);
  /// Says how many warnings about names were left out.
  void close_name_warnings();

 private:
  void name_warning(const char* format, std::string_view name);

  MessageSink* sink_;
  int name_warnings_ = 0;
};

}  // namespace kelvo
