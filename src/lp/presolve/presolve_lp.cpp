#include "lp/presolve/presolve_lp.h"

#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// An activity is summed again when its error estimate exceeds this and this many times that of a
// fresh sum: small enough to leave every test of presolve its meaning, rare enough to cost nothing.
constexpr double kErrorAllowed = 1e-10;
constexpr double kErrorGrowth = 8.0;

// Entries touched, as a multiple of the nonzeros, after which presolve lets well alone.
constexpr std::int64_t kWorkPerNonzero = 200;
constexpr std::int64_t kLeastWork = 1000000;

}  // namespace

PresolveLp::PresolveLp(const LpProblem& lp, const PresolveSettings& presolve_settings,
                       const Vector<char>& protected_columns, StopCheck& stop,
                       PresolveProgress* progress)
    : settings(presolve_settings),
      matrix(lp.columns),
      offset(lp.offset),
      cost(lp.cost.begin(), lp.cost.begin() + lp.num_cols),
      lower(lp.lower.begin(), lp.lower.begin() + lp.num_cols),
      upper(lp.upper.begin(), lp.upper.begin() + lp.num_cols),
      row_lower(lp.num_rows),
      row_upper(lp.num_rows),
      row_alive(lp.num_rows, 1),
      col_alive(lp.num_cols, 1),
      row_list(lp.num_rows),
      col_list(lp.num_cols),
      work_limit(std::max(kLeastWork, kWorkPerNonzero * lp.columns.num_nonzeros())),
      stop_(stop),
      progress_(progress),
      protected_(protected_columns),
      activity_(lp.num_rows) {
  for (int i = 0; i < lp.num_rows; ++i) {
    row_lower[i] = -lp.upper[lp.num_cols + i] + 0.0;
    row_upper[i] = -lp.lower[lp.num_cols + i] + 0.0;
    row_list.add(i);
  }
  for (int j = 0; j < lp.num_cols; ++j) col_list.add(j);
}

void PresolveLp::add_term(Activity& activity, double a, double low, double high, double sign) {
  const double at_min = a > 0.0 ? low : high;
  const double at_max = a > 0.0 ? high : low;
  if (std::isfinite(at_min)) {
    activity.min += sign * a * at_min;
    activity.error += tol::kRounding * (std::fabs(activity.min) + std::fabs(a * at_min));
  } else {
    activity.min_infinite += sign > 0.0 ? 1 : -1;
  }
  if (std::isfinite(at_max)) {
    activity.max += sign * a * at_max;
    activity.error += tol::kRounding * (std::fabs(activity.max) + std::fabs(a * at_max));
  } else {
    activity.max_infinite += sign > 0.0 ? 1 : -1;
  }
}

void PresolveLp::sum_activity(int i) {
  Activity& activity = activity_[i];
  activity = Activity();
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    add_term(activity, matrix[e].value, lower[matrix[e].col], upper[matrix[e].col], 1.0);
  }
  activity.fresh_error = activity.error;
  work += matrix.row_count(i);
}

const Activity& PresolveLp::activity(int i) {
  Activity& activity = activity_[i];
  if (activity.fresh_error < 0.0 ||
      activity.error > std::max(kErrorAllowed, kErrorGrowth * activity.fresh_error)) {
    sum_activity(i);
  }
  return activity;
}

PresolveLp::Implied PresolveLp::implied_bounds(int e) {
  const int i = matrix[e].row, j = matrix[e].col;
  const double a = matrix[e].value;
  const Activity& row = activity(i);
  // Ends of the activity of the other columns.
  const double low = a > 0.0 ? lower[j] : upper[j];
  const double high = a > 0.0 ? upper[j] : lower[j];
  double rest_min = -kInf, rest_max = kInf;
  if (std::isfinite(low)) {
    if (row.min_infinite == 0) rest_min = row.min - a * low - row.error;
  } else if (row.min_infinite == 1) {
    rest_min = row.min - row.error;
  }
  if (std::isfinite(high)) {
    if (row.max_infinite == 0) rest_max = row.max - a * high + row.error;
  } else if (row.max_infinite == 1) {
    rest_max = row.max + row.error;
  }
  // row_lower - rest_max <= a x_j <= row_upper - rest_min
  const double least = (row_lower[i] - rest_max) / a;
  const double most = (row_upper[i] - rest_min) / a;
  return a > 0.0 ? Implied{least, most} : Implied{most, least};
}

bool PresolveLp::is_implied_free(int j) {
  bool below = lower[j] == -kInf, above = upper[j] == kInf;
  work += matrix.col_count(j);
  for (int e = matrix.col_first(j); e >= 0 && !(below && above); e = matrix[e].col_next) {
    if (std::fabs(matrix[e].value) < tol::kSmallPivot) continue;
    const Implied implied = implied_bounds(e);
    below = below || implied.lower >= lower[j] - tol::same_slack(lower[j]);
    above = above || implied.upper <= upper[j] + tol::same_slack(upper[j]);
  }
  return below && above;
}

void PresolveLp::change_bounds(int j, double new_lower, double new_upper) {
  for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
    const int i = matrix[e].row;
    add_term(activity_[i], matrix[e].value, lower[j], upper[j], -1.0);
    add_term(activity_[i], matrix[e].value, new_lower, new_upper, 1.0);
    row_list.add(i);
  }
  work += matrix.col_count(j);
  lower[j] = new_lower;
  upper[j] = new_upper;
  col_list.add(j);
}

void PresolveLp::change_limits(int i, double new_lower, double new_upper) {
  row_lower[i] = new_lower;
  row_upper[i] = new_upper;
  row_list.add(i);
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) col_list.add(matrix[e].col);
  work += matrix.row_count(i);
}

void PresolveLp::change_cost(int j, double new_cost) {
  cost[j] = new_cost;
  col_list.add(j);
}

void PresolveLp::erase_row(int i) {
  work += matrix.row_count(i);
  for (int e = matrix.row_first(i); e >= 0;) {
    const int next = matrix[e].row_next;
    col_list.add(matrix[e].col);
    matrix.erase(e);
    e = next;
  }
  row_alive[i] = 0;
  ++stats.rows_removed;
}

void PresolveLp::erase_column(int j) {
  work += matrix.col_count(j);
  for (int e = matrix.col_first(j); e >= 0;) {
    const int next = matrix[e].col_next;
    const int i = matrix[e].row;
    add_term(activity_[i], matrix[e].value, lower[j], upper[j], -1.0);
    row_list.add(i);
    matrix.erase(e);
    e = next;
  }
  col_alive[j] = 0;
  ++stats.cols_removed;
}

void PresolveLp::put_entry(int i, int j, double value) {
  const int e = matrix.find(i, j);
  work += std::min(matrix.row_count(i), matrix.col_count(j)) + 1;
  if (e < 0) {
    if (value != 0.0) matrix.insert(i, j, value);
  } else if (value == 0.0) {
    matrix.erase(e);
  } else {
    matrix.set_value(e, value);
  }
  stale_activity(i);
  row_list.add(i);
  col_list.add(j);
}

bool PresolveLp::intersect_bounds(int j, double new_lower, double new_upper) {
  double low = std::max(lower[j], new_lower);
  double high = std::min(upper[j], new_upper);
  if (low > high) {
    const double size = std::max({1.0, std::fabs(low), std::fabs(high)});
    if (low - high > settings.feasibility_tolerance * size || !(low < kInf) || !(high > -kInf)) {
      fail(FindingKind::column_bounds, j);
      return false;
    }
    // The bound that was there first stays.
    if (low == lower[j]) {
      high = low;
    } else {
      low = high;
    }
  }
  if (low == kInf || high == -kInf) {
    fail(FindingKind::column_bounds, j);
    return false;
  }
  if (low != lower[j] || high != upper[j]) {
    stats.bounds_improved += (low != lower[j]) + (high != upper[j]);
    change_bounds(j, low, high);
  }
  return true;
}

void PresolveLp::record_column(int j, int except_row) {
  for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
    if (matrix[e].row != except_row) stack.add(matrix[e].row, matrix[e].value);
  }
}

void PresolveLp::record_row(int i, int except_col) {
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    if (matrix[e].col != except_col) stack.add(matrix[e].col, matrix[e].value);
  }
}

void PresolveLp::fail(FindingKind kind, int line, int other) {
  if (ended()) return;
  finding.kind = kind;
  finding.line = line;
  finding.other = other;
}

}  // namespace kelvo
