// Queries of the result of the last optimization.
#include "prob/solution.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "api/frame/problem_frame.h"
#include "prob/solution_access.h"
#include "prob/status_table.h"

namespace kelvo {
namespace {

void copy_slice(const Vector<double>& values, int begin, int end, double* out) {
  std::copy(values.begin() + begin, values.begin() + (end + 1), out);
}

void write_slacks(const Problem& problem, int begin, int end, double* out) {
  Vector<double> scratch;
  const Vector<double>& activity = activities(problem, scratch);
  for (int i = begin; i <= end; ++i) {
    out[i - begin] = row_slack(problem.model(), i, activity[i]);
  }
}

/// The frame of a query of one value per column (row) of a range: write(problem).
template <class Write>
int query_columns(const char* function, KLVenv env, KLVprob lp, const double* out, int begin,
                  int end, Needs needs, Write write) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(out));
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, problem.model().num_cols));
    KELVO_TRY(check_values(problem, needs));
    write(problem);
    return Status();
  });
}

template <class Write>
int query_rows(const char* function, KLVenv env, KLVprob lp, const double* out, int begin, int end,
               Needs needs, Write write) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(out));
    KELVO_TRY(check_index_range(environment, function, begin, end, 0, problem.model().num_rows));
    KELVO_TRY(check_values(problem, needs));
    write(problem);
    return Status();
  });
}

/// The frame of a query of one number of the last optimization: read(problem, value) -> Status.
template <class Read>
int query_number(KLVenv env, KLVprob lp, Read read) {
  int value = 0;
  const int code = api_read(
      env, lp, [&](Environment&, Problem& problem) -> Status { return read(problem, value); });
  return code == 0 ? value : 0;
}

template <class T>
void put(T* out, T value) {
  if (out != nullptr) *out = value;
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVsolution(KLVenv env, KLVprob lp, int* status_p, double* objective_p, double* x, double* pi,
                double* slack, double* dj) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    const bool duals = pi != nullptr || dj != nullptr;
    const bool values = x != nullptr || slack != nullptr;
    const bool mixed_integer = is_mixed_integer(problem);
    if (duals || values || !mixed_integer) {
      KELVO_TRY(check_values(problem, duals ? Needs::dual : Needs::primal));
    } else if (!problem.incumbent.present) {
      return Status::failure(error::kNoSolution);
    }
    const Model& model = problem.model();
    if (slack != nullptr) write_slacks(problem, 0, model.num_rows - 1, slack);
    if (x != nullptr) copy_slice(primal_values(problem), 0, model.num_cols - 1, x);
    if (pi != nullptr) copy_slice(problem.solution.pi, 0, model.num_rows - 1, pi);
    if (dj != nullptr) copy_slice(problem.solution.dj, 0, model.num_cols - 1, dj);
    put(status_p, problem.solution_status);
    put(objective_p, mixed_integer ? problem.incumbent.objective : problem.solution.objective);
    return Status();
  });
}

int KLVsolninfo(KLVenv env, KLVprob lp, int* method_p, int* type_p, int* primal_feasible_p,
                int* dual_feasible_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    const SolutionInfo info = solution_info(problem);
    put(method_p, info.method);
    put(type_p, info.kind);
    put(primal_feasible_p, info.primal_feasible ? 1 : 0);
    put(dual_feasible_p, info.dual_feasible ? 1 : 0);
    return Status();
  });
}

int KLVgetstat(KLVenv env, KLVprob lp) {
  return query_number(env, lp, [](const Problem& problem, int& value) -> Status {
    value = problem.solution_status;
    return Status();
  });
}

int KLVgetmethod(KLVenv env, KLVprob lp) {
  return query_number(env, lp, [](const Problem& problem, int& value) -> Status {
    if (is_mixed_integer(problem)) {
      if (problem.solution_status == kNoSolution) return Status::failure(error::kNoSolution);
      value = mixed_integer_method(problem.solution_status);
      return Status();
    }
    if (!has_continuous_solution(problem)) return Status::failure(error::kNoSolution);
    value = problem.solution.method;
    return Status();
  });
}

int KLVgetobjval(KLVenv env, KLVprob lp, double* objective_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (is_mixed_integer(problem)) {
      KELVO_TRY(check_pointers(objective_p));
      if (!problem.incumbent.present) return Status::failure(error::kNoSolution);
      *objective_p = problem.incumbent.objective;
      return Status();
    }
    if (!has_continuous_solution(problem)) return Status::failure(error::kNoSolution);
    put(objective_p, problem.solution.objective);
    return Status();
  });
}

int KLVgetx(KLVenv env, KLVprob lp, double* x, int begin, int end) {
  return query_columns("KLVgetx", env, lp, x, begin, end, Needs::primal,
                       [&](const Problem& p) { copy_slice(primal_values(p), begin, end, x); });
}

int KLVgetslack(KLVenv env, KLVprob lp, double* slack, int begin, int end) {
  return query_rows("KLVgetslack", env, lp, slack, begin, end, Needs::primal,
                    [&](const Problem& p) { write_slacks(p, begin, end, slack); });
}

int KLVgetax(KLVenv env, KLVprob lp, double* ax, int begin, int end) {
  return query_rows("KLVgetax", env, lp, ax, begin, end, Needs::primal, [&](const Problem& p) {
    Vector<double> scratch;
    copy_slice(activities(p, scratch), begin, end, ax);
  });
}

int KLVgetpi(KLVenv env, KLVprob lp, double* pi, int begin, int end) {
  return query_rows("KLVgetpi", env, lp, pi, begin, end, Needs::dual,
                    [&](const Problem& p) { copy_slice(p.solution.pi, begin, end, pi); });
}

int KLVgetdj(KLVenv env, KLVprob lp, double* dj, int begin, int end) {
  return query_columns("KLVgetdj", env, lp, dj, begin, end, Needs::dual,
                       [&](const Problem& p) { copy_slice(p.solution.dj, begin, end, dj); });
}

int KLVgetrowinfeas(KLVenv env, KLVprob lp, const double* x, double* infeas, int begin, int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const Model& model = problem.model();
    KELVO_TRY(check_pointers(infeas));
    KELVO_TRY(check_index_range(environment, "KLVgetrowinfeas", begin, end, 0, model.num_rows));
    if (x == nullptr) KELVO_TRY(check_values(problem, Needs::primal));
    Vector<double> scratch;
    if (x != nullptr) compute_row_activities(model, x, scratch);
    const Vector<double>& activity = x != nullptr ? scratch : activities(problem, scratch);
    for (int i = begin; i <= end; ++i) {
      infeas[i - begin] = row_infeasibility(model, i, activity[i]);
    }
    return Status();
  });
}

int KLVgetcolinfeas(KLVenv env, KLVprob lp, const double* x, double* infeas, int begin, int end) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    const Model& model = problem.model();
    KELVO_TRY(check_pointers(infeas));
    KELVO_TRY(check_index_range(environment, "KLVgetcolinfeas", begin, end, 0, model.num_cols));
    if (x == nullptr) KELVO_TRY(check_values(problem, Needs::primal));
    const double* const point = x != nullptr ? x : primal_values(problem).data();
    for (int j = begin; j <= end; ++j) {
      infeas[j - begin] = column_infeasibility(model, j, point[j]);
    }
    return Status();
  });
}

int KLVgetitcnt(KLVenv env, KLVprob lp) {
  return query_number(env, lp, [](const Problem& problem, int& value) -> Status {
    value = problem.solution.iterations;
    return Status();
  });
}

int KLVgetphase1cnt(KLVenv env, KLVprob lp) {
  return query_number(env, lp, [](const Problem& problem, int& value) -> Status {
    value = problem.solution.phase_one_iterations;
    return Status();
  });
}

int KLVgetbaritcnt(KLVenv env, KLVprob lp) {
  return query_number(env, lp, [](const Problem& problem, int& value) -> Status {
    value = problem.solution.barrier_iterations;
    return Status();
  });
}

char* KLVgetstatstring(KLVenv, int status, char* buffer) {
  if (buffer == nullptr) return nullptr;
  const StatusText* const row = find_status_text(status);
  std::strcpy(buffer, row != nullptr ? row->text : "Unknown status value");
  return row != nullptr ? buffer : nullptr;
}
