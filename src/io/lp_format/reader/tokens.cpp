#include "io/lp_format/reader/tokens.h"

#include "base/error_code.h"
#include "base/number_text.h"

namespace kelvo {
namespace {

Status number_error(const ParsedNumber& number, std::string_view token,
                    LpDiagnostics& diagnostics) {
  std::string_view exponent = token;
  if (number.exponent != nullptr) exponent = token.substr(number.exponent - token.data());
  switch (number.fault) {
    case NumberFault::exponent_not_started:
      return diagnostics.error_exponent(exponent, "started");
    case NumberFault::exponent_not_ended:
      return diagnostics.error_exponent(exponent, "ended");
    case NumberFault::exponent_too_large:
      return diagnostics.error_word(error::kExponentOutOfRange, exponent);
    case NumberFault::none:
    case NumberFault::trailing_characters:
      break;
  }
  return diagnostics.error_word(error::kNotANumber, token);
}

}  // namespace

Status read_lp_number(const char*& text, LpDiagnostics& diagnostics, double& value) {
  const char* const start = text;
  unsigned before = 0;
  for (unsigned classes; ((classes = lp_classes(*text)) & kLpNumeric) != 0; ++text) {
    if ((classes & kLpSign) != 0 && (before & kLpExponent) == 0) break;
    before = classes;
  }
  const std::string_view token(start, text - start);
  const ParsedNumber number = parse_number(start, text, false);
  value = number.value;
  if (number.fault != NumberFault::none) return number_error(number, token, diagnostics);
  // "3e+x" is no coefficient 3 of x: only an exponent can have led to a sign at the end.
  if ((lp_classes(token.back()) & kLpSign) != 0) {
    return diagnostics.error_exponent(token.substr(token.size() - 2), "ended");
  }
  return {};
}

}  // namespace kelvo
