// The quadratic objective, and the certificate that it is not convex.
#include "api/frame/output.h"
#include "api/frame/problem_frame.h"
#include "prob/data/data_check.h"
#include "prob/data/quadratic_objective.h"
#include "prob/model/default_names.h"
#include "qp/definiteness.h"

namespace kelvo {
namespace {

constexpr const char* kObjective = "objective";

Status check_given(Environment& environment, const QuadraticColumns& q) {
  const int n = q.columns;
  KELVO_TRY(check_areas(environment, q.begin, q.count, n));
  const DataCheck check(environment);
  KELVO_TRY(check.column_areas(q.begin, q.count, n, n));
  for (int j = 0; j < n; ++j) {
    if (q.count[j] == 0) continue;
    KELVO_TRY(check_pointers(q.index, q.value));
    for (int p = q.begin[j]; p < q.begin[j] + q.count[j]; ++p) {
      KELVO_TRY(check.number_at(p, q.value[p]));
      if (q.index[p] < 0 || q.index[p] >= n) return Status::failure(error::kIndexRange);
    }
  }
  return Status();
}

Status check_flaws(Environment& environment, const Model& model, const QuadraticFlaws& flaws) {
  if (!DataCheck(environment).enabled()) return Status();
  if (flaws.duplicate_column >= 0) {
    return report_duplicate_pair(environment, model, kObjective, flaws.duplicate_row,
                                 flaws.duplicate_column);
  }
  return flaws.asymmetric ? report(environment, error::kNotSymmetric, kObjective) : Status();
}

void replace_quadratic(Problem& problem, SparseMatrix&& q) {
  problem.edit_model(ChangeKind::quadratic_objective,
                     [&](Model& model) { std::swap(model.quadratic, q); });
}

/// What queries of the quadratic objective ask first.
Status check_has_quadratic(const Problem& problem) {
  const bool has = problem.model().quadratic.num_major > 0 || problem.type() == kTypeQp ||
                   problem.type() == kTypeMiqp;
  return has ? Status() : Status::failure(error::kNotQuadratic);
}

bool is_column(const Problem& problem, int j) {
  return j >= 0 && j < problem.num_cols();
}

/// A count that is 0 for a problem without quadratic objective, and on failure.
template <class Count>
int count_quadratic(KLVenv env, KLVprob lp, Count count) {
  int result = 0;
  const int code = api_read(env, lp, [&](Environment&, Problem& problem) {
    result = count(problem.model().quadratic);
    return Status();
  });
  return code == 0 ? result : 0;
}

}  // namespace
}  // namespace kelvo

using namespace kelvo;

int KLVcopyquad(KLVenv env, KLVprob lp, const int* qmatbeg, const int* qmatcnt, const int* qmatind,
                const double* qmatval) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(qmatbeg, qmatcnt));
    const QuadraticColumns given{problem.num_cols(), qmatbeg, qmatcnt, qmatind, qmatval};
    KELVO_TRY(check_given(environment, given));
    QuadraticFlaws flaws;
    SparseMatrix q = symmetric_matrix(given, flaws);
    problem.merge_pending();
    KELVO_TRY(check_flaws(environment, problem.model(), flaws));
    replace_quadratic(problem, std::move(q));
    return Status();
  });
}

int KLVcopyqpsep(KLVenv env, KLVprob lp, const double* qsepvec) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_pointers(qsepvec));
    KELVO_TRY(DataCheck(environment).numbers(qsepvec, problem.num_cols()));
    replace_quadratic(problem, diagonal_matrix(qsepvec, problem.num_cols()));
    return Status();
  });
}

int KLVchgqpcoef(KLVenv env, KLVprob lp, int i, int j, double newvalue) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    if (!is_column(problem, i) || !is_column(problem, j)) {
      return Status::failure(error::kIndexRange);
    }
    KELVO_TRY(DataCheck(environment).number_at(0, newvalue));
    problem.change_quadratic_coefficient(i, j, newvalue);
    return Status();
  });
}

int KLVgetqpcoef(KLVenv env, KLVprob lp, int i, int j, double* coef_p) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_has_quadratic(problem));
    KELVO_TRY(check_pointers(coef_p));
    if (!is_column(problem, i) || !is_column(problem, j)) {
      return Status::failure(error::kIndexRange);
    }
    *coef_p = quadratic_coefficient(problem.model().quadratic, i, j);
    return Status();
  });
}

int KLVgetquad(KLVenv env, KLVprob lp, int* nzcnt_p, int* qmatbeg, int* qmatind, double* qmatval,
               int qmatspace, int* surplus_p, int begin, int end) {
  reset_counts(nzcnt_p, surplus_p);
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_quadratic(problem));
    KELVO_TRY(check_index_range(environment, "KLVgetquad", begin, end, 0, problem.num_cols()));
    return put_lines(problem.model().quadratic,
                     {{nzcnt_p, qmatspace, surplus_p}, qmatbeg, qmatind, qmatval}, begin, end);
  });
}

int KLVgetnumquad(KLVenv env, KLVprob lp) {
  return count_quadratic(env, lp, num_quadratic_columns);
}

int KLVgetnumqpnz(KLVenv env, KLVprob lp) {
  return count_quadratic(env, lp, [](const SparseMatrix& q) { return q.num_nonzeros(); });
}

int KLVqpindefcertificate(KLVenv env, KLVprob lp, double* x) {
  return api_problem(env, lp, [&](Environment&, Problem& problem) -> Status {
    if (problem.is_view()) return Status::failure(error::kNotSingleProblem);
    problem.merge_pending();
    const Model& model = problem.model();
    const bool quadratic =
        model.quadratic.num_major > 0 || problem.type() == kTypeQp || problem.type() == kTypeMiqp;
    if (!quadratic) return Status::failure(error::kNotQuadratic);
    KELVO_TRY(check_pointers(x));
    Vector<double> direction;
    if (!find_indefinite_direction(model.quadratic, model.sense, direction)) {
      return Status::failure(error::kNotIndefinite);
    }
    std::copy(direction.begin(), direction.end(), x);
    return Status();
  });
}
