// Sensitivity of the optimal basis.
#include "analysis/sensitivity.h"

#include "api/frame/basis_frame.h"

namespace kelvo {
namespace {

/// Checks that the stored solution is that of an optimal basis, and gets hold of its factor.
Status hold_optimal_basis(Environment& environment, Problem& problem, WorkingLp*& working) {
  if (is_mixed_integer_type(problem.type())) {
    return Status::failure(problem.incumbent.present ? error::kNoSensitivity : error::kNoSolution);
  }
  const SolutionRecord& solution = problem.solution;
  const int status = problem.solution_status;
  KELVO_TRY(check_stored_solution(problem));
  const bool optimal = status == kOptimal || status == kOptimalUnscaledInfeasible;
  if (!optimal || !solution.has_basis || !check_linear(problem).ok()) {
    return Status::failure(error::kNoSensitivity);
  }
  return hold_factor(environment, problem, working);
}

/// The frame of a sensitivity function: null arrays come before the problem, then the solution,
/// then check(environment, problem) of the ranges, then fill(sensitivity).
template <class Check, class Fill>
int analyse(KLVenv env, KLVprob lp, bool arrays_given, Check check, Fill fill) {
  if (!arrays_given) {
    return api_env(env, [](Environment&) { return Status::failure(error::kNullPointer); });
  }
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    WorkingLp* working = nullptr;
    KELVO_TRY(hold_optimal_basis(environment, problem, working));
    KELVO_TRY(check(environment, problem.model()));
    Sensitivity sensitivity(problem.model(), *working);
    fill(sensitivity);
    return Status();
  });
}

/// A range is within the problem and begins no later than it ends.
Status check_range(Environment& environment, const char* function, int begin, int end, int n) {
  KELVO_TRY(check_index_range(environment, function, begin, end, 0, n));
  return begin <= end ? Status() : Status::failure(error::kIndexRange);
}

void put(double* array, int k, double value) {
  if (array != nullptr) array[k] = value;
}

void fill_right_hand_sides(Sensitivity& sensitivity, int begin, int end, double* low,
                           double* high) {
  for (int i = begin; i <= end; ++i) {
    const Range range = sensitivity.right_hand_side(i);
    put(low, i - begin, range.low);
    put(high, i - begin, range.high);
  }
}

struct BoundArrays {
  double* lower_low;
  double* lower_high;
  double* upper_low;
  double* upper_high;

  bool any() const { return lower_low || lower_high || upper_low || upper_high; }
};

void fill_bounds(Sensitivity& sensitivity, int begin, int end, const BoundArrays& out) {
  for (int j = begin; j <= end; ++j) {
    const Sensitivity::BoundRanges ranges = sensitivity.bounds(j);
    put(out.lower_low, j - begin, ranges.lower.low);
    put(out.lower_high, j - begin, ranges.lower.high);
    put(out.upper_low, j - begin, ranges.upper.low);
    put(out.upper_high, j - begin, ranges.upper.high);
  }
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVobjsa(KLVenv env, KLVprob lp, int begin, int end, double* lower, double* upper) {
  return analyse(
      env, lp, lower != nullptr && upper != nullptr,
      [&](Environment& environment, const Model& model) {
        return check_range(environment, "KLVobjsa", begin, end, model.num_cols);
      },
      [&](Sensitivity& sensitivity) { sensitivity.objective(begin, end, lower, upper); });
}

int KLVrhssa(KLVenv env, KLVprob lp, int begin, int end, double* lower, double* upper) {
  return analyse(
      env, lp, lower != nullptr && upper != nullptr,
      [&](Environment& environment, const Model& model) {
        return check_range(environment, "KLVrhssa", begin, end, model.num_rows);
      },
      [&](Sensitivity& sensitivity) {
        fill_right_hand_sides(sensitivity, begin, end, lower, upper);
      });
}

int KLVboundsa(KLVenv env, KLVprob lp, int begin, int end, double* lblower, double* lbupper,
               double* ublower, double* ubupper) {
  const BoundArrays out{lblower, lbupper, ublower, ubupper};
  return analyse(
      env, lp, true,
      [&](Environment& environment, const Model& model) {
        return check_range(environment, "KLVboundsa", begin, end, model.num_cols);
      },
      [&](Sensitivity& sensitivity) {
        if (out.any()) fill_bounds(sensitivity, begin, end, out);
      });
}

int KLVErangesa(KLVenv env, KLVprob lp, int cbegin, int cend, int rbegin, int rend,
                double* objlower, double* objupper, double* rhslower, double* rhsupper,
                double* lblower, double* lbupper, double* ublower, double* ubupper) {
  const BoundArrays bounds{lblower, lbupper, ublower, ubupper};
  const bool objective = objlower != nullptr && objupper != nullptr;
  const bool columns = objective || bounds.any();
  const bool rows = rhslower != nullptr && rhsupper != nullptr;
  // A pair of arrays comes whole or not at all.
  const bool whole = (objlower == nullptr) == (objupper == nullptr) &&
                     (rhslower == nullptr) == (rhsupper == nullptr);
  return analyse(
      env, lp, whole,
      [&](Environment& environment, const Model& model) -> Status {
        if (columns) {
          KELVO_TRY(check_range(environment, "KLVErangesa", cbegin, cend, model.num_cols));
        }
        if (rows) KELVO_TRY(check_range(environment, "KLVErangesa", rbegin, rend, model.num_rows));
        return Status();
      },
      [&](Sensitivity& sensitivity) {
        if (objective) sensitivity.objective(cbegin, cend, objlower, objupper);
        if (rows) fill_right_hand_sides(sensitivity, rbegin, rend, rhslower, rhsupper);
        if (bounds.any()) fill_bounds(sensitivity, cbegin, cend, bounds);
      });
}
