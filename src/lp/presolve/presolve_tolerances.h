// The tolerances of presolve, with their reasons.
#pragma once

#include <algorithm>
#include <cmath>

namespace kelvo::presolve_tolerance {

// Two limits that differ by no more than this share of their size are the same number computed in
// two ways. Far above rounding, far below the feasibility tolerance.
inline constexpr double kSame = 1e-9;
// A reduced cost that is zero but for rounding, relative to its terms.
inline constexpr double kZeroCost = 1e-12;
// What is left of an entry after cancellation of terms this much larger is rounding.
inline constexpr double kCancelled = 1e-11;
// Entries smaller than this are not made by substitutions: they would be taken for noise later.
inline constexpr double kSmallEntry = 1e-7;
// An entry this small does not make a row imply or transfer bounds: the bound would be this much
// less certain than the row.
inline constexpr double kSmallPivot = 1e-5;
// Bounds this large are as good as absent and are not transferred or implied.
inline constexpr double kHugeBound = 1e10;
// Parallel lines: quotients of their entries agree to this.
inline constexpr double kParallel = 1e-13;
// A bound of an integer column that misses a whole number by less is that number.
inline constexpr double kWholeBound = 1e-6;
// A unit of rounding, for error estimates.
inline constexpr double kRounding = 2.3e-16;

inline double same_slack(double value) {
  return std::isfinite(value) ? kSame * std::max(1.0, std::fabs(value)) : 0.0;
}

}  // namespace kelvo::presolve_tolerance
