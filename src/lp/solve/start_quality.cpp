#include "lp/solve/start_quality.h"

#include <cmath>

namespace kelvo {

namespace {

bool is_outside(const LpProblem& lp, int v, double value, double tolerance) {
  return value < lp.lower[v] - tolerance || value > lp.upper[v] + tolerance;
}

bool has_wrong_sign(const LpProblem& lp, int v, int status, double reduced_cost, double tolerance) {
  if (lp.lower[v] >= lp.upper[v]) return false;
  if (status == kAtLower) return reduced_cost < -tolerance;
  if (status == kAtUpper) return reduced_cost > tolerance;
  return std::fabs(reduced_cost) > tolerance;
}

}  // namespace

StartQuality judge_start(WorkingLp& working, const SimplexSettings& settings,
                         const RunContext& context) {
  StartQuality quality;
  if (!working.compute_basic_solution(settings, context)) return quality;
  quality.factored = true;
  const LpProblem& lp = working.lp();
  const Simplex& simplex = working.simplex();
  for (int v = 0; v < lp.num_vars(); ++v) {
    const int status = simplex.status()[v];
    if (is_outside(lp, v, simplex.values()[v], settings.feasibility_tolerance)) {
      ++quality.primal_wrong;
    }
    if (status != kBasic &&
        has_wrong_sign(lp, v, status, simplex.reduced_costs()[v], settings.optimality_tolerance)) {
      ++quality.dual_wrong;
    }
  }
  return quality;
}

bool is_primal_feasible(WorkingLp& working, const SimplexSettings& settings) {
  if (const auto known = working.simplex().known_primal_feasible(settings)) return *known;
  const StartQuality quality = judge_start(working, settings, {});
  return quality.factored && quality.primal_wrong == 0;
}

}  // namespace kelvo
