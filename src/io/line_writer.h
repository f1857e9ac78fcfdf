// Assembles wrapped lines of text: tokens that would pass column 79 go to a new line, indented.
#pragma once

#include <cstring>
#include <string_view>

#include "base/file_stream.h"
#include "io/number_format.h"

namespace kelvo {

class LineWriter {
 public:
  explicit LineWriter(FileStream& stream) : stream_(stream) { text_.reserve(2 * kBlock); }
  /// Where continuation lines start.
  void set_indent(int indent) { indent_ = indent; }
  /// Whether the lines that end from now on are comments, with a backslash before them.
  void set_comment(bool comment) { comment_ = comment; }
  /// Length of the current line.
  int length() const { return static_cast<int>(text_.size() - line_begin_); }
  /// Appends as it is.
  void put(std::string_view text) { text_.append(text); }
  /// Appends whole lines between lines.
  void put_lines(std::string_view lines) {
    text_.append(lines);
    line_begin_ = text_.size();
  }
  /// Appends so many blanks that the line has this length.
  void pad(int length_wanted) {
    if (length() < length_wanted)
      text_.append(static_cast<std::size_t>(length_wanted - length()), ' ');
  }
  /// True when a token of this length goes to a new line.
  bool wraps(std::size_t token_length) const {
    return length() + static_cast<int>(token_length) > kLineWidth && length() > indent_;
  }
  /// Appends a token, on a new line when it does not fit.
  void token(std::string_view text) {
    if (wraps(text.size())) {
      end_line();
      text_.append(static_cast<std::size_t>(indent_), ' ');
    }
    text_.append(text);
  }
  /// Ends the current line, even when it is empty.
  void end_line() {
    if (comment_) text_.insert(line_begin_, 1, '\\');
    text_ += '\n';
    if (text_.size() >= kBlock) send();
    line_begin_ = text_.size();
  }
  /// Hands the text over to the stream; to be called after the last line.
  void send() {
    stream_.write(text_);
    text_.clear();
    line_begin_ = 0;
  }

 private:
  static constexpr int kLineWidth = 79;
  static constexpr std::size_t kBlock = 1 << 17;  // more than the stream keeps back
  FileStream& stream_;
  String text_;  // whole lines that wait, and the current one
  std::size_t line_begin_ = 0;
  int indent_ = 0;
  bool comment_ = false;
};

/// A short text that is put together from pieces: at most two names, two numbers and a few signs.
class TokenText {
 public:
  TokenText& operator<<(std::string_view text) {
    length_ += text.copy(text_ + length_, sizeof(text_) - length_);
    return *this;
  }
  /// |x|, see format_number().
  TokenText& number(double x) {
    if (length_ + kNumberText <= sizeof(text_)) {
      length_ += static_cast<std::size_t>(format_number(x, text_ + length_, numbers_));
    }
    return *this;
  }
  /// A name, cut to the 255 characters that the formats carry.
  TokenText& name(const char* name) {
    constexpr std::size_t kLongestName = 255;
    return *this << std::string_view(name, strnlen(name, kLongestName));
  }
  std::string_view view() const { return {text_, length_}; }
  void clear() { length_ = 0; }
  const WrittenNumbers& numbers() const { return numbers_; }
  /// Counts a number that cannot be read back for another reason than its digits.
  void count_unreadable() { ++numbers_.unreadable; }

 private:
  char text_[1024];
  std::size_t length_ = 0;
  WrittenNumbers numbers_;
};

}  // namespace kelvo
