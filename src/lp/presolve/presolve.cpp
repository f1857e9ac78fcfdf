#include "lp/presolve/presolve.h"

#include "lp/presolve/reducer.h"

namespace kelvo {

Presolve::Presolve(const LpProblem& lp, const PresolveSettings& settings, const ColumnMarks& marks,
                   StopCheck& stop, PresolveProgress* progress) {
  PresolveLp work(lp, settings, marks, stop, progress);
  Reducer(work).run();
  outcome_ = work.outcome();
  finding_ = work.finding;
  stats_ = work.stats;
  if (outcome_ == PresolveOutcome::reduced || outcome_ == PresolveOutcome::unchanged) {
    make_reduced(work);
    stack_ = std::move(work.stack);
  }
}

void Presolve::make_reduced(const PresolveLp& lp) {
  KeptLines rows(lp.row_alive), cols(lp.col_alive);
  reduced_ = lp.reduced_form(rows, cols);
  row_map_ = std::move(rows.place);
  col_map_ = std::move(cols.place);
  kept_rows_ = std::move(rows.lines);
  kept_cols_ = std::move(cols.lines);
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
