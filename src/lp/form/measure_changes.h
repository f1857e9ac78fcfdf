// Measures a basic solution that differs little from one that has been measured: what none of the
// differences touches is as it was, and everything else is summed again from the program's numbers,
// exactly as complete_and_measure() does.
#pragma once

#include "lp/form/lp_solution.h"
#include "lp/form/verification.h"
#include "lp/form/verification_sums.h"

namespace kelvo {

/// A complete solution, and what complete_and_measure() or measure_changes() has found.
struct MeasuredSolution {
  LpSolution solution;
  Violations violations;
};

template <class Program>
class ChangeMeasure {
 public:
  ChangeMeasure(const Program& lp, const MeasuredSolution& before, LpSolution& solution)
      : lp_(lp),
        before_(before.solution),
        solution_(solution),
        found_(before.violations),
        place_(lp.num_rows, -1),
        dual_moved_(lp.num_rows, 0),
        column_changed_(lp.num_cols, 0) {}

  /// `changed` [count]: the columns whose bounds are not what they were.
  Violations run(const int* changed, int count) {
    for (int k = 0; k < count; ++k) column_changed_[changed[k]] = 1;
    mark();
    solution_.activity = before_.activity;
    solution_.z = before_.z;
    sum();
    for (std::size_t k = 0; k < sums_.size(); ++k) {
      const int i = summed_rows_[k];
      solution_.activity[i] = static_cast<double>(sums_[k].value);
      found_.primal = std::max(found_.primal, verification::row_violation(lp_, i, sums_[k]));
    }
    long double objective = 0.0L;
    for (int j = 0; j < lp_.num_cols; ++j) {
      const double x = solution_.x[j];
      if (x != 0.0) objective += static_cast<long double>(lp_.cost(j)) * x;
    }
    solution_.objective = static_cast<double>(objective);
    return found_;
  }

 private:
  void mark() {
    const int n = lp_.num_cols;
    for (int i = 0; i < lp_.num_rows; ++i) {
      dual_moved_[i] = solution_.y[i] != before_.y[i];
      const int v = n + i;
      if (dual_moved_[i] == 0 && solution_.status[v] == before_.status[v]) continue;
      found_.dual =
          std::max(found_.dual, verification::wrong_sign(solution_.status[v], lp_.lower(v),
                                                         lp_.upper(v), -solution_.y[i]));
    }
    for (int j = 0; j < n; ++j) {
      const bool moved = solution_.x[j] != before_.x[j];
      if (moved || column_changed_[j] != 0) {
        found_.primal = std::max(found_.primal,
                                 verification::outside(solution_.x[j], lp_.lower(j), lp_.upper(j)));
      }
      if (solution_.status[j] != before_.status[j]) column_changed_[j] = 1;
      if (!moved) continue;
      lp_.for_column(j, [&](int i, double) {
        if (place_[i] >= 0) return;
        place_[i] = static_cast<int>(sums_.size());
        sums_.push_back({});
        summed_rows_.push_back(i);
      });
    }
  }

  /// One pass over the matrix, columns ascending.
  void sum() {
    for (int j = 0; j < lp_.num_cols; ++j) {
      const double x = solution_.x[j];
      bool again = column_changed_[j] != 0;
      lp_.for_column(j, [&](int i, double a) {
        if (place_[i] >= 0 && x != 0.0) sums_[place_[i]].add(static_cast<long double>(a) * x);
        again = again || dual_moved_[i] != 0;
      });
      if (!again) continue;
      const auto d = verification::reduced_cost(lp_, j, solution_.status[j], solution_.y.data());
      solution_.z[j] = d.value;
      found_.dual = std::max(found_.dual, d.wrong);
    }
  }

  const Program& lp_;
  const LpSolution& before_;
  LpSolution& solution_;
  Violations found_;
  Vector<int> place_;                     // [num_rows] in sums_, -1 for unchanged activities
  Vector<unsigned char> dual_moved_;      // [num_rows]
  Vector<unsigned char> column_changed_;  // [num_cols] in bounds or status
  Vector<verification::Sum> sums_;        // of the rows in summed_rows_
  Vector<int> summed_rows_;
};

/// Completes `solution`, of which x, y and the statuses are known. `before` was measured on the
/// same program but for the bounds of the columns changed[0 .. count - 1]. What is found is never
/// less than `before` had: a violation that has gone still counts.
template <class Program>
Violations measure_changes(const Program& lp, const MeasuredSolution& before, const int* changed,
                           int count, LpSolution& solution) {
  return ChangeMeasure<Program>(lp, before, solution).run(changed, count);
}

}  // namespace kelvo
