// Explains changes of a domain by earlier bounds.
//
// An explanation of a literal is a set of literals that held before it and imply it, by the rule
// that its reason names. It is found when needed, not when the bound changes: for a row, the bounds
// of its other columns at that place of the trail. They need not be as tight as they were: with
//     S = the smallest activity of the other columns,
// the row  S + a_j x_j <= U  implies a literal of x_j as long as S exceeds a threshold. What S has
// above it is spent on bounds: those whose return to the global bound costs least are left out
// first, then one is relaxed as far as the rest allows.
//
// Explanations are derivations of their own, with the same tolerances as propagation and sums in
// extended precision: they are valid whatever rounding errors the activities had.
#pragma once

#include "mip/domain/domain.h"

namespace kelvo {

class Explainer {
 public:
  explicit Explainer(const Domain& domain) : domain_(domain) {}

  /// Appends literals that held before `position` and imply `literal`, for `reason`. False: there
  /// is no explanation, as for decisions.
  bool explain(const BoundLiteral& literal, Reason reason, int position,
               Vector<BoundLiteral>& explanation);
  /// Appends literals that cannot hold all at once, for the domain's conflict.
  bool explain_conflict(Vector<BoundLiteral>& explanation);
  /// Appends literals under which the proof cannot be satisfied. False: it can.
  bool explain_violation(const LinearProof& proof, Vector<BoundLiteral>& explanation);

  double work() const { return work_; }

 private:
  /// sum of sign * value x (+ sign * logical) <= rhs
  struct Inequality {
    RowView entries;
    double sign;
    int logical;  // -1: none
    double rhs;
  };
  struct Term {
    int bound;
    double coefficient;
    double value;  // of the bound, where it is
    double cost;   // what the activity loses when the bound returns to its global value
  };

  Inequality side_of_row(int row, bool at_least) const;
  Inequality side_of_proof(const LinearProof& proof) const;
  bool explain_row(const Inequality& row, const BoundLiteral* literal, int position,
                   Vector<BoundLiteral>& explanation);
  bool add_term(int variable, double coefficient, int position);
  double threshold(const Inequality& row, const BoundLiteral& literal, double coefficient) const;
  void relax(long double slack, Vector<BoundLiteral>& explanation);
  void explain_semi(int semi, int position, Vector<BoundLiteral>& explanation) const;
  void explain_clause(const BoundLiteral& literal, int clause,
                      Vector<BoundLiteral>& explanation) const;

  const Domain& domain_;
  Vector<Term> terms_;
  long double activity_ = 0.0L;
  double size_ = 0.0;  // sum of the magnitudes of the activity's terms
  double work_ = 0.0;
};

}  // namespace kelvo
