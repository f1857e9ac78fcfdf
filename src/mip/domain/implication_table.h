// What fixing a binary column says about the bounds of other columns.
//
// An implication  literal true => bound b at least as tight as value  is kept with its literal, for
// propagation. With the global bound of b where the literal is false it is also a variable bound:
// for a lower bound  x >= a y + c,  for an upper bound  x <= a y + c,  kept with x for the cuts
// that substitute such bounds. Consequences on binary columns are edges of the clique table, not
// here.
#pragma once

#include <unordered_map>

#include "mip/domain/bound_literal.h"
#include "mip/form/mip_problem.h"

namespace kelvo {

struct Implication {
  int bound;
  double value;
};

/// x >= coefficient y + constant (a variable lower bound), or <= (upper), y binary.
struct VariableBound {
  int binary;
  double coefficient;
  double constant;
};

class ImplicationTable {
 public:
  explicit ImplicationTable(const MipProblem& mip);

  /// The literal implies that the bound is at least as tight as `value`. `otherwise` is the global
  /// bound, finite or not. A weaker implication that is there is replaced, a tighter one stays.
  void add(int literal, int bound, double value, double otherwise);

  /// Implications of a literal; `literal` may be any bound, without any for a non-binary column.
  const Vector<Implication>& implied_by(int literal) const { return implied_by_[literal]; }
  /// The variable bounds known for a bound of a column, with finite coefficients.
  const Vector<VariableBound>& variable_bounds(int bound) const { return variable_bounds_[bound]; }

  int size() const { return size_; }

 private:
  using Key = std::uint64_t;
  static Key key(int literal, int bound) {
    return (static_cast<Key>(static_cast<unsigned>(literal)) << 32) | static_cast<unsigned>(bound);
  }
  void note_variable_bound(int column, int bound, double at_zero, double at_one);
  double implied(int literal, int bound, double otherwise) const;

  Vector<Vector<Implication>> implied_by_;         // [2 num_cols] by literal
  Vector<Vector<VariableBound>> variable_bounds_;  // [2 num_cols] by bound
  // Where an implication is in the list of its literal.
  std::unordered_map<Key, int, std::hash<Key>, std::equal_to<Key>,
                     Allocator<std::pair<const Key, int>>>
      place_;
  int size_ = 0;
};

}  // namespace kelvo
