#include "lp/solve/algorithms.h"

namespace kelvo {

namespace {

template <LpMethod method>
LpAnswer run_simplex(const LpTask& task) {
  return solve_working_lp(task.working, method, task.own_start, task.defer_check, task.settings,
                          task.context);
}

constexpr LpAlgorithm kAlgorithms[] = {
    {"primal simplex", 1, kMethodPrimal, run_simplex<LpMethod::primal>},
    {"dual simplex", 2, kMethodDual, run_simplex<LpMethod::dual>},
};

}  // namespace

const LpAlgorithm* find_algorithm(int choice) {
  for (const LpAlgorithm& algorithm : kAlgorithms) {
    if (algorithm.choice == choice) return &algorithm;
  }
  return nullptr;
}

const LpAlgorithm& algorithm_of(LpMethod method) {
  return kAlgorithms[method == LpMethod::primal ? 0 : 1];
}

}  // namespace kelvo
