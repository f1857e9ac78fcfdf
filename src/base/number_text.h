// Numbers in model files.
//
// A number is an optional sign, digits with at most one point among them, and an optional exponent:
// a letter, an optional sign, digits. A lone "+" is 1 and a lone "-" is -1.
//
// The value is formed by plain arithmetic, the same on every machine: all digits are accumulated as
// value * 10 + digit, then divided by 10^(digits after the point), then multiplied or divided by
// 10^exponent, each step rounded to double. With at most 15 digits and no exponent there is a
// single rounding, so the value is the double nearest to the text; longer texts may be off in the
// last bits. An exponent below -37 gives 0.
#pragma once

namespace kelvo {

enum class NumberFault {
  none,
  trailing_characters,   // something is left after the number, or there is no digit
  exponent_not_started,  // an exponent letter without a digit before it
  exponent_not_ended,    // an exponent letter followed by neither digit nor sign
  exponent_too_large,    // above 37, or the value is not finite
};

struct ParsedNumber {
  double value = 0.0;
  NumberFault fault = NumberFault::none;
  const char* exponent = nullptr;  // the exponent letter, when a fault lies in the exponent
};

/// Exponents above this are refused, those below its negative make the number 0.
inline constexpr int kLargestExponent = 37;

/// Reads the number begin..end, which must be the whole text. `fortran_exponents` accepts the
/// letters d and D beside e and E.
ParsedNumber parse_number(const char* begin, const char* end, bool fortran_exponents);

}  // namespace kelvo
