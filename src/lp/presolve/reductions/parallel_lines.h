// Finds rows (or columns) that are multiples of each other.
//
// Every line gets a number that multiples share: the sum of a pseudo-random number per position
// times the entry, over the entry at the smallest position. Lines are sorted by length and number;
// neighbours whose numbers agree but for rounding are compared entry by entry. (After J. A. Tomlin
// and J. S. Welch, "Finding duplicate rows in a linear programming model", 1986, in effect.)
//
// The sorted list is kept from one search to the next: only lines that changed in between get a
// new number, and only pairs with such a line are looked at.
#pragma once

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

class ParallelLines {
 public:
  /// All rows (or columns) that are alive and have at least `least_count` entries.
  ParallelLines(PresolveLp& lp, bool rows, int least_count);

  /// Calls merge(kept, other, ratio) for pairs with  other = ratio * kept; the return value tells
  /// whether `other` is gone; when it says that `kept` went, the other one is kept from then on.
  enum class Gone { neither, other, kept };
  template <class Merge>
  void for_each_pair(Merge merge) {
    const int last_search = moment_;
    update();
    for (std::size_t first = 0; first < lines_.size() && !lp_.ended();) {
      std::size_t end = first + 1;
      bool changed = list().changed_since(lines_[first].line, last_search);
      for (; end < lines_.size() && similar(lines_[first], lines_[end]); ++end) {
        changed = changed || list().changed_since(lines_[end].line, last_search);
      }
      if (changed && end - first > 1) compare_group(first, end, merge);
      first = end;
    }
  }

 private:
  struct Line {
    double number;
    int count;
    int line;
  };

  template <class Merge>
  void compare_group(std::size_t first, std::size_t end, Merge merge) {
    int kept = lines_[first].line;
    scatter(kept);
    for (std::size_t next = first + 1; next < end && !lp_.ended(); ++next) {
      const int other = lines_[next].line;
      const double ratio = compare(other);
      if (ratio != 0.0 && merge(kept, other, ratio) == Gone::kept) {
        gather();
        kept = other;
        scatter(kept);
      }
      lp_.poll();
    }
    gather();
  }

  /// Brings the list of lines up to date.
  void update();
  /// Numbers of the lines in changed_, in their order.
  void number_lines();
  void number_rows_together();
  static bool less(const Line& a, const Line& b);
  static bool similar(const Line& a, const Line& b);
  void scatter(int line);
  void gather();
  /// other = ratio * the scattered line, or 0.
  double compare(int other);

  WorkList& list() const { return rows_ ? lp_.row_list : lp_.col_list; }
  const Vector<char>& alive() const { return rows_ ? lp_.row_alive : lp_.col_alive; }
  int count(int line) const {
    return rows_ ? lp_.matrix.row_count(line) : lp_.matrix.col_count(line);
  }
  int first(int line) const {
    return rows_ ? lp_.matrix.row_first(line) : lp_.matrix.col_first(line);
  }
  int next(int e) const { return rows_ ? lp_.matrix[e].row_next : lp_.matrix[e].col_next; }
  int position(int e) const { return rows_ ? lp_.matrix[e].col : lp_.matrix[e].row; }

  PresolveLp& lp_;
  const bool rows_;
  const int least_count_;
  int moment_ = 0;            // of the last search
  Vector<double> keys_;       // [positions]
  Vector<Line> lines_;        // sorted
  Vector<Line> changed_;      // since the last search
  Vector<Line> merged_;       // room for the two together
  Vector<double> scattered_;  // [positions] entries of one line, else 0
  Vector<int> places_;        // positions scattered
};

}  // namespace kelvo
