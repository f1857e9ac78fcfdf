// Solving and checking models as a problem of the interface would, for tests.
#pragma once

#include "lp/form/verification.h"
#include "lp/solve/solve_model.h"

namespace kelvo::test {

inline bool verify_farkas(const Model& model, Vector<double>& y) {
  return kelvo::verify_farkas(ModelProgram(model).view(), y);
}
inline bool verify_ray(const Model& model, Vector<double>& r) {
  return kelvo::verify_ray(ModelProgram(model).view(), r);
}

/// Completes a record that holds x and pi and measures it.
inline Violations complete_and_measure(const Model& model, const Vector<int>& status,
                                       SolutionRecord& record, double* apart = nullptr) {
  LpSolution solution;
  solution.x = record.x;
  for (const double pi : record.pi) solution.y.push_back(model.sense * pi);
  solution.status = status;
  const ModelProgram program(model);
  const Violations violations = kelvo::complete_and_measure(program.view(), solution);
  if (apart != nullptr) *apart = measure_complementarity(program.view(), 1e-9, solution);
  record.activity = solution.activity;
  record.objective = model.sense * solution.objective;
  record.dj = solution.z;
  for (double& dj : record.dj) dj = model.sense * dj + 0.0;
  return violations;
}

/// A result in the model's terms, with what the tests ask of it.
struct ModelAnswer {
  int status = kNoSolution;
  bool singular = false;
  SolutionRecord record;
  StoredBasis basis;
};

/// A problem's side of the solver: what is kept between calls.
struct ModelSolver {
  KeptLps kept;
  StoredBasis basis;
  SilentSink sink;
  NeverStop never;
  StopCheck* stop = &never;
  IterationHook* hook = nullptr;
  DriverSettings settings;
  // Of the model since the last call.
  ModelChanges changes{
      .structure = false, .costs = true, .column_bounds = true, .row_limits = true};

  ModelAnswer solve(const Model& model, LpMethod method = LpMethod::dual) {
    settings.simplex.sense = model.sense;
    SolveResult result;
    ModelAnswer answer;
    answer.singular = !solve_model(model, changes, kept, basis, algorithm_of(method), settings,
                                   {sink, *stop, hook}, result);
    answer.status = result.status;
    answer.record = std::move(result.solution);
    answer.basis = std::move(result.basis);
    if (answer.basis.present) basis = answer.basis;
    return answer;
  }
};

}  // namespace kelvo::test
