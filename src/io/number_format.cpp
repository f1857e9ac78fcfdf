#include "io/number_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "base/number_text.h"

namespace kelvo {
namespace {

constexpr int kLongDigits = 15;
constexpr double kExactIntegers = 1e15;

/// A positive value 0.d1 d2 ... dn * 10^point without trailing zeros; zero has no digits.
struct Decimal {
  char digits[24];
  int count = 0;
  int point = 0;
};

/// Digits of a number in 15 of them by one multiplication; false where that cannot decide the
/// rounding. Powers up to 10^27 are exact in 64 bits of mantissa, so the product is off by less
/// than 2^-14 when it has 15 digits before the point.
bool decompose_quickly(double magnitude, Decimal& result) {
  constexpr int kPowers = 28;
  constexpr double kTooNearToHalf = 1.0 / 4096;
  constexpr std::uint64_t kLeast = 100000000000000u, kMost = 1000000000000000u;  // of 15 digits
  static_assert(std::numeric_limits<long double>::digits >= 64);
  static constexpr std::array<long double, kPowers> kPowerOfTen = [] {
    std::array<long double, kPowers> power{};
    power[0] = 1.0L;
    for (std::size_t k = 1; k < kPowers; ++k) power[k] = power[k - 1] * 10.0L;
    return power;
  }();
  if (!(magnitude >= 1e-12 && magnitude < 1e15)) return false;
  // A little below the decimal logarithm, by the binary one.
  int exponent;
  std::frexp(magnitude, &exponent);
  constexpr int kLog2Times1024 = 308;
  int point = ((exponent - 1) * kLog2Times1024 >> 10) + 1;
  long double scaled = magnitude * kPowerOfTen[static_cast<std::size_t>(kLongDigits - point)];
  if (scaled >= static_cast<long double>(kMost)) {
    ++point;
    scaled = magnitude * kPowerOfTen[static_cast<std::size_t>(kLongDigits - point)];
  }
  auto digits = static_cast<std::uint64_t>(scaled);
  const double rest = static_cast<double>(scaled - static_cast<long double>(digits));
  if (std::fabs(rest - 0.5) < kTooNearToHalf || digits < kLeast || digits >= kMost) return false;
  if (rest > 0.5) ++digits;
  if (digits == kMost) return false;
  result.point = point;
  result.count = kLongDigits;
  std::to_chars(result.digits, result.digits + kLongDigits, digits);
  while (result.digits[result.count - 1] == '0') --result.count;
  return true;
}

Decimal decompose(double magnitude, int significant) {
  Decimal result;
  if (magnitude == 0.0) return result;
  char text[48];
  const auto end = std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific,
                                 significant - 1)
                       .ptr;
  const char* c = text;
  for (; c < end && *c != 'e'; ++c) {
    if (*c != '.') result.digits[result.count++] = *c;
  }
  while (result.count > 0 && result.digits[result.count - 1] == '0') --result.count;
  int exponent = 0;
  const bool negative = c + 1 < end && c[1] == '-';
  for (c += 2; c < end; ++c) exponent = 10 * exponent + (*c - '0');
  result.point = (negative ? -exponent : exponent) + 1;
  return result;
}

char* put_zeros(char* out, int count) {
  std::memset(out, '0', static_cast<std::size_t>(count));
  return out + count;
}

char* put_plain(const Decimal& x, char* out) {
  if (x.point <= 0) {
    *out++ = '0';
    if (x.count == 0) return out;
    *out++ = '.';
    out = put_zeros(out, -x.point);
    return std::copy(x.digits, x.digits + x.count, out);
  }
  const int whole = std::min(x.point, x.count);
  out = std::copy(x.digits, x.digits + whole, out);
  out = put_zeros(out, x.point - whole);
  if (x.count > whole) {
    *out++ = '.';
    out = std::copy(x.digits + whole, x.digits + x.count, out);
  }
  return out;
}

char* put_exponential(const Decimal& x, char letter, char* out, WrittenNumbers& numbers) {
  *out++ = x.digits[0];
  if (x.count > 1) {
    *out++ = '.';
    out = std::copy(x.digits + 1, x.digits + x.count, out);
  }
  const int exponent = x.point - 1;
  if (std::abs(exponent) > kLargestExponent) ++numbers.unreadable;
  *out++ = letter;
  *out++ = exponent < 0 ? '-' : '+';
  return std::to_chars(out, out + 4, std::abs(exponent)).ptr;
}

int unknown(char* text, WrittenNumbers& numbers) {
  numbers.finite = false;
  std::strcpy(text, "?");
  return 1;
}

/// Significant digits of a short number, so that twelve characters hold it.
int short_digits(double x) {
  if ((x > -1e-99 && x < 0.0) || x <= -1e+100) return 5;
  if (x >= 1e+100 || (x > -1e-9 && x < 1e-99) || x <= -1e+10) return 6;
  if (x >= 1e+11 || (x > -0.01 && x < 1e-9)) return 7;
  if ((x >= 0.01 && x < 0.1) || (x > -1.0 && x <= -0.1)) return 9;
  if ((x >= 0.1 && x < 1.0) || (x <= -1.0)) return 10;
  return x >= 1.0 ? 11 : 8;
}

}  // namespace

int format_number(double x, char* text, WrittenNumbers& numbers) {
  constexpr int kLeastPoint = -5;
  const double magnitude = std::fabs(x);
  if (!std::isfinite(magnitude)) return unknown(text, numbers);
  char* end;
  if (magnitude < kExactIntegers && magnitude == std::floor(magnitude)) {
    end = std::to_chars(text, text + kNumberText, static_cast<long>(magnitude)).ptr;
  } else {
    Decimal decimal;
    if (!decompose_quickly(magnitude, decimal)) decimal = decompose(magnitude, kLongDigits);
    const bool plain = decimal.point >= kLeastPoint && decimal.point <= kLongDigits;
    end = plain ? put_plain(decimal, text) : put_exponential(decimal, 'e', text, numbers);
  }
  *end = '\0';
  return static_cast<int>(end - text);
}

int format_general(double x, char* text) {
  constexpr int kLeastPoint = -3;
  if (!std::isfinite(x)) {
    return static_cast<int>(std::to_chars(text, text + kNumberText, x).ptr - text);
  }
  Decimal decimal;
  const double magnitude = std::fabs(x);
  if (!decompose_quickly(magnitude, decimal)) decimal = decompose(magnitude, kLongDigits);
  char* end = text;
  if (x < 0.0) *end++ = '-';
  if (decimal.count == 0 || (decimal.point >= kLeastPoint && decimal.point <= kLongDigits)) {
    end = put_plain(decimal, end);
  } else {
    WrittenNumbers not_counted;
    const bool one_digit = std::abs(decimal.point - 1) < 10;
    end = put_exponential(decimal, 'e', end, not_counted);
    if (one_digit) {
      end[0] = end[-1];
      end[-1] = '0';
      ++end;
    }
  }
  *end = '\0';
  return static_cast<int>(end - text);
}

int format_short_number(double x, char* text, WrittenNumbers& numbers) {
  constexpr int kLeastPoint = -2;
  if (!std::isfinite(x)) return unknown(text, numbers);
  const Decimal decimal = decompose(std::fabs(x), short_digits(x));
  const int largest_point = x < 0.0 ? 10 : 11;
  char* end = text;
  if (x < 0.0) *end++ = '-';
  const bool plain = decimal.point >= kLeastPoint && decimal.point <= largest_point;
  end = plain ? put_plain(decimal, end) : put_exponential(decimal, 'E', end, numbers);
  *end = '\0';
  return static_cast<int>(end - text);
}

}  // namespace kelvo
