#include "lp/presolve/postsolve.h"

#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

namespace {

// In the order of UndoKind.
constexpr UndoFunction kUndo[kNumUndoKinds] = {
    undo_fixed_column,   undo_removed_row,        undo_row_side,         undo_singleton_row,
    undo_forcing_row,    undo_substituted_column, undo_doubleton,        undo_slack_column,
    undo_free_direction, undo_duplicate_row,      undo_duplicate_column, undo_row_cancellation,
};

}  // namespace

void PostsolveState::resize(int num_rows, int num_cols) {
  x.assign(num_cols, 0.0);
  z.assign(num_cols, 0.0);
  y.assign(num_rows, 0.0);
  col_status.assign(num_cols, kAtLower);
  row_status.assign(num_rows, kBasic);
}

void PostsolveStack::begin(UndoKind kind) {
  UndoRecord record;
  record.kind = kind;
  record.begin = record.middle = record.end = static_cast<int>(entries_.size());
  records_.push_back(record);
}

void PostsolveStack::undo_all(PostsolveState& state) const {
  for (int k = size() - 1; k >= 0; --k) {
    const UndoRecord& undone = records_[k];
    kUndo[static_cast<int>(undone.kind)](*this, undone, state);
  }
}

double PostsolveStack::dot(int first, int last, const Vector<double>& v) const {
  double sum = 0.0;
  for (int k = first; k < last; ++k) sum += entries_[k].value * v[entries_[k].index];
  return sum;
}

}  // namespace kelvo
