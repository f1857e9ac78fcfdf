// Linear programs that need no simplex: without rows or without columns, or with an empty interval.
#pragma once

#include "lp/solve/driver.h"

namespace kelvo {

/// Fills the answer when the model is such a program; false otherwise. `tolerance` is the
/// feasibility tolerance.
bool solve_trivial_lp(const Model& model, double tolerance, LpAnswer& answer);

/// True when some column or row admits no value at all.
bool has_empty_interval(const Model& model, double tolerance);

}  // namespace kelvo
