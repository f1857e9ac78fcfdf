// Lines and fields of an MPS file.
//
// A line whose first character is no white space is a section header, any other one a data line.
// Empty lines, lines of white space and comments (first character '*' or a control character) are
// skipped; every physical line is counted. A field is a maximal run of printable characters (bytes
// 33..126 and 128..255); fields are separated by white space. Any other byte ends the useful part
// of a line.
//
// Fields are views into the line; they are valid until the next line is taken. A field may have any
// length; name(), number() and code() cut it at the limit of its kind and warn.
//
// Lines are split some time before they are handed out, so that the memory where their names will
// be looked up can be prefetched.
#pragma once

#include <string_view>

#include "base/line_reader.h"
#include "base/name_index.h"
#include "base/number_text.h"
#include "base/status.h"
#include "io/mps/messages.h"

namespace kelvo {

enum class MpsLine { header, data, end };

class MpsFields {
 public:
  static constexpr std::size_t kMostCharacters = 559;  // of a line
  static constexpr std::size_t kNameLength = 255;
  static constexpr std::size_t kNumberLength = 25;
  static constexpr std::size_t kCodeLength = 2;
  /// No data line has a use for more fields; what follows them is ignored.
  static constexpr int kMostFields = 6;

  MpsFields(LineReader& lines, MpsMessages& messages) : lines_(lines), messages_(messages) {}

  /// Goes to the next line that is not skipped. Errors: 1465 a line is too long; 1423 (not
  /// reported) the file cannot be read to its end.
  Status next();

  /// Takes the header NAME, which begins every file. Error: 1441 another line comes first.
  Status take_name();
  /// Reads a file that is a NAME line and data lines up to another header: `read_line`, a function
  /// without arguments, reads each of them. `ended` tells whether that header is ENDATA.
  template <class ReadLine>
  Status read_named_lines(ReadLine read_line, bool& ended);

  /// From now on the first field of a line is expected to be looked up in one table when it differs
  /// from that of the line before, and the second and fourth in the other; null: no longer. The
  /// tables must outlive that.
  void expect_names(const NameIndex* first, const NameIndex* others) {
    first_names_ = first;
    other_names_ = others;
  }

  MpsLine kind() const { return kind_; }
  std::string_view text() const { return line_->text; }
  int line_number() const { return line_number_; }

  /// Number of fields of the line, at most kMostFields.
  int count() const { return line_->count; }
  /// Field i unchanged, empty when the line has fewer fields.
  std::string_view raw(int i) const {
    return i < line_->count ? line_->field[i] : std::string_view();
  }
  /// Where field i < count() begins on its line, from 0.
  int position(int i) const { return static_cast<int>(line_->field[i].data() - text().data()); }

  std::string_view name(int i) { return cut(i, kNameLength); }
  std::string_view code(int i) { return cut(i, kCodeLength); }
  /// Reads a number; an empty field is 0 and is noted. Errors: 1434, 1435, 1618.
  Status number(int i, double& value);

  /// True when field i begins like a number: with a digit, a sign or a point.
  bool looks_like_number(int i) const;
  /// True when the line begins with `keyword` (capitals) in any case.
  bool header_is(std::string_view keyword) const;

 private:
  struct Line {
    std::string_view text;
    int count = 0;                        // of fields; 0 also for a line that is skipped
    std::string_view field[kMostFields];  // [count]
  };
  static constexpr int kMostAhead = 16;

  Status take_lines();
  void split(Line& line) const;
  void prefetch_names();
  std::string_view cut(int i, std::size_t limit) {
    const std::string_view whole = raw(i);
    return whole.size() <= limit ? whole : cut_long(whole, limit);
  }
  std::string_view cut_long(std::string_view whole, std::size_t limit);

  LineReader& lines_;
  MpsMessages& messages_;
  const NameIndex* first_names_ = nullptr;
  const NameIndex* other_names_ = nullptr;
  MpsLine kind_ = MpsLine::end;
  int line_number_ = 0;  // of the current line
  int num_lines_ = 1;
  Line lines_ahead_[kMostAhead];     // [num_lines_] the lines taken from the reader together
  const Line* line_ = lines_ahead_;  // the current one
};

template <class ReadLine>
Status MpsFields::read_named_lines(ReadLine read_line, bool& ended) {
  KELVO_TRY(take_name());
  for (;;) {
    KELVO_TRY(next());
    if (kind_ != MpsLine::data) break;
    KELVO_TRY(read_line());
  }
  ended = kind_ == MpsLine::header && header_is("ENDATA");
  return {};
}

/// True when two texts agree without regard to the case of letters; `capitals` has no small ones.
bool equal_ignoring_case(std::string_view text, std::string_view capitals);

}  // namespace kelvo
