#include "analysis/sensitivity.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

namespace {

// Limits of larger magnitude are reported as infinite.
constexpr double kLargestLimit = 1e19;

double reported(double limit) {
  if (limit > kLargestLimit) return kInfiniteBound;
  return limit < -kLargestLimit ? -kInfiniteBound : limit;
}

Range reported(double low, double high) {
  return {reported(low), reported(high)};
}

void tighten(double& limit, double distance, double rate) {
  limit = std::min(limit, std::max(0.0, distance) / std::fabs(rate));
}

}  // namespace

Range Sensitivity::cost_range(int column, const Moves& moves) const {
  const double cost = model_.objective[column];
  const bool minimize = model_.sense > 0;
  return reported(cost - (minimize ? moves.down : moves.up),
                  cost + (minimize ? moves.up : moves.down));
}

Sensitivity::Moves Sensitivity::nonbasic_cost_moves(int column) const {
  Moves moves;
  if (tableau_.is_fixed(column)) return moves;
  const double d = tableau_.reduced_cost(column);
  if (tableau_.may_rise(column)) moves.down = std::max(0.0, d);
  if (tableau_.may_fall(column)) moves.up = std::max(0.0, -d);
  return moves;
}

/// Variable v, nonbasic with tableau entry alpha, limits the moves of the cost of the row's basic
/// variable: d_v - t alpha must keep its sign.
void Sensitivity::limit_cost(int v, double alpha, Moves& moves) const {
  if (std::fabs(alpha) < kTableauEntry) return;
  const double d = tableau_.reduced_cost(v);
  if (tableau_.may_rise(v)) tighten(alpha > 0.0 ? moves.up : moves.down, d, alpha);
  if (tableau_.may_fall(v)) tighten(alpha > 0.0 ? moves.down : moves.up, -d, alpha);
}

void Sensitivity::objective(int begin, int end, double* low, double* high) {
  int basic = 0;
  for (int j = begin; j <= end; ++j) basic += tableau_.status(j) == kBasic;
  int movable = 0;
  for (int v = 0; v < tableau_.num_vars(); ++v) {
    movable += tableau_.status(v) != kBasic && !tableau_.is_fixed(v);
  }
  if (movable < basic) {
    objective_by_columns(begin, end, low, high);
  } else {
    objective_by_rows(begin, end, low, high);
  }
}

void Sensitivity::objective_by_rows(int begin, int end, double* low, double* high) {
  const auto store = [&](int column, const Moves& moves) {
    const Range range = cost_range(column, moves);
    low[column - begin] = range.low;
    high[column - begin] = range.high;
  };
  for (int j = begin; j <= end; ++j) {
    if (tableau_.status(j) != kBasic) store(j, nonbasic_cost_moves(j));
  }
  for (int p = 0; p < tableau_.num_rows(); ++p) {
    const int j = tableau_.head(p);
    if (j < begin || j > end) continue;
    Moves moves;
    tableau_.for_each_movable(p, [&](int v, double alpha) { limit_cost(v, alpha, moves); });
    store(j, moves);
  }
}

void Sensitivity::objective_by_columns(int begin, int end, double* low, double* high) {
  Vector<Moves> moves(end - begin + 1);
  for (int v = 0; v < tableau_.num_vars(); ++v) {
    if (tableau_.status(v) == kBasic || tableau_.is_fixed(v)) continue;
    for_each_entry(tableau_.column(v), [&](int p, double alpha) {
      const int j = tableau_.head(p);
      if (j >= begin && j <= end) limit_cost(v, alpha, moves[j - begin]);
    });
  }
  for (int j = begin; j <= end; ++j) {
    const bool basic = tableau_.status(j) == kBasic;
    const Range range = cost_range(j, basic ? moves[j - begin] : nonbasic_cost_moves(j));
    low[j - begin] = range.low;
    high[j - begin] = range.high;
  }
}

/// The basic variables move at sign * rates and must stay within their bounds.
void Sensitivity::limit_values(const WorkVector& rates, double sign, Moves& moves) const {
  for_each_entry(rates, [&](int p, double entry) {
    if (std::fabs(entry) < kTableauEntry) return;
    const int v = tableau_.head(p);
    const double rate = sign * entry;
    const double x = tableau_.value(v);
    const double to_lower = x - tableau_.lower(v);
    const double to_upper = tableau_.upper(v) - x;
    tighten(moves.up, rate > 0.0 ? to_upper : to_lower, rate);
    tighten(moves.down, rate > 0.0 ? to_lower : to_upper, rate);
  });
}

Range Sensitivity::right_hand_side(int row) {
  const int slack = model_.num_cols + row;
  const double rhs = model_.rhs[row];
  if (tableau_.status(slack) == kBasic) {
    // Nothing but the slack moves: value - t for a ranged row, value + t otherwise.
    const double x = tableau_.value(slack);
    const double to_lower = std::max(0.0, x - tableau_.lower(slack));
    const double to_upper = std::max(0.0, tableau_.upper(slack) - x);
    if (model_.row_sense[row] == 'R') return reported(rhs - to_upper, rhs + to_lower);
    return reported(rhs - to_lower, rhs + to_upper);
  }
  Moves moves;
  limit_values(tableau_.inverse_column(row), 1.0, moves);
  return reported(rhs - moves.down, rhs + moves.up);
}

/// Which of its bounds a nonbasic column stands at. The bounds of a fixed one coincide, and the
/// sign of its reduced cost says at which of them it would stand were they apart.
bool Sensitivity::stands_at_upper(int column) const {
  if (tableau_.is_fixed(column)) {
    const double d = tableau_.reduced_cost(column);
    if (std::fabs(d) >= kTableauEntry) return d < 0.0;
  }
  return tableau_.status(column) == kAtUpper;
}

Sensitivity::BoundRanges Sensitivity::bounds(int column) {
  const double x = tableau_.value(column);
  const double lower = tableau_.lower(column);
  const double upper = tableau_.upper(column);
  const Range below = reported(-kInf, x);
  const Range above = reported(x, kInf);
  const int status = tableau_.status(column);
  if (status == kBasic || status == kFreeSuper) return {below, above};
  Moves moves;
  limit_values(tableau_.column(column), -1.0, moves);
  if (stands_at_upper(column)) {
    return {below, reported(std::max(upper - moves.down, lower), upper + moves.up)};
  }
  return {reported(lower - moves.down, std::min(lower + moves.up, upper)), above};
}

}  // namespace kelvo
