#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kelvo {
namespace {

/// Powers of ten by repeated multiplication; the first 23 are exact.
constexpr int kPowers = 300;
constexpr std::array<double, kPowers> kPowerOfTen = [] {
  std::array<double, kPowers> power{};
  power[0] = 1.0;
  for (std::size_t k = 1; k < power.size(); ++k) power[k] = power[k - 1] * 10.0;
  return power;
}();

bool is_digit(char c) {
  return static_cast<unsigned char>(c - '0') < 10;
}

bool is_exponent_letter(char c, bool fortran_exponents) {
  const char lower = static_cast<char>(c | 0x20);
  return lower == 'e' || (fortran_exponents && lower == 'd');
}

/// True for eight bytes that are all digits.
bool are_digits(std::uint64_t bytes) {
  constexpr std::uint64_t kHighHalves = 0xf0f0f0f0f0f0f0f0u, kSixes = 0x0606060606060606u;
  constexpr std::uint64_t kZeros = 0x3030303030303030u;
  return (bytes & kHighHalves) == kZeros && ((bytes + kSixes) & kHighHalves) == kZeros;
}

/// The number that eight digits spell, the first in the lowest byte: neighbours are joined to
/// numbers of two digits, these to numbers of four, these to one.
std::uint64_t join_digits(std::uint64_t bytes) {
  const std::uint64_t single = bytes & 0x0f0f0f0f0f0f0f0fu;
  const std::uint64_t pairs = ((single * (10 << 8 | 1)) >> 8) & 0x00ff00ff00ff00ffu;
  const std::uint64_t fours = ((pairs * (100 << 16 | 1)) >> 16) & 0x0000ffff0000ffffu;
  return (fours * (std::uint64_t{10000} << 32 | 1)) >> 32;
}

/// Digits accumulated exactly in an integer as long as they fit a double's 53 bits, then with one
/// rounding per digit.
class Digits {
 public:
  const char* take(const char* at, const char* end) {
    for (std::uint64_t bytes = 0; end - at >= 8 && exact_ < kExactBeforeEight; at += 8) {
      std::memcpy(&bytes, at, 8);
      if (std::endian::native != std::endian::little || !are_digits(bytes)) break;
      exact_ = 100000000 * exact_ + join_digits(bytes);
    }
    for (; at != end && is_digit(*at); ++at) {
      const int digit = *at - '0';
      if (exact_ < kExactLimit) {
        exact_ = 10 * exact_ + static_cast<std::uint64_t>(digit);
      } else {
        if (!rounded_) value_ = static_cast<double>(exact_);
        rounded_ = true;
        value_ = value_ * 10.0 + digit;
      }
    }
    return at;
  }
  double value() const { return rounded_ ? value_ : static_cast<double>(exact_); }

 private:
  /// 10 * x + 9 stays below 2^53 for every x under it.
  static constexpr std::uint64_t kExactLimit = 900000000000000u;
  /// Eight digits behind a smaller number are all taken exactly.
  static constexpr std::uint64_t kExactBeforeEight = kExactLimit / 10000000 - 1;
  std::uint64_t exact_ = 0;
  double value_ = 0.0;
  bool rounded_ = false;
};

/// Reads "[sign]digits" after an exponent letter; the result is cut at 10000.
const char* take_exponent(const char* at, const char* end, int& exponent) {
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  for (; at != end && is_digit(*at); ++at) exponent = std::min(10 * exponent + (*at - '0'), 10000);
  if (negative) exponent = -exponent;
  return at;
}

}  // namespace

ParsedNumber parse_number(const char* begin, const char* end, bool fortran_exponents) {
  ParsedNumber result;
  const char* at = begin;
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) {
    if (++at == end) {
      result.value = negative ? -1.0 : 1.0;
      return result;
    }
  }
  Digits digits;
  const char* const first = at;
  at = digits.take(at, end);
  std::ptrdiff_t count = at - first;
  std::ptrdiff_t decimals = 0;
  if (at != end && *at == '.') {
    const char* const point = at++;
    at = digits.take(at, end);
    decimals = at - point - 1;
    count += decimals;
  }
  double value = digits.value();
  for (; decimals >= kPowers; decimals -= kPowers - 1) value /= kPowerOfTen[kPowers - 1];
  if (decimals > 0) value /= kPowerOfTen[static_cast<std::size_t>(decimals)];

  if (at != end && is_exponent_letter(*at, fortran_exponents)) {
    const char* const letter = at++;
    if (count == 0) {
      result.fault = NumberFault::exponent_not_started;
      result.exponent = letter;
      return result;
    }
    if (at == end || !(is_digit(*at) || *at == '+' || *at == '-')) {
      result.fault = NumberFault::exponent_not_ended;
      result.exponent = letter;
      return result;
    }
    int exponent = 0;
    at = take_exponent(at, end, exponent);
    if (exponent > kLargestExponent) {
      result.fault = NumberFault::exponent_too_large;
      result.exponent = letter;
      return result;
    }
    if (exponent < -kLargestExponent) {
      value = 0.0;
    } else if (exponent >= 0) {
      value *= kPowerOfTen[static_cast<std::size_t>(exponent)];
    } else {
      value /= kPowerOfTen[static_cast<std::size_t>(-exponent)];
    }
  }
  if (at != end || count == 0) {
    result.fault = NumberFault::trailing_characters;
  } else if (!std::isfinite(value)) {
    result.fault = NumberFault::exponent_too_large;
    result.exponent = begin;
  }
  result.value = negative ? -value : value;
  return result;
}

}  // namespace kelvo
