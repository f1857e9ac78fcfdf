// The factor of the basis in the caller's terms: solves, rows and columns of the inverse and of the
// tableau, the basis header, and the proofs behind "infeasible" and "unbounded".
#include <algorithm>
#include <cmath>

#include "api/frame/basis_frame.h"
#include "lp/form/verification.h"
#include "lp/solve/solve_model.h"
#include "lp/tableau/caller_tableau.h"

namespace kelvo {
namespace {

/// The frame of a function on the factor: check(environment, problem) of the arguments comes after
/// the factor is there, then use(tableau).
template <class Check, class Use>
int with_factor(KLVenv env, KLVprob lp, const double* array, Check check, Use use) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(array));
    WorkingLp* working = nullptr;
    KELVO_TRY(hold_factor(environment, problem, working));
    KELVO_TRY(check(environment, problem));
    CallerTableau tableau(problem.model(), *working);
    use(tableau);
    return Status();
  });
}

void write_dense(const WorkVector& x, int size, double* out) {
  std::fill(out, out + size, 0.0);
  for_each_entry(x, [out](int i, double value) { out[i] = value; });
}

/// A check that `index` lies in 0..size(problem)-1, with the function's name in the message.
template <class Size>
auto index_check(const char* function, int index, Size size) {
  return [=](Environment& environment, const Problem& problem) {
    return check_index_range(environment, function, index, index, 0, size(problem.model()));
  };
}

int rows_of(const Model& model) {
  return model.num_rows;
}

Status no_check(Environment&, const Problem&) {
  return Status();
}

/// The stored solution with a basis, which the working LP is made to hold.
Status hold_solution_basis(Environment& environment, Problem& problem, WorkingLp*& working) {
  KELVO_TRY(check_stored_solution(problem));
  if (!problem.solution.has_basis) return Status::failure(error::kNoSolution);
  return hold_stored_basis(environment, problem, working);
}

/// Value of a variable (a slack behind the columns) in the stored solution.
double stored_value(const Problem& problem, int variable) {
  const Model& model = problem.model();
  if (variable < model.num_cols) return problem.solution.x[variable];
  const int row = variable - model.num_cols;
  return row_slack(model, row, problem.solution.activity[row]);
}

/// The direction of unboundedness with the entry of the variable that enters at 1 or -1. That is
/// the one nonbasic variable that moves: a column, or else a slack, whose move is that of its row.
void write_ray(const Problem& problem, double* z) {
  const Model& model = problem.model();
  const Vector<double>& ray = problem.solution.ray;
  double step = 0.0;
  for (int j = 0; j < model.num_cols; ++j) {
    if (problem.basis.col_status[j] != kBasic) step = std::max(step, std::fabs(ray[j]));
  }
  if (step == 0.0) {
    Vector<double> activity;
    compute_row_activities(model, ray.data(), activity);
    for (int i = 0; i < model.num_rows; ++i) {
      if (problem.basis.row_status[i] != kBasic) step = std::max(step, std::fabs(activity[i]));
    }
  }
  if (step == 0.0) step = 1.0;
  for (int j = 0; j < model.num_cols; ++j) z[j] = ray[j] / step;
}

/// Infeasibility that presolve proved comes without multipliers: the dual simplex finds them.
void find_farkas(Environment& environment, Problem& problem) {
  DriverSettings settings = read_driver_settings(environment.settings(), problem.objective_sense());
  settings.presolve.on = false;
  const CallContext context{environment.messages(), environment.stop_check()};
  const TimeLimitScope time_limit(environment);
  problem.working_lp.reset();
  KeptLps kept;
  SolveResult result;
  if (solve_model(problem.model(), ModelChanges(), kept, StoredBasis(),
                  algorithm_of(LpMethod::dual), settings, context, result) &&
      result.status == kInfeasible) {
    problem.solution.farkas = std::move(result.solution.farkas);
  }
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVbinvcol(KLVenv env, KLVprob lp, int j, double* x) {
  // Column j of the inverse belongs to row j: B x = e_j.
  return with_factor(env, lp, x, index_check("KLVbinvcol", j, rows_of),
                     [&](CallerTableau& tableau) {
                       write_dense(tableau.inverse_column(j), tableau.num_rows(), x);
                     });
}

int KLVbinvrow(KLVenv env, KLVprob lp, int i, double* y) {
  return with_factor(
      env, lp, y, index_check("KLVbinvrow", i, rows_of),
      [&](CallerTableau& tableau) { write_dense(tableau.inverse_row(i), tableau.num_rows(), y); });
}

int KLVbinvacol(KLVenv env, KLVprob lp, int j, double* x) {
  const int index = j >= 0 ? j : -(j + 1);
  const auto count = [j](const Model& model) { return j >= 0 ? model.num_cols : model.num_rows; };
  return with_factor(env, lp, x, index_check("KLVbinvacol", index, count),
                     [&](CallerTableau& tableau) {
                       const int variable = j >= 0 ? j : tableau.num_cols() + index;
                       write_dense(tableau.column(variable), tableau.num_rows(), x);
                     });
}

int KLVbinvarow(KLVenv env, KLVprob lp, int i, double* z) {
  return with_factor(env, lp, z, index_check("KLVbinvarow", i, rows_of),
                     [&](CallerTableau& tableau) { tableau.structural_row(i, z); });
}

int KLVftran(KLVenv env, KLVprob lp, double* x) {
  return with_factor(env, lp, x, no_check, [&](CallerTableau& tableau) { tableau.ftran(x); });
}

int KLVbtran(KLVenv env, KLVprob lp, double* y) {
  return with_factor(env, lp, y, no_check, [&](CallerTableau& tableau) { tableau.btran(y); });
}

int KLVgetbhead(KLVenv env, KLVprob lp, int* head, double* x) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    WorkingLp* working = nullptr;
    KELVO_TRY(hold_solution_basis(environment, problem, working));
    const Vector<int>& header = working->simplex().header();
    const int n = problem.model().num_cols;
    for (int p = 0; p < problem.model().num_rows; ++p) {
      if (head != nullptr) head[p] = caller_index(header[p], n);
      if (x != nullptr) x[p] = stored_value(problem, header[p]);
    }
    return Status();
  });
}

int KLVgetijrow(KLVenv env, KLVprob lp, int i, int j, int* row_p) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(row_p));
    const Model& model = problem.model();
    if ((i >= 0) == (j >= 0)) return Status::failure(error::kIndexRange);
    if (i >= model.num_rows || j >= model.num_cols) return Status::failure(error::kIndexRange);
    WorkingLp* working = nullptr;
    KELVO_TRY(hold_solution_basis(environment, problem, working));
    const int variable = i >= 0 ? model.num_cols + i : j;
    const int position = CallerTableau(model, *working).position_of(variable);
    if (position < 0) return Status::failure(error::kNotBasic);
    *row_p = position;
    return Status();
  });
}

int KLVdualfarkas(KLVenv env, KLVprob lp, double* y, double* proof_p) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_linear(problem));
    KELVO_TRY(check_pointers(y));
    const SolutionRecord& solution = problem.solution;
    if (problem.solution_status == kInfeasible && solution.method == kMethodDual &&
        solution.farkas.empty() && !solution.has_primal) {
      find_farkas(environment, problem);
    }
    if (problem.solution_status != kInfeasible || solution.method != kMethodDual ||
        solution.farkas.empty()) {
      return Status::failure(error::kDualUnboundedRequired);
    }
    const double proof = farkas_proof(ModelProgram(problem.model()).view(), solution.farkas);
    if (!(proof > 0.0)) {
      environment.messages().send(Channel::warning,
                                  "Warning in Dual Farkas: possible scaling problem\n");
    }
    std::copy(solution.farkas.begin(), solution.farkas.end(), y);
    if (proof_p != nullptr) *proof_p = proof;
    return Status();
  });
}

int KLVgetray(KLVenv env, KLVprob lp, double* z) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(z));
    KELVO_TRY(check_stored_solution(problem));
    if (problem.solution_status != kUnbounded || problem.solution.ray.empty()) {
      return Status::failure(error::kUnboundedRequired);
    }
    write_ray(problem, z);
    return Status();
  });
}
