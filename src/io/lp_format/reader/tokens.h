// Names and numbers of the LP format, cut from a line.
//
// A number is the longest run of numeric characters, ended before a sign that does not directly
// follow an exponent letter; base/number_text.h says how its value is formed. A name runs up to
// the next blank or delimiter, and at most 255 characters of it count.
#pragma once

#include <string_view>

#include "base/status.h"
#include "io/lp_format/lp_characters.h"
#include "io/lp_format/reader/diagnostics.h"

namespace kelvo {

/// Longest name, in characters.
inline constexpr int kLpNameLength = 255;

/// Reads the unsigned number at `text`, which starts with a numeric character, and moves `text`
/// behind it.
Status read_lp_number(const char*& text, LpDiagnostics& diagnostics, double& value);

/// Reads the name at `text` and moves `text` behind it. The name may be no valid identifier.
inline std::string_view read_lp_name(const char*& text, LpDiagnostics& diagnostics) {
  const char* const start = text;
  while ((lp_classes(*text) & (kLpDelimiter | kLpBlank | kLpEnd)) == 0) ++text;
  const std::string_view name(start, text - start);
  if (name.size() <= kLpNameLength) return name;
  diagnostics.warn_truncated(name.substr(0, kLpNameLength));
  return name.substr(0, kLpNameLength);
}

/// True for a text that may be a name: it begins with a start character and does not read as an
/// exponent, which "e" alone and "e" followed by a digit do, in either case.
inline bool is_lp_identifier(std::string_view name) {
  if (name.empty()) return false;
  const unsigned first = lp_classes(name[0]);
  if ((first & kLpStart) == 0) return false;
  if ((first & kLpExponent) == 0) return true;
  return name.size() > 1 && (lp_classes(name[1]) & kLpDigit) == 0;
}

}  // namespace kelvo
