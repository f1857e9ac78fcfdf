// The reductions: each has a file of its own with its algebra, what it does to the program and, in
// its record, how it is undone. Here are those that leave records of other reductions.
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

// dual_bounds.cpp: bounds on the duals fix columns and make rows equations.
void reduce_by_dual_bounds(PresolveLp& lp);

// implied_rows.cpp: rows that other rows keep from binding.
void remove_implied_rows(PresolveLp& lp);

// dependent_rows.cpp: equations that follow from others.
void remove_dependent_rows(PresolveLp& lp, std::int64_t work_allowed);

}  // namespace kelvo
