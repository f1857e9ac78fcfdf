// Pricing weights that outlive a run.
//
// dual[p] of the dual pricing measures the row of the inverse at position p, rho' = e_p'B^-1, by
// |rho|^2, or, while in_full_space(), by |rho'[A I]|^2 (dual/dual_weights.cpp). It belongs to the
// basis while valid(), exactly or by updates. The primal method keeps its weights itself; here are
// those that a caller has given for its next run.
#pragma once

#include <algorithm>

#include "base/containers.h"

namespace kelvo {

class EdgeWeights {
 public:
  explicit EdgeWeights(int m) : dual(m, 1.0) {}

  Vector<double> dual;          // [m]
  Vector<double> given_primal;  // [N] or empty

  bool valid() const { return source_ != Source::none; }
  /// Valid only because the basis is that of the logicals.
  bool of_slack_basis() const { return source_ == Source::slack_basis; }
  bool in_full_space() const { return full_; }

  /// The basis is another one.
  void invalidate() { source_ = Source::none; }
  /// The basis is that of the logicals, whose rows have norm 1.
  void set_slack() {
    std::fill(dual.begin(), dual.end(), 1.0);
    source_ = Source::slack_basis;
    full_ = false;
  }
  /// Other weights are in dual[] now.
  void set_valid(bool full) {
    source_ = Source::measured;
    full_ = full;
  }
  /// After rows and columns have joined or left: norms in the full space are others then, those of
  /// rows of the inverse are not.
  void follow_shape() {
    if (full_) invalidate();
  }
  /// A row has joined with its logical basic.
  void set_measured() {
    if (valid()) source_ = Source::measured;
  }

  /// What a trial or a saved basis puts back beside dual[].
  struct Mark {
    bool valid = false;
    bool slack = false;
    bool full = false;
  };
  Mark mark() const { return {valid(), of_slack_basis(), full_}; }
  void return_to(const Mark& mark) noexcept {
    source_ = !mark.valid ? Source::none : mark.slack ? Source::slack_basis : Source::measured;
    full_ = mark.full;
  }

 private:
  enum class Source { none, slack_basis, measured };

  Source source_ = Source::none;
  bool full_ = false;
};

}  // namespace kelvo
