// Columns that stand at a known value move to the right-hand sides; rows that never bind go.
#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/reductions.h"

namespace kelvo {

void PresolveLp::fix_column(int j, double value, int status) {
  stack.begin(UndoKind::fixed_column);
  UndoRecord& record = stack.top();
  record.col = j;
  record.a = value;
  record.cost = cost[j];
  record.flag = status;
  record_column(j);
  if (value != 0.0) {
    for (int e = matrix.col_first(j); e >= 0; e = matrix[e].col_next) {
      const int i = matrix[e].row;
      const double shift = matrix[e].value * value;
      const bool equation = is_equation(i);
      row_lower[i] -= shift;
      row_upper[i] = equation ? row_lower[i] : row_upper[i] - shift;
    }
    offset += cost[j] * value;
  }
  erase_column(j);
}

void PresolveLp::remove_row(int i) {
  stack.begin(UndoKind::removed_row);
  stack.top().row = i;
  erase_row(i);
}

void undo_fixed_column(const PostsolveStack& stack, const UndoRecord& record,
                       PostsolveState& state) {
  const int j = record.col;
  state.x[j] = record.a;
  state.z[j] = record.cost - stack.dot(record.begin, record.end, state.y);
  state.col_status[j] = record.flag;
}

void undo_removed_row(const PostsolveStack&, const UndoRecord& record, PostsolveState& state) {
  state.y[record.row] = 0.0;
  state.row_status[record.row] = kBasic;
}

/// The row was an inequality; made an equation it binds at the side that its dual demands.
void undo_row_side(const PostsolveStack&, const UndoRecord& record, PostsolveState& state) {
  if (state.row_status[record.row] != kBasic) state.row_status[record.row] = record.flag;
}

}  // namespace kelvo
