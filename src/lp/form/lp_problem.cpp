#include "lp/form/lp_problem.h"

namespace kelvo {

int find_empty_interval(const LpProblem& lp, double tolerance) {
  for (int v = 0; v < lp.num_vars(); ++v) {
    const double lower = lp.lower[v], upper = lp.upper[v];
    if (lower > upper + tolerance || lower == kInf || upper == -kInf) return v;
  }
  return -1;
}

void close_crossed_bounds(LpProblem& lp) {
  for (int v = 0; v < lp.num_vars(); ++v) {
    if (lp.lower[v] > lp.upper[v]) {
      lp.lower[v] = lp.upper[v] = 0.5 * lp.lower[v] + 0.5 * lp.upper[v];
    }
  }
}

Vector<double> row_activities(const LpProblem& lp, const Vector<double>& x) {
  Vector<long double> sum(lp.num_rows, 0.0L);
  const SparseMatrix& a = lp.columns;
  for (int j = 0; j < lp.num_cols; ++j) {
    const long double xj = x[j];
    if (xj == 0.0L) continue;
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) sum[a.index[k]] += a.value[k] * xj;
  }
  return Vector<double>(sum.begin(), sum.end());
}

LpProblem with_rows(const LpProblem& lp) {
  LpProblem copy(lp);
  if (copy.rows.num_major != copy.num_rows) copy.rows = transpose(copy.columns);
  return copy;
}

}  // namespace kelvo
