// Solving a program by way of its dual formulation.
#pragma once

#include "lp/solve/algorithms.h"

namespace kelvo {

/// True when the program is to be solved through its dual: because the settings say so or, when
/// they leave it open, because the dual has far fewer rows and not many more columns.
bool prefers_dual_form(const LpProblem& lp, const PresolveSettings& settings);

/// Solves the dual formulation and fills `answer` with outcome, x, y, statuses and reduced costs of
/// the program itself; they have not been checked on it. False, with the iterations spent in
/// `answer`, when the dual has no optimum: what that means for the program is a question for the
/// program itself.
bool solve_dual_form(const LpProblem& lp, const LpAlgorithm& algorithm,
                     const DriverSettings& settings, const CallContext& context, LpAnswer& answer);

}  // namespace kelvo
