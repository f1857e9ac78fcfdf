// Lines of an LP file.
//
// A physical line of more than 558 characters is handed out in pieces, each cut after a sign that
// is no part of an exponent or an arrow, so that no token is cut in two; a stretch of 558
// characters without such a sign is an error. Bytes without a class are dropped with a warning.
// What follows a backslash, a carriage return, a form feed or a zero byte does not count, up to
// the end of the physical line.
#pragma once

#include <cstddef>

#include "base/line_reader.h"
#include "io/lp_format/reader/diagnostics.h"

namespace kelvo {

class LpLines {
 public:
  /// A line, or a piece of one, that holds more than blanks and comment.
  struct Line {
    const char* text = nullptr;  // first non-blank; ended by a character of class kLpEnd
    bool continued = false;      // a piece that is not the first of its physical line
    bool at_end = false;         // there is no further line
  };

  /// Longest line and longest piece, in characters; with its line feed and a final zero a line
  /// takes 560 bytes.
  static constexpr std::size_t kLongestPiece = 558;

  LpLines(LineReader& reader, LpDiagnostics& diagnostics)
      : reader_(reader), diagnostics_(diagnostics) {}

  /// Goes to the next line with content and sets the line number of the diagnostics. The text
  /// stays valid until the next call.
  Status next(Line& line);
  /// Drops the pieces of the current physical line that have not been handed out.
  void skip_rest_of_line();

 private:
  Status take(const char*& text, std::size_t& length);
  Status cut_long_line(std::size_t& length);
  void drop_unexpected(const char* text, std::size_t length);

  LineReader& reader_;
  LpDiagnostics& diagnostics_;
  bool rest_unread_ = false;  // the reader is inside a physical line
  bool inside_line_ = false;  // the last piece was not the end of its physical line
  std::size_t num_kept_ = 0;  // characters behind the last cut
  char kept_[kLongestPiece];  // [num_kept_]
  char piece_[kLongestPiece + 1];
};

}  // namespace kelvo
