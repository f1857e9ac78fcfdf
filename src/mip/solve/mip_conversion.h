// Between the caller's model and the mixed-integer program, both ways.
#pragma once

#include "mip/form/mip_problem.h"
#include "prob/model/model.h"

namespace kelvo {

/// The program of a model whose integer bounds have been rounded: rows of indicators and lazy
/// constraints follow those of the model; user cuts, which change nothing, are left out. Columns
/// that a requirement "the row holds only if ..." needs follow those of the model. The names'
/// context is the model, which must outlive their use; what has no counterpart in it has no name.
MipProblem make_mip(const Model& model, const PriorityOrder& order,
                    const MipTolerances& tolerances);

/// How far a point x [columns] of the model is from what the model asks for, measured on the
/// model's own numbers. Indicators are active as the interface defines it.
MipResiduals measure_on_model(const Model& model, const double* x, const MipTolerances& tolerances);

}  // namespace kelvo
