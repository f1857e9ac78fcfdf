// The local bounds of all variables, and the trail that leads to them.
//
// A node of the search differs from the root by its bounds. Every change is an entry of the trail:
// which bound, from what to what, why, and where the previous change of the same bound is. Taking
// the last entries back one by one gives exactly the bounds before. Entries are grouped in levels,
// each started by a decision; changes of level 0 hold everywhere and are never taken back.
//
// Invariants: lower <= upper always (a change that would cross is refused and recorded as the
// conflict); bounds of integer columns are whole; a finite bound never becomes infinite by a
// change; global(b) is at most as tight as bound(b).
//
// The bounds of a variable are neighbours in memory, bounds()[2v] and bounds()[2v+1], since whoever
// needs one mostly needs both.
#pragma once

#include "mip/domain/bound_literal.h"
#include "mip/domain/domain_tolerances.h"
#include "mip/form/mip_problem.h"

namespace kelvo {

/// One change of a bound; 32 bytes.
struct DomainChange {
  double old_value;
  double new_value;
  int bound;
  int previous;  // position of the last change of this bound before this one; -1 for none
  Reason reason;
};

/// A place to return to.
struct DomainMark {
  int position;  // length of the trail
  int level;
};

/// Why the bounds admit no point. With a bound >= 0: `reason` would make it `value`, which crosses
/// the opposite bound. With bound -1: `reason` itself cannot be satisfied.
struct Conflict {
  int bound = -1;
  double value = 0.0;
  Reason reason = kGloballyTrue;
};

enum class Tightening : char { kNone, kDone, kConflict };

class LocalBounds {
 public:
  /// The bounds of the program, those of integer columns rounded inwards. Where they cross, the
  /// result is in conflict from the start. `mip` must outlive this.
  explicit LocalBounds(const MipProblem& mip);

  int num_vars() const { return num_vars_; }
  double lower(int v) const { return bound_[2 * v]; }
  double upper(int v) const { return bound_[2 * v + 1]; }
  double bound(int b) const { return bound_[b]; }
  const double* bounds() const { return bound_.data(); }  // [2 num_vars]
  bool is_fixed(int v) const { return bound_[2 * v] == bound_[2 * v + 1]; }
  bool is_integer(int v) const { return is_integer_[v] != 0; }
  /// The bound at level 0.
  double global(int b) const { return global_[b]; }
  bool holds(const BoundLiteral& literal) const {
    return is_as_tight(literal.bound, bound_[literal.bound], literal.value);
  }

  /// Makes a bound at least as tight as `value`, which is rounded inwards for an integer column.
  /// kNone: it is as tight already, or the gain is not worth a change. Bounds that cross by no more
  /// than the tolerance become equal.
  Tightening tighten(int bound, double value, Reason reason);
  /// Also records that this holds everywhere.
  Tightening tighten_globally(int bound, double value);

  bool in_conflict() const { return in_conflict_; }
  const Conflict& conflict() const { return conflict_; }
  void set_conflict(const Conflict& conflict) {
    conflict_ = conflict;
    in_conflict_ = true;
  }

  int level() const { return static_cast<int>(level_start_.size()); }
  void start_level() { level_start_.push_back(size()); }
  DomainMark mark() const { return {size(), level()}; }
  /// Takes back the last change; only above level 0. The caller owns the order of things that
  /// follow the bounds (see Domain::backtrack).
  void undo_last();
  /// Ends the levels above `level` and, with it, the conflict. The trail is short enough already.
  void drop_levels(int level);
  /// First position that a return to `mark` takes back: changes of level 0 stay.
  int first_undone(const DomainMark& mark) const {
    return level_start_.empty() ? size() : std::max(mark.position, level_start_[0]);
  }

  int size() const { return static_cast<int>(trail_.size()); }
  const DomainChange& change(int position) const { return trail_[position]; }
  /// Position of the last change of a bound; -1 for none.
  int latest(int bound) const { return latest_[bound]; }
  int level_start(int level) const { return level == 0 ? 0 : level_start_[level - 1]; }
  /// The level that a position of the trail belongs to.
  int level_of(int position) const;
  /// The value of a bound before the change at `position`.
  double value_before(int bound, int position) const;
  /// The first change below `before` that made the literal true; -1 when it is true globally. The
  /// literal must be true there.
  int position_of(const BoundLiteral& literal, int before) const;

  /// Calls visit(variable) once for each variable whose bounds changed since `mark`.
  template <class Visit>
  void for_each_changed(const DomainMark& mark, Visit visit) const {
    for (int p = mark.position; p < size(); ++p) {
      const DomainChange& entry = trail_[p];
      if (entry.previous >= mark.position) continue;
      if (is_upper(entry.bound) && latest_[opposite(entry.bound)] >= mark.position) continue;
      visit(variable_of(entry.bound));
    }
  }
  /// All variables whose bounds changed since the last call, changes taken back included, once each
  /// and in no particular order. For a node LP that follows the bounds wherever they go.
  void take_changed(Vector<int>& variables);

 private:
  bool is_worthwhile(int bound, double value, double old) const;

  int num_vars_;
  Vector<double> bound_;     // [2 num_vars]
  Vector<double> global_;    // [2 num_vars]
  Vector<int> latest_;       // [2 num_vars] position of the last change; -1
  Vector<int> steps_;        // [2 num_vars] changes on the trail
  Vector<char> is_integer_;  // [num_vars] logicals: 0
  Vector<DomainChange> trail_;
  Vector<int> level_start_;  // [level] length of the trail where level k+1 began
  Vector<int> changed_;      // variables that take_changed() will report
  Vector<char> is_changed_;  // [num_vars]
  Conflict conflict_;
  bool in_conflict_ = false;
};

}  // namespace kelvo
