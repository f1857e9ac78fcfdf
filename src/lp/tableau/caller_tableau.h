// The simplex tableau of a factored working LP in the caller's own terms: unscaled, and with the
// slacks as the interface states them.
//
// Variables are the columns 0..n-1 and the slacks n..n+m-1 of the rows in order. A slack has the
// column  sign * e_i  of its row: +1 for 'L', 'E' and 'G', where slack = rhs - a x, and -1 for 'R',
// where slack = a x - rhs, so that with B the matrix of the basic variables' columns
//
//     B x_B + N x_N = rhs.
//
// The working LP has the rows divided by r_i, its variable v is  v * f_v  (lp/form/scaling.h) and
// its logical is +e_i whatever the row. With F = diag(sign * f) over the basic variables and R =
// diag(r) its basis matrix is  R^-1 B F^-1,  therefore
//
//     B^-1 a = F^-1 B'^-1 R^-1 a      and      y'B^-1 = y'F^-1 B'^-1 R^-1.
//
// Solves leave their result in work vectors of the simplex that the working LP owns; a result is
// valid until the next solve. Nothing here allocates, and the basis is never changed.
#pragma once

#include "base/work_vector.h"
#include "lp/simplex/simplex_tableau.h"
#include "lp/solve/working_lp.h"
#include "prob/model/model.h"

namespace kelvo {

/// Tableau entries below this magnitude are rounding and limit nothing.
inline constexpr double kTableauEntry = 1e-10;

class CallerTableau {
 public:
  /// The working LP must hold the factor and the values of its basis (hold_basis) for this model.
  CallerTableau(const Model& model, WorkingLp& working);

  int num_rows() const { return m_; }
  int num_cols() const { return n_; }
  int num_vars() const { return n_ + m_; }
  bool is_slack(int v) const { return v >= n_; }

  // The basis.
  int head(int position) const { return header_[position]; }
  /// The position at which a variable is basic, -1 for a nonbasic one. A loop over positions.
  int position_of(int v) const;
  /// BasisStatus in terms of the variable's own bounds, see lower() and upper().
  int status(int v) const;
  bool is_fixed(int v) const { return lower(v) == upper(v); }
  /// Whether a nonbasic variable may move up, or down, from where it stands.
  bool may_rise(int v) const { return status(v) != kAtUpper; }
  bool may_fall(int v) const { return status(v) != kAtLower; }

  // Data and values of a variable. An absent bound is an IEEE infinity.
  double lower(int v) const;
  double upper(int v) const;
  double value(int v) const;
  /// Of the minimization, whatever the sense of the model; 0 for basic variables.
  double reduced_cost(int v) const;

  // Solves. Vectors by position: B^-1 a. Vectors by row: y'B^-1.

  /// B^-1 times the column of a variable.
  const WorkVector& column(int v);
  /// B^-1 e_row.
  const WorkVector& inverse_column(int row);
  /// Row `position` of B^-1.
  const WorkVector& inverse_row(int position);
  /// Row `position` of B^-1 times the columns 0..n-1, which gets all n entries: exactly 1 and 0 for
  /// basic columns.
  void structural_row(int position, double* row);
  /// Calls use(v, entry) for the entries of row `position` of the tableau at nonbasic variables
  /// that are not fixed, columns and slacks.
  template <class Use>
  void for_each_movable(int position, Use use) {
    const WorkVector& row = tableau_.row(position);
    const double divisor = factor(head(position));
    for (int k = 0; k < row.count; ++k) {
      const int v = row.index[k];
      if (row.value[v] != 0.0) use(v, row.value[v] * factor(v) / divisor);
    }
  }
  /// x := B^-1 x, by row on entry, by position on return; and y := y'B^-1. Arrays [m].
  void ftran(double* x);
  void btran(double* y);

 private:
  double factor(int v) const { return sign(v) * scaling_.variable_factor(v, n_); }
  double sign(int v) const { return is_slack(v) && model_.row_sense[v - n_] == 'R' ? -1.0 : 1.0; }
  const WorkVector& solve_column(WorkVector& x);

  const Model& model_;
  const Scaling& scaling_;
  const LpProblem& lp_;
  const Simplex& simplex_;
  SimplexTableau tableau_;  // of the scaled LP
  const int* header_;
  const int m_;
  const int n_;
  const double* const values_;  // of all variables
};

/// Calls use(i, value) for the entries of a solve's result that are not zero.
template <class Use>
void for_each_entry(const WorkVector& x, Use use) {
  const int count = x.is_dense() ? x.size() : x.count;
  for (int k = 0; k < count; ++k) {
    const int i = x.is_dense() ? k : x.index[k];
    if (x.value[i] != 0.0) use(i, x.value[i]);
  }
}

}  // namespace kelvo
