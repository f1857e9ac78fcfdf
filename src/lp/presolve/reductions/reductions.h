// The reductions: each has a file of its own with its algebra, what it does to the program and how
// it is undone.
//
// Those of one row or column look at the line they are given and return true when they changed the
// program, in which case the line may be gone. Those of a whole pass return nothing; they look at
// what is worth looking at. All of them stop early when lp.ended().
#pragma once

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

// empty_lines.cpp
bool remove_empty_row(PresolveLp& lp, int i);
bool remove_empty_column(PresolveLp& lp, int j);

// singleton_row.cpp: a row with one entry is a bound.
bool remove_singleton_row(PresolveLp& lp, int i);

// forcing_row.cpp: rows that hold always, or only with every column at a bound.
bool reduce_by_activity(PresolveLp& lp, int i);

// doubleton_equation.cpp: a x_j + b x_k = rhs gives x_j by x_k.
bool substitute_doubleton(PresolveLp& lp, int i);

// What substitutions share: whether an entry may become old + added, that sum with cancellation
// made exact, the move of a constant to the right-hand side, and the books.
bool entry_is_sound(const PresolveLp& lp, double old, double added);
double sound_sum(double old, double added);
void shift_limits(PresolveLp& lp, int i, double shift);
void count_substitution(PresolveLp& lp);
/// True when passing the cost of entry e's column on to the other columns of its row makes no
/// dual infeasibility at the logical basis worse: a priced slack (a penalty, say) is worth keeping
/// when a first phase would be the price of its removal.
bool cost_may_pass(const PresolveLp& lp, int e);

// substitution.cpp: an implied free column is given by a row.
bool substitute_free_singleton(PresolveLp& lp, int j);
/// Looks at what changed since the moment given.
void run_aggregator(PresolveLp& lp, int since);

// slack_column.cpp: a column with one entry is a slack of its row.
bool absorb_slack_column(PresolveLp& lp, int j);

// dual_fixing.cpp: nothing keeps the column from going where its cost draws it, or one row only.
bool fix_by_cost(PresolveLp& lp, int j);
bool bind_only_row(PresolveLp& lp, int j);
/// True when no bound of column j stands in its way up (or down); one that the rows imply is
/// dropped, so that the column does not come to stand at it.
bool make_room(PresolveLp& lp, int j, bool above);

// dual_bounds.cpp: bounds on the duals fix columns and make rows equations.
void reduce_by_dual_bounds(PresolveLp& lp);

// implied_rows.cpp: rows that other rows keep from binding.
void remove_implied_rows(PresolveLp& lp);

// row_cancellation.cpp: equations take nonzeros out of other rows. Looks at what changed since the
// moment given; `bold`: also where the gain is small.
void cancel_nonzeros(PresolveLp& lp, bool bold, int since);

// dependent_rows.cpp: equations that follow from others.
void remove_dependent_rows(PresolveLp& lp, std::int64_t work_allowed);

// duplicate_rows.cpp, duplicate_columns.cpp: lines that are multiples of others.
class ParallelLines;
void merge_duplicate_rows(PresolveLp& lp, ParallelLines& rows);
void merge_duplicate_columns(PresolveLp& lp, ParallelLines& columns);

// The ways back, in the order of UndoKind.
void undo_fixed_column(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_removed_row(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_row_side(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_singleton_row(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_forcing_row(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_substituted_column(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_doubleton(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_slack_column(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_free_direction(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_duplicate_row(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_duplicate_column(const PostsolveStack&, const UndoRecord&, PostsolveState&);
void undo_row_cancellation(const PostsolveStack&, const UndoRecord&, PostsolveState&);

}  // namespace kelvo
