// Numbers as the text writers print them: decimal digits, plain while the decimal point stays near
// them, else with the shortest exponent; never a sign, never a superfluous zero.
#pragma once

namespace kelvo {

/// Room for any formatted number and its terminating zero.
inline constexpr int kNumberText = 32;

/// Writes |x| with at most 15 significant digits, plain for 1e-6 <= |x| < 1e15 (and 0), else with
/// "e" and a signed exponent. Returns the length; false in `finite` (then "?" is written) for
/// infinities and NaN.
int format_number(double x, char* text, bool& finite);

/// Writes x with its sign in at most 12 characters: 5 to 11 significant digits, as many as fit, and
/// "E" before an exponent. Returns the length.
int format_short_number(double x, char* text, bool& finite);

}  // namespace kelvo
