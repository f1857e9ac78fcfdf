#include "lp/presolve/reductions/row_cancellation.h"

#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/row_copy.h"
#include "lp/presolve/reductions/substitution_rules.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

constexpr std::int64_t kWorkPerNonzero = 10;
// Shortest columns of the equation that are looked at for rows which may contain it.
constexpr int kSeeds = 4;
struct Demand {
  double most_missing;  // row r may lack this share of the equation's columns
  double least_gain;    // entries that go less entries that come, as a share of the equation's
};
// Rows that contain an equation come first: what is left of them often is worth much, and a less
// happy addition would have spoilt it.
constexpr Demand kDemands[] = {{0.1, 0.5}, {0.35, 0.25}};

class CancellationSearch {
 public:
  CancellationSearch(PresolveLp& lp, const Demand& demand, int since)
      : lp_(lp),
        demand_(demand),
        since_(since),
        rows_(lp),
        stale_(lp.num_rows(), 0),
        work_limit_(lp.work + kWorkPerNonzero * lp.matrix.num_nonzeros()),
        scattered_(lp.num_cols(), 0.0),
        hits_(lp.num_rows(), 0),
        met_(lp.num_cols(), 0) {}

  void run();

 private:
  void try_equation(int i);
  /// Calls see(column, value, place) for all entries of a row.
  template <class See>
  void walk(int i, See see) const {
    if (!stale_[i]) {
      for (const RowCopy::Entry& entry : rows_[i]) see(entry.col, entry.value, entry.place);
      return;
    }
    const LinkedMatrix& matrix = lp_.matrix;
    for (int e = matrix.row_first(i); e >= 0; e = matrix[e].row_next) {
      see(matrix[e].col, matrix[e].value, e);
    }
  }
  int find_seeds(int i, int (&seeds)[kSeeds]);
  bool cancel(int i, int r);
  /// The proportion -a_rj / a_ij that most columns share, and their number.
  double best_multiple(int& shared);
  bool entries_are_sound(int i, double multiple) const;
  void add_equation(int i, int r, double multiple);

  PresolveLp& lp_;
  const Demand& demand_;
  const int since_;
  const RowCopy rows_;
  Vector<char> stale_;  // [rows] 1: changed since the copy was made
  const std::int64_t work_limit_;
  Vector<double> scattered_;  // [columns] entries of the equation, else 0
  Vector<int> hits_;          // [rows] how many of the shortest columns meet the row
  Vector<int> candidates_;    // rows that meet enough of them
  Vector<char> met_;          // [columns] 1: the equation's column is in row r
  struct Common {
    double multiple;
    int entry;  // of row r
  };
  Vector<Common> common_;  // columns of the equation in row r
};

void CancellationSearch::run() {
  for (int i = 0; i < lp_.num_rows() && !lp_.tired() && lp_.work < work_limit_; ++i) {
    if (!lp_.row_alive[i] || !lp_.is_equation(i) || lp_.matrix.row_count(i) < 2) continue;
    try_equation(i);
    lp_.poll();
  }
}

/// The shortest columns of row i, at most kSeeds; their number.
int CancellationSearch::find_seeds(int i, int (&seeds)[kSeeds]) {
  const LinkedMatrix& matrix = lp_.matrix;
  int found = 0;
  walk(i, [&](int j, double, int) {
    const int length = matrix.col_count(j);
    int at = found < kSeeds ? found++ : kSeeds;
    for (; at > 0 && matrix.col_count(seeds[at - 1]) > length; --at) {
      if (at < kSeeds) seeds[at] = seeds[at - 1];
    }
    if (at < kSeeds) seeds[at] = j;
  });
  lp_.work += matrix.row_count(i);
  return found;
}

void CancellationSearch::try_equation(int i) {
  const LinkedMatrix& matrix = lp_.matrix;
  int seeds[kSeeds];
  const int num_seeds = find_seeds(i, seeds);
  const int missing = static_cast<int>(demand_.most_missing * matrix.row_count(i));
  const bool changed = lp_.row_list.changed_since(i, since_);
  candidates_.clear();
  for (int seed = 0; seed < num_seeds; ++seed) {
    for (int e = matrix.col_first(seeds[seed]); e >= 0; e = matrix[e].col_next) {
      if (hits_[matrix[e].row]++ == 0) candidates_.push_back(matrix[e].row);
    }
    lp_.work += matrix.col_count(seeds[seed]);
    // No row that comes now for the first time can meet enough of them.
    if (seed == 0 && missing == 0 && candidates_.size() == 1) break;
  }
  const int least_hits = std::max(1, num_seeds - missing);
  const auto hopeless = [&](int r) {
    return r == i || hits_[r] < least_hits || matrix.row_count(r) < matrix.row_count(i) - missing ||
           !(changed || lp_.row_list.changed_since(r, since_));
  };
  const auto end = std::remove_if(candidates_.begin(), candidates_.end(), [&](int r) {
    const bool goes = hopeless(r);
    hits_[r] = 0;
    return goes;
  });
  candidates_.erase(end, candidates_.end());
  if (candidates_.empty()) return;
  walk(i, [this](int j, double value, int) { scattered_[j] = value; });
  for (const int r : candidates_) {
    if (lp_.work < work_limit_) cancel(i, r);
  }
  walk(i, [this](int j, double, int) { scattered_[j] = 0.0; });
}

double CancellationSearch::best_multiple(int& shared) {
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

bool CancellationSearch::entries_are_sound(int i, double multiple) const {
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

bool CancellationSearch::cancel(int i, int r) {
  common_.clear();
  walk(r, [this](int j, double value, int place) {
    if (scattered_[j] != 0.0) common_.push_back({-value / scattered_[j], place});
  });
  lp_.work += lp_.matrix.row_count(r);
  const int length = lp_.matrix.row_count(i);
  const int missing = length - static_cast<int>(common_.size());
  if (missing > static_cast<int>(demand_.most_missing * length)) return false;
  int shared = 0;
  const double multiple = best_multiple(shared);
  if (shared - missing < demand_.least_gain * length || shared - missing < 1) return false;
  // What goes without a trace may have any size.
  if (shared < length && !entries_are_sound(i, multiple)) return false;
  add_equation(i, r, multiple);
  return true;
}

void CancellationSearch::add_equation(int i, int r, double multiple) {
  stale_[r] = 1;
  lp_.stack.push(RowCancellation(r, i, multiple));
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

void cancel_nonzeros(PresolveLp& lp, bool bold, int since) {
  CancellationSearch(lp, kDemands[bold], since).run();
}

void RowCancellation::restore_basis(const UndoEntries&, PostsolveState& state) const {
  BasisState& basis = state.basis;
  if (basis.rows[equation] == kBasic && basis.rows[row] != kBasic) basis.is_settled = false;
}

}  // namespace kelvo
