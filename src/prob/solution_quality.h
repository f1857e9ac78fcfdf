// How good a point is, measured on the caller's model in its own units: for each quantity the
// largest magnitude over all rows, columns or constraints.
#pragma once

#include "prob/solution.h"

namespace kelvo {

struct Model;

struct PrimalQuality {
  double infeasibility = 0.0;          // of rows and bounds
  double integer_infeasibility = 0.0;  // distance of integer columns from whole numbers
  double residual = 0.0;               // |a_i x - (activity_i as stored)|
  double x = 0.0;
  double slack = 0.0;
  double quadratic_infeasibility = 0.0;  // of quadratic constraints, and their slacks
  double quadratic_slack = 0.0;
};

/// `activity` [rows] as stored with the point x [columns], or null. Throws std::bad_alloc.
PrimalQuality primal_quality(const Model& model, const double* x, const double* activity);

struct DualQuality {
  double infeasibility = 0.0;    // of the signs of pi and dj
  double residual = 0.0;         // |c_j + (Qx)_j - a_j'pi - dj_j|
  double complementarity = 0.0;  // |multiplier| times the distance from the bound it belongs to
  double gap = 0.0;              // objective of the point minus that of the multipliers
  double pi = 0.0;
  double dj = 0.0;
};

/// For a linear or quadratic objective and linear rows; `basis` says which signs hold, or is null:
/// then they follow from the bounds that are finite. The record must have dual values.
DualQuality dual_quality(const Model& model, const SolutionRecord& record,
                         const StoredBasis* basis);

}  // namespace kelvo
