// Scaling of a linear program by powers of two, so that it changes no digit of any number.
//
// With row factors r_i and column factors c_j the scaled program has
//
//     a_ij / (r_i c_j),   cost_j / c_j,   bounds_j * c_j,   row limits / r_i.
//
// The logical of row i is scaled inversely to the row, so that its column stays the unit column:
// every variable v has one factor f_v, c_j for column j and 1 / r_i for the logical of row i, and
//
//     scaled value = value * f_v,         scaled reduced cost = reduced cost / f_v,
//     scaled dual  = dual of row i * r_i, scaled direction    = direction * f_v.
//
// The factors make the largest entry of every row, then of every column, close to 1
// (equilibration); the aggressive method first makes passes with the geometric mean of the largest
// and the smallest entry of each line (after A. R. Curtis and J. K. Reid, "On the automatic scaling
// of matrices for Gaussian elimination", 1972, in its simplest form).
#pragma once

#include "base/containers.h"
#include "base/messages.h"
#include "lp/form/lp_problem.h"

namespace kelvo {

enum class ScalingMethod { none = -1, equilibrate = 0, aggressive = 1 };

enum class ScalingState { not_scaled = -1, unnecessary = -2, scaled = 0 };

struct Scaling {
  ScalingState state = ScalingState::not_scaled;
  Vector<double> row;  // [num_rows] r_i; both arrays are empty unless state is `scaled`
  Vector<double> col;  // [num_cols] c_j

  bool active() const { return state == ScalingState::scaled; }
  double row_factor(int i) const { return active() ? row[i] : 1.0; }
  /// f_v of variable v in a program with `num_cols` structural columns.
  double variable_factor(int v, int num_cols) const {
    if (!active()) return 1.0;
    return v < num_cols ? col[v] : 1.0 / row[v - num_cols];
  }
};

/// Scales the program in place, unless it is scaled already, the method is `none` or its entries
/// are close to 1 as they stand. Short of memory for the factors it writes a warning and leaves
/// the program as it was.
void scale_problem(LpProblem& lp, ScalingMethod method, Scaling& scaling, MessageSink& sink);

/// Multiplies the factor f_v of each variable by factor[v], a power of two.
void magnify_variables(LpProblem& lp, const Vector<double>& factor, Scaling& scaling);

/// Restores the unscaled program and frees the factors.
void unscale_problem(LpProblem& lp, Scaling& scaling);

/// The power of two 2^k that replaces a positive factor f: f / 2^k lies in [0.75, 1.5].
double nearest_power_of_two(double factor);

/// The factors by themselves, before rounding (for scale_problem and its tests).
void compute_scale_factors(const LpProblem& lp, ScalingMethod method, Vector<double>& row,
                           Vector<double>& col);

}  // namespace kelvo
