#include "lp/presolve/reducer.h"

#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace {

// A pass that removes less than this share of rows and columns is the last.
constexpr double kWorthwhilePass = 0.005;
constexpr int kMostPasses = 20;

}  // namespace

void Reducer::look_at_row(int i) {
  const bool primal = lp_.settings.primal_reductions;
  switch (lp_.matrix.row_count(i)) {
    case 0:
      remove_empty_row(lp_, i);
      return;
    case 1:
      if (primal && uses(kSingletonRows)) remove_singleton_row(lp_, i);
      return;
    default:
      if (!primal) return;
      if (uses(kActivityRows) && reduce_by_activity(lp_, i)) return;
      if (lp_.ended()) return;
      if (uses(kDoubletons) && lp_.settings.aggregator != 0 && lp_.is_equation(i) &&
          lp_.matrix.row_count(i) == 2) {
        substitute_doubleton(lp_, i);
      }
  }
}

void Reducer::look_at_column(int j) {
  if (lp_.is_fixed(j) && lp_.may_remove(j)) {
    lp_.fix_column(j, lp_.lower[j], kAtLower);
    return;
  }
  const int count = lp_.matrix.col_count(j);
  if (count == 0) {
    remove_empty_column(lp_, j);
    return;
  }
  if (lp_.settings.dual_reductions && uses(kCostFixing) && fix_by_cost(lp_, j)) return;
  if (lp_.ended()) return;
  if (lp_.settings.dual_reductions && uses(kDualBounds)) bind_only_row(lp_, j);
  if (count != 1 || !lp_.settings.primal_reductions) return;
  if (uses(kFreeSingletons) && substitute_free_singleton(lp_, j)) return;
  if (uses(kSlackColumns) && !lp_.ended()) absorb_slack_column(lp_, j);
}

void Reducer::drain_lists() {
  while (!tired() && !(lp_.row_list.empty() && lp_.col_list.empty())) {
    while (!lp_.row_list.empty() && !tired()) {
      const int i = lp_.row_list.take();
      ++lp_.work;
      if (lp_.row_alive[i]) look_at_row(i);
      lp_.poll();
    }
    while (!lp_.col_list.empty() && !tired()) {
      const int j = lp_.col_list.take();
      ++lp_.work;
      if (lp_.col_alive[j]) look_at_column(j);
      lp_.poll();
    }
  }
}

void Reducer::run_passes() {
  const int most = lp_.settings.pass_limit >= 0 ? lp_.settings.pass_limit : kMostPasses;
  for (int pass = 0; pass < most && !tired(); ++pass) {
    const int before = eliminated();
    drain_lists();
    if (tired()) return;
    if (lp_.settings.dual_reductions && uses(kDualBounds)) {
      take_turn(dual_bounds_turn_, reduce_by_dual_bounds);
    }
    drain_lists();
    if (tired()) return;
    if (lp_.settings.primal_reductions) {
      if (uses(kDuplicateRows)) merge_duplicate_rows(lp_, parallel_rows_);
      if (uses(kRowCancellation) && lp_.settings.aggregator != 0) {
        for (const bool bold : {false, true}) {
          if (tired()) return;
          const int start = lp_.moment();
          cancel_nonzeros(lp_, bold, last_cancellation_[bold]);
          last_cancellation_[bold] = start;
          drain_lists();
        }
      }
      if (uses(kImpliedRows)) take_turn(implied_rows_turn_, remove_implied_rows);
      if (!tired() && uses(kDuplicateColumns)) merge_duplicate_columns(lp_, parallel_columns_);
      drain_lists();
    }
    const int rounds = lp_.settings.aggregator;
    if (!tired() && uses(kAggregation) && (rounds < 0 || lp_.stats.aggregator_rounds < rounds)) {
      ++lp_.stats.aggregator_rounds;
      const int start = lp_.moment();
      run_aggregator(lp_, last_aggregation_);
      last_aggregation_ = start;
      drain_lists();
    }
    if (left() == 0 || eliminated() - before <= kWorthwhilePass * left()) return;
  }
}

void Reducer::run() {
  run_passes();
  if (!lp_.settings.primal_reductions || lp_.settings.dependent_rows == 0 || tired()) return;
  // Entries touched, per nonzero.
  constexpr int kAutomatic = 50, kEffort[] = {100, 500, 5000};
  const int effort = lp_.settings.dependent_rows;
  const std::int64_t allowed = effort < 0 ? kAutomatic : kEffort[std::min(effort, 3) - 1];
  remove_dependent_rows(lp_, allowed * lp_.matrix.num_nonzeros());
  drain_lists();
}

}  // namespace kelvo
