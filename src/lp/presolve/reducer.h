// The course of the reductions over one program.
//
// Cheap reductions run from the work lists of the lines that changed; those that look at the whole
// program follow when the lists are empty, and all of it is repeated as long as a pass removes a
// worthwhile part of what is left.
#pragma once

#include "lp/presolve/presolve_lp.h"
#include "lp/presolve/reductions/parallel_lines.h"

namespace kelvo {

/// When a reduction of the whole program is worth its time: one that looked at everything without
/// success looks again when a share of the lines has gone since, and twice the share after every
/// further time.
class Turn {
 public:
  bool comes(int eliminated, int left) const {
    return failures_ == 0 || eliminated - last_ > std::ldexp(kChangedEnough * left, failures_ - 1);
  }
  void report(bool gained, int eliminated) {
    failures_ = gained ? 0 : failures_ + 1;
    last_ = eliminated;
  }

 private:
  static constexpr double kChangedEnough = 0.01;

  int failures_ = 0;
  int last_ = 0;  // lines eliminated before the last time
};

/// Runs the reductions over one program, which gets no more rows during its life.
class Reducer {
 public:
  explicit Reducer(PresolveLp& lp)
      : lp_(lp), parallel_rows_(lp, true, 2), parallel_columns_(lp, false, 1) {}

  /// Passes as long as they gain, and what is worth doing once after them.
  void run();
  /// The passes alone; they may be continued after changes of the program.
  void run_passes();

 private:
  bool uses(ReductionFamily family) const { return (lp_.settings.families & family) != 0; }
  bool tired() const { return lp_.tired(); }
  void look_at_row(int i);
  void look_at_column(int j);
  void drain_lists();
  int eliminated() const {
    return lp_.stats.rows_removed + lp_.stats.cols_removed + 2 * lp_.stats.substitutions;
  }
  int left() const { return lp_.num_rows() + lp_.num_cols() - eliminated(); }

  /// Runs a reduction of the whole program when its turn has come.
  template <class Reduction>
  void take_turn(Turn& turn, Reduction reduction) {
    if (tired() || !turn.comes(eliminated(), left())) return;
    const int records = lp_.stack.size(), lines = eliminated();
    reduction(lp_);
    turn.report(lp_.stack.size() > records, lines);
  }

  PresolveLp& lp_;
  ParallelLines parallel_rows_, parallel_columns_;
  Turn dual_bounds_turn_, implied_rows_turn_;
  int last_aggregation_ = 0, last_cancellation_[2] = {};  // moments; the latter by boldness
};

}  // namespace kelvo
