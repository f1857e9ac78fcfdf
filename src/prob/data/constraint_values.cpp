#include "prob/data/constraint_values.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kelvo {
namespace {

/// By how much an activity violates "activity sense rhs".
double violation(char sense, double rhs, double activity) {
  const double excess = activity - rhs;
  if (sense == 'L') return std::max(excess, 0.0);
  if (sense == 'G') return std::min(excess, 0.0);
  return excess;
}

}  // namespace

double set_infeasibility(const SosSets& sets, int set, const double* x, double tolerance) {
  const int begin = sets.members.start[set];
  const int size = sets.members.start[set + 1] - begin;
  Vector<int> order(size);
  std::iota(order.begin(), order.end(), begin);
  const Vector<double>& weight = sets.members.value;
  std::sort(order.begin(), order.end(),
            [&](int a, int b) { return weight[a] != weight[b] ? weight[a] < weight[b] : a < b; });
  const auto magnitude = [&](int k) {
    const double value = std::fabs(x[sets.members.index[order[k]]]);
    return value <= tolerance ? 0.0 : value;
  };
  // The best members to keep: the largest one, or the largest pair of neighbours.
  double total = 0.0;
  double kept = 0.0;
  int nonzeros = 0;
  int kept_nonzeros = 0;
  for (int k = 0; k < size; ++k) {
    const double own = magnitude(k);
    const double next = sets.type[set] == '2' && k + 1 < size ? magnitude(k + 1) : 0.0;
    total += own;
    nonzeros += own > 0.0;
    if (own + next > kept) {
      kept = own + next;
      kept_nonzeros = (own > 0.0) + (next > 0.0);
    }
  }
  return nonzeros == kept_nonzeros ? 0.0 : total - kept;
}

double indicator_activity(const IndicatorConstraints& indicators, int k, const double* x) {
  const SparseMatrix& rows = indicators.rows.rows;
  long double sum = 0.0L;
  for (int p = rows.start[k]; p < rows.start[k + 1]; ++p) {
    sum += static_cast<long double>(rows.value[p]) * x[rows.index[p]];
  }
  return static_cast<double>(sum);
}

double indicator_infeasibility(const IndicatorConstraints& indicators, int k, const double* x,
                               const IndicatorTolerances& tolerances) {
  constexpr int kRowIfActive = 1;  // bits of the relation
  constexpr int kActiveIfRow = 2;
  const bool complemented = indicators.complemented[k] != 0;
  const int column = indicators.column[k];
  const double active_value = complemented ? 0.0 : 1.0;
  const double inactive_value = complemented ? 1.0 : 0.0;
  const double switch_value = column >= 0 ? x[column] : inactive_value;
  const double row_violation = violation(indicators.rows.sense[k], indicators.rows.rhs[k],
                                         indicator_activity(indicators, k, x));
  const bool holds = std::fabs(row_violation) <= tolerances.feasibility;
  const bool inactive = std::fabs(switch_value - inactive_value) <= tolerances.integrality;
  const int relation = indicators.relation[k];
  if ((relation & kRowIfActive) != 0 && !inactive && !holds) return row_violation;
  if ((relation & kActiveIfRow) != 0 && inactive && holds) return switch_value - active_value;
  return 0.0;
}

double quadratic_activity(const QuadraticConstraint& constraint, const double* x) {
  long double sum = 0.0L;
  for (std::size_t p = 0; p < constraint.linear_index.size(); ++p) {
    sum += static_cast<long double>(constraint.linear_value[p]) * x[constraint.linear_index[p]];
  }
  for (std::size_t p = 0; p < constraint.quad_row.size(); ++p) {
    sum += static_cast<long double>(constraint.quad_value[p]) * x[constraint.quad_row[p]] *
           x[constraint.quad_col[p]];
  }
  return static_cast<double>(sum);
}

double quadratic_infeasibility(const QuadraticConstraint& constraint, const double* x) {
  return violation(constraint.sense, constraint.rhs, quadratic_activity(constraint, x));
}

}  // namespace kelvo
