#include "prob/data/column_types.h"

#include <cmath>

namespace kelvo {
namespace {

/// Replaces a finite bound; a bound of 0 stays as it is, sign included.
bool replace(double& bound, double rounded) {
  const bool moved = std::fabs(rounded - bound) > kIntegralBoundTolerance;
  if (rounded != bound) bound = rounded;
  return moved;
}

bool is_finite_bound(double bound) {
  return std::fabs(bound) < kInfiniteBound;
}

}  // namespace

bool round_integer_bounds(Model& model) noexcept {
  bool moved = false;
  for (std::size_t j = 0; j < model.column_type.size(); ++j) {
    if (!is_integer_type(model.column_type[j])) continue;
    double& lower = model.lower[j];
    double& upper = model.upper[j];
    if (is_finite_bound(lower)) {
      moved |= replace(lower, std::ceil(lower - kIntegralBoundTolerance) + 0.0);
    }
    if (is_finite_bound(upper)) {
      moved |= replace(upper, std::floor(upper + kIntegralBoundTolerance) + 0.0);
    }
  }
  return moved;
}

}  // namespace kelvo
