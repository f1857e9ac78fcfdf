// Nonzeros that an equation cancels in other rows.
//
// With an equation  a_i x = b_i  any multiple of it may be added to another row r:
//
//     L <= a_r x <= U   becomes   L + t b_i <= (a_r + t a_i) x <= U + t b_i.
//
// Where most of the columns of the equation occur in row r in one proportion, t = -a_rj / a_ij
// takes them out of r. Often what is left of r forces its columns, repeats another row or holds
// always. (After S. F. Chang and S. T. McCormick, "A hierarchical algorithm for making sparse
// matrices sparser", Mathematical Programming 56, 1992, without its matchings.)
//
// Rows r come from the two shortest columns of the equation, one of which they must meet. The
// search is limited to a multiple of the number of nonzeros.
//
// Way back: y_i gains t y_r; all else stays.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

constexpr std::int64_t kWorkPerNonzero = 10;
// Row r may lack this share of the equation's columns.
constexpr double kMostMissing = 0.1;
// Entries that are gone less entries that came, as a share of the equation's.
constexpr double kLeastGain = 0.5;

class RowCancellation {
 public:
  RowCancellation(PresolveLp& lp, int since)
      : lp_(lp),
        since_(since),
        work_limit_(lp.work + kWorkPerNonzero * lp.matrix.num_nonzeros()),
        scattered_(lp.num_cols(), 0.0),
        asked_(lp.num_rows(), -1),
        met_(lp.num_cols(), 0) {}

  void run();

 private:
  void try_equation(int i);
  void try_rows_of(int j, int i);
  bool cancel(int i, int r);
  /// The proportion -a_rj / a_ij that most columns share, and their number.
  double best_multiple(int& shared);
  bool entries_are_sound(int i, double multiple) const;
  void add_equation(int i, int r, double multiple);

  PresolveLp& lp_;
  const int since_;
  const std::int64_t work_limit_;
  Vector<double> scattered_;  // [columns] entries of the equation, else 0
  Vector<int> asked_;         // [rows] last equation that was tried on the row
  Vector<char> met_;          // [columns] 1: the equation's column is in row r
  struct Common {
    double multiple;
    int entry;  // of row r
  };
  Vector<Common> common_;  // columns of the equation in row r
};

void RowCancellation::run() {
  for (int i = 0; i < lp_.num_rows() && !lp_.tired() && lp_.work < work_limit_; ++i) {
    if (!lp_.row_alive[i] || !lp_.is_equation(i) || lp_.matrix.row_count(i) < 2) continue;
    try_equation(i);
    lp_.poll();
  }
}

void RowCancellation::try_equation(int i) {
  const LinkedMatrix& matrix = lp_.matrix;
  int shortest[2] = {-1, -1};
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    const int j = matrix[e].col;
    if (shortest[0] < 0 || matrix.col_count(j) < matrix.col_count(shortest[0])) {
      shortest[1] = shortest[0];
      shortest[0] = j;
    } else if (shortest[1] < 0 || matrix.col_count(j) < matrix.col_count(shortest[1])) {
      shortest[1] = j;
    }
  }
  lp_.work += matrix.row_count(i);
  if (matrix.col_count(shortest[1]) < 2) return;
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    scattered_[matrix[e].col] = matrix[e].value;
  }
  // A row that lacks one of the two must not lack another of few.
  const bool second = kMostMissing * matrix.row_count(i) >= 1.0;
  try_rows_of(shortest[0], i);
  if (second) try_rows_of(shortest[1], i);
  for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
    scattered_[matrix[e].col] = 0.0;
  }
}

void RowCancellation::try_rows_of(int j, int i) {
  const LinkedMatrix& matrix = lp_.matrix;
  const bool changed = lp_.row_list.changed_since(i, since_);
  const int least = static_cast<int>(std::ceil((1.0 - kMostMissing) * matrix.row_count(i)));
  for (int e = matrix.col_first(j); e >= 0 && lp_.work < work_limit_;) {
    const int r = matrix[e].row;
    e = matrix[e].col_next;  // the entry may go
    ++lp_.work;
    if (r == i || asked_[r] == i || matrix.row_count(r) < least) continue;
    if (!changed && !lp_.row_list.changed_since(r, since_)) continue;
    asked_[r] = i;
    cancel(i, r);
  }
}

double RowCancellation::best_multiple(int& shared) {
  std::sort(common_.begin(), common_.end(),
            [](const Common& a, const Common& b) { return a.multiple < b.multiple; });
  double best = 0.0;
  shared = 0;
  for (std::size_t first = 0, next = 0; first < common_.size(); first = next) {
    const double multiple = common_[first].multiple;
    while (next < common_.size() &&
           common_[next].multiple - multiple <= 0.5 * tol::kCancelled * std::fabs(multiple)) {
      ++next;
    }
    if (static_cast<int>(next - first) <= shared) continue;
    shared = static_cast<int>(next - first);
    best = multiple;
  }
  return best;
}

bool RowCancellation::entries_are_sound(int i, double multiple) const {
  const double ratio = lp_.settings.coefficient_ratio;
  if (std::fabs(multiple) > ratio || std::fabs(multiple) * ratio < 1.0) return false;
  for (const Common& common : common_) {
    const MatrixEntry& entry = lp_.matrix[common.entry];
    if (!entry_is_sound(lp_, entry.value, multiple * scattered_[entry.col])) return false;
  }
  for (int e = lp_.matrix.row_first(i); e >= 0; e = lp_.matrix[e].row_next) {
    if (!entry_is_sound(lp_, 0.0, multiple * lp_.matrix[e].value)) return false;
  }
  return true;
}

bool RowCancellation::cancel(int i, int r) {
  common_.clear();
  for (int e = lp_.matrix.row_first(r); e >= 0; e = lp_.matrix[e].row_next) {
    const double value = scattered_[lp_.matrix[e].col];
    if (value != 0.0) common_.push_back({-lp_.matrix[e].value / value, e});
  }
  lp_.work += lp_.matrix.row_count(r);
  const int length = lp_.matrix.row_count(i);
  const int missing = length - static_cast<int>(common_.size());
  if (missing > kMostMissing * length) return false;
  int shared = 0;
  const double multiple = best_multiple(shared);
  if (shared - missing < kLeastGain * length || shared - missing < 1) return false;
  // What goes without a trace may have any size.
  if (shared < length && !entries_are_sound(i, multiple)) return false;
  add_equation(i, r, multiple);
  return true;
}

void RowCancellation::add_equation(int i, int r, double multiple) {
  lp_.stack.begin(UndoKind::row_cancellation);
  UndoRecord& record = lp_.stack.top();
  record.row = r;
  record.other = i;
  record.a = multiple;
  for (const Common& common : common_) met_[lp_.matrix[common.entry].col] = 1;
  for (int e = lp_.matrix.row_first(i); e >= 0; e = lp_.matrix[e].row_next) {
    const int j = lp_.matrix[e].col;
    if (!met_[j]) lp_.put_entry(r, j, multiple * lp_.matrix[e].value);
    met_[j] = 0;
  }
  for (const Common& common : common_) {
    const int e = common.entry;
    const double added = multiple * scattered_[lp_.matrix[e].col];
    lp_.change_entry(e, sound_sum(lp_.matrix[e].value, added));
  }
  shift_limits(lp_, r, -multiple * lp_.row_lower[i]);
  lp_.stats.coefficients_changed += static_cast<int>(common_.size());
}

}  // namespace

void cancel_nonzeros(PresolveLp& lp, int since) {
  RowCancellation(lp, since).run();
}

void undo_row_cancellation(const PostsolveStack&, const UndoRecord& record, PostsolveState& state) {
  state.y[record.other] += record.a * state.y[record.row];
}

}  // namespace kelvo
