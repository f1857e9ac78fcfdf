// Solving a model by way of its dual formulation.
#pragma once

#include "lp/solve/driver.h"

namespace kelvo {

/// True when the model is to be solved through its dual: because the settings say so or, when they
/// leave it open, because the dual has far fewer rows than the model and no many more columns.
bool prefers_dual_form(const Model& model, const PresolveSettings& settings);

/// Solves the dual formulation and fills `answer` with status, basis, x, pi and reduced costs of
/// the model itself; they have not been checked on it. False, with the iterations spent in
/// `answer.record`, when the dual has no optimum: what that means for the model is a question for
/// the model itself.
bool solve_dual_form(const Model& model, LpMethod method, const DriverSettings& settings,
                     const CallContext& context, LpAnswer& answer);

}  // namespace kelvo
