// The driver of the simplex methods: from a working LP to a verified answer.
//
// A run starts from the basis in force, solves, and checks what came out on the unscaled program.
// An answer that does not pass is improved before anything is reported:
//
//  - An optimum of the scaled LP that violates the tolerances is taken up by a second pass on the
//    unscaled LP from the final basis, with few iterations allowed when the basis is
//    ill-conditioned. When that pass is stopped, the state after the first one is restored and a
//    third pass runs on the scaled LP with tolerances tightened by what was missing.
//  - A proof of infeasibility or a direction of unboundedness that does not hold, a singular basis
//    and numerical trouble are answered by the other simplex method, then by the unscaled LP from
//    the slack basis, with the primal simplex when infeasibility was claimed; directions that keep
//    coming without holding are blocked by a change of units.
//
// Only what has passed its check is called optimal, infeasible or unbounded.
#pragma once

#include <optional>

#include "lp/crossover/crash_basis.h"
#include "lp/first_order/first_order_settings.h"
#include "lp/presolve/presolve_settings.h"
#include "lp/sifting/sifting_settings.h"
#include "lp/solve/lp_answer.h"
#include "lp/solve/working_lp.h"

namespace kelvo {

struct DriverSettings {
  SimplexSettings simplex;  // `scaled` and the iteration limits of passes are set by the driver
  ScalingMethod scaling = ScalingMethod::equilibrate;
  bool use_basis = true;            // start from the stored basis and from the state kept
  bool always_crush = false;        // presolve even when that basis is close to an optimum
  bool restart_passes = true;       // improve an optimum that violates the unscaled program
  bool compact_matrix = false;      // memory before speed: LpProblem::compact
  std::optional<CrashOrder> crash;  // of a run without a start basis; none: slacks
  PresolveSettings presolve;
  // `simplex` and `display` of these are set by the driver, from `simplex` above.
  SiftingSettings sifting;
  FirstOrderSettings first_order;
  Vector<char> protected_columns;  // [columns] 1: presolve must leave it; or empty
};

enum class LpMethod { primal, dual };

/// Runs the method on a working LP, from the basis in force. `own_start`: that is the slack basis
/// because no other was given. The working LP is replaced by the one that gave the answer.
/// `defer_check`: the caller fetches an optimal solution of the first run from the working LP and
/// verifies it; the answer comes without one then.
LpAnswer solve_working_lp(Owned<WorkingLp>& working, LpMethod method, bool own_start,
                          bool defer_check, const DriverSettings& settings,
                          const CallContext& context);

}  // namespace kelvo
