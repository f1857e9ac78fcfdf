// Sensitivity of an optimal basis: how far one number of a linear program may move, all others
// kept, while the basis stays optimal (primal and dual feasible).
//
// In terms of the tableau of lp/tableau/caller_tableau.h, for the minimization:
//
//  - the cost of a nonbasic variable changes its reduced cost alone; the cost of the variable basic
//    at position p moves the reduced costs along row p of the tableau, d_j(t) = d_j - t alpha_pj;
//  - the right-hand side of row i moves the basic variables along column i of the inverse,
//    x_B(t) = x_B + t B^-1 e_i; a ranged row moves as a whole;
//  - the bound at which a nonbasic variable j stands moves them along column j of the tableau,
//    x_B(t) = x_B - t B^-1 a_j; every other bound only must not pass the value of its column.
//
// The first reduced cost to change its sign, or the first basic variable to reach a bound, is the
// limit. A reduced cost of a fixed variable may have any sign and limits nothing. In a degenerate
// basis limits of zero are what they say: beyond them another basis is needed, though the solution
// may be the same. (S. I. Gass, "Linear Programming", the chapter on parametric programming.)
#pragma once

#include "lp/tableau/caller_tableau.h"

namespace kelvo {

struct Range {
  double low;
  double high;
};

class Sensitivity {
 public:
  /// The working LP holds the factor of an optimal basis of the model (hold_basis).
  Sensitivity(const Model& model, WorkingLp& working) : model_(model), tableau_(model, working) {}

  /// Fills ranges of the objective coefficients of columns begin..end. The two ways to do so agree;
  /// the one that needs fewer solves is taken.
  void objective(int begin, int end, double* low, double* high);
  /// Row by row: one transposed solve for each basic column of the range.
  void objective_by_rows(int begin, int end, double* low, double* high);
  /// All rows at once: one solve for each nonbasic variable that may move. Throws std::bad_alloc
  /// before anything is written.
  void objective_by_columns(int begin, int end, double* low, double* high);

  Range right_hand_side(int row);

  struct BoundRanges {
    Range lower;
    Range upper;
  };
  BoundRanges bounds(int column);

 private:
  /// How far a number may move down and up from where it is.
  struct Moves {
    double down = kInf;
    double up = kInf;
  };
  Moves nonbasic_cost_moves(int column) const;
  void limit_cost(int v, double alpha, Moves& moves) const;
  void limit_values(const WorkVector& rates, double sign, Moves& moves) const;
  Range cost_range(int column, const Moves& moves) const;
  bool stands_at_upper(int column) const;

  const Model& model_;
  CallerTableau tableau_;
};

}  // namespace kelvo
