#include "io/lp_format/reader/keywords.h"

#include <cstddef>
#include <string_view>

#include "io/lp_format/lp_characters.h"

namespace kelvo {
namespace {

/// How a keyword is spelled in the file. Texts here are in lower case.
enum class Spelling {
  exact,
  prefix,     // any beginning of the text with at least `least` letters
  two_words,  // `text` and `second` apart or joined, the end marked by ':' if wanted
};

struct Keyword {
  LpSection section;
  Spelling spelling;
  std::string_view text;
  std::string_view second = {};
  std::size_t least = 0;
};

constexpr Keyword kKeywords[] = {
    {LpSection::minimize, Spelling::prefix, "minimize", {}, 3},
    {LpSection::maximize, Spelling::prefix, "maximize", {}, 3},
    {LpSection::constraints, Spelling::exact, "st"},
    {LpSection::constraints, Spelling::exact, "st."},
    {LpSection::constraints, Spelling::exact, "s.t"},
    {LpSection::constraints, Spelling::exact, "s.t."},
    {LpSection::constraints, Spelling::two_words, "subject", "to"},
    {LpSection::constraints, Spelling::two_words, "such", "that"},
    {LpSection::user_cuts, Spelling::two_words, "user", "cuts"},
    {LpSection::lazy_constraints, Spelling::two_words, "lazy", "constraints"},
    {LpSection::bounds, Spelling::prefix, "bounds", {}, 4},
    {LpSection::integers, Spelling::exact, "int"},
    {LpSection::integers, Spelling::exact, "ints"},
    {LpSection::integers, Spelling::exact, "integer"},
    {LpSection::integers, Spelling::exact, "integers"},
    {LpSection::binaries, Spelling::exact, "bin"},
    {LpSection::binaries, Spelling::exact, "bins"},
    {LpSection::binaries, Spelling::exact, "binary"},
    {LpSection::binaries, Spelling::exact, "binaries"},
    {LpSection::generals, Spelling::exact, "gen"},
    {LpSection::generals, Spelling::exact, "gens"},
    {LpSection::generals, Spelling::exact, "general"},
    {LpSection::generals, Spelling::exact, "generals"},
    {LpSection::semi_continuous, Spelling::exact, "semi"},
    {LpSection::semi_continuous, Spelling::exact, "semis"},
    {LpSection::semi_continuous, Spelling::exact, "semi-continuous"},
    {LpSection::sos, Spelling::exact, "sos"},
    {LpSection::end, Spelling::exact, "end"},
};

/// Longest keyword, joined words included, and its ':'.
constexpr std::size_t kLongestWord = 16;

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool is_blank(char c) {
  return (lp_classes(c) & (kLpBlank | kLpEnd)) == kLpBlank;
}
bool is_word_end(char c) {
  return (lp_classes(c) & (kLpBlank | kLpEnd)) != 0;
}

/// True when the keyword is known in the section being read.
bool is_recognized(LpSection keyword, LpSection current) {
  if (keyword == LpSection::end || keyword == LpSection::sos) return true;
  if (current == LpSection::sos) return false;
  if (is_types(keyword)) return true;
  if (is_types(current)) return false;
  if (keyword == LpSection::bounds) return true;
  if (current == LpSection::bounds) return false;
  if (is_constraints(keyword)) return true;
  return !is_constraints(current);
}

/// A word in lower case, at most kLongestWord characters of it.
struct Word {
  char letters[kLongestWord];
  std::size_t length = 0;

  std::string_view view() const { return {letters, length}; }
  /// Appends up to a blank, an end character or, if asked, a colon; returns where it stopped.
  const char* append(const char* text, bool stop_at_colon) {
    while (!is_word_end(*text) && !(stop_at_colon && *text == ':') && length < kLongestWord) {
      letters[length++] = lower(*text++);
    }
    return text;
  }
};

/// Matches a keyword of two words; returns where the content behind it starts, or null.
const char* match_two_words(const Keyword& keyword, const char* text) {
  Word word;
  text = word.append(text, true);
  if (word.view() == keyword.text && is_blank(*text)) {
    while (is_blank(*text)) ++text;
    text = word.append(text, true);
  }
  const std::string_view joined = word.view();
  if (joined.size() != keyword.text.size() + keyword.second.size() ||
      !joined.starts_with(keyword.text) || !joined.ends_with(keyword.second)) {
    return nullptr;
  }
  if (*text == ':') return text + 1;
  return is_word_end(*text) ? text : nullptr;
}

/// Matches a keyword at the start of a line; returns where the text behind it starts, or null.
const char* match(const Keyword& keyword, const Word& first, const char* text) {
  switch (keyword.spelling) {
    case Spelling::exact:
      return first.view() == keyword.text ? text + first.length : nullptr;
    case Spelling::prefix:
      return first.length >= keyword.least && keyword.text.starts_with(first.view())
                 ? text + first.length
                 : nullptr;
    case Spelling::two_words:
      return match_two_words(keyword, text);
  }
  return nullptr;
}

}  // namespace

LpSection classify_lp_line(LpSection current, const char*& text) {
  const char initial = lower(*text);
  if (std::string_view("msulbige").find(initial) == std::string_view::npos) {
    return LpSection::content;
  }
  Word first;
  first.append(text, false);
  for (const Keyword& keyword : kKeywords) {
    if (keyword.text[0] != initial || !is_recognized(keyword.section, current)) continue;
    const char* rest = match(keyword, first, text);
    if (rest == nullptr) continue;
    if (is_objective(keyword.section) || is_constraints(keyword.section)) {
      text = rest;
      return keyword.section;
    }
    while (is_blank(*rest)) ++rest;
    return (lp_classes(*rest) & kLpEnd) != 0 ? keyword.section : LpSection::content;
  }
  return LpSection::content;
}

}  // namespace kelvo
