// Between the caller's model and the program that the engines solve, both ways.
//
// A maximization becomes the minimization of the negated objective; a row  L <= a x <= U  gets the
// logical bounds [-U, -L]; an infinite number of the model becomes an IEEE infinity; stored zeros
// of the matrix are dropped. Column types, sets, quadratic data and the like are not looked at.
#pragma once

#include "lp/solve/lp_answer.h"
#include "lp/solve/working_lp.h"
#include "prob/model/model.h"
#include "prob/solution.h"

namespace kelvo {

/// Builds the program, without its row-wise matrix. Its name context is the model, which must
/// outlive the names' use.
LpProblem make_lp(const Model& model);

/// Costs and bounds of the program by variable [num_cols + num_rows].
struct ModelNumbers {
  explicit ModelNumbers(const Model& model);
  Vector<double> cost, lower, upper;
};

/// The program seen in the model's own arrays, for the last check of an answer.
class ModelProgram {
 public:
  /// The model must outlive the object.
  explicit ModelProgram(const Model& model);
  ProgramView view() const;

 private:
  ModelNumbers numbers_;
  Vector<int> ends_;  // [columns] ends of their entries
  const ColumnStore* matrix_;
  int num_rows_;
};

/// Copies what has changed beside the structure into the working LP. False when some variable that
/// was copied admits no value, not even within the tolerance: then the working LP is no longer that
/// of the model.
bool copy_changes(const Model& model, const ModelChanges& changes, double tolerance,
                  WorkingLp& working);

/// Status codes of all variables of the program from a stored basis, and back.
void stored_to_lp_status(const StoredBasis& basis, const Model& model, Vector<int>& status);
void lp_to_stored_status(const Vector<int>& status, const Model& model, StoredBasis& basis);

LpStart to_start(const StoredBasis& basis, const Model& model);

/// What is known of a start, in the model's units and signs; each pointer may be null, and what is
/// missing beside another part of the same side is computed from it.
struct StartValues {
  const double* x = nullptr;      // [columns]
  const double* slack = nullptr;  // [rows] of the slack variables, see solution.h
  const double* dj = nullptr;     // [columns]
  const double* pi = nullptr;     // [rows]

  bool any() const { return x || slack || dj || pi; }
};

/// The basis that values determine (lp/crossover/basis_from_values.h). `tolerance`: distances from
/// bounds, relative to the numbers, and multipliers below it are 0.
StoredBasis basis_from_values(const Model& model, const StartValues& values, double tolerance);

/// The code that the interface has for an outcome.
int status_code(LpOutcome outcome);

/// An answer in the model's terms, after the last check, on the model itself: what does not hold
/// there is not called optimal, infeasible or unbounded. `measured`, unless null: on entry null or
/// an answer that was measured on this model but for the bounds of the columns in `changes`, so
/// that only what differs needs to be measured; on return this answer, or null without one.
SolveResult to_result(const Model& model, LpAnswer&& answer, const SimplexSettings& settings,
                      Owned<MeasuredSolution>* measured = nullptr,
                      const ModelChanges& changes = {});

/// A model with the given program, of the given sense, without names.
Model make_model(const LpProblem& lp, int sense);

}  // namespace kelvo
