// Checks of an answer on the caller's own model, in extended precision: the last word before a
// status is stored. Nothing here knows how the answer was found.
#pragma once

#include "prob/model/model.h"
#include "prob/solution.h"

namespace kelvo {

/// What is left over when the rounding of the sums themselves has been taken off.
struct Violations {
  double primal = 0.0;  // largest violation of a row limit or a column bound
  double dual = 0.0;    // largest reduced cost or dual of the wrong sign, or of a basic variable
};

/// Completes a record that holds x and pi [in the caller's signs] of a basic solution: activities,
/// reduced costs (0 for basic columns) and the objective, and measures the violations. `status`
/// holds the BasisStatus codes of all variables in the numbering of LpProblem: the sign that a
/// reduced cost may have follows from it.
Violations complete_and_measure(const Model& model, const Vector<int>& status,
                                SolutionRecord& record);

/// How far a nonbasic variable whose multiplier is not zero stands from the bound that its status
/// names, at most; for solutions whose values do not come from the basis itself. The record has
/// been completed.
double measure_complementarity(const Model& model, const Vector<int>& status,
                               double optimality_tolerance, const SolutionRecord& record);

/// Tests a proof of infeasibility: multipliers y [num_rows] such that, over all x in the column
/// bounds and all activities a in the row limits,
///
///     min y'a > max (A'y)'x.
///
/// On entry `y` may have either sign; on success it holds the proof, with entries that can only be
/// rounding taken out.
bool verify_farkas(const Model& model, Vector<double>& y);

/// The gap  min y'a - max (A'y)'x  of multipliers as they stand, -1e20 when an absent limit makes
/// it infinite. Entries that can only be rounding count as 0.
double farkas_proof(const Model& model, const Vector<double>& y);

/// Tests a direction r [num_cols] of unboundedness: the objective improves along it, and no row
/// limit or column bound is ever left: a row that moves against a limit by more than the rounding
/// of the entries of r to doubles refuses it, however slowly it moves. On success r is scaled to
/// largest entry 1, and entries that can only be rounding are taken out.
bool verify_ray(const Model& model, Vector<double>& r);

}  // namespace kelvo
