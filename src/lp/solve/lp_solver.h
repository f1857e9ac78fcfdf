// Solving a linear program: from start and settings to a verified answer.
//
// Without presolve the program becomes a working LP, which the driver solves. With presolve the
// reduced program is solved and verified like any other, its basic solution goes back to the
// program, where it is measured again; when it does not hold there, the simplex method continues
// from its basis. A start basis is crushed through presolve, unless so few variables are on the
// wrong side of their limits in it, or have a reduced cost of the wrong sign, that going on from it
// takes less than presolve would; or unless it comes with pricing norms, which presolve cannot
// carry.
#pragma once

#include "lp/solve/algorithms.h"
#include "lp/solve/presolved_lp.h"

namespace kelvo {

/// What is to become of a start basis when presolve is on.
enum class StartPlan { keep, crush, crush_with_point };

/// Factors the start basis, which the working LP is at, and decides.
StartPlan plan_start(WorkingLp& working, bool has_norms, const DriverSettings& settings,
                     const CallContext& context);

/// A working LP, stored as the settings ask; the log says what compact storage saves.
Owned<WorkingLp> make_working_lp(LpProblem&& lp, const DriverSettings& settings, MessageSink& sink);

/// Puts the working LP, which is at the slack basis, at the start that the settings admit: the
/// given one, or a crash basis.
void put_at_start(WorkingLp& working, const LpStart& start, const DriverSettings& settings);

/// True when the program is to be presolved; trivial ones are not.
bool wants_presolve(const LpProblem& lp, const DriverSettings& settings);

/// Solves a program as it is. `working` is null or a working LP of this program, which is replaced
/// by the one that gave the answer; null when none was needed.
LpAnswer solve_without_presolve(LpProblem lp, Owned<WorkingLp>& working, const LpStart& start,
                                const LpAlgorithm& algorithm, const DriverSettings& settings,
                                const CallContext& context);

/// Continues from the start that a working LP has been put at.
LpAnswer solve_from_start(Owned<WorkingLp>& working, const LpStart& start,
                          const LpAlgorithm& algorithm, const DriverSettings& settings,
                          const CallContext& context);

/// Solves the presolved program, from the start that the settings admit, and carries the answer
/// back; `presolved` receives the presolved program, and `working` is reset unless it gave the
/// answer.
LpAnswer solve_with_presolve(const LpProblem& lp, Owned<WorkingLp>& working, const LpStart& start,
                             const LpAlgorithm& algorithm, const DriverSettings& settings,
                             const CallContext& context, Owned<PresolvedLp>& presolved);

}  // namespace kelvo
