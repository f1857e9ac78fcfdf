#include "lp/presolve/presolve_lp.h"

#include "lp/presolve/presolve_tolerances.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// An activity is summed again when its error estimate exceeds this and this many times that of a
// fresh sum: small enough to leave every test of presolve its meaning, rare enough to cost nothing.
constexpr double kErrorAllowed = 1e-10;
constexpr double kErrorGrowth = 8.0;

// Entries touched, as a multiple of the nonzeros, after which presolve stops.
constexpr std::int64_t kWorkPerNonzero = 200;
constexpr std::int64_t kLeastWork = 1000000;

}  // namespace

KeptLines::KeptLines(const Vector<char>& alive) : place(alive.size(), -1) {
  for (std::size_t line = 0; line < alive.size(); ++line) {
    if (!alive[line]) continue;
    place[line] = static_cast<int>(lines.size());
    lines.push_back(static_cast<int>(line));
  }
}

PresolveLp::PresolveLp(const LpProblem& lp, const PresolveSettings& presolve_settings,
                       const ColumnMarks& marks, StopCheck& stop, PresolveProgress* progress)
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
      marks_(marks),
      activity_(lp.num_rows),
      fresh_error_(lp.num_rows),
      row_size_(lp.num_rows, 0.0),
      row_copy_(lp.num_rows) {
  for (int i = 0; i < lp.num_rows; ++i) {
    row_lower[i] = -lp.upper[lp.num_cols + i] + 0.0;
    row_upper[i] = -lp.lower[lp.num_cols + i] + 0.0;
    row_list.add(i);
  }
  for (int j = 0; j < lp.num_cols; ++j) col_list.add(j);
  tidy_bounds();
  sum_all_rows();
}

PresolveOutcome PresolveLp::outcome() const {
  switch (finding.kind) {
    case FindingKind::none:
      break;
    case FindingKind::empty_column:
    case FindingKind::dual_bounds_column:
    case FindingKind::dual_bounds_row:
      return PresolveOutcome::dual_infeasible;
    case FindingKind::empty_row:
    case FindingKind::column_bounds:
    case FindingKind::integer_column:
    case FindingKind::forced_row:
    case FindingKind::implied_bounds:
    case FindingKind::duplicate_rows:
    case FindingKind::dependent_row:
    case FindingKind::integer_equation:
    case FindingKind::binary_negative:
    case FindingKind::binary_above_one:
    case FindingKind::inconsistent_sets:
    case FindingKind::infeasible_indicator:
    case FindingKind::probing:
      return PresolveOutcome::infeasible;
  }
  if (stopped_ != StopReason::none) {
    return stopped_ == StopReason::user_abort ? PresolveOutcome::aborted
                                              : PresolveOutcome::time_limit;
  }
  return stack.size() > 0 ? PresolveOutcome::reduced : PresolveOutcome::unchanged;
}

void PresolveLp::tidy_bounds() {
  // What crosses by no more than a row may be violated by is the same number twice.
  const auto closes = [this](double& low, double& high) {
    if (low <= high) return low < kInf && high > -kInf;
    if (!(low - high <= settings.feasibility_tolerance)) return false;
    low = high = 0.5 * low + 0.5 * high;
    return true;
  };
  for (int j = 0; j < num_cols() && !ended(); ++j) {
    const bool was_fixed = lower[j] == upper[j];
    if (!closes(lower[j], upper[j]) || !rounds(j, lower[j], upper[j])) {
      fail(was_fixed ? FindingKind::integer_column : FindingKind::column_bounds, j);
    }
  }
  for (int i = 0; i < num_rows() && !ended(); ++i) {
    if (!closes(row_lower[i], row_upper[i])) fail(FindingKind::implied_bounds, i);
  }
}

bool PresolveLp::rounds(int j, double& low, double& high) const {
  if (!is_integer(j)) return true;
  low = std::ceil(low - tol::kWholeBound);
  high = std::floor(high + tol::kWholeBound);
  return low <= high;
}

void PresolveLp::sum_activity(int i) {
  Activity& sum = activity_[i];
  sum = Activity();
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    sum.add(matrix[e].value, lower[matrix[e].col], upper[matrix[e].col]);
  }
  fresh_error_[i] = {sum.min_error, sum.max_error};
  work += matrix.row_count(i);
}

void PresolveLp::sum_all_rows() {
  // Column by column, in the order of the entries' storage.
  for (int j = 0; j < num_cols(); ++j) {
    for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
      const int i = matrix[e].row;
      activity_[i].add(matrix[e].value, lower[j], upper[j]);
      row_size_[i] = std::max(row_size_[i], std::fabs(matrix[e].value));
    }
  }
  for (int i = 0; i < num_rows(); ++i) {
    fresh_error_[i] = {activity_[i].min_error, activity_[i].max_error};
  }
  work += matrix.num_nonzeros();
}

const Activity& PresolveLp::activity(int i) {
  const auto grown = [](double error, double fresh) {
    return error > std::max(kErrorAllowed, kErrorGrowth * fresh);
  };
  if (grown(activity_[i].min_error, fresh_error_[i].min) ||
      grown(activity_[i].max_error, fresh_error_[i].max)) {
    sum_activity(i);
  }
  return activity_[i];
}

Interval PresolveLp::implied_bounds(int e) {
  const int i = matrix[e].row, j = matrix[e].col;
  return activity(i).implied(matrix[e].value, lower[j], upper[j], {row_lower[i], row_upper[i]});
}

bool PresolveLp::is_implied(int j, bool upper_bound) {
  work += matrix.col_count(j);
  for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
    if (std::fabs(matrix[e].value) < tol::kSmallPivot) continue;
    const Interval implied = implied_bounds(e);
    if (upper_bound ? implied.upper <= upper[j] + tol::same_slack(upper[j])
                    : implied.lower >= lower[j] - tol::same_slack(lower[j])) {
      return true;
    }
  }
  return false;
}

bool PresolveLp::is_implied_free(int j) {
  bool below = lower[j] == -kInf, above = upper[j] == kInf;
  work += matrix.col_count(j);
  for (int e = matrix.col_first(j); e >= 0 && !(below && above); e = matrix[e].col_next) {
    if (std::fabs(matrix[e].value) < tol::kSmallPivot) continue;
    const Interval implied = implied_bounds(e);
    below = below || implied.lower >= lower[j] - tol::same_slack(lower[j]);
    above = above || implied.upper <= upper[j] + tol::same_slack(upper[j]);
  }
  return below && above;
}

void PresolveLp::change_bounds(int j, double new_lower, double new_upper) {
  for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
    const int i = matrix[e].row;
    activity_[i].subtract(matrix[e].value, lower[j], upper[j]);
    activity_[i].add(matrix[e].value, new_lower, new_upper);
    row_list.add(i);
  }
  work += matrix.col_count(j);
  lower[j] = new_lower;
  upper[j] = new_upper;
  col_list.add(j);
}

void PresolveLp::change_limits(int i, double new_lower, double new_upper) {
  // Columns look first whether there is a limit in their way.
  const bool other_kind = (row_lower[i] == -kInf) != (new_lower == -kInf) ||
                          (row_upper[i] == kInf) != (new_upper == kInf) ||
                          is_equation(i) != (new_lower == new_upper);
  row_lower[i] = new_lower;
  row_upper[i] = new_upper;
  row_list.add(i);
  if (!other_kind) return;
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
    activity_[i].subtract(matrix[e].value, lower[j], upper[j]);
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
  if (e >= 0) {
    change_entry(e, value);
  } else if (value != 0.0) {
    matrix.insert(i, j, value);
    note_entry(i, j, 0.0, value);
  }
}

void PresolveLp::change_entry(int e, double value) {
  const int i = matrix[e].row, j = matrix[e].col;
  const double old = matrix[e].value;
  if (value == 0.0) {
    matrix.erase(e);
  } else {
    matrix.set_value(e, value);
  }
  note_entry(i, j, old, value);
}

void PresolveLp::note_entry(int i, int j, double old, double value) {
  if (old != 0.0) activity_[i].subtract(old, lower[j], upper[j]);
  if (value != 0.0) activity_[i].add(value, lower[j], upper[j]);
  row_size_[i] = std::max(row_size_[i], std::fabs(value));
  row_copy_[i] = Stretch();
  row_list.add(i);
  col_list.add(j);
}

bool PresolveLp::row_is_within(int i, double size) {
  if (row_size_[i] <= size) return true;
  row_size_[i] = 0.0;
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    row_size_[i] = std::max(row_size_[i], std::fabs(matrix[e].value));
  }
  work += matrix.row_count(i);
  return row_size_[i] <= size;
}

bool PresolveLp::intersect_bounds(int j, double new_lower, double new_upper) {
  double low = std::max(lower[j], new_lower);
  double high = std::min(upper[j], new_upper);
  const bool whole = rounds(j, low, high);
  if (whole && low > high) {
    const double size = std::max({1.0, std::fabs(low), std::fabs(high)});
    if (low - high <= settings.feasibility_tolerance * size) {
      // The bound that was there first stays.
      low == lower[j] ? high = low : low = high;
    }
  }
  if (!whole || !(low <= high) || low == kInf || high == -kInf) {
    fail(FindingKind::column_bounds, j);
    return false;
  }
  if (low != lower[j] || high != upper[j]) {
    stats.bounds_improved += (low != lower[j]) + (high != upper[j]);
    change_bounds(j, low, high);
  }
  return true;
}

Stretch PresolveLp::record_column(int j, int except_row) {
  Stretch stretch{stack.entries.size(), 0};
  for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
    if (matrix[e].row != except_row) stack.entries.add(matrix[e].row, matrix[e].value);
  }
  stretch.end = stack.entries.size();
  return stretch;
}

Stretch PresolveLp::record_row(int i, int except_col) {
  Stretch stretch{stack.entries.size(), 0};
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    if (matrix[e].col != except_col) stack.entries.add(matrix[e].col, matrix[e].value);
  }
  stretch.end = stack.entries.size();
  return stretch;
}

Stretch PresolveLp::record_row_once(int i) {
  if (row_copy_[i].empty()) {
    row_copy_[i] = record_row(i);
    work += matrix.row_count(i);
  }
  return row_copy_[i];
}

void PresolveLp::fail(FindingKind kind, int line, int other) {
  if (ended()) return;
  finding.kind = kind;
  finding.line = line;
  finding.other = other;
}

int PresolveLp::add_row(double low, double high) {
  const int i = matrix.add_row();
  row_lower.push_back(low);
  row_upper.push_back(high);
  row_alive.push_back(1);
  row_list.grow();
  row_list.add(i);
  activity_.emplace_back();
  fresh_error_.emplace_back();
  row_size_.push_back(0.0);
  row_copy_.emplace_back();
  --stats.rows_removed;
  return i;
}

void PresolveLp::mark_integer(int j) {
  if (marks_.is_integer.empty()) marks_.is_integer.assign(num_cols(), 0);
  marks_.is_integer[j] = 1;
  intersect_bounds(j, -kInf, kInf);
}

void PresolveLp::protect(int j, bool stays) {
  if (marks_.is_protected.empty()) marks_.is_protected.assign(num_cols(), 0);
  marks_.is_protected[j] = stays;
  col_list.add(j);
}

LpProblem PresolveLp::reduced_form(const KeptLines& rows, const KeptLines& cols) const {
  LpProblem reduced;
  reduced.num_rows = static_cast<int>(rows.lines.size());
  reduced.num_cols = static_cast<int>(cols.lines.size());
  reduced.offset = offset;
  SparseMatrix columns;
  columns.num_major = reduced.num_cols;
  columns.num_minor = reduced.num_rows;
  columns.start.reserve(reduced.num_cols + 1);
  columns.index.reserve(matrix.num_nonzeros());
  columns.value.reserve(matrix.num_nonzeros());
  for (const int j : cols.lines) {
    for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
      columns.index.push_back(rows.place[matrix[e].row]);
      columns.value.push_back(matrix[e].value);
    }
    columns.start.push_back(static_cast<int>(columns.index.size()));
  }
  reduced.rows = transpose(columns);
  columns = SparseMatrix();                   // large
  reduced.columns = transpose(reduced.rows);  // with ascending indices
  for (const int j : cols.lines) {
    reduced.cost.push_back(cost[j]);
    reduced.lower.push_back(lower[j]);
    reduced.upper.push_back(upper[j]);
  }
  for (const int i : rows.lines) {
    reduced.cost.push_back(0.0);
    reduced.lower.push_back(-row_upper[i]);
    reduced.upper.push_back(-row_lower[i]);
  }
  return reduced;
}

}  // namespace kelvo
