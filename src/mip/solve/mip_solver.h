// The driver of mixed-integer optimization: from the caller's model to a verified incumbent, a
// bound and a status.
#pragma once

#include "lp/solve/lp_solver.h"
#include "mip/form/mip_settings.h"
#include "mip/presolve/mip_presolve_settings.h"
#include "mip/solve/node_log.h"
#include "prob/model/model.h"

namespace kelvo {

/// Status codes of mixed-integer results.
enum MipStatus : int {
  kMipOptimal = 101,
  kMipOptimalTolerance = 102,
  kMipInfeasible = 103,
  kMipSolutionLimit = 104,
  kMipNodeLimit = 105,
  kMipNodeLimitNone = 106,
  kMipTimeLimit = 107,
  kMipTimeLimitNone = 108,
  kMipError = 109,
  kMipErrorNone = 110,
  kMipMemoryLimit = 111,
  kMipMemoryLimitNone = 112,
  kMipAborted = 113,
  kMipAbortedNone = 114,
  kMipUnscaledInfeasible = 115,
  kMipUnbounded = 118,
  kMipInfeasibleOrUnbounded = 119,
  kMipIterationLimit = 131,
  kMipIterationLimitNone = 132,
};

struct MipSolverSettings {
  SearchSettings search;
  DriverSettings lp;  // for the relaxations
  MipPresolveSettings presolve;
  NodeLogSettings log;
  int root_algorithm = 0;  // a method choice of the linear optimizers; 0 automatic
  int threads = 1;
  bool use_order = true;
  int generated_order = 0;  // OrderRule, when the model has no order
};

struct MipAnswer {
  int status = 0;
  bool has_incumbent = false;
  Vector<double> x;        // [columns]
  double objective = 0.0;  // of the caller's sense, like the bound
  double best_bound = 0.0;
  double cutoff = kNoValue;
  double iterations = 0.0;
  int nodes = 0;
  int nodes_left = 0;
  int incumbent_node = 0;
  int node_status = 0;  // of the last linear program, a SolutionStatus
  int solutions = 0;
  double presolve_seconds = 0.0, root_seconds = 0.0, tree_seconds = 0.0;
};

MipAnswer solve_mip(const Model& model, const MipSolverSettings& settings,
                    const CallContext& context);

}  // namespace kelvo
