// A basis to come back to: two bits a variable, never changed, so that a parent and its children in
// a search tree share one.
#pragma once

#include <cstddef>
#include <memory>

#include "base/containers.h"
#include "base/memory.h"
#include "lp/form/lp_problem.h"

namespace kelvo {

class BasisSnapshot {
 public:
  /// Statuses and values [num_vars], as Simplex has them: values matter for superbasic variables
  /// that are not at 0. `weights`, the dual weights [num_rows] of the basic variables in ascending
  /// order, are kept in single precision; it may be empty.
  BasisSnapshot(const Vector<int>& status, const Vector<double>& values,
                const Vector<double>& weights);

  int num_vars() const { return num_vars_; }
  BasisStatus status(int variable) const {
    return static_cast<BasisStatus>(codes_.get()[variable / kPerByte] >> shift(variable) & 3U);
  }
  /// Statuses and places of superbasic variables, both [num_vars].
  void unpack(Vector<int>& status, Vector<double>& values) const;
  /// As given, or empty.
  const Vector<float>& weights() const;
  std::size_t bytes() const;

 private:
  static constexpr int kPerByte = 4;
  static unsigned shift(int variable) { return 2U * (static_cast<unsigned>(variable) % kPerByte); }

  struct Superbasic {
    int variable;
    double value;
  };
  struct Extras {
    Vector<Superbasic> superbasic;
    Vector<float> weights;
  };

  std::size_t num_bytes() const { return (num_vars_ + kPerByte - 1) / kPerByte; }

  int num_vars_;
  Owned<unsigned char> codes_;  // an array [num_bytes()]
  Owned<Extras> extras_;        // null when both are empty, as for most snapshots
};

using SharedBasis = std::shared_ptr<const BasisSnapshot>;

}  // namespace kelvo
