// Which variables are basic, at which positions, and where the nonbasic ones are.
//
// Invariants while is_set():
// - header[p] is the variable basic at position p, position[] its inverse; exactly the header's
//   variables have status kBasic.
// - A nonbasic variable j is at value[j]: at its working bound lower[j] (kAtLower) or upper[j]
//   (kAtUpper), or anywhere between (kFreeSuper; 0 for a free one).
// - move[j] tells where it may go; kStays for basic, fixed and held variables.
// - The program's rows hold exactly the columns of movable structural variables as their active
//   part.
//
// The methods read these arrays in their loops. Who writes into status, value or the program's
// bounds himself calls refresh() or refresh_all() afterwards.
#pragma once

#include "base/basis_status.h"
#include "base/containers.h"
#include "lp/factor/basis_factor.h"
#include "lp/simplex/simplex_log.h"
#include "lp/simplex/state/working_program.h"

namespace kelvo {

class Basis {
 public:
  enum Movement : signed char { kDown = -1, kStays = 0, kUp = 1, kAnywhere = 2 };

  /// No basis is set yet. The program must outlive the object.
  explicit Basis(WorkingProgram& program);

  Vector<int> header;          // [m]
  Vector<int> position;        // [N] valid for basic variables only
  Vector<int> status;          // [N] BasisStatus
  Vector<signed char> move;    // [N] a Movement
  Vector<double> value;        // [N] of nonbasic variables
  Vector<unsigned char> held;  // [N] 1: fixed because of singularity until release_held()

  bool is_set() const { return set_; }
  bool is_basic(int j) const { return status[j] == kBasic; }
  bool all_logicals() const;

  // Whole bases. Values of basic variables, and the factor, are the caller's to invalidate.

  /// The logicals are basic, in order; structural variables at the bound of smaller magnitude.
  void set_slack();
  /// Statuses as a caller gives them, see Simplex::set_basis; `values` [N] or null. True when the
  /// basic variables are those of the basis before, which keep their positions.
  bool set(const Vector<int>& given, const double* values);
  /// Takes over a header and statuses [N] that agree.
  void adopt(const Vector<int>& new_header, const Vector<int>& new_status);
  /// After the factor's repairs of the header.
  void apply_repairs(const Vector<BasisRepair>& repairs, SimplexLog& log);
  /// There is no basis until the next one is set.
  void forget() { set_ = false; }
  /// After changes of any working bounds or statuses: every nonbasic variable at a bound that it
  /// has, boxed ones on their side.
  void refresh_all();
  /// position[] from the header, which is set.
  void number_positions();
  /// The row partition, and nothing else, according to move[].
  void refresh_partition();

  // Single variables.

  /// Puts a nonbasic variable at the bound that `at` names, or at another one that it has.
  void place(int j, BasisStatus at) {
    status[j] = at;
    refresh(j);
  }
  /// A nonbasic variable's status, value and movement agree with its bounds.
  void refresh(int j);
  /// Moves a boxed variable to its other bound.
  void flip(int j);
  /// header[at] becomes `entering`; the leaving variable is to be placed by the caller.
  void exchange(int at, int entering);
  /// Variables held because of a singularity become ordinary ones; returns how many there were.
  int release_held();
  /// Puts the active state of the column right after a change of move[j].
  void follow_movement(int j) {
    if (j >= program_.problem.num_cols) return;
    if (move[j] != kStays) {
      program_.rows.activate(j);
    } else {
      program_.rows.deactivate(j);
    }
  }

  int num_held() const { return num_held_; }
  void set_num_held(int count) { num_held_ = count; }

 private:
  void adjust(int j);
  void complete(int num_basic);

  WorkingProgram& program_;
  bool set_ = false;
  int num_held_ = 0;
};

}  // namespace kelvo
