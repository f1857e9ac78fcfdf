// The mixed-integer program while it is being reduced.
//
// Its linear part is a PresolveLp, in which the reductions of linear programs and those of this
// folder take turns: one matrix, one postsolve stack, one numbering of rows and columns, which is
// that of the program given, from the first reduction to the last.
//
// What is not linear is here. The rows of indicators are kept out of the linear part, so that no
// reduction takes them for rows that always hold. Columns of indicators, semi-continuous columns
// and members of sets are protected there: they stay, and no argument from duals rests on them;
// arguments from rows and bounds hold for them as for others. A column is released when the last
// of its requirements has gone.
#pragma once

#include "lp/presolve/presolve_lp.h"
#include "mip/form/mip_problem.h"
#include "mip/presolve/mip_presolve_settings.h"

namespace kelvo {

/// lower <= sum of terms <= upper where the binary column is `active`.
struct ConditionalRow {
  struct Term {
    int col;
    double value;
  };
  int binary;
  int active;
  int row;  // in the program given; dead in the linear part
  double lower, upper;
  Vector<Term> terms;  // fixed columns are moved to the limits
};

/// Where binary column `literal >> 1` has the value 1 - (literal & 1), the bound of column
/// `bound >> 1` (lower for even numbers) is at least as tight as `value`.
struct FoundImplication {
  int literal;
  int bound;
  double value;
};

/// A reduced program and where its lines come from.
struct ReducedMip {
  MipProblem mip;
  Vector<int> row_map, col_map;      // of the program given: reduced index or -1
  Vector<int> kept_rows, kept_cols;  // [reduced] index in the program given; -1: made by presolve
};

class PresolveMip {
 public:
  /// The settings must outlive the object; `progress` may be null.
  PresolveMip(const MipProblem& mip, const MipPresolveSettings& settings, StopCheck& stop,
              MipPresolveProgress* progress);

  const MipPresolveSettings& settings;
  PresolveLp lp;
  Vector<SemiColumn> semis;
  Vector<OrderedSet> sets;
  Vector<ConditionalRow> indicators;
  Vector<FoundImplication> implications;  // by probing
  MipPresolveStats stats;
  MipPresolveProgress* const progress;  // may be null

  int num_original_rows() const { return num_original_rows_; }
  bool ended() const { return lp.ended(); }
  bool is_binary(int j) const {
    return lp.is_integer(j) && lp.lower[j] == 0.0 && lp.upper[j] == 1.0;
  }

  /// Declares a continuous column whole in some optimal solution of every objective value.
  void mark_implied_integer(int j);
  /// A tighter bound of a continuous column that rows imply, for the reductions that follow;
  /// loosen_bounds() takes it back.
  void strengthen_bound(int j, double bound, bool is_upper);
  /// Gives continuous columns the bounds they had, as far as rows imply the tighter ones: those
  /// would only make vertices degenerate.
  void loosen_bounds();

  /// A requirement of the column has gone.
  void release(int j);
  /// Removal of what is not linear, with the release of its columns. Set and indicator k are
  /// replaced by the last ones.
  void remove_semi(int k);
  void remove_set(int k);
  void remove_indicator(int k);
  /// Takes a member out of a set.
  void remove_member(OrderedSet& set, int place);

  /// The program as it is now.
  ReducedMip reduced_form() const;

  /// Grows with everything that a reduction does.
  std::int64_t changes() const;

 private:
  void hold(int j);
  void add_conditional_rows(ReducedMip& reduced) const;

  const MipProblem& original_;
  int num_original_rows_;
  Vector<int> holds_;  // [columns] requirements on the column beside rows
  struct Strengthened {
    double stated, derived;
  };
  // [columns] the bound as it was and as it was made; of no meaning once the bound is another one.
  Vector<Strengthened> lower_, upper_;
};

}  // namespace kelvo
