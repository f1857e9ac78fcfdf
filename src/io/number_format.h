// Numbers as the text writers print them: decimal digits, plain while the decimal point stays near
// them, else with the shortest exponent; never a sign, never a superfluous zero.
#pragma once

namespace kelvo {

/// Room for any formatted number and its terminating zero.
inline constexpr int kNumberText = 32;

/// What the numbers written so far were like.
struct WrittenNumbers {
  bool finite = true;  // none was infinite or no number
  int unreadable = 0;  // so many have an exponent that the readers refuse or take for 0
};

/// Writes |x| with at most 15 significant digits, plain for 1e-6 <= |x| < 1e15 (and 0), else with
/// "e" and a signed exponent; "?" for infinities and NaN. Returns the length.
int format_number(double x, char* text, WrittenNumbers& numbers);

/// Writes x as printf's "%.15g" does in the C locale, but -0 as 0. Returns the length.
int format_general(double x, char* text);

/// Writes x with its sign in at most 12 characters: 5 to 11 significant digits, as many as fit, and
/// "E" before an exponent. Returns the length.
int format_short_number(double x, char* text, WrittenNumbers& numbers);

}  // namespace kelvo
