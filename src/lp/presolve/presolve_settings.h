// What presolve may do and what it found out, as plain data.
#pragma once

#include "base/containers.h"

namespace kelvo {

/// Families of reductions that can be switched off one by one.
enum ReductionFamily : unsigned {
  kSingletonRows = 1u << 0,
  kActivityRows = 1u << 1,  // redundant and forcing rows
  kDoubletons = 1u << 2,
  kFreeSingletons = 1u << 3,
  kSlackColumns = 1u << 4,
  kCostFixing = 1u << 5,
  kDualBounds = 1u << 6,
  kDuplicateRows = 1u << 7,
  kDuplicateColumns = 1u << 8,
  kAggregation = 1u << 9,
  kImpliedRows = 1u << 10,  // rows redundant by bounds that other rows imply
  kRowCancellation = 1u << 11,
  kAllFamilies = (1u << 12) - 1
};

struct PresolveSettings {
  bool on = true;
  unsigned families = kAllFamilies;
  int pass_limit = -1;             // -1: until a pass gains little
  bool primal_reductions = true;   // those that argue from rows and bounds alone
  bool dual_reductions = true;     // those that argue from the objective
  bool nonlinear = true;           // reductions whose undo is not linear
  int aggregator = -1;             // rounds of substitution; -1 as long as they gain, 0 none
  int dependent_rows = -1;         // effort: 0 none, 1 to 3 more and more, -1 automatic
  int fill_limit = 10;             // nonzeros that one substitution may add
  double coefficient_ratio = 1e3;  // largest ratio of an entry to the pivot of a substitution
  double large_number = 1e9;       // no substitution makes an entry larger than this
  int dual_form = 0;               // 1 solve the dual of what is left, -1 never, 0 by its shape
  double feasibility_tolerance = 1e-6;
  double optimality_tolerance = 1e-6;
  bool progress = true;  // report eliminations on the results channel
  int display = 1;       // 0: no report of the aggregator and the time
};

/// What is known of the columns beside their numbers; each mark is for every column, or none at
/// all.
struct ColumnMarks {
  // [num_cols] or empty. 1: the column must stay, and more than rows and bounds may hold it back
  Vector<char> is_protected;
  Vector<char> is_integer;  // [num_cols] or empty. 1: the column takes whole values only
};

struct PresolveStats {
  int rows_removed = 0;  // those of substitutions are counted there
  int cols_removed = 0;
  int substitutions = 0;
  int coefficients_changed = 0;
  int bounds_improved = 0;
  int aggregator_rounds = 0;
};

/// Is told now and then how far presolve has come.
class PresolveProgress {
 public:
  virtual ~PresolveProgress() = default;
  virtual void report(const PresolveStats& stats) = 0;
};

enum class PresolveOutcome {
  reduced,
  unchanged,
  infeasible,
  dual_infeasible,  // infeasible or unbounded
  time_limit,
  aborted
};

/// What proved the program infeasible or its dual so, for the message.
enum class FindingKind {
  none,
  empty_row,
  empty_column,
  column_bounds,
  integer_column,  // fixed between whole numbers
  forced_row,      // infeasible, all entries at their bounds
  implied_bounds,  // the bounds imply an activity outside the limits
  duplicate_rows,
  dual_bounds_column,
  dual_bounds_row,
  dependent_row,
  integer_equation,  // over integer columns, with no whole point
  binary_negative,   // row `line` and binary column `other`
  binary_above_one,
  inconsistent_sets,     // a special ordered set and bounds
  infeasible_indicator,  // whose binary column is fixed
  probing                // both values of a binary column, or propagation alone
};

struct Finding {
  FindingKind kind = FindingKind::none;
  int line = -1;     // row or column
  int other = -1;    // a second row; of column bounds, the row that moved them, if one did
  char sense = ' ';  // of an empty row, with the right-hand side
  double rhs = 0.0;
};

}  // namespace kelvo
