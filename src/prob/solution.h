// What the optimizers leave in a problem: the solution of a continuous problem, the incumbent of a
// mixed-integer one, and the basis from which the next optimization may start.
//
// Everything is in the caller's own units and signs, so that a query only copies.
//
//     ax_i  = a_i x                     row activity
//     pi_i  = d objective / d rhs_i     in the objective's own sense, minimized or maximized alike
//     dj_j  = c_j - sum_i a_ij pi_i     reduced cost, also
//     slack = rhs_i - ax_i  for rows 'L', 'E', 'G' (so a satisfied 'G' row has a slack <= 0),
//             ax_i - rhs_i  for rows 'R': the value of the variable with coefficient -1 and bounds
//                           [0, range] or [range, 0] that makes the row an equality.
#pragma once

#include "base/basis_status.h"
#include "base/containers.h"

namespace kelvo {

struct Model;

/// Solution status codes of the problem, as far as optimizers of continuous problems store them.
enum SolutionStatus : int {
  kNoSolution = 0,
  kOptimal = 1,
  kUnbounded = 2,
  kInfeasible = 3,
  kInfeasibleOrUnbounded = 4,
  kOptimalUnscaledInfeasible = 5,
  kNonOptimal = 6,
  kIterationLimit = 10,
  kTimeLimit = 11,
  kObjectiveLimit = 12,
  kUserAborted = 13
};

/// Method codes of a stored solution.
enum SolutionMethod : int {
  kMethodNone = -1,
  kMethodPrimal = 1,
  kMethodDual = 2,
  kMethodBarrier = 4,
  kMethodFeasOpt = 11,
  kMethodMip = 12
};

/// What a stored solution consists of.
enum SolutionKind : int {
  kNoValues = 0,
  kBasicValues = 1,     // primal and dual values and a basis
  kNonbasicValues = 2,  // primal and dual values
  kPrimalValues = 3
};

/// A start basis by columns and rows, BasisStatus codes. A row's status is that of its slack
/// variable, whose bounds are [0, inf) for 'L',
/// (-inf, 0] for 'G', {0} for 'E', and those of the range variable for 'R'. A nonbasic slack with
/// one bound sits there whatever code (0 or 2) it carries; the optimizers store 0 for it. For 'R'
/// 0 means that the activity is at the lower end of the range, 2 at the upper end.
struct StoredBasis {
  bool present = false;
  // The library has factored this basis for the matrix that the model still has. A basis that a
  // caller hands in has not been factored; a change of the matrix ends it.
  bool factored = false;
  Vector<int> col_status;  // [columns]
  Vector<int> row_status;  // [rows]

  // Squared steepest-edge norms that a caller gave for this basis, in the model's units; empty when
  // he gave none. The first run from the basis uses them, any change of the model's structure drops
  // them.
  Vector<double> col_norm;   // primal, 1 + |B^-1 a_j|^2, of columns 0, 1, ...; the rest have none
  Vector<double> row_norm;   // [rows] primal, of the slacks, when col_norm is given
  Vector<int> head;          // basic variables: column j, or -1 - i for the slack of row i
  Vector<double> head_norm;  // dual, |e_p' B^-1|^2 of the row of B^-1 where head[p] is basic
  // Where columns with status 3 are, in the model's units: [columns] or empty. Goes with the
  // norms.
  Vector<double> x;

  void forget_norms() noexcept;
  bool has_norms() const { return !head.empty() || !row_norm.empty(); }
};

/// The result of a continuous optimizer. The problem's solution status says whether one is stored.
struct SolutionRecord {
  int method = kMethodNone;
  bool primal_feasible = false;  // x satisfies rows and bounds of the model within the tolerance
  bool dual_feasible = false;    // pi and dj satisfy the sign conditions within the tolerance
  bool has_primal = false;       // x and activity are valid
  bool has_dual = false;         // pi and dj are valid
  bool has_basis = false;        // the problem's stored basis belongs to this solution
  double objective = 0.0;
  Vector<double> x;         // [columns]
  Vector<double> activity;  // [rows] ax
  Vector<double> pi;        // [rows]
  Vector<double> dj;        // [columns]

  int iterations = 0;            // of the last optimization, all simplex methods
  int phase_one_iterations = 0;  // the part of them spent towards feasibility
  int barrier_iterations = 0;
  double condition = 0.0;  // estimate for the final basis; 0 when there is none

  // Proofs behind the statuses infeasible and unbounded; empty when there is none.
  Vector<double> farkas;  // [rows] y: no point of the box satisfies y'(Ax + s) = 0
  Vector<double> ray;     // [columns] direction that keeps rows and bounds and improves for ever
};

/// What an optimizer hands to Problem::store_result().
struct SolveResult {
  int status = kNoSolution;
  SolutionRecord solution;
  StoredBasis basis;  // replaces the stored one when it is present
};

/// The best integer solution known of a mixed-integer problem.
struct Incumbent {
  bool present = false;
  bool has_values = false;  // x is valid
  bool primal_feasible = false;
  bool dual_feasible = false;
  double objective = 0.0;
  Vector<double> x;    // [columns]
  int nodes = 0;       // of the search
  int iterations = 0;  // the same, of all its simplex runs
};

/// What a mixed-integer search tells about itself beside its incumbent. Objective values are in the
/// caller's sense.
struct SearchRecord {
  double best_bound = 0.0;
  double cutoff = 0.0;
  double iterations = 0.0;  // of all linear programs
  int nodes = 0;            // processed
  int nodes_left = 0;
  int incumbent_node = 0;
  int node_status = 0;  // of the last node's linear program
  int node_method = 0;
  Vector<int> cuts;  // applied, by cut type
};

/// What a mixed-integer optimizer hands to Problem::store_result().
struct MipResult {
  int status = kNoSolution;
  Incumbent incumbent;
  SearchRecord search;
};

/// Row activities of a point, accumulated in extended precision; `activity` gets one per row.
void compute_row_activities(const Model& model, const double* x, Vector<double>& activity);

/// The slack of a row with the given activity.
double row_slack(const Model& model, int row, double activity);

/// By how much an activity lies above (positive) or below (negative) the limits of its row.
double row_infeasibility(const Model& model, int row, double activity);

/// By how much a value lies above (positive) or below (negative) the bounds of its column. A
/// semi-continuous or semi-integer column may always be 0.
double column_infeasibility(const Model& model, int column, double value);

/// c'x, accumulated in extended precision.
double objective_value(const Model& model, const double* x);

}  // namespace kelvo
