// Which stored values a query of a solution reads.
#pragma once

#include "base/status.h"
#include "prob/problem.h"

namespace kelvo {

enum class Needs { primal, dual };

inline bool is_mixed_integer(const Problem& problem) {
  return is_mixed_integer_type(problem.type());
}

/// What kind of solution is stored, and of what quality.
struct SolutionInfo {
  int method = kMethodNone;
  int kind = kNoValues;
  bool primal_feasible = false;
  bool dual_feasible = false;
};
SolutionInfo solution_info(const Problem& problem);

/// The method behind a status of the mixed-integer side: the relaxations of FeasOpt or the
/// optimizer.
int mixed_integer_method(int status);

/// True when the result of a continuous optimizer that fits the problem's type is stored.
bool has_continuous_solution(const Problem& problem);

/// Checks that values of this kind can be read: 1217, 3023; for dual ones also 1017, 1232.
Status check_values(const Problem& problem, Needs needs);

/// The stored point [columns], once check_values() has passed.
const Vector<double>& primal_values(const Problem& problem);

/// Its row activities [rows]; `scratch` holds them when they have to be computed.
const Vector<double>& activities(const Problem& problem, Vector<double>& scratch);

}  // namespace kelvo
