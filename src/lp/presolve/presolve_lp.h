// The linear program while it is being reduced.
//
//     minimize    c'x + offset,   L <= A x <= U,   l <= x <= u
//
// over the rows and columns that are still alive. All changes go through the operations here, which
// keep the work lists, the bounds on the row activities and the counters in step. What is removed
// is recorded on the postsolve stack by the reduction that removes it; fix_column() and
// remove_row(), which nearly all reductions end with, record themselves.
//
// The bounds on the activity of every row are updated with each change; the rounding errors that
// collect are estimated alongside, and a row whose estimate grew well beyond that of a fresh sum
// is summed again before its next use.
#pragma once

#include "base/stop_check.h"
#include "lp/form/lp_problem.h"
#include "lp/presolve/activity.h"
#include "lp/presolve/linked_matrix.h"
#include "lp/presolve/postsolve.h"
#include "lp/presolve/presolve_settings.h"

namespace kelvo {

/// Lines whose data changed and that wait for a look, each listed once. Beside that it tells for
/// every line whether it changed since some moment, for reductions that look at the whole program.
class WorkList {
 public:
  explicit WorkList(int size) : listed_(size, 0), changed_(size, 0) {}
  /// Room for one more line.
  void grow() {
    listed_.push_back(0);
    changed_.push_back(0);
  }
  void add(int line) {
    changed_[line] = now_;
    if (listed_[line]) return;
    listed_[line] = 1;
    lines_.push_back(line);
  }
  bool empty() const { return next_ == lines_.size(); }
  int take() {
    const int line = lines_[next_++];
    listed_[line] = 0;
    if (next_ == lines_.size()) {
      lines_.clear();
      next_ = 0;
    }
    return line;
  }

  int next_moment() { return ++now_; }
  bool changed_since(int line, int moment) const { return changed_[line] >= moment; }

 private:
  Vector<char> listed_;  // [lines]
  Vector<int> changed_;  // [lines] moment of the last change
  int now_ = 0;
  Vector<int> lines_;
  std::size_t next_ = 0;
};

/// The lines alive, in their order, and their places.
struct KeptLines {
  explicit KeptLines(const Vector<char>& alive);
  Vector<int> lines;
  Vector<int> place;  // [lines before] or -1
};

class PresolveLp {
 public:
  /// Bounds of integer columns are rounded and bounds that cross within the tolerance closed;
  /// those that are empty then are a finding.
  PresolveLp(const LpProblem& lp, const PresolveSettings& settings, const ColumnMarks& marks,
             StopCheck& stop, PresolveProgress* progress = nullptr);

  const PresolveSettings& settings;
  LinkedMatrix matrix;
  double offset;
  Vector<double> cost, lower, upper;    // [columns]
  Vector<double> row_lower, row_upper;  // [rows]
  Vector<char> row_alive, col_alive;    // [rows], [columns]
  WorkList row_list, col_list;
  PostsolveStack stack;
  PresolveStats stats;
  Finding finding;
  std::int64_t work = 0;  // entries touched
  std::int64_t work_limit;

  int num_rows() const { return static_cast<int>(row_lower.size()); }
  int num_cols() const { return static_cast<int>(lower.size()); }
  bool is_equation(int i) const { return row_lower[i] == row_upper[i]; }
  bool is_fixed(int j) const { return lower[j] == upper[j]; }
  bool may_remove(int j) const { return marks_.is_protected.empty() || !marks_.is_protected[j]; }
  bool is_integer(int j) const { return !marks_.is_integer.empty() && marks_.is_integer[j]; }

  /// Ends the present moment of both lists. What changes from here on has changed since the value
  /// returned.
  int moment() {
    row_list.next_moment();
    return col_list.next_moment();
  }

  /// True when a reduction found that there is nothing to solve, or the caller wants to stop.
  bool ended() const { return finding.kind != FindingKind::none || stopped_ != StopReason::none; }
  /// True also when the work is done that presolve may do.
  bool tired() const { return ended() || work > work_limit; }
  StopReason stopped() const { return stopped_; }
  PresolveOutcome outcome() const;
  /// Calls the stop check once in a while.
  void poll() {
    if (work < next_poll_) return;
    next_poll_ = work + kPollInterval;
    if (stopped_ == StopReason::none) stopped_ = stop_.check();
    if (progress_ != nullptr) progress_->report(stats);
  }

  /// Calls the stop check now.
  StopReason poll_now() {
    if (stopped_ == StopReason::none) stopped_ = stop_.check();
    return stopped_;
  }

  const Activity& activity(int i);
  /// Bounds on column e.col that row e.row and the other columns of the row imply.
  Interval implied_bounds(int e);
  /// True when the rows imply the upper (or lower) bound of the column.
  bool is_implied(int j, bool upper_bound);
  /// True when rows imply both bounds of the column.
  bool is_implied_free(int j);

  /// Records and removes a column that is at `value` with the given status.
  void fix_column(int j, double value, int status);
  /// Records and removes a row that never binds.
  void remove_row(int i, RemovalCode reason);

  // The following record nothing.
  void change_bounds(int j, double new_lower, double new_upper);
  /// New limits; the row has to be looked at again, and its columns when a limit comes or goes.
  void change_limits(int i, double new_lower, double new_upper);
  void change_cost(int j, double new_cost);
  /// Takes a row and its entries out; its columns have to be looked at again.
  void erase_row(int i);
  /// Takes a column and its entries out, moving nothing to the right-hand sides.
  void erase_column(int j);
  /// A value for an entry that may exist or not; 0 erases it.
  void put_entry(int i, int j, double value);
  /// A value for the entry e; 0 erases it.
  void change_entry(int e, double value);
  /// True when no entry of the row is larger than `size`.
  bool row_is_within(int i, double size);

  /// Tightens the interval by [new_lower, new_upper], rounded for an integer column; false (with a
  /// finding) when nothing is left. Crossings within the tolerance close the interval.
  bool intersect_bounds(int j, double new_lower, double new_upper);

  /// Copies a column or row to the entries of the stack.
  Stretch record_column(int j, int except_row = -1);
  Stretch record_row(int i, int except_col = -1);
  /// The whole row, sharing the copy of an earlier record as long as the row has only lost columns
  /// since. Those come back after the record that is to be made and have the value 0 until then.
  Stretch record_row_once(int i);
  void fail(FindingKind kind, int line, int other = -1);

  /// Adds a row without entries.
  int add_row(double low, double high);
  /// Declares that a column takes whole values only: every solution that counts has them.
  void mark_integer(int j);
  /// Whether the column has to stay (see ColumnMarks).
  void protect(int j, bool stays);

  /// What is alive as a program of its own; of the rows and columns alive.
  LpProblem reduced_form(const KeptLines& rows, const KeptLines& cols) const;

 private:
  static constexpr std::int64_t kPollInterval = 20000;

  void tidy_bounds();
  /// Rounds the interval of an integer column inwards; false when nothing is left of it.
  bool rounds(int j, double& low, double& high) const;
  /// Keeps the books of an entry that had or has the value 0 when it does not exist.
  void note_entry(int i, int j, double old, double value);
  void sum_activity(int i);
  void sum_all_rows();

  StopCheck& stop_;
  PresolveProgress* const progress_;  // may be null
  ColumnMarks marks_;
  Vector<Activity> activity_;  // [rows]
  struct Errors {
    double min = 0.0, max = 0.0;
  };
  Vector<Errors> fresh_error_;  // [rows] errors of a fresh sum
  Vector<double> row_size_;     // [rows] at least the size of the largest entry
  Vector<Stretch> row_copy_;    // [rows] entries of the stack; empty: none that is up to date
  std::int64_t next_poll_ = kPollInterval;
  StopReason stopped_ = StopReason::none;
};

}  // namespace kelvo
