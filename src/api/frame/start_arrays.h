// Arrays of a start basis as callers hand them in.
#pragma once

#include "api/frame/problem_frame.h"
#include "prob/data/data_check.h"
#include "prob/solution_access.h"

namespace kelvo {

/// Refuses problems that have no basis of their own.
inline Status check_has_bases(const Problem& problem) {
  if (is_mixed_integer(problem)) return Status::failure(error::kNotForMixedInteger);
  return problem.num_quadratic_constraints() == 0
             ? Status()
             : Status::failure(error::kNotForQuadraticConstraints);
}

/// A code that means nothing, which only comes without data checking, is taken for "at lower".
inline int valid_code(int code) {
  return code < kAtLower || code > kFreeSuper ? kAtLower : code;
}

/// Checks the arrays cstat [columns] and rstat [rows] and fills the basis.
inline Status read_basis(Environment& environment, const Problem& problem, const int* cstat,
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

}  // namespace kelvo
