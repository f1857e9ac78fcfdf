#include "io/lp_format/reader/lines.h"

#include <cstring>

#include "base/error_code.h"
#include "io/lp_format/lp_characters.h"

namespace kelvo {
namespace {

constexpr int kUnexpectedCharacter = 0xff;  // the one byte that has no class

/// True when a line may be cut after the sign text[i]: exponents and arrows stay in one piece.
bool may_cut_after(const char* text, std::size_t i, std::size_t length) {
  if (text[i] == '-' && (i + 1 == length || text[i + 1] == '>')) return false;
  const bool exponent = i >= 2 && (lp_classes(text[i - 1]) & kLpExponent) != 0 &&
                        (lp_classes(text[i - 2]) & kLpNumeric) != 0;
  return !exponent;
}

}  // namespace

Status LpLines::next(Line& line) {
  for (;;) {
    const bool continued = inside_line_;
    const char* text = nullptr;
    std::size_t length = 0;
    KELVO_TRY(take(text, length));
    if (text == nullptr) {
      line = {nullptr, false, true};
      return {};
    }
    if (length > 0 && std::memchr(text, kUnexpectedCharacter, length) != nullptr) {
      drop_unexpected(text, length);
      text = piece_;
    }
    while ((lp_classes(*text) & (kLpBlank | kLpEnd)) == kLpBlank) ++text;
    if ((lp_classes(*text) & kLpEnd) != 0) continue;
    line = {text, continued, false};
    return {};
  }
}

void LpLines::skip_rest_of_line() {
  num_kept_ = 0;
  inside_line_ = false;
  while (rest_unread_) rest_unread_ = reader_.next(kLongestPiece) == LineReader::Outcome::piece;
}

/// Takes a line or a piece of one; a null text is the end of the input.
Status LpLines::take(const char*& text, std::size_t& length) {
  std::string_view fresh;
  if (!inside_line_ || rest_unread_) {
    const LineReader::Outcome outcome = reader_.next(kLongestPiece - num_kept_);
    diagnostics_.line = reader_.line_number();
    if (outcome == LineReader::Outcome::failed) return Status::failure(error::kCannotReadFile);
    if (outcome == LineReader::Outcome::end) return {};
    rest_unread_ = outcome == LineReader::Outcome::piece;
    fresh = reader_.text();
  }
  if (num_kept_ == 0 && !rest_unread_) {
    inside_line_ = false;
    text = fresh.data();
    length = fresh.size();
    return {};
  }
  std::memcpy(piece_, kept_, num_kept_);
  if (!fresh.empty()) std::memcpy(piece_ + num_kept_, fresh.data(), fresh.size());
  length = num_kept_ + fresh.size();
  num_kept_ = 0;
  inside_line_ = rest_unread_;
  if (rest_unread_) KELVO_TRY(cut_long_line(length));
  piece_[length] = '\0';
  text = piece_;
  return {};
}

/// Shortens piece_, which is full and not the end of its line, to a useful part that is over or to
/// a cut after a sign; keeps the characters behind the cut.
Status LpLines::cut_long_line(std::size_t& length) {
  for (std::size_t i = 0; i < length; ++i) {
    if ((lp_classes(piece_[i]) & kLpEnd) == 0) continue;
    length = i;
    skip_rest_of_line();
    return {};
  }
  for (std::size_t i = length - 1; i > 0; --i) {
    if ((lp_classes(piece_[i]) & kLpSign) == 0 || !may_cut_after(piece_, i, length)) continue;
    num_kept_ = length - i - 1;
    std::memcpy(kept_, piece_ + i + 1, num_kept_);
    length = i + 1;
    return {};
  }
  return diagnostics_.error(error::kNameTooLong);
}

/// Copies the useful part of a piece without the bytes that have no class.
void LpLines::drop_unexpected(const char* text, std::size_t length) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < length && (lp_classes(text[i]) & kLpEnd) == 0; ++i) {
    if (lp_classes(text[i]) == 0) {
      diagnostics_.warn_unexpected_character(static_cast<unsigned char>(text[i]));
    } else {
      piece_[kept++] = text[i];
    }
  }
  piece_[kept] = '\0';
}

}  // namespace kelvo
