// Assembles wrapped lines of text: tokens that would pass column 79 go to a new line, indented.
#pragma once

#include <cstring>
#include <string_view>

#include "base/file_stream.h"
#include "io/number_format.h"

namespace kelvo {

class LineWriter {
 public:
  explicit LineWriter(FileStream& stream) : stream_(stream) {}

  /// Where continuation lines start.
  void set_indent(int indent) { indent_ = indent; }
  /// Length of the current line.
  int length() const { return static_cast<int>(line_.size()); }
  /// Appends as it is.
  void put(std::string_view text) { line_.append(text); }
  /// True when a token of this length goes to a new line.
  bool wraps(std::size_t token_length) const {
    return length() + static_cast<int>(token_length) > kLineWidth && length() > indent_;
  }
  /// Appends a token, on a new line when it does not fit.
  void token(std::string_view text) {
    if (wraps(text.size())) {
      end_line();
      line_.assign(static_cast<std::size_t>(indent_), ' ');
    }
    line_.append(text);
  }
  /// Sends the current line, with its line break, even when it is empty.
  void end_line() {
    line_ += '\n';
    stream_.write(line_);
    line_.clear();
  }

 private:
  static constexpr int kLineWidth = 79;
  FileStream& stream_;
  String line_;
  int indent_ = 0;
};

/// A short text that is put together from pieces.
class TokenText {
 public:
  TokenText& operator<<(std::string_view text) {
    text_.append(text);
    return *this;
  }
  /// |x|, see format_number().
  TokenText& number(double x) {
    char digits[kNumberText];
    const int length = format_number(x, digits, numbers_);
    text_.append(digits, static_cast<std::size_t>(length));
    return *this;
  }
  /// A name, cut to the 255 characters that the formats carry.
  TokenText& name(const char* name) {
    constexpr std::size_t kLongestName = 255;
    text_.append(name, strnlen(name, kLongestName));
    return *this;
  }
  std::string_view view() const { return text_; }
  void clear() { text_.clear(); }
  const WrittenNumbers& numbers() const { return numbers_; }
  /// Counts a number that cannot be read back for another reason than its digits.
  void count_unreadable() { ++numbers_.unreadable; }

 private:
  String text_;
  WrittenNumbers numbers_;
};

}  // namespace kelvo
