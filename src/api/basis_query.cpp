// Functions that look at the basis without changing it: ratio tests, checks, strong branching.
#include <algorithm>
#include <cmath>

#include "api/frame/basis_frame.h"
#include "lp/form/verification.h"
#include "lp/solve/conversion.h"
#include "lp/tableau/strong_branching.h"
#include "lp/tableau/tableau_ratios.h"
#include "prob/data/data_check.h"

namespace kelvo {
namespace {

template <class T>
void put(T* array, int k, T value) {
  if (array != nullptr) array[k] = value;
}

double finite_ratio(double ratio) {
  return std::min(ratio, kInfiniteBound);
}

/// The checks of a list of variables; `empty` says that there is nothing to do.
Status check_list(Environment& environment, const int* indices, int cnt, bool& empty) {
  KELVO_TRY(check_pointers(indices));
  if (cnt < 0) return Status::failure(error::kBadArgument);
  empty = cnt == 0;
  if (empty) environment.messages().send(Channel::warning, "Variable list empty.\n");
  return Status();
}

/// The frame of a ratio test: test(tableau, k, variable) for every entry of the list, where
/// `variable` is -1 for an entry that denotes none.
template <class Test>
int ratio_test(KLVenv env, KLVprob lp, const int* indices, int cnt, bool wanted, Test test) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    WorkingLp* working = nullptr;
    KELVO_TRY(hold_factor(environment, problem, working));
    bool empty = false;
    KELVO_TRY(check_list(environment, indices, cnt, empty));
    if (empty || !wanted) return Status();
    const Model& model = problem.model();
    CallerTableau tableau(model, *working);
    for (int k = 0; k < cnt; ++k) test(tableau, k, engine_index(model, indices[k]));
    return Status();
  });
}

/// Where the results of one direction of KLVpratio go; each array may be null.
struct PrimalRatioArrays {
  double* ratio;
  int* leaving;
  int* leaving_status;
  int* status;

  bool any() const { return ratio || leaving || leaving_status || status; }

  void store(CallerTableau& tableau, int k, int v, int direction) const {
    put(ratio, k, 0.0);
    put(leaving, k, KLV_NO_VARIABLE);
    put(leaving_status, k, -1);
    put(status, k, error::kIllegalPivot);
    if (v < 0 || tableau.status(v) == kBasic) return;
    const PrimalRatio result = primal_ratio(tableau, v, direction);
    put(ratio, k, finite_ratio(result.step));
    put(status, k, 0);
    if (result.step == kInf) return;
    const int leaves = result.itself ? v : tableau.head(result.position);
    put(leaving, k, caller_index(leaves, tableau.num_cols()));
    put(leaving_status, k, static_cast<int>(result.leaves_at));
  }
};

/// The same for KLVdratio.
struct DualRatioArrays {
  double* ratio;
  int* entering;
  int* status;

  bool any() const { return ratio || entering || status; }

  void store(CallerTableau& tableau, int k, int v, int direction) const {
    put(ratio, k, 0.0);
    put(entering, k, KLV_NO_VARIABLE);
    put(status, k, error::kIllegalPivot);
    const int position = v < 0 ? -1 : tableau.position_of(v);
    if (position < 0) return;
    const DualRatio result = dual_ratio(tableau, position, direction);
    put(ratio, k, finite_ratio(result.ratio));
    put(status, k, 0);
    if (result.entering >= 0) {
      put(entering, k, caller_index(result.entering, tableau.num_cols()));
    }
  }
};

Status leaving_information(Environment& environment, Problem& problem, const int* indices, int cnt,
                           double* downratio, double* upratio, int* downstatus, int* upstatus) {
  KELVO_TRY(check_linear(problem));
  KELVO_TRY(check_stored_solution(problem));
  bool empty = false;
  KELVO_TRY(check_list(environment, indices, cnt, empty));
  if (empty) return Status();
  WorkingLp* working = nullptr;
  KELVO_TRY(hold_factor(environment, problem, working));
  const Model& model = problem.model();
  CallerTableau tableau(model, *working);
  Vector<int> positions(cnt);
  for (int k = 0; k < cnt; ++k) {
    const int j = indices[k];
    if (j < 0 || j >= model.num_cols) return report(environment, error::kColumnIndex, j);
    positions[k] = tableau.position_of(j);
    if (positions[k] < 0) return Status::failure(error::kNotBasic);
  }
  const auto store = [&](double* ratio, int* status, int k, int direction) {
    const DualRatio result = dual_ratio(tableau, positions[k], direction);
    put(ratio, k, model.sense * finite_ratio(result.ratio));
    put(status, k, result.entering >= 0 ? 0 : error::kIllegalPivot);
  };
  for (int k = 0; k < cnt; ++k) {
    store(downratio, downstatus, k, -1);
    store(upratio, upstatus, k, 1);
  }
  return Status();
}

/// Finds the variable with the largest violation(tableau, v) above the tolerance of the basis that
/// is stored, without optimizing.
template <class Violation>
int check_basis(KLVenv env, KLVprob lp, int* infeasout, Violation violation) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(infeasout));
    if (!problem.basis.present) return Status::failure(error::kNoBasis);
    WorkingLp* working = nullptr;
    KELVO_TRY(hold_stored_basis(environment, problem, working));
    CallerTableau tableau(problem.model(), *working);
    const SimplexSettings settings =
        read_driver_settings(environment.settings(), problem.objective_sense()).simplex;
    int worst = KLV_NO_VARIABLE;
    double largest = 0.0;
    for (int v = 0; v < tableau.num_vars(); ++v) {
      const double amount = violation(tableau, v, settings);
      if (amount <= largest) continue;
      largest = amount;
      worst = caller_index(v, tableau.num_cols());
    }
    *infeasout = worst;
    return Status();
  });
}

double above(double amount, double tolerance) {
  return amount > tolerance ? amount : 0.0;
}

/// The status that the stored solution deserves on the model in its present state.
int checked_status(const Problem& problem, const SimplexSettings& settings) {
  const ModelProgram program(problem.model());
  const int status = problem.solution_status;
  const SolutionRecord& record = problem.solution;
  if (status == kInfeasible && !record.farkas.empty()) {
    return farkas_proof(program.view(), record.farkas) > 0.0 ? kInfeasible : kNonOptimal;
  }
  if (status == kUnbounded && !record.ray.empty()) {
    Vector<double> ray(record.ray);
    return verify_ray(program.view(), ray) ? kUnbounded : kNonOptimal;
  }
  if ((status != kOptimal && status != kOptimalUnscaledInfeasible) || !record.has_basis) {
    return status;
  }
  LpSolution solution;
  solution.x = record.x;
  solution.y = record.pi;
  for (double& y : solution.y) y *= problem.objective_sense();
  stored_to_lp_status(problem.basis, problem.model(), solution.status);
  const Violations violations = complete_and_measure(program.view(), solution);
  const bool holds = violations.primal <= settings.feasibility_tolerance &&
                     violations.dual <= settings.optimality_tolerance;
  return holds ? kOptimal : kOptimalUnscaledInfeasible;
}

Status strong_branch(Environment& environment, Problem& problem, const int* indices, int cnt,
                     double* downobj, double* upobj, int itlim) {
  KELVO_TRY(check_linear(problem));
  if (cnt < 0 || itlim < 0) return Status::failure(error::kBadArgument);
  if (cnt > 0) KELVO_TRY(check_pointers(indices));
  const Model& model = problem.model();
  for (int k = 0; k < cnt; ++k) {
    if (indices[k] < 0 || indices[k] >= model.num_cols) {
      return report(environment, error::kColumnIndex, indices[k]);
    }
  }
  KELVO_TRY(check_stored_solution(problem));
  if (problem.solution_status != kOptimal &&
      problem.solution_status != kOptimalUnscaledInfeasible) {
    return Status::failure(error::kOptimalRequired);
  }
  WorkingLp* held = nullptr;
  KELVO_TRY(hold_factor(environment, problem, held));
  Vector<double> down(cnt), up(cnt);
  const RunContext context{&environment.messages(), &environment.stop_check()};
  const TimeLimitScope time_limit(environment);
  SimplexSettings settings =
      read_driver_settings(environment.settings(), problem.objective_sense()).simplex;
  Owned<WorkingLp> working = problem.working_lp.take();
  StrongBranching branching(model, *working, settings, itlim, context);
  BranchingStop stop = BranchingStop::none;
  for (int k = 0; k < cnt && stop == BranchingStop::none; ++k) {
    stop = branching.probe(indices[k], problem.solution.x[indices[k]], down[k], up[k]);
  }
  problem.working_lp.put(std::move(working));
  if (stop == BranchingStop::time_limit) {
    return Status::failure(error::kStrongBranchingTimeLimit);
  }
  if (stop == BranchingStop::aborted) return Status::failure(error::kStrongBranchingAborted);
  if (downobj != nullptr) std::copy(down.begin(), down.end(), downobj);
  if (upobj != nullptr) std::copy(up.begin(), up.end(), upobj);
  return Status();
}

/// Rows as in KLVaddrows.
struct RowBlockView {
  int count, entries;
  const int* begin;
  const int* index;
  const double* value;

  int end(int k) const { return k + 1 < count ? begin[k + 1] : entries; }
};

/// 1 + |a_B' B^-1|^2 of every row a, a_B its entries at the basic columns.
Status row_weights(Environment& environment, Problem& problem, const RowBlockView& rows,
                   int dpriind, double* weight) {
  const auto pricing = static_cast<DualPricing>(dpriind);
  if (dpriind < static_cast<int>(DualPricing::automatic) ||
      dpriind > static_cast<int>(DualPricing::devex)) {
    return Status::failure(error::kBadPricing);
  }
  if (pricing == DualPricing::steepest_unit || pricing == DualPricing::devex) {
    std::fill(weight, weight + rows.count, 1.0);
    return Status();
  }
  const bool factored = problem.basis.present && problem.basis.factored;
  if (pricing == DualPricing::standard || !factored) {
    environment.messages().send(Channel::warning, "Warning:  No weights computed.\n");
    return Status();
  }
  WorkingLp* working = nullptr;
  KELVO_TRY(hold_stored_basis(environment, problem, working));
  CallerTableau tableau(problem.model(), *working);
  const int m = tableau.num_rows();
  Vector<int> position(tableau.num_vars(), -1);
  for (int p = 0; p < m; ++p) position[tableau.head(p)] = p;
  Vector<double> solved(m);
  for (int k = 0; k < rows.count; ++k) {
    std::fill(solved.begin(), solved.end(), 0.0);
    for (int e = rows.begin[k]; e < rows.end(k); ++e) {
      const int p = position[rows.index[e]];
      if (p >= 0) solved[p] += rows.value[e];
    }
    tableau.btran(solved.data());
    weight[k] = 1.0;
    for (const double entry : solved) weight[k] += entry * entry;
  }
  return Status();
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVpratio(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downratio,
              double* upratio, int* downleave, int* upleave, int* downleavestatus,
              int* upleavestatus, int* downstatus, int* upstatus) {
  const PrimalRatioArrays down{downratio, downleave, downleavestatus, downstatus};
  const PrimalRatioArrays up{upratio, upleave, upleavestatus, upstatus};
  return ratio_test(env, lp, indices, cnt, down.any() || up.any(),
                    [&](CallerTableau& tableau, int k, int variable) {
                      if (down.any()) down.store(tableau, k, variable, -1);
                      if (up.any()) up.store(tableau, k, variable, 1);
                    });
}

int KLVdratio(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downratio,
              double* upratio, int* downenter, int* upenter, int* downstatus, int* upstatus) {
  const DualRatioArrays down{downratio, downenter, downstatus};
  const DualRatioArrays up{upratio, upenter, upstatus};
  return ratio_test(env, lp, indices, cnt, down.any() || up.any(),
                    [&](CallerTableau& tableau, int k, int variable) {
                      if (down.any()) down.store(tableau, k, variable, -1);
                      if (up.any()) up.store(tableau, k, variable, 1);
                    });
}

int KLVmdleave(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downratio,
               double* upratio, int* downstatus, int* upstatus) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) {
    return leaving_information(environment, problem, indices, cnt, downratio, upratio, downstatus,
                               upstatus);
  });
}

int KLVcheckpfeas(KLVenv env, KLVprob lp, int* infeasout) {
  return check_basis(env, lp, infeasout,
                     [](const CallerTableau& tableau, int v, const SimplexSettings& settings) {
                       const double x = tableau.value(v);
                       return above(std::max(tableau.lower(v) - x, x - tableau.upper(v)),
                                    settings.feasibility_tolerance);
                     });
}

int KLVcheckdfeas(KLVenv env, KLVprob lp, int* infeasout) {
  return check_basis(
      env, lp, infeasout, [](const CallerTableau& tableau, int v, const SimplexSettings& settings) {
        if (tableau.status(v) == kBasic || tableau.is_fixed(v)) return 0.0;
        const double d = tableau.reduced_cost(v);
        return above(std::max(tableau.may_rise(v) ? -d : 0.0, tableau.may_fall(v) ? d : 0.0),
                     settings.optimality_tolerance);
      });
}

int KLVchecksoln(KLVenv env, KLVprob lp, int* lpstatus) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(lpstatus));
    KELVO_TRY(check_stored_solution(problem));
    const SimplexSettings settings =
        read_driver_settings(environment.settings(), problem.objective_sense()).simplex;
    *lpstatus = checked_status(problem, settings);
    return Status();
  });
}

int KLVgetweight(KLVenv env, KLVprob lp, int rcnt, int nzcnt, const int* rmatbeg,
                 const int* rmatind, const double* rmatval, double* weight, int dpriind) {
  return on_linear(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (rcnt < 0 || nzcnt < 0) return Status::failure(error::kBadArgument);
    if (rcnt > 0) KELVO_TRY(check_pointers(rmatbeg, rmatind, rmatval, weight));
    KELVO_TRY(check_starts(environment, rmatbeg, rcnt, nzcnt));
    KELVO_TRY(check_column_indices(environment, rmatind, nzcnt, problem.num_cols()));
    const RowBlockView rows{rcnt, nzcnt, rmatbeg, rmatind, rmatval};
    return row_weights(environment, problem, rows, dpriind, weight);
  });
}

int KLVstrongbranch(KLVenv env, KLVprob lp, const int* indices, int cnt, double* downobj,
                    double* upobj, int itlim) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) {
    return strong_branch(environment, problem, indices, cnt, downobj, upobj, itlim);
  });
}
