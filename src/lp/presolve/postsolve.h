// The postsolve stack: the records of all reductions, and the walks through them.
//
// Adding a reduction with a record of a new type takes one file for both and one word in the list
// below; an operation that the record lacks does not compile.
#pragma once

#include "lp/presolve/record_stack.h"
#include "lp/presolve/reductions/binding_row.h"
#include "lp/presolve/reductions/doubleton_equation.h"
#include "lp/presolve/reductions/dual_fixing.h"
#include "lp/presolve/reductions/duplicate_columns.h"
#include "lp/presolve/reductions/duplicate_rows.h"
#include "lp/presolve/reductions/fixed_column.h"
#include "lp/presolve/reductions/forcing_row.h"
#include "lp/presolve/reductions/removed_row.h"
#include "lp/presolve/reductions/row_cancellation.h"
#include "lp/presolve/reductions/singleton_row.h"
#include "lp/presolve/reductions/slack_column.h"
#include "lp/presolve/reductions/substitution.h"

namespace kelvo {

using UndoRecords = RecordStack<FixedColumn, RemovedRow, BindingRow, SingletonRow, ForcingRow,
                                SubstitutedColumn, DoubletonEquation, SlackColumn, FreeDirection,
                                DuplicateRow, DuplicateColumn, RowCancellation>;

struct PostsolveStack {
  UndoRecords records;
  UndoEntries entries;

  int size() const { return records.size(); }
  template <class Record>
  void push(const Record& record) {
    records.push(record);
  }

  /// Undoes everything. What is not in the reduced program is filled in; the arrays of a layer that
  /// is not undone are not looked at.
  void undo_all(PostsolveState& state, const Layers& layers) const;
};

}  // namespace kelvo
