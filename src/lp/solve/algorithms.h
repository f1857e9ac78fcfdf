// The algorithms for linear programs: one row each, and nothing else in the library lists them.
#pragma once

#include "lp/solve/driver.h"
#include "prob/solution.h"

namespace kelvo {

/// What an algorithm works on: a program that has been converted, presolved and scaled, or that has
/// been kept from an earlier call.
struct LpTask {
  Owned<WorkingLp>& working;  // replaced by the one that gave the answer
  bool own_start;             // at the slack basis because no other was given
  bool defer_check;           // see solve_working_lp()
  const DriverSettings& settings;
  const CallContext& context;
};

struct LpAlgorithm {
  const char* name;
  int choice;             // value of KLV_PARAM_LPMETHOD
  SolutionMethod method;  // code that a solution carries
  LpAnswer (*run)(const LpTask& task);
};

/// The row of a choice, or null when there is no such algorithm.
const LpAlgorithm* find_algorithm(int choice);

const LpAlgorithm& algorithm_of(LpMethod method);

}  // namespace kelvo
