// Messages of the LP reader: errors and warnings with the line they belong to.
//
// A file may cause a kind of warning without end, so only the first 20 of a kind are printed and
// the others are counted.
#pragma once

#include <array>
#include <string_view>

#include "base/messages.h"
#include "base/status.h"

namespace kelvo {

class LpDiagnostics {
  enum Kind { kCharacter, kAfterRhs, kUnfinished, kBracket, kSense, kName, kKinds };

 public:
  explicit LpDiagnostics(MessageSink& sink) : sink_(&sink) {}

  using Counts = std::array<int, kKinds>;  // [kind] how often the warning was due

  /// Number of the physical line being read, counted from 1.
  int line = 0;

  MessageSink& sink() { return *sink_; }
  /// Redirects all messages; the caller keeps the sink alive.
  void set_sink(MessageSink& sink) { sink_ = &sink; }

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

  /// Warnings about names, which are one kind.
  void warn_truncated(std::string_view name);
  void warn_unknown_name(std::string_view name);
  void warn_invalid_name(std::string_view name);
  const Counts& counts() const { return counts_; }
  /// Counts from here again, after lines have been read a second time.
  void set_counts(const Counts& counts) { counts_ = counts; }
  /// Says how many warnings of each kind were left out.
  void close_warnings();

 private:
  static const char* const kNotPrinted[kKinds];

  bool allowed(Kind kind);
  void name_warning(const char* format, std::string_view name);

  MessageSink* sink_;
  Counts counts_{};
};

}  // namespace kelvo
