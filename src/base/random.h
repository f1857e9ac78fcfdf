// The library's pseudo-random numbers: state <- state * 1103515245 + 12345 (64-bit unsigned),
// value = ((state >> 16) & 32767) / 32768, uniform in [0, 1). Repeatable on every machine.
#pragma once

#include <cstdint>

namespace kelvo {

class Random {
 public:
  explicit Random(std::uint64_t seed = 0) : state_(seed) {}
  /// Next number in [0, 1).
  double uniform() {
    state_ = state_ * 1103515245u + 12345u;
    return static_cast<double>((state_ >> 16) & 32767u) * 3.0517578125e-5;
  }
  /// Next integer in 0..n-1; n >= 1.
  int below(int n) { return static_cast<int>(uniform() * n); }

 private:
  std::uint64_t state_;
};

}  // namespace kelvo
