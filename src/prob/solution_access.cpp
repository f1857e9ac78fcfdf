#include "prob/solution_access.h"

#include <algorithm>
#include <iterator>

#include "base/error_code.h"

namespace kelvo {
namespace {

/// Methods whose results count as a solution of a continuous problem of this type.
bool admits_method(int type, int method) {
  constexpr int kLinear[] = {1, 2, 4, 8, 9, 10, 11, 13};
  constexpr int kQuadratic[] = {1, 2, 4, 11, 13};
  const auto among = [method](const auto& list) {
    return std::find(std::begin(list), std::end(list), method) != std::end(list);
  };
  const bool linear = type == kTypeLp || type == kTypeNodeLp;
  return linear ? among(kLinear) : among(kQuadratic);
}

}  // namespace

bool has_continuous_solution(const Problem& problem) {
  return problem.solution_status != kNoSolution && problem.solution.has_primal &&
         admits_method(problem.type(), problem.solution.method);
}

int mixed_integer_method(int status) {
  constexpr int kFirstRelaxation = 120, kLastRelaxation = 127;
  return status >= kFirstRelaxation && status <= kLastRelaxation ? kMethodFeasOpt : kMethodMip;
}

SolutionInfo solution_info(const Problem& problem) {
  SolutionInfo info;
  if (is_mixed_integer(problem)) {
    const Incumbent& incumbent = problem.incumbent;
    if (!incumbent.present) return info;
    info.kind = kPrimalValues;
    info.method = mixed_integer_method(problem.solution_status);
    if (incumbent.has_values) {
      info.primal_feasible = true;
      info.dual_feasible = incumbent.dual_feasible;
    }
    return info;
  }
  if (!has_continuous_solution(problem)) return info;
  const SolutionRecord& record = problem.solution;
  info.method = record.method;
  info.primal_feasible = record.primal_feasible;
  info.dual_feasible = record.dual_feasible;
  info.kind = !record.has_dual ? kPrimalValues : record.has_basis ? kBasicValues : kNonbasicValues;
  return info;
}

Status check_values(const Problem& problem, Needs needs) {
  if (is_mixed_integer(problem)) {
    if (needs == Needs::dual) return Status::failure(error::kNotForMixedInteger);
    if (!problem.incumbent.present) return Status::failure(error::kNoSolution);
    if (!problem.incumbent.has_values) return Status::failure(error::kNoIncumbentValues);
    return Status();
  }
  if (!has_continuous_solution(problem)) return Status::failure(error::kNoSolution);
  if (needs == Needs::dual && !problem.solution.has_dual) {
    return Status::failure(error::kNoDualSolution);
  }
  return Status();
}

const Vector<double>& primal_values(const Problem& problem) {
  return is_mixed_integer(problem) ? problem.incumbent.x : problem.solution.x;
}

const Vector<double>& activities(const Problem& problem, Vector<double>& scratch) {
  if (!is_mixed_integer(problem)) return problem.solution.activity;
  compute_row_activities(problem.model(), problem.incumbent.x.data(), scratch);
  return scratch;
}

}  // namespace kelvo
