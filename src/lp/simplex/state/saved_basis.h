// The last basis that could be factored, with its weights: where a run continues when the present
// basis turns out to be singular.
#pragma once

#include "lp/simplex/state/basis.h"
#include "lp/simplex/state/edge_weights.h"

namespace kelvo {

class SavedBasis {
 public:
  bool present() const { return present_; }
  void forget() { present_ = false; }
  void save(const Basis& basis, const EdgeWeights& weights) {
    header_ = basis.header;
    status_ = basis.status;
    dual_weights_ = weights.dual;
    mark_ = weights.mark();
    present_ = true;
  }
  /// Once only: if this basis cannot be factored again either, repairs take over.
  void put_back(Basis& basis, EdgeWeights& weights) {
    present_ = false;
    basis.adopt(header_, status_);
    std::copy(dual_weights_.begin(), dual_weights_.end(), weights.dual.begin());
    weights.return_to(mark_);
  }

 private:
  bool present_ = false;
  Vector<int> header_;           // [m]
  Vector<int> status_;           // [N]
  Vector<double> dual_weights_;  // [m]
  EdgeWeights::Mark mark_;
};

}  // namespace kelvo
