// What the exported functions on bases share: who is refused, and how the factor is obtained.
#pragma once

#include "api/frame/problem_frame.h"
#include "lp/solve/lp_settings.h"
#include "lp/tableau/kept_basis.h"

namespace kelvo {

/// What the simplex methods and their relatives refuse.
inline Status check_linear(const Problem& problem) {
  if (is_mixed_integer_type(problem.type())) {
    return Status::failure(error::kNotForMixedInteger);
  }
  const Model& model = problem.model();
  if (!model.quadratic_constraints.empty()) {
    return Status::failure(error::kNotForQuadraticConstraints);
  }
  if (model.quadratic.num_major > 0) return Status::failure(error::kNotForQuadratic);
  return Status();
}

/// The frame of functions on linear problems: what is none is refused, then
/// run(Environment&, Problem&) -> Status.
template <class Run>
int on_linear(KLVenv env, KLVprob lp, Run run) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_linear(problem));
    return run(environment, problem);
  });
}

/// The working LP with the factor of the stored basis; 1256 when that is singular.
inline Status hold_stored_basis(Environment& environment, Problem& problem, WorkingLp*& working) {
  const DriverSettings settings =
      read_driver_settings(environment.settings(), problem.objective_sense());
  working = hold_basis(problem, settings, environment.messages());
  return working != nullptr ? Status() : Status::failure(error::kBasisSingular);
}

/// The same, when the library has factored the basis before; else 1258.
inline Status hold_factor(Environment& environment, Problem& problem, WorkingLp*& working) {
  if (!problem.basis.present || !problem.basis.factored) return Status::failure(error::kNoFactor);
  return hold_stored_basis(environment, problem, working);
}

/// The number of a variable in the interface: the column itself, or -row - 1 for a slack.
inline int caller_index(int variable, int num_cols) {
  return variable < num_cols ? variable : -(variable - num_cols) - 1;
}

/// And back; -1 for a number that denotes no variable of the model.
inline int engine_index(const Model& model, int index) {
  if (index >= 0) return index < model.num_cols ? index : -1;
  const int row = -(index + 1);
  return row < model.num_rows ? model.num_cols + row : -1;
}

/// Checks that the solution of a continuous problem is stored.
inline Status check_stored_solution(const Problem& problem) {
  const bool stored = problem.solution_status != kNoSolution && problem.solution.has_primal;
  return stored ? Status() : Status::failure(error::kNoSolution);
}

}  // namespace kelvo
