#include "lp/presolve/presolve.h"

#include "lp/presolve/reductions/parallel_lines.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace {

// A pass that removes less than this share of rows and columns is the last.
constexpr double kWorthwhilePass = 0.005;
constexpr int kMostPasses = 20;

// A reduction that looked at everything without success looks again when this share of the lines
// has gone since, and twice the share after every further time.
constexpr double kChangedEnough = 0.01;

/// When a reduction of the whole program is worth its time.
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
  int failures_ = 0;
  int last_ = 0;  // lines eliminated before the last time
};

/// Runs the reductions over one program.
class Reducer {
 public:
  explicit Reducer(PresolveLp& lp)
      : lp_(lp), parallel_rows_(lp, true, 2), parallel_columns_(lp, false, 1) {}

  void run();

 private:
  bool uses(ReductionFamily family) const { return (lp_.settings.families & family) != 0; }
  bool tired() const { return lp_.tired(); }
  void look_at_row(int i);
  void look_at_column(int j);
  void drain_lists();
  void run_passes();
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
    if (!tired() && uses(kAggregation) && (rounds < 0 || pass < rounds)) {
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

PresolveOutcome outcome_of(const PresolveLp& lp) {
  switch (lp.finding.kind) {
    case FindingKind::none:
      break;
    case FindingKind::empty_column:
    case FindingKind::dual_bounds_column:
    case FindingKind::dual_bounds_row:
      return PresolveOutcome::dual_infeasible;
    case FindingKind::empty_row:
    case FindingKind::column_bounds:
    case FindingKind::integer_column:
    case FindingKind::forced_row:
    case FindingKind::implied_bounds:
    case FindingKind::duplicate_rows:
    case FindingKind::dependent_row:
      return PresolveOutcome::infeasible;
  }
  if (lp.stopped() != StopReason::none) {
    return lp.stopped() == StopReason::user_abort ? PresolveOutcome::aborted
                                                  : PresolveOutcome::time_limit;
  }
  return lp.stack.size() > 0 ? PresolveOutcome::reduced : PresolveOutcome::unchanged;
}

/// The places of the lines alive, and the lines at these places.
void number_lines(const Vector<char>& alive, Vector<int>& map, Vector<int>& kept) {
  map.assign(alive.size(), -1);
  for (std::size_t line = 0; line < alive.size(); ++line) {
    if (!alive[line]) continue;
    map[line] = static_cast<int>(kept.size());
    kept.push_back(static_cast<int>(line));
  }
}

}  // namespace

Presolve::Presolve(const LpProblem& lp, const PresolveSettings& settings, const ColumnMarks& marks,
                   StopCheck& stop, PresolveProgress* progress) {
  PresolveLp work(lp, settings, marks, stop, progress);
  Reducer(work).run();
  outcome_ = outcome_of(work);
  finding_ = work.finding;
  stats_ = work.stats;
  if (outcome_ == PresolveOutcome::reduced || outcome_ == PresolveOutcome::unchanged) {
    make_reduced(work);
    stack_ = std::move(work.stack);
  }
}

void Presolve::make_reduced(const PresolveLp& lp) {
  number_lines(lp.row_alive, row_map_, kept_rows_);
  number_lines(lp.col_alive, col_map_, kept_cols_);
  LpProblem& reduced = reduced_;
  reduced.num_rows = static_cast<int>(kept_rows_.size());
  reduced.num_cols = static_cast<int>(kept_cols_.size());
  reduced.offset = lp.offset;
  SparseMatrix columns;
  columns.num_major = reduced.num_cols;
  columns.num_minor = reduced.num_rows;
  columns.start.reserve(reduced.num_cols + 1);
  columns.index.reserve(lp.matrix.num_nonzeros());
  columns.value.reserve(lp.matrix.num_nonzeros());
  for (const int j : kept_cols_) {
    for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
      columns.index.push_back(row_map_[lp.matrix[e].row]);
      columns.value.push_back(lp.matrix[e].value);
    }
    columns.start.push_back(static_cast<int>(columns.index.size()));
  }
  reduced.rows = transpose(columns);
  columns = SparseMatrix();                   // large
  reduced.columns = transpose(reduced.rows);  // with ascending indices
  for (const int j : kept_cols_) {
    reduced.cost.push_back(lp.cost[j]);
    reduced.lower.push_back(lp.lower[j]);
    reduced.upper.push_back(lp.upper[j]);
  }
  for (const int i : kept_rows_) {
    reduced.cost.push_back(0.0);
    reduced.lower.push_back(-lp.row_upper[i]);
    reduced.upper.push_back(-lp.row_lower[i]);
  }
}

namespace {

/// The status of a logical from that of its row's activity, and the other way.
int turned(int status) {
  return side_times(status, -1.0);
}

template <class T>
void scatter(const Vector<T>& values, const Vector<int>& kept, Vector<T>& all) {
  for (std::size_t k = 0; k < kept.size(); ++k) all[kept[k]] = values[k];
}

}  // namespace

void Presolve::postsolve(const LpSolution& reduced, LpSolution& original) const {
  const Layers layers = reduced.layers;
  PostsolveState state;
  if (layers.values) {
    state.x.assign(num_cols(), 0.0);
    scatter(reduced.x, kept_cols_, state.x);
  }
  if (layers.duals) {
    state.duals.y.assign(num_rows(), 0.0);
    state.duals.z.assign(num_cols(), 0.0);
    scatter(reduced.y, kept_rows_, state.duals.y);
    scatter(reduced.z, kept_cols_, state.duals.z);
  }
  if (layers.basis) {
    state.basis.cols.assign(num_cols(), kAtLower);
    state.basis.rows.assign(num_rows(), kBasic);
    scatter(reduced.status, kept_cols_, state.basis.cols);
    const int* const logicals = reduced.status.data() + kept_cols_.size();
    for (std::size_t k = 0; k < kept_rows_.size(); ++k) {
      state.basis.rows[kept_rows_[k]] = turned(logicals[k]);
    }
  }
  stack_.undo_all(state, layers);
  original.layers = layers;
  original.x = std::move(state.x);
  original.y = std::move(state.duals.y);
  original.z = std::move(state.duals.z);
  original.basis_is_settled = state.basis.is_settled;
  original.status = std::move(state.basis.cols);
  if (!layers.basis) return;
  original.status.reserve(num_cols() + num_rows());
  for (const int status : state.basis.rows) original.status.push_back(turned(status));
}

bool Presolve::reprice(const Vector<double>& cost, Vector<double>& reduced_cost, double& offset) {
  Repricing repricing{cost};
  const UndoEntries& entries = stack_.entries;
  if (!stack_.records.forward([&](auto& record) { return record.reprice(entries, repricing); })) {
    return false;
  }
  reduced_cost.clear();
  reduced_cost.reserve(kept_cols_.size());
  for (const int j : kept_cols_) reduced_cost.push_back(repricing.cost[j]);
  offset = static_cast<double>(repricing.offset);
  return true;
}

}  // namespace kelvo
