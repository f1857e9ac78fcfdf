// The unscaled numbers of a linear program, wherever they are stored: in an LpProblem, scaled or
// not, or in the arrays of the caller's model. The factors are powers of two, so nothing is
// rounded.
#pragma once

#include "lp/form/scaling.h"

namespace kelvo {

class ProgramView {
 public:
  /// Lp and scaling must outlive the view.
  explicit ProgramView(const LpProblem& lp, const Scaling& scaling = kNone)
      : num_rows(lp.num_rows),
        num_cols(lp.num_cols),
        begin_(lp.columns.start.data()),
        end_(lp.columns.start.data() + 1),
        index_(lp.columns.index.data()),
        value_(lp.columns.value.data()),
        cost_(lp.cost.data()),
        lower_(lp.lower.data()),
        upper_(lp.upper.data()),
        scaling_(scaling) {}

  /// Column j has the entries begin[j] .. end[j] - 1; the vectors by variable are those of
  /// LpProblem. Everything must outlive the view.
  ProgramView(int rows, int cols, const int* begin, const int* end, const int* index,
              const double* value, const double* cost, const double* lower, const double* upper)
      : num_rows(rows),
        num_cols(cols),
        begin_(begin),
        end_(end),
        index_(index),
        value_(value),
        cost_(cost),
        lower_(lower),
        upper_(upper),
        scaling_(kNone) {}

  const int num_rows;
  const int num_cols;

  double cost(int j) const { return scaling_.active() ? cost_[j] * scaling_.col[j] : cost_[j]; }
  /// Bounds of a variable; the logical of row i is num_cols + i.
  double lower(int v) const { return lower_[v] / scaling_.variable_factor(v, num_cols); }
  double upper(int v) const { return upper_[v] / scaling_.variable_factor(v, num_cols); }
  /// Limits of a row's activity.
  double row_lower(int i) const { return -upper(num_cols + i); }
  double row_upper(int i) const { return -lower(num_cols + i); }

  /// Calls visit(row, value) for the entries of column j.
  template <class Visit>
  void for_column(int j, Visit visit) const {
    if (!scaling_.active()) {
      for (int k = begin_[j]; k < end_[j]; ++k) visit(index_[k], value_[k]);
      return;
    }
    const double factor = scaling_.col[j];
    for (int k = begin_[j]; k < end_[j]; ++k) {
      visit(index_[k], value_[k] * scaling_.row[index_[k]] * factor);
    }
  }

 private:
  static inline const Scaling kNone{};

  const int* begin_;     // [num_cols]
  const int* end_;       // [num_cols]
  const int* index_;     // [entries]
  const double* value_;  // [entries]
  const double* cost_;   // [num_cols]
  const double* lower_;  // [num_cols + num_rows]
  const double* upper_;  // [num_cols + num_rows]
  const Scaling& scaling_;
};

}  // namespace kelvo
