// The tolerances that both simplex methods share. Those a user may set are in SimplexSettings.
#pragma once

namespace kelvo::simplex_tolerance {

// Entries of a pivot row or column of this magnitude or less never take part in a ratio test.
inline constexpr double kRatioEntry = 1e-13;
// A pivot row whose largest movable entry is below this has no acceptable pivot at all.
inline constexpr double kNoPivot = 1e-9;
// Pivots of smaller magnitude are not made.
inline constexpr double kPivot = 1e-8;
// Row and column computation of a pivot may differ by this share of it; a larger difference asks
// for a fresh factorization when there are updates.
inline constexpr double kPivotAgreement = 1e-7;
// With a fresh factorization a pivot may be used up to this disagreement; beyond, it is banned.
inline constexpr double kPivotFailure = 1e-3;

}  // namespace kelvo::simplex_tolerance
