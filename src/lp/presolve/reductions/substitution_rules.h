// What the reductions that put a row in the place of a column have in common: which new entries
// are acceptable, when integrality allows it, what becomes of the objective, and the counts.
#pragma once

#include "lp/presolve/presolve_lp.h"

namespace kelvo {

/// old + added, or 0 when nothing but rounding is left of the terms.
double sound_sum(double old, double added);

/// Whether an entry may become old + added: gone, or neither tiny nor huge.
bool entry_is_sound(const PresolveLp& lp, double old, double added);

/// Moves a constant to the right-hand sides of a row.
void shift_limits(PresolveLp& lp, int i, double shift);

/// Counts a row and a column just erased as a substitution.
void count_substitution(PresolveLp& lp);

/// The objective without the column of entry e, which its row at the activity `rhs` defines.
void substitute_in_objective(PresolveLp& lp, int e, double rhs);

/// True when passing the cost of entry e's column on to the other columns of its row makes no
/// dual infeasibility at the logical basis worse: a priced slack (a penalty, say) is worth keeping
/// when a first phase would be the price of its removal.
bool cost_may_pass(const PresolveLp& lp, int e);

/// True when v is a whole number but for the rounding of a quotient, and small enough for that to
/// mean anything.
bool is_whole(double v);

/// True when the column of entry e has to be whole only where it is so by itself: it is no integer
/// column, or the other columns of its row are integer ones, their entries multiples of e's, and so
/// is the activity `rhs` of the row.
bool stays_whole(PresolveLp& lp, int e, double rhs);

}  // namespace kelvo
