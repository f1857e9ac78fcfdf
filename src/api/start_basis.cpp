// The basis from which the next optimization starts: stored by the caller as codes, as values or
// from a file, or left by the last optimization.
#include <algorithm>
#include <cmath>

#include "api/frame/problem_frame.h"
#include "api/frame/text_file.h"
#include "env/params/param_numbers.h"
#include "io/basis/basis_file.h"
#include "lp/solve/conversion.h"
#include "prob/data/data_check.h"
#include "prob/solution_access.h"

namespace kelvo {
namespace {

/// Refuses problems that have no basis of their own.
Status check_has_bases(const Problem& problem) {
  if (is_mixed_integer(problem)) return Status::failure(error::kNotForMixedInteger);
  return problem.num_quadratic_constraints() == 0
             ? Status()
             : Status::failure(error::kNotForQuadraticConstraints);
}

/// A code that means nothing, which only comes without data checking, is read as "at lower".
int valid_code(int code) {
  return code < kAtLower || code > kFreeSuper ? kAtLower : code;
}

/// Checks the arrays cstat [columns] and rstat [rows] and fills the basis.
Status read_basis(Environment& environment, const Problem& problem, const int* cstat,
                  const int* rstat, StoredBasis& basis) {
  const int m = problem.num_rows();
  const int n = problem.num_cols();
  KELVO_TRY(check_pointers(cstat, rstat));
  const DataCheck check(environment);
  KELVO_TRY(check.basis_statuses(cstat, n));
  KELVO_TRY(check.basis_statuses(rstat, m));
  basis.present = true;
  basis.col_status.assign(cstat, cstat + n);
  basis.row_status.assign(rstat, rstat + m);
  for (int& code : basis.col_status) code = valid_code(code);
  for (int& code : basis.row_status) code = valid_code(code);
  return Status();
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

/// The basis in which every slack is basic.
StoredBasis resting_basis(const Model& model) {
  StoredBasis basis;
  basis.present = true;
  basis.row_status.assign(model.num_rows, kBasic);
  basis.col_status.reserve(model.num_cols);
  for (int j = 0; j < model.num_cols; ++j) {
    const double below = std::fabs(model.lower[j]), above = std::fabs(model.upper[j]);
    const bool is_free = below >= kInfiniteBound && above >= kInfiniteBound;
    basis.col_status.push_back(is_free ? kFreeSuper : above < below ? kAtUpper : kAtLower);
  }
  return basis;
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
}  // namespace kelvo

using namespace kelvo;

int KLVcopybase(KLVenv env, KLVprob lp, const int* cstat, const int* rstat) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_bases(problem));
    problem.merge_pending();
    StoredBasis basis;
    KELVO_TRY(read_basis(environment, problem, cstat, rstat, basis));
    problem.store_start_basis(std::move(basis));
    return Status();
  });
}

int KLVcopybasednorms(KLVenv env, KLVprob lp, const int* cstat, const int* rstat,
                      const double* dnorm) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_bases(problem));
    problem.merge_pending();
    StoredBasis basis;
    KELVO_TRY(read_basis(environment, problem, cstat, rstat, basis));
    KELVO_TRY(check_pointers(dnorm));
    const auto name_basic = [&basis](const Vector<int>& status, bool columns) {
      for (int k = 0; k < static_cast<int>(status.size()); ++k) {
        if (status[k] == kBasic) basis.head.push_back(columns ? k : -1 - k);
      }
    };
    name_basic(basis.col_status, true);
    name_basic(basis.row_status, false);
    const int count = static_cast<int>(basis.head.size());
    KELVO_TRY(DataCheck(environment).numbers(dnorm, count));
    basis.head_norm.assign(dnorm, dnorm + count);
    problem.store_start_basis(std::move(basis));
    return Status();
  });
}

int KLVcopypartialbase(KLVenv env, KLVprob lp, int ccnt, const int* cindices, const int* cstat,
                       int rcnt, const int* rindices, const int* rstat) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_bases(problem));
    problem.merge_pending();
    if (ccnt < 0 || rcnt < 0) return Status::failure(error::kBadArgument);
    if (ccnt > 0) KELVO_TRY(check_pointers(cindices, cstat));
    if (rcnt > 0) KELVO_TRY(check_pointers(rindices, rstat));
    KELVO_TRY(check_column_indices(environment, cindices, ccnt, problem.num_cols()));
    KELVO_TRY(check_row_indices(environment, rindices, rcnt, problem.num_rows()));
    const DataCheck check(environment);
    KELVO_TRY(check.basis_statuses(cstat, ccnt));
    KELVO_TRY(check.basis_statuses(rstat, rcnt));
    StoredBasis basis = resting_basis(problem.model());
    for (int k = 0; k < ccnt; ++k) basis.col_status[cindices[k]] = valid_code(cstat[k]);
    for (int k = 0; k < rcnt; ++k) basis.row_status[rindices[k]] = valid_code(rstat[k]);
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

int KLVcopystart(KLVenv env, KLVprob lp, const int* cstat, const int* rstat, const double* cprim,
                 const double* rprim, const double* cdual, const double* rdual) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_has_bases(problem));
    problem.merge_pending();
    const Model& model = problem.model();
    const StartValues values{cprim, rprim, cdual, rdual};
    const bool has_basis = cstat != nullptr || rstat != nullptr;
    if (!has_basis && !values.any()) return Status::failure(error::kNullPointer);
    const DataCheck check(environment);
    for (const double* array : {cprim, cdual}) KELVO_TRY(check.numbers(array, model.num_cols));
    for (const double* array : {rprim, rdual}) KELVO_TRY(check.numbers(array, model.num_rows));
    StoredBasis basis;
    if (has_basis) {
      KELVO_TRY(read_basis(environment, problem, cstat, rstat, basis));
      if (cprim != nullptr) basis.x.assign(cprim, cprim + model.num_cols);
    } else {
      basis = basis_from_values(model, values, environment.get_double(param::EPRHS));
    }
    problem.store_start_basis(std::move(basis));
    return Status();
  });
}

int KLVreadcopybase(KLVenv env, KLVprob lp, const char* filename) {
  return api_edit(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_file_name(filename));
    problem.merge_pending();
    MessageSink& sink = environment.messages();
    StoredBasis basis;
    KELVO_TRY(read_text_file(filename, ".bas", sink, [&](LineReader& lines) {
      return read_basis(lines, problem.model(), sink, basis);
    }));
    problem.store_start_basis(std::move(basis));
    return {};
  });
}

int KLVmbasewrite(KLVenv env, KLVprob lp, const char* filename) {
  return api_read(env, lp, [&](Environment& environment, Problem& problem) -> Status {
    KELVO_TRY(check_file_name(filename));
    KELVO_TRY(check_basis_present(problem));
    MessageSink& sink = environment.messages();
    KELVO_TRY(check_basis_size(problem.model(), problem.basis, sink));
    const int iterations =
        problem.solution_status != kNoSolution ? problem.solution.iterations : -1;
    return write_text_file(filename, sink, [&](FileStream& stream) {
      write_basis(problem.model(), problem.basis, iterations, sink, stream);
    });
  });
}
