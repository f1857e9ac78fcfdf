// Names for bounds, and statements about them.
//
// A bound is numbered 2v (lower) or 2v+1 (upper) of variable v, column or logical. A bound literal
// says that a bound is at least as tight as a value: x_v >= value or x_v <= value.
//
// For a binary column j the number doubles as a literal of logic: bound 2j at its tightest, lower
// = 1, is the literal "x_j = 1"; bound 2j+1 at its tightest, upper = 0, is its complement "x_j =
// 0".
#pragma once

namespace kelvo {

inline constexpr int lower_of(int variable) {
  return 2 * variable;
}
inline constexpr int upper_of(int variable) {
  return 2 * variable + 1;
}
inline constexpr int variable_of(int bound) {
  return bound >> 1;
}
inline constexpr bool is_upper(int bound) {
  return (bound & 1) != 0;
}
/// The other bound of the same variable; of a literal its complement.
inline constexpr int opposite(int bound) {
  return bound ^ 1;
}

/// The literal x_j = value of a binary column.
inline constexpr int literal_of(int column, bool value) {
  return 2 * column + (value ? 0 : 1);
}
/// The value that bound `literal` has when the literal is true; also the value of its column then.
inline constexpr double literal_value(int literal) {
  return is_upper(literal) ? 0.0 : 1.0;
}

/// Whether a bound at `a` excludes more than one at `b`.
inline constexpr bool is_tighter(int bound, double a, double b) {
  return is_upper(bound) ? a < b : a > b;
}
/// Whether a bound at `a` excludes at least what one at `b` does.
inline constexpr bool is_as_tight(int bound, double a, double b) {
  return is_upper(bound) ? a <= b : a >= b;
}

struct BoundLiteral {
  int bound;
  double value;
};

/// Why a bound changed. `index` says which one of its kind; what it refers to is enough to explain
/// the change later (see explainer.h).
enum class ReasonKind : int {
  kDecision,      // of the search; index unused
  kGlobal,        // holds everywhere; index unused
  kUnexplained,   // holds here, for reasons that only the caller knows; index unused
  kRow,           // index: 2 row + side (0: activity <= limit, 1: activity >= limit)
  kIndicatorRow,  // the row of an indicator does not fit; index: 2 indicator + side, as above
  kIndicator,     // an indicator is active, so its row has limits; index: indicator
  kClique,        // index: the literal that is true
  kImplication,   // index: the literal that is true
  kSemi,          // index: semi-continuous column
  kSet,           // index: the bound that keeps another member away from 0
  kClause,        // index: clause
  kProof,         // reduced costs; index: proof on the domain's stack
};

struct Reason {
  ReasonKind kind;
  int index;
};

inline constexpr Reason kDecided{ReasonKind::kDecision, -1};
inline constexpr Reason kGloballyTrue{ReasonKind::kGlobal, -1};
inline constexpr Reason kWithoutExplanation{ReasonKind::kUnexplained, -1};

/// A row or one of its sides, as an index of a reason.
inline constexpr int side_index(int row, bool at_least) {
  return 2 * row + (at_least ? 1 : 0);
}

}  // namespace kelvo
