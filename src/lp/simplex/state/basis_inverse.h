// The factor of the basis: whether it is that of the present basis, and what a run asks of it.
//
// The factor itself (lp/factor/basis_factor.h) knows neither the simplex settings nor the basis; it
// is made again when a run's settings ask for another one.
#pragma once

#include "base/memory.h"
#include "lp/factor/basis_factor.h"
#include "lp/simplex/simplex.h"

namespace kelvo {

class BasisInverse {
 public:
  /// `columns` and `events` must outlive the object.
  BasisInverse(const SparseMatrix& columns, FactorEvents* events);

  BasisFactor& factor() { return *factor_; }
  const BasisFactor& factor() const { return *factor_; }

  /// The factor is that of the present basis, and, `fresh`, without updates.
  bool current() const { return current_; }
  bool fresh() const { return current_ && factor_->statistics().updates == 0; }
  /// The basis is another one.
  void invalidate() { current_ = false; }

  /// A new factor, not current, when these settings differ from the last ones in what concerns it.
  void configure(const SimplexSettings& settings);
  /// One attempt; afterwards current() unless `singular` or `stopped`.
  FactorOutcome factorize(Vector<int>& header, bool allow_repair, StopCheck* stop);
  /// The exchanges of a factorization that ended `repaired`.
  const Vector<BasisRepair>& repairs() const { return repairs_; }
  /// The last factorization was stopped by the stop check.
  bool was_stopped() const { return stopped_; }

  // Changes of the basis; false, and no longer current, when it must be factorized.

  /// The column of the last kept ftran becomes that of a position.
  bool update(int position, double pivot) { return current_ = factor_->update(position, pivot); }
  void add_rows(const SparseMatrix& basic_part);
  void delete_rows(const Vector<int>& rows, const Vector<int>& positions);
  /// Back to a mark of the factor, which ends.
  void return_to(FactorMark mark) noexcept;

 private:
  void make_factor();

  const SparseMatrix& columns_;
  FactorEvents* events_;
  FactorSettings settings_;
  Owned<BasisFactor> factor_;
  bool current_ = false;
  bool stopped_ = false;
  Vector<BasisRepair> repairs_;
};

}  // namespace kelvo
