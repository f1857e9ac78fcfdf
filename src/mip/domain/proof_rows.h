// Proofs of infeasible or cut-off LPs that are kept as rows, for propagation at other nodes.
//
// A clause says that one combination of bounds is hopeless; the proof behind it often excludes
// many. Rows cost time with every bound of their columns, so only few are kept: when the place is
// used up, the half that has tightened the fewest bounds since the last time goes.
//
// Witzig, Berthold, Heinz (2017), Experiments with conflict analysis in mixed integer programming.
// CPAIOR.
#pragma once

#include "mip/domain/domain.h"

namespace kelvo {

class ProofRows {
 public:
  explicit ProofRows(Domain& domain, int most = 100) : domain_(domain), most_(most) {}

  /// Keeps a proof unless it is too long, speaks of logicals, or has coefficients too far apart to
  /// be propagated safely. Returns whether it does.
  bool add(const LinearProof& proof);
  int size() const { return static_cast<int>(rows_.size()); }

 private:
  struct Kept {
    int row;
    int uses_before;  // of the row when the others were sorted out last
  };
  void remove_useless();

  Domain& domain_;
  int most_;
  Vector<Kept> rows_;  // the oldest first
};

}  // namespace kelvo
