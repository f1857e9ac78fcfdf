// The parts of BasisFactor and what they share.
//
// The kernel fills `lu`, the solver works on it, and updates change it in place. While a mark is
// outstanding, updates keep a journal; a factorization swaps the marked factors with their journal
// for spare ones instead of overwriting them. So `parked[0..num_parked)` and then `lu` are the
// factorizations that marks refer to, oldest first, and only the newest one may be without a mark.
#pragma once

#include "lp/factor/basis_factor.h"
#include "lp/factor/lu/journal.h"
#include "lp/factor/lu/kernel.h"
#include "lp/factor/lu/line_map.h"
#include "lp/factor/lu/solve.h"
#include "lp/factor/lu/update.h"

namespace kelvo {

struct BasisFactor::Impl {
  /// A factorization that was set aside because a mark refers to it.
  struct Parked {
    LuFactors lu;
    LuJournal journal;
    LineMap row_map, position_map;
    FactorStatistics statistics;
    double factor_work = 0.0;
  };
  /// What the adaptive rule knows of the iterations since the last factorization.
  struct UpdateWork {
    double since = 0.0;      // of the solves and updates, the caller's included
    double at_update = 0.0;  // `since` as it was after the last update
    double recent = 0.0;     // moving average of the work from one update to the next
    bool pays = false;       // a factorization is cheaper than going on
  };
  /// A state to return to: that of the parked factor of this number (or of the current factor, when
  /// none is parked beyond it) before all records of its journal from `journaled` on.
  struct Mark {
    int serial;
    int parked;
    std::size_t journaled;
    int updates, repairs;
    double threshold;
    UpdateWork update_work;
  };

  Impl(const SparseMatrix& matrix, const FactorSettings& s, FactorEvents* e)
      : columns(matrix), settings(s), events(e), threshold(s.markowitz_threshold), solver(lu) {
    kernel_settings.absolute_tolerance = s.absolute_tolerance;
    kernel_settings.row_multiplier = s.row_file_multiplier;
    kernel_settings.column_multiplier = s.col_file_multiplier;
    kernel_settings.dense_density = s.dense_switch_density;
  }

  FactorOutcome factorize(Vector<int>& header, bool allow_repair, Vector<BasisRepair>& repairs);
  bool begin_repair(bool allow_repair, int passes, bool& report);
  void repair(Vector<int>& header, Vector<BasisRepair>& repairs);
  KernelOutcome run_kernel(const Vector<int>& header);
  double pivot_ratio() const;
  void finish_factorization();
  void raise_threshold();

  void keep_spike(const WorkVector& x);
  void keep_row(const WorkVector& y, int position);
  void compute_row(int position);
  void transform(WorkVector& x, double expected, bool keep);
  void transform_pair(WorkVector& a, double density_a, WorkVector& b, double density_b, bool keep);
  void transform_transposed(WorkVector& y, double expected);
  void transform_transposed_pair(WorkVector& a, double density_a, WorkVector& b, double density_b);
  bool update(int position, double solve_pivot);
  void note_update();

  // factor_rows.cpp
  bool add_rows(const SparseMatrix& rows);
  bool delete_rows(const Vector<int>& rows, const Vector<int>& positions);
  void clear_maps();
  void setup_work_arrays(int order);

  // factor_marks.cpp
  FactorMark checkpoint();
  bool outstanding(FactorMark mark) const;
  void rollback(FactorMark mark);
  void release(FactorMark mark);
  bool marked() const { return !marks.empty() && marks.back().parked == num_parked; }
  void park();
  void unpark();
  void collect_work() {
    statistics.work += solver.work();
    update_work.since += solver.work();
    solver.reset_work();
  }

  const SparseMatrix& columns;
  FactorSettings settings;
  FactorEvents* events;
  KernelSettings kernel_settings;
  double threshold;
  bool compact = false;  // memory ran short once: multipliers stay small
  bool valid = false;

  LuFactors lu;
  LuJournal journal;              // of the updates since the first mark of this factorization
  LineMap row_map, position_map;  // active while rows are deleted
  LuKernel kernel;
  LuSolver solver;
  PackedVector spike;    // column of the last ftran that was to be kept
  PackedVector row_eta;  // of the last btran of a unit vector, for its position
  WorkVector inside[2];  // right-hand sides and results while rows are deleted
  Vector<int> scratch, inner_positions;

  FactorStatistics statistics;
  double factor_work = 0.0;  // of the last factorization
  UpdateWork update_work;

  Vector<Mark> marks;            // outstanding ones, oldest first
  Vector<Owned<Parked>> parked;  // the first num_parked hold factors, the others are spare memory
  int num_parked = 0;
  int last_serial = 0;
};

}  // namespace kelvo
