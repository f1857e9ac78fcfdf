// What has to be true of a quadratic objective before an optimizer may take it, and the repair of
// one that is not convex.
//
// With s = 1 for minimization and -1 for maximization, s Q must be positive semidefinite. When all
// columns with quadratic coefficients are binary ('B', or 'I' between 0 and 1), x_j^2 = x_j allows
// a diagonal shift: q_jj + d together with c_j - d / 2 is the same objective. A diagonal Q gets s
// in place of each entry of the wrong sign; any other Q gets one shift for all of them, found by
// bisection between what the last direction of negative form asks for and what makes Q diagonally
// dominant.
#pragma once

#include "base/messages.h"
#include "prob/model/model.h"

namespace kelvo {

enum class Convexity {
  convex,      // as it is
  repaired,    // the shifted objective is
  not_convex,  // and no repair applies
};

struct ConvexifySettings {
  bool repair = true;    // parameter QPMAKEPSDIND
  bool announce = true;  // say that a repair begins
};

/// Judges the quadratic objective of a model; after `repaired`, `cost` and `q` are the linear and
/// quadratic objective to use instead. Throws std::bad_alloc.
Convexity make_convex(const Model& model, const ConvexifySettings& settings, MessageSink& sink,
                      Vector<double>& cost, SparseMatrix& q);

}  // namespace kelvo
