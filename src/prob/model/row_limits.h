// The limits that a row's sense, right-hand side and range put on its activity.
#pragma once

#include <limits>

#include "prob/model/model.h"

namespace kelvo {

struct RowLimits {
  double lower;
  double upper;  // an absent limit is an IEEE infinity
};

/// An IEEE infinity for a value the model counts as infinite, else the value itself.
inline double finite_or_infinite(double value) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  return value >= kInfiniteBound ? kInfinity : value <= -kInfiniteBound ? -kInfinity : value;
}

inline RowLimits row_limits(const Model& model, int row) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double rhs = finite_or_infinite(model.rhs[row]);
  switch (model.row_sense[row]) {
    case 'L':
      return {-kInfinity, rhs};
    case 'G':
      return {rhs, kInfinity};
    case 'R': {
      const double range = model.range.empty() ? 0.0 : model.range[row];
      const double other = finite_or_infinite(model.rhs[row] + range);
      return range >= 0.0 ? RowLimits{rhs, other} : RowLimits{other, rhs};
    }
    default:
      return {rhs, rhs};
  }
}

}  // namespace kelvo
