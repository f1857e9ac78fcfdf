#include "lp/presolve/crush_basis.h"

#include <algorithm>

#include "lp/presolve/crush.h"

namespace kelvo {

namespace {

bool at_end(int status) {
  return status == kAtLower || status == kAtUpper;
}

/// The statuses on their way; those of rows speak of the activity, as in PostsolveState.
struct Statuses {
  Vector<int> cols, rows;

  void apply(const UndoRecord& record);

 private:
  void singleton_row(const UndoRecord& record);
  void doubleton(const UndoRecord& record);
  void slack_column(const UndoRecord& record);
  void duplicate_row(const UndoRecord& record);
  void duplicate_column(const UndoRecord& record);
};

/// The side that a status means for a quantity multiplied by `factor`.
int side_times(int side, double factor) {
  return factor > 0.0 || !at_end(side) ? side : opposite_side(side);
}

void Statuses::singleton_row(const UndoRecord& record) {
  int& column = cols[record.col];
  if (column == kBasic && at_end(rows[record.row])) {
    column = side_times(rows[record.row], record.a);
  }
}

void Statuses::doubleton(const UndoRecord& record) {
  int& kept = cols[record.other];
  const int gone = cols[record.col];
  // x_col = (rhs - b x_other) / a rises with x_other when a b < 0.
  if (kept == kBasic && gone != kBasic) kept = side_times(gone, -record.a * record.b);
}

void Statuses::slack_column(const UndoRecord& record) {
  int& row = rows[record.row];
  const int gone = cols[record.col];
  if (gone == kBasic) {
    row = kBasic;
  } else if (row != kBasic && at_end(gone)) {
    // The rest of the row is least where the column takes most.
    row = side_times(opposite_side(gone), record.a);
  }
}

void Statuses::duplicate_row(const UndoRecord& record) {
  int& kept = rows[record.other];
  if (kept == kBasic) kept = side_times(rows[record.row], record.a);
}

void Statuses::duplicate_column(const UndoRecord& record) {
  int& kept = cols[record.other];
  const int gone = side_times(cols[record.col], record.a);
  if (kept == kBasic || gone == kBasic) {
    kept = kBasic;
  } else if (kept != gone) {
    kept = kFreeSuper;  // between the ends of the sum
  }
}

void Statuses::apply(const UndoRecord& record) {
  switch (record.kind) {
    case UndoKind::singleton_row:
      return singleton_row(record);
    case UndoKind::doubleton:
      return doubleton(record);
    case UndoKind::slack_column:
      return slack_column(record);
    case UndoKind::duplicate_row:
      return duplicate_row(record);
    case UndoKind::duplicate_column:
      return duplicate_column(record);
    default:
      return;  // nothing that is left takes over a status
  }
}

}  // namespace

CrushedBasis crush_basis(const Presolve& presolve, const Vector<int>& status, const double* x) {
  const int n = presolve.num_cols(), m = presolve.num_rows();
  const auto turned = [](int code) { return at_end(code) ? opposite_side(code) : code; };
  Statuses all;
  all.cols.assign(status.begin(), status.begin() + n);
  all.rows.reserve(m);
  for (int i = 0; i < m; ++i) all.rows.push_back(turned(status[n + i]));
  const PostsolveStack& stack = presolve.stack();
  for (int k = 0; k < stack.size(); ++k) all.apply(stack.record(k));

  CrushedBasis crushed;
  crushed.status.reserve(presolve.kept_cols().size() + presolve.kept_rows().size());
  for (const int j : presolve.kept_cols()) crushed.status.push_back(all.cols[j]);
  for (const int i : presolve.kept_rows()) crushed.status.push_back(turned(all.rows[i]));
  crushed.num_basic =
      static_cast<int>(std::count(crushed.status.begin(), crushed.status.end(), kBasic));
  crushed.value.resize(presolve.kept_cols().size());
  crush_x(presolve, x, crushed.value.data());
  return crushed;
}

}  // namespace kelvo
