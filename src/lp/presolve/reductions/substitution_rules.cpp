#include "lp/presolve/reductions/substitution_rules.h"

#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

/// How far a cost pulls a column to where it has no bound.
double pull(const PresolveLp& lp, int j, double cost) {
  if (cost < 0.0 && lp.upper[j] == kInf) return -cost;
  if (cost > 0.0 && lp.lower[j] == -kInf) return cost;
  return 0.0;
}

}  // namespace

double sound_sum(double old, double added) {
  const double sum = old + added;
  const double terms = std::max(std::fabs(old), std::fabs(added));
  return std::fabs(sum) <= tol::kCancelled * terms ? 0.0 : sum;
}

bool entry_is_sound(const PresolveLp& lp, double old, double added) {
  const double sum = std::fabs(sound_sum(old, added));
  return sum == 0.0 || (sum >= tol::kSmallEntry && sum <= lp.settings.large_number);
}

void shift_limits(PresolveLp& lp, int i, double shift) {
  const bool equation = lp.is_equation(i);
  lp.row_lower[i] -= shift;
  lp.row_upper[i] = equation ? lp.row_lower[i] : lp.row_upper[i] - shift;
  lp.row_list.add(i);
}

void count_substitution(PresolveLp& lp) {
  --lp.stats.rows_removed;
  --lp.stats.cols_removed;
  ++lp.stats.substitutions;
}

void substitute_in_objective(PresolveLp& lp, int e, double rhs) {
  const int i = lp.matrix[e].row, j = lp.matrix[e].col;
  const double cost = lp.cost[j];
  if (cost == 0.0) return;
  const double a = lp.matrix[e].value;
  for (int f = lp.matrix.row_first(i); f >= 0; f = lp.matrix[f].row_next) {
    const int k = lp.matrix[f].col;
    if (k != j) lp.change_cost(k, sound_sum(lp.cost[k], -cost * lp.matrix[f].value / a));
  }
  lp.offset += cost * rhs / a;
}

bool cost_may_pass(const PresolveLp& lp, int e) {
  const int i = lp.matrix[e].row, j = lp.matrix[e].col;
  const double y = lp.cost[j] / lp.matrix[e].value;
  if (y == 0.0) return true;
  double before = pull(lp, j, lp.cost[j]), after = 0.0;
  for (int f = lp.matrix.row_first(i); f >= 0; f = lp.matrix[f].row_next) {
    const int k = lp.matrix[f].col;
    if (k == j) continue;
    before += pull(lp, k, lp.cost[k]);
    after += pull(lp, k, sound_sum(lp.cost[k], -y * lp.matrix[f].value));
  }
  return after <= before;
}

bool is_whole(double v) {
  return std::fabs(v) <= tol::kHugeBound &&
         std::fabs(v - std::round(v)) <= 4.0 * tol::kRounding * std::fabs(v);
}

bool stays_whole(PresolveLp& lp, int e, double rhs) {
  const int i = lp.matrix[e].row;
  if (!lp.is_integer(lp.matrix[e].col)) return true;
  const double a = lp.matrix[e].value;
  if (!is_whole(rhs / a)) return false;
  lp.work += lp.matrix.row_count(i);
  for (int f = lp.matrix.row_first(i); f >= 0; f = lp.matrix[f].row_next) {
    if (!lp.is_integer(lp.matrix[f].col) || !is_whole(lp.matrix[f].value / a)) return false;
  }
  return true;
}

}  // namespace kelvo
