// How often each bound has been part of a conflict lately; for branching.
//
// A conflict adds to the bounds that it was resolved over, and what it adds grows from conflict to
// conflict, so that old ones fade: variable state independent decaying sums, of Moskewicz et al.
// (2001), Chaff, applied to bounds.
#pragma once

#include "base/containers.h"
#include "mip/domain/bound_literal.h"

namespace kelvo {

class ConflictScores {
 public:
  explicit ConflictScores(int num_vars) : score_(2 * static_cast<std::size_t>(num_vars), 0.0) {}

  void bump(int bound) {
    score_[bound] += increment_;
    if (score_[bound] > kLargest) rescale();
  }
  /// After each conflict.
  void decay() { increment_ *= 1.0 / kDecay; }

  /// In units of the newest conflict.
  double score(int bound) const { return score_[bound] / increment_; }
  double of_variable(int v) const { return score(lower_of(v)) + score(upper_of(v)); }

 private:
  static constexpr double kDecay = 0.95;
  static constexpr double kLargest = 1e100;
  void rescale() {
    for (double& score : score_) score /= kLargest;
    increment_ /= kLargest;
  }

  Vector<double> score_;  // [2 num_vars]
  double increment_ = 1.0;
};

}  // namespace kelvo
