// Checks of an answer on the numbers of an unscaled program, in extended precision. Nothing here
// knows how the answer was found.
#pragma once

#include "lp/form/lp_solution.h"
#include "lp/form/program_view.h"

namespace kelvo {

/// What is left over when the rounding of the sums themselves has been taken off.
struct Violations {
  double primal = 0.0;  // largest violation of a row limit or a column bound
  double dual = 0.0;    // largest reduced cost or dual of the wrong sign, or of a basic variable
  double gap = 0.0;     // without a basis: between primal and dual objective, relative to it
};

/// c - A'y [num_cols] for duals y [num_rows].
Vector<double> reduced_costs(const ProgramView& lp, const Vector<double>& y);

/// Completes a solution of which the layers that it has are known, x, y and the statuses, and
/// measures the violations. The sign that a reduced cost may have follows from the status; without
/// a basis it may have either one where there is a bound on that side, and the gap tells the rest.
/// Without duals the dual side is not measured.
Violations complete_and_measure(const ProgramView& lp, LpSolution& solution);

/// How far a nonbasic variable whose multiplier is not zero is from the bound that its status
/// names, at most; for solutions whose values do not come from the basis itself. The solution is
/// complete.
double measure_complementarity(const ProgramView& lp, double optimality_tolerance,
                               const LpSolution& solution);

/// Tests a proof of infeasibility: multipliers y [num_rows] such that, over all x in the column
/// bounds and all activities a in the row limits,
///
///     min y'a > max (A'y)'x.
///
/// On entry `y` may have either sign; on success it holds the proof, with entries that can only be
/// rounding taken out.
bool verify_farkas(const ProgramView& lp, Vector<double>& y);

/// The gap  min y'a - max (A'y)'x  of given multipliers, -1e20 when an absent limit makes it
/// infinite. Entries that can only be rounding count as 0.
double farkas_proof(const ProgramView& lp, const Vector<double>& y);

/// Tests a direction r [num_cols] of unboundedness: the objective improves along it, and no row
/// limit or column bound is ever left: a row that moves against a limit by more than the rounding
/// of the entries of r to doubles refuses it, however slowly it moves. On success r is scaled to
/// largest entry 1, and entries that can only be rounding are taken out.
bool verify_ray(const ProgramView& lp, Vector<double>& r);

}  // namespace kelvo
