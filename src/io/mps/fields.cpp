#include "io/mps/fields.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "base/error_code.h"
#include "env/error_table.h"

namespace kelvo {
namespace {

enum : unsigned char { kOther = 0, kBlank = 1, kField = 2, kLineFeed = 4 };

constexpr std::array<unsigned char, 256> kClass = [] {
  std::array<unsigned char, 256> table{};
  for (std::size_t c = 33; c < 256; ++c) table[c] = kField;
  table[127] = kOther;
  for (const char c : {' ', '\t', '\v', '\f', '\r'}) table[static_cast<unsigned char>(c)] = kBlank;
  table['\n'] = kLineFeed;
  return table;
}();

unsigned char class_of(char c) {
  return kClass[static_cast<unsigned char>(c)];
}

// Fields and blanks are passed eight bytes at a time while so many are left of the line. In a word
// of eight bytes the lowest mark, the high bit of a byte, is exact.
constexpr std::uint64_t kOnes = 0x0101010101010101u, kMarks = 0x8080808080808080u;

bool load_word(const char* at, const char* end, std::uint64_t& word) {
  if (std::endian::native != std::endian::little || end - at < 8) return false;
  std::memcpy(&word, at, 8);
  return true;
}

/// The place of the lowest mark.
int first_marked(std::uint64_t marks) {
  return std::countr_zero(marks) >> 3;
}

/// The end of the field at `at`; a byte of no field is at `end`.
const char* field_end(const char* at, const char* end) {
  for (std::uint64_t word; load_word(at, end, word); at += 8) {
    const std::uint64_t deleted = word ^ (kOnes * 127);
    const std::uint64_t marks =
        (((word - kOnes * 33) & ~word) | ((deleted - kOnes) & ~deleted)) & kMarks;
    if (marks != 0) return at + first_marked(marks);
  }
  while (class_of(*at) == kField) ++at;
  return at;
}

const char* blanks_end(const char* at, const char* end) {
  for (std::uint64_t word; load_word(at, end, word); at += 8) {
    const std::uint64_t other = word ^ (kOnes * ' ');
    if (other == 0) continue;
    at += std::countr_zero(other) >> 3;
    break;
  }
  while (class_of(*at) == kBlank) ++at;
  return at;
}

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool equal_ignoring_case(std::string_view text, std::string_view capitals) {
  if (text.size() != capitals.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (upper(text[i]) != capitals[i]) return false;
  }
  return true;
}

/// The scans need no end: a line feed follows the line and belongs to no class but its own.
void MpsFields::split(Line& line) const {
  const char* at = line.text.data();
  line.count = 0;
  const unsigned char first_class = class_of(*at);
  if (*at == '*' || (first_class & (kBlank | kField)) == 0) return;
  const char* const end = at + line.text.size();
  while (line.count < kMostFields) {
    const char* const begin = at = blanks_end(at, end);
    at = field_end(at, end);
    if (at == begin) return;
    line.field[line.count++] = std::string_view(begin, static_cast<std::size_t>(at - begin));
  }
}

void MpsFields::prefetch_names() {
  std::string_view before;
  for (int k = 0; k < num_lines_; ++k) {
    const Line& line = lines_ahead_[k];
    if (line.count < 2) continue;
    other_names_->prefetch(line.field[1]);
    if (line.count > 3) other_names_->prefetch(line.field[3]);
    if (line.field[0] != before) first_names_->prefetch(line.field[0]);
    before = line.field[0];
  }
}

/// Takes the next line from the reader and those behind it that are at hand.
Status MpsFields::take_lines() {
  num_lines_ = 1;
  line_ = lines_ahead_;
  lines_ahead_[0] = Line();
  const LineReader::Outcome outcome = lines_.next(kMostCharacters);
  line_number_ = lines_.line_number();
  if (outcome == LineReader::Outcome::piece) {
    return messages_.error(error::kLineTooLong, line_number_, static_cast<int>(kMostCharacters));
  }
  if (outcome == LineReader::Outcome::failed) return Status::failure(error::kCannotReadFile);
  kind_ = MpsLine::end;
  if (outcome == LineReader::Outcome::end) {
    num_lines_ = 0;
    return {};
  }
  std::string_view texts[kMostAhead] = {lines_.text()};
  num_lines_ += lines_.take_ready(texts + 1, kMostAhead - 1, kMostCharacters);
  for (int k = 0; k < num_lines_; ++k) {
    lines_ahead_[k].text = texts[k];
    split(lines_ahead_[k]);
  }
  if (other_names_ != nullptr) prefetch_names();
  return {};
}

Status MpsFields::next() {
  do {
    if (line_ + 1 < lines_ahead_ + num_lines_) {
      ++line_;
      ++line_number_;
    } else {
      KELVO_TRY(take_lines());
      if (num_lines_ == 0) return {};
    }
  } while (line_->count == 0);
  kind_ = class_of(*text().data()) == kField ? MpsLine::header : MpsLine::data;
  return {};
}

Status MpsFields::take_name() {
  KELVO_TRY(next());
  if (kind_ == MpsLine::header && header_is("NAME")) return {};
  // An empty file lacks its first line.
  return messages_.error(error::kNoNameSection, std::max(line_number(), 1));
}

std::string_view MpsFields::cut_long(std::string_view whole, std::size_t limit) {
  const std::string_view kept = whole.substr(0, limit);
  messages_.field_truncated(line_number(), kept);
  return kept;
}

Status MpsFields::number(int i, double& value) {
  const std::string_view text = cut(i, kNumberLength);
  if (text.empty()) {
    messages_.note_empty_number();
    value = 0.0;
    return {};
  }
  const ParsedNumber number = parse_number(text.data(), text.data() + text.size(), true);
  if (number.fault == NumberFault::none) {
    value = number.value;
    return {};
  }
  return messages_.number_error(line_number(), text, number);
}

bool MpsFields::looks_like_number(int i) const {
  const std::string_view text = raw(i);
  if (text.empty()) return false;
  const char c = text.front();
  return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

bool MpsFields::header_is(std::string_view keyword) const {
  return text().size() >= keyword.size() &&
         equal_ignoring_case(text().substr(0, keyword.size()), keyword);
}

}  // namespace kelvo
