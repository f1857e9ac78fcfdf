// A sum of products that is right to the last digit where the factors are integers.
//
// Products of integers below 2^53 are added up in 128 bits. Other products, and sums that leave
// that range, go into a pair of doubles without rounding error of their own (Dekker, "A floating-
// point technique for extending the available precision", Numerische Mathematik 18 (1971)).
#pragma once

#include <cmath>
#include <cstdint>

namespace kelvo {

class ProductSum {
 public:
  void add(double a, double b) {
    if (is_integer(a) && is_integer(b)) {
      const Wide product =
          static_cast<Wide>(static_cast<std::int64_t>(a)) * static_cast<std::int64_t>(b);
      Wide sum;
      if (!__builtin_add_overflow(whole_, product, &sum)) {
        whole_ = sum;
        return;
      }
    }
    const double product = a * b;
    add_double(product);
    if (std::isfinite(product)) add_double(std::fma(a, b, -product));
  }

  /// The sum, rounded once when everything was integral.
  double value() const {
    if (!std::isfinite(high_)) return high_;
    const double rounded = static_cast<double>(whole_);
    if (high_ == 0.0 && low_ == 0.0) return rounded;
    const double rest = static_cast<double>(whole_ - static_cast<Wide>(rounded));
    return (rounded + high_) + (low_ + rest + (rounded - (rounded + high_) + high_));
  }

 private:
  __extension__ using Wide = __int128;

  static bool is_integer(double x) {
    constexpr double kExact = 9007199254740992.0;  // 2^53
    return x >= -kExact && x <= kExact && static_cast<double>(static_cast<std::int64_t>(x)) == x;
  }
  void add_double(double x) {
    const double sum = high_ + x;
    const double part = sum - high_;
    low_ += (high_ - (sum - part)) + (x - part);
    high_ = sum;
  }

  Wide whole_ = 0;
  double high_ = 0.0;
  double low_ = 0.0;
};

}  // namespace kelvo
