// From the caller's model to a result in its terms: where the one conversion of a call is.
#pragma once

#include "lp/solve/algorithms.h"
#include "lp/solve/conversion.h"
#include "lp/solve/presolved_lp.h"
#include "prob/problem.h"

namespace kelvo {

/// What the optimizers keep of a problem between calls; each may be null.
struct KeptLps {
  Owned<WorkingLp> working;      // at the final basis, when the answer came from it
  Owned<PresolvedLp> presolved;  // of the last solve, when it was presolved
};

/// Solves the linear part of a model. `changes`: those of the model since kept.working agreed with
/// it. False when no basis could be factored: then there is no result. Should memory run out
/// (std::bad_alloc), reset `kept`: its state need not agree with any answer.
bool solve_model(const Model& model, const ModelChanges& changes, KeptLps& kept,
                 const StoredBasis& start, const LpAlgorithm& algorithm,
                 const DriverSettings& settings, const CallContext& context, SolveResult& result);

enum class Reoptimized {
  impossible,  // nothing was done
  unchanged,   // the stored optimum still is one
  done         // the result is new
};

/// Solves again after few changes of bounds, or none, by continuing in the working LP that ended at
/// the optimum: what has not changed is neither copied nor verified again.
Reoptimized reoptimize(const Model& model, const ModelChanges& changes, Owned<WorkingLp>& working,
                       const LpAlgorithm& algorithm, const DriverSettings& settings,
                       const CallContext& context, SolveResult& result);

/// Brings a working LP up to date, or resets it when it has to be made again.
void update_working_lp(const Model& model, const ModelChanges& changes,
                       const DriverSettings& settings, Owned<WorkingLp>& working);

/// The changes of a problem since its working LP agreed with it; everything for none.
inline ModelChanges changes_for(const Problem& problem, const WorkingLp* working) {
  return working == nullptr ? ModelChanges() : problem.changes_since(working->agrees_with());
}

/// Makes `working` the working LP of the model at the start basis that the settings ask for.
void prepare_working_lp(const Model& model, const ModelChanges& changes, Owned<WorkingLp>& working,
                        const StoredBasis& start, const DriverSettings& settings,
                        const CallContext& context);

}  // namespace kelvo
