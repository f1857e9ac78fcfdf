// The tolerances of domain propagation.
//
// The rule behind all of them: a point that violates rows and bounds by no more than the
// feasibility tolerance of the solver must survive. So every derived bound starts from a slack that
// is enlarged by the tolerance of its row and by a proven limit of the rounding errors of the
// activity.
#pragma once

#include <cmath>
#include <limits>

namespace kelvo {

/// Unit roundoff, for error bounds: the result of one operation is off by at most this share.
inline constexpr double kRoundoff = std::numeric_limits<double>::epsilon();

/// A row may be missed by this much before it counts as violated: the feasibility tolerance of the
/// final check of a solution. Rounding errors of large activities come on top, row by row.
inline constexpr double kRowSlack = 1e-6;

/// A bound that was computed for an integer column may miss a whole number by this much and still
/// mean it. The row's slack is in the bound already, so this covers the division alone.
inline constexpr double kRoundingSlack = 1e-9;

/// Values given to integer columns from outside (branching points, fixings) are whole up to this.
inline constexpr double kWholeTolerance = 1e-6;

/// Bounds derived for continuous columns are moved outwards by this, absolute and relative, so that
/// a node LP which is solved to its tolerances does not become infeasible because of them.
inline constexpr double kOutward = 1e-6;
inline constexpr double kOutwardRelative = 1e-9;

/// Derived bounds larger than this are dropped: they help nobody, and the activities of the rows
/// they enter lose all their digits. Integer columns may go further, as rounding keeps them exact.
inline constexpr double kLargestContinuousBound = 1e8;
inline constexpr double kLargestIntegerBound = 1e12;

/// A derived bound of a continuous column has to take this share off its interval (or off its own
/// magnitude, if that is less), so that no sequence of ever smaller steps arises ...
inline constexpr double kSmallestGain = 0.05;
/// ... where intervals shorter than this count as this long.
inline constexpr double kSmallestRange = 1e-3;

/// Integer bounds move by at least 1, but a pair of rows can move one a step at a time through
/// 10^9 values. After this many changes on the current path the share above is required of them.
inline constexpr int kFreeIntegerSteps = 10;

/// A semi-continuous column or a member of a set whose bounds exclude 0 by this much is not 0.
inline constexpr double kNonzero = 1e-6;

/// By how much a rounded bound may be off because of its own magnitude.
inline double rounding_slack(double value) {
  return kRoundingSlack + 4.0 * kRoundoff * std::abs(value);
}

/// By how much a bound of a continuous column is moved outwards.
inline double outward_shift(double value) {
  return kOutward + kOutwardRelative * std::abs(value);
}

}  // namespace kelvo
