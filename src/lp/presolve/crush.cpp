#include "lp/presolve/crush.h"

namespace kelvo {

namespace {

void gather(const Vector<double>& all, const Vector<int>& kept, double* out) {
  for (std::size_t k = 0; k < kept.size(); ++k) out[k] = all[kept[k]];
}

/// The side that a multiplier of this sign belongs to.
int side_of(double multiplier) {
  return multiplier > 0.0 ? kAtLower : multiplier < 0.0 ? kAtUpper : kBasic;
}

}  // namespace

void crush_x(const Presolve& presolve, const double* x, double* reduced_x) {
  Vector<double> all(x, x + presolve.num_cols());
  const PostsolveStack& stack = presolve.stack();
  for (int k = 0; k < stack.size(); ++k) {
    const UndoRecord& record = stack.record(k);
    if (record.kind == UndoKind::duplicate_column) all[record.other] += record.a * all[record.col];
  }
  gather(all, presolve.kept_cols(), reduced_x);
}

void uncrush_x(const Presolve& presolve, const double* reduced_x, double* x) {
  PostsolveState state;
  state.resize(presolve.num_rows(), presolve.num_cols());
  state.col_status.assign(presolve.num_cols(), kBasic);
  const Vector<int>& kept = presolve.kept_cols();
  for (std::size_t k = 0; k < kept.size(); ++k) state.x[kept[k]] = reduced_x[k];
  presolve.stack().undo_all(state);
  std::copy(state.x.begin(), state.x.end(), x);
}

void crush_y(const Presolve& presolve, const double* y, double* reduced_y) {
  Vector<double> all(y, y + presolve.num_rows());
  const PostsolveStack& stack = presolve.stack();
  for (int k = 0; k < stack.size(); ++k) {
    const UndoRecord& record = stack.record(k);
    switch (record.kind) {
      case UndoKind::slack_column:
        all[record.row] -= record.cost / record.a;
        break;
      case UndoKind::duplicate_row:
        all[record.other] += record.a * all[record.row];
        break;
      case UndoKind::row_cancellation:
        all[record.other] -= record.a * all[record.row];
        break;
      default:
        break;
    }
  }
  gather(all, presolve.kept_rows(), reduced_y);
}

void uncrush_y(const Presolve& presolve, const double* reduced_y, const double* reduced_z,
               double* y) {
  PostsolveState state;
  state.resize(presolve.num_rows(), presolve.num_cols());
  const Vector<int>& rows = presolve.kept_rows();
  const Vector<int>& cols = presolve.kept_cols();
  for (std::size_t k = 0; k < rows.size(); ++k) {
    state.y[rows[k]] = reduced_y[k];
    state.row_status[rows[k]] = side_of(reduced_y[k]);
  }
  for (std::size_t k = 0; k < cols.size(); ++k) {
    state.z[cols[k]] = reduced_z[k];
    state.col_status[cols[k]] = side_of(reduced_z[k]);
  }
  presolve.stack().undo_all(state);
  std::copy(state.y.begin(), state.y.end(), y);
}

namespace {

/// x_j = (rhs - sum of the entries begin..end-1) / a, put into the form.
void substitute_in_form(const PostsolveStack& stack, int j, double a, double rhs, int begin,
                        int end, LinearForm& form) {
  const double share = form.weight[j] / a;
  form.weight[j] = 0.0;
  if (share == 0.0) return;
  form.offset += share * rhs;
  for (int k = begin; k < end; ++k) {
    form.weight[stack.entry(k).index] -= share * stack.entry(k).value;
  }
}

}  // namespace

bool crush_form(const Presolve& presolve, LinearForm& form) {
  const PostsolveStack& stack = presolve.stack();
  Vector<double>& weight = form.weight;
  for (int k = 0; k < stack.size(); ++k) {
    const UndoRecord& record = stack.record(k);
    switch (record.kind) {
      case UndoKind::fixed_column:
        form.offset += weight[record.col] * record.a;
        weight[record.col] = 0.0;
        break;
      case UndoKind::substituted_column:
        substitute_in_form(stack, record.col, record.a, record.lower, record.begin, record.middle,
                           form);
        break;
      case UndoKind::doubleton: {
        const double share = weight[record.col] / record.a;
        weight[record.col] = 0.0;
        weight[record.other] -= share * record.b;
        form.offset += share * record.lower;
        break;
      }
      case UndoKind::slack_column:
        if (weight[record.col] != 0.0 && record.low2 != record.upp2) return false;
        substitute_in_form(stack, record.col, record.a, record.low2, record.begin, record.end,
                           form);
        weight[record.col] = 0.0;  // the copy of the row may have it
        break;
      case UndoKind::free_direction:
        if (weight[record.col] != 0.0) return false;
        break;
      case UndoKind::duplicate_column:
        if (weight[record.col] != record.a * weight[record.other]) return false;
        weight[record.col] = 0.0;
        break;
      default:
        break;
    }
  }
  return true;
}

void uncrush_form(const Presolve& presolve, LinearForm& form) {
  const PostsolveStack& stack = presolve.stack();
  for (int k = stack.size() - 1; k >= 0; --k) {
    const UndoRecord& record = stack.record(k);
    if (record.kind != UndoKind::duplicate_column) continue;
    form.weight[record.col] = record.a * form.weight[record.other];
  }
}

void removal_codes(const Presolve& presolve, Vector<int>& cols, Vector<int>& rows) {
  cols = presolve.col_map();
  rows = presolve.row_map();
  for (int& code : rows) {
    if (code < 0) code = kRemovedOther;
  }
  const PostsolveStack& stack = presolve.stack();
  for (int k = 0; k < stack.size(); ++k) {
    const UndoRecord& record = stack.record(k);
    switch (record.kind) {
      case UndoKind::fixed_column:
        cols[record.col] = record.flag == kAtLower   ? kRemovedAtLower
                           : record.flag == kAtUpper ? kRemovedAtUpper
                                                     : kRemovedFixed;
        break;
      case UndoKind::substituted_column:
      case UndoKind::doubleton:
        cols[record.col] = rows[record.row] = kRemovedAggregated;
        break;
      case UndoKind::slack_column:
      case UndoKind::free_direction:
      case UndoKind::duplicate_column:
        cols[record.col] = kRemovedOther;
        break;
      default:
        break;
    }
  }
}

}  // namespace kelvo
