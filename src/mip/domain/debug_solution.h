// A switch for tests and debugging: a known solution that nothing may lose.
//
// The caller hands a solution that satisfies the program. A domain that has it reports, through the
// callback, the first bound, clause or added row that excludes the solution although the decisions
// of the current path and the cutoff admit it. Without one nothing is checked or stored.
#pragma once

#include "mip/domain/clique_table.h"
#include "mip/domain/local_bounds.h"

namespace kelvo {

/// What lost the solution.
struct DebugLoss {
  enum class Step { kBound, kConflict, kClause, kRow, kClique } step;
  ReasonKind kind;  // of a bound or conflict
  int bound;        // of a bound; -1
  double value;     // the new bound
  double solution;  // the solution's value or activity
};

class DebugSolution {
 public:
  using Report = void (*)(void* context, const DebugLoss& loss);

  /// `x` [num_cols] satisfies the program within its tolerances.
  DebugSolution(const MipProblem& mip, const Vector<double>& x, Report report, void* context);

  double objective() const { return objective_; }
  /// From here on only solutions better than this are kept; not this one, when it is worse.
  void set_cutoff(double cutoff) { is_cut_off_ = objective_ > cutoff; }

  /// A change at `position` of the trail. A decision or an unexplained bound that excludes the
  /// solution ends the checks until it is taken back.
  void check_bound(int position, int bound, double value, ReasonKind kind);
  /// The bounds were found to admit no point.
  void check_conflict(ReasonKind kind);
  /// All changes from `position` on are taken back.
  void backtrack(int position) {
    if (position <= left_at_) left_at_ = kNever;
  }
  void check_clause(const Vector<BoundLiteral>& literals);
  void check_row(const int* index, const double* value, int length, double lower, double upper);
  void check_cliques(const CliqueTable& cliques);

 private:
  static constexpr int kNever = std::numeric_limits<int>::max();
  bool excludes(int bound, double value) const;
  void report(const DebugLoss& loss);

  const MipProblem& mip_;
  Vector<double> value_;  // [num_vars] of columns and logicals
  double objective_;
  Report report_;
  void* context_;
  int left_at_ = kNever;  // position of the decision that excludes the solution
  bool is_cut_off_ = false;
  bool is_lost_ = false;  // reported once
};

}  // namespace kelvo
