// The basis from which the next optimization starts: stored by the caller, or left by the last one.
#include <algorithm>

#include "prob/api_frame_prob.h"
#include "prob/data_check.h"
#include "prob/solution_access.h"

using namespace kelvo;

namespace {

constexpr int kAtLower = 0;
constexpr int kLastStatus = 3;

/// Problems that have no basis of their own.
Status check_has_bases(const Problem& problem) {
  if (is_mixed_integer(problem)) return Status::failure(error::kNotForMixedInteger);
  return problem.num_quadratic_constraints() == 0
             ? Status()
             : Status::failure(error::kNotForQuadraticConstraints);
}

Status check_basis_present(const Problem& problem) {
  return problem.basis.present ? Status() : Status::failure(error::kNoBasis);
}

Status check_norms(const Problem& problem, int len) {
  KELVO_TRY(check_has_bases(problem));
  KELVO_TRY(check_basis_present(problem));
  if (len < 0) return Status::failure(error::kBadArgument);
  return len <= problem.num_cols() ? Status() : Status::failure(error::kArrayTooLong);
}

/// A code that means nothing, which only comes without data checking, is taken for "at lower".
Vector<int> statuses(const int* codes, int count) {
  Vector<int> result(codes, codes + count);
  for (int& code : result) {
    if (code < kAtLower || code > kLastStatus) code = kAtLower;
  }
  return result;
}

/// 1201 or 1203 for a variable that the problem does not have.
Status check_head(Environment& environment, const Problem& problem, const int* head, int len) {
  for (int p = 0; p < len; ++p) {
    if (head[p] >= problem.num_cols()) return report(environment, error::kColumnIndex, head[p]);
    if (head[p] < -problem.num_rows()) return report(environment, error::kRowIndex, -(head[p] + 1));
  }
  return Status();
}

}  // namespace

int KLVcopybase(KLVenv env, KLVprob lp, const int* cstat, const int* rstat) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_bases(problem));
    problem.merge_pending();
    const int m = problem.num_rows();
    const int n = problem.num_cols();
    KELVO_TRY(check_pointers(cstat, rstat));
    const DataCheck check(environment);
    KELVO_TRY(check.basis_statuses(cstat, n));
    KELVO_TRY(check.basis_statuses(rstat, m));
    StoredBasis basis;
    basis.present = true;
    basis.col_status = statuses(cstat, n);
    basis.row_status = statuses(rstat, m);
    problem.store_start_basis(std::move(basis));
    return Status();
  });
}

int KLVgetbase(KLVenv env, KLVprob lp, int* cstat, int* rstat) {
  return api_read(env, lp, [&](Environment&, Problem& problem) -> Status {
    KELVO_TRY(check_has_bases(problem));
    KELVO_TRY(check_basis_present(problem));
    const StoredBasis& basis = problem.basis;
    if (cstat != nullptr) std::copy(basis.col_status.begin(), basis.col_status.end(), cstat);
    if (rstat != nullptr) std::copy(basis.row_status.begin(), basis.row_status.end(), rstat);
    return Status();
  });
}

int KLVcopypnorms(KLVenv env, KLVprob lp, const double* cnorm, const double* rnorm, int len) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    problem.merge_pending();
    KELVO_TRY(check_norms(problem, len));
    KELVO_TRY(check_pointers(cnorm, rnorm));
    const DataCheck check(environment);
    KELVO_TRY(check.numbers(cnorm, len));
    KELVO_TRY(check.numbers(rnorm, problem.num_rows()));
    Vector<double> columns(cnorm, cnorm + len);
    Vector<double> rows(rnorm, rnorm + problem.num_rows());
    problem.basis.col_norm.swap(columns);
    problem.basis.row_norm.swap(rows);
    return Status();
  });
}

int KLVcopydnorms(KLVenv env, KLVprob lp, const double* norm, const int* head, int len) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    problem.merge_pending();
    KELVO_TRY(check_norms(problem, len));
    KELVO_TRY(check_pointers(norm, head));
    KELVO_TRY(DataCheck(environment).numbers(norm, len));
    KELVO_TRY(check_head(environment, problem, head, len));
    Vector<double> norms(norm, norm + len);
    Vector<int> heads(head, head + len);
    problem.basis.head_norm.swap(norms);
    problem.basis.head.swap(heads);
    return Status();
  });
}
