// The driver of the simplex methods: from a model to an answer in the model's own terms.
//
// A run scales the model into a working LP, starts from the basis it is given, solves, and checks
// what came out on the unscaled model. An answer that does not pass is improved before anything is
// reported:
//
//  - An optimum of the scaled LP that violates the tolerances on the model is taken up by a second
//    pass on the unscaled LP from the final basis, with few iterations allowed when the basis is
//    ill-conditioned. When that pass is stopped, the state after the first one is restored and a
//    third pass runs on the scaled LP with tolerances tightened by what was missing.
//  - A proof of infeasibility or a direction of unboundedness that does not hold on the model, a
//    singular basis and numerical trouble are answered by the other simplex method, then by the
//    unscaled LP from the slack basis, with the primal simplex when infeasibility was claimed.
//
// Only what has passed its check is called optimal, infeasible or unbounded.
#pragma once

#include "lp/presolve/presolve_settings.h"
#include "lp/solve/working_lp.h"

namespace kelvo {

struct DriverSettings {
  SimplexSettings
      simplex;  // `scaled`, `sense` and iteration limits of passes are set by the driver
  ScalingMethod scaling = ScalingMethod::equilibrate;
  bool use_basis = true;       // start from the stored basis and from the state kept
  bool always_crush = false;   // presolve even when that basis is close to an optimum
  bool restart_passes = true;  // improve an optimum that violates the unscaled model
  PresolveSettings presolve;
  Vector<char> protected_columns;   // [columns] 1: presolve must leave it; or empty
  double objective_constant = 0.0;  // of the minimization: what a reduced model's objective lacks
};

enum class LpMethod { primal, dual };

/// What a run leaves: the solution status (SolutionStatus), the record and the final basis.
struct LpAnswer {
  int status = kNoSolution;
  bool singular = false;  // no basis could be factored, not even after a fresh start
  SolutionRecord record;
  StoredBasis basis;
};

class PresolvedLp;

/// Solves the linear part of a model, by way of presolve when that is on; `presolved` then receives
/// the presolved problem. A start basis is crushed through presolve, unless so few variables are on
/// the wrong side of their limits in it, or have a reduced cost of the wrong sign, that going on
/// from it takes less than presolve would; or unless it comes with pricing norms, which presolve
/// cannot carry. `working` holds the working LP of an earlier call or null; it is replaced when it
/// does not fit. Should memory run out (std::bad_alloc), reset `working`: its state need not agree
/// with any answer.
LpAnswer solve_lp(const Model& model, Owned<WorkingLp>& working, const StoredBasis& start,
                  LpMethod method, const DriverSettings& settings, const CallContext& context,
                  Owned<PresolvedLp>& presolved);

/// Solves the model as it stands.
LpAnswer solve_without_presolve(const Model& model, Owned<WorkingLp>& working,
                                const StoredBasis& start, LpMethod method,
                                const DriverSettings& settings, const CallContext& context);

/// Solves the presolved model, from the start basis that the settings ask for, and carries the
/// answer back (presolved_solve.cpp).
LpAnswer solve_with_presolve(const Model& model, Owned<WorkingLp>& working,
                             const StoredBasis& start, LpMethod method,
                             const DriverSettings& settings, const CallContext& context,
                             Owned<PresolvedLp>& presolved);

/// Makes `working` the working LP of the model, at the start basis that the settings ask for.
void prepare_working_lp(const Model& model, Owned<WorkingLp>& working, const StoredBasis& start,
                        const DriverSettings& settings, const CallContext& context);

}  // namespace kelvo
