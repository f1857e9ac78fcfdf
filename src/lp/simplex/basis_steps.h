// Changes of a Simplex's basis by the step, for a caller who chooses the pivots.
//
// Values follow only when they are computed: call compute_primals() or compute_duals() before the
// next choice that depends on them, and store_results() at the end.
#pragma once

#include "lp/simplex/simplex.h"

namespace kelvo {

class BasisSteps {
 public:
  /// The Simplex must outlive the object, and its factor be current. The context is lent to the
  /// engine for the life of the object: no runs meanwhile.
  BasisSteps(Simplex& simplex, const RunContext& context);
  ~BasisSteps();
  BasisSteps(const BasisSteps&) = delete;
  BasisSteps& operator=(const BasisSteps&) = delete;

  /// The value of the variable at a position, after compute_primals() or a run.
  double basic_value(int position) const;
  /// Exchanges the variable at `position` for the one of the last
  /// SimplexTableau::entering_column(), whose pivot must be acceptable; the leaving variable goes
  /// to `leaves_at`, a free one stays where it is. False when the basis was lost on the way: no
  /// factor can be had.
  bool exchange(int position, int entering, BasisStatus leaves_at);
  /// Puts a nonbasic variable at a bound that it has.
  void move_to(int variable, BasisStatus bound);

  void compute_primals();
  void compute_duals();
  /// Values, duals and results of the Simplex := those of the basis.
  void store_results();

 private:
  SimplexState& state_;
};

}  // namespace kelvo
