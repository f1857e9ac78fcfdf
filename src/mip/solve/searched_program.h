// The program that is searched: the caller's after presolve, with the way back.
#pragma once

#include "mip/presolve/mip_presolve.h"
#include "mip/solve/incumbent.h"
#include "mip/solve/node_log.h"

namespace kelvo {

class SearchedProgram final : public PointMap, public ColumnNames {
 public:
  /// Searches the program of a model with so many columns as it is. The model's names are used.
  SearchedProgram(MipProblem&& mip, const Model& model);

  /// Presolves; what the outcome proves is said by it.
  PresolveOutcome presolve(const MipPresolveSettings& settings, const MipPresolveContext& context);

  const MipProblem& mip() const { return mip_; }
  void to_model(const Vector<double>& searched, Vector<double>& x) const override;
  const char* column_name(int column) const override;

 private:
  const Model& model_;
  MipProblem mip_;
  Owned<MipPresolve> presolve_;  // or null
  mutable String name_;          // of the last call
};

}  // namespace kelvo
