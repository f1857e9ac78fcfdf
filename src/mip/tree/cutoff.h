// What a node must be able to beat: the cutoff, from the incumbent, the improvements asked for, and
// the granularity of the objective.
#pragma once

#include "mip/form/mip_problem.h"
#include "mip/form/mip_settings.h"

namespace kelvo {

/// g > 0 such that every integer-feasible point has an objective of offset + a multiple of g; 0
/// when there is none that is worth anything.
double objective_granularity(const MipProblem& mip);

class Cutoff {
 public:
  Cutoff(const MipProblem& mip, const SearchSettings& settings);

  /// Nodes whose bound is not below this are dropped; kNoValue or more: none.
  double value() const { return value_; }
  double granularity() const { return granularity_; }
  /// A new incumbent. The cutoff never rises.
  void improve(double objective);
  /// The least objective that an integer-feasible point with this bound can have.
  double rounded_bound(double bound) const;

 private:
  double lowered_to_grid(double cutoff) const;

  const double offset_;
  const double granularity_;
  const double absolute_improvement_, relative_improvement_;
  const double integrality_;
  double value_ = kNoValue;
};

}  // namespace kelvo
