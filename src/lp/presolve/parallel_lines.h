// Finds rows (or columns) that are multiples of each other.
//
// Every line gets a number that multiples share: the sum of a pseudo-random number per position
// times the entry, over the entry at the smallest position. Lines are sorted by length and number;
// neighbours whose numbers agree but for rounding are compared entry by entry. (After J. A. Tomlin
// and J. S. Welch, "Finding duplicate rows in a linear programming model", 1986, in effect.)
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
    for (std::size_t first = 0; first < lines_.size() && !lp_.ended();) {
      int kept = lines_[first].line;
      std::size_t next = first + 1;
      scatter(kept);
      while (next < lines_.size() && similar(lines_[first], lines_[next]) && !lp_.ended()) {
        const int other = lines_[next].line;
        const double ratio = compare(other);
        if (ratio != 0.0 && merge(kept, other, ratio) == Gone::kept) {
          gather(kept);
          kept = other;
          scatter(kept);
        }
        ++next;
        lp_.poll();
      }
      gather(kept);
      first = next;
    }
  }

 private:
  struct Line {
    double number;
    int count;
    int line;
  };

  static bool similar(const Line& a, const Line& b);
  void scatter(int line);
  void gather(int line);
  /// other = ratio * the scattered line, or 0.
  double compare(int other);
  int first(int line) const {
    return rows_ ? lp_.matrix.row_first(line) : lp_.matrix.col_first(line);
  }
  int next(int e) const { return rows_ ? lp_.matrix[e].row_next : lp_.matrix[e].col_next; }
  int position(int e) const { return rows_ ? lp_.matrix[e].col : lp_.matrix[e].row; }

  PresolveLp& lp_;
  const bool rows_;
  Vector<Line> lines_;
  Vector<double> scattered_;  // [positions] entries of one line, else 0
  Vector<int> places_;        // positions scattered
};

}  // namespace kelvo
