// Working costs of the dual simplex: perturbation against degeneracy, shifts that keep reduced
// costs feasible, and the way back to the true costs.
#include <algorithm>
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"

namespace kelvo {
namespace {

// Perturbations are measured by the largest cost up to this size, by a root of it beyond.
constexpr double kLargeCost = 100.0;
// Half the perturbation parameter at least and the whole of it at most goes into a unit cost.
constexpr double kPerturbationShare = 0.5;
// With hardly any boxed variables degeneracy is left to smaller perturbations.
constexpr double kFewBoxed = 0.01;

}  // namespace

// Each cost moves, relative to its size and a little absolutely, in the direction that keeps its
// variable dual feasible at its bound; boxed variables follow the sign of their cost.
void DualEngine::perturb_costs() {
  s_.trail.note_everything(s_);
  double largest = 0.0;
  int boxed = 0;
  for (int j = 0; j < s_.num_vars; ++j) {
    largest = std::max(largest, std::fabs(s_.problem.cost[j]));
    boxed += s_.problem.lower[j] > -kInf && s_.problem.upper[j] < kInf;
  }
  if (largest > kLargeCost) largest = std::sqrt(std::sqrt(largest));
  if (boxed < kFewBoxed * s_.num_vars) largest = std::min(largest, 1.0);
  const double unit = kPerturbationShare * s_.run.settings.perturbation * largest;
  for (int j = 0; j < s_.n; ++j) {
    const bool open_below = s_.problem.lower[j] == -kInf;
    const bool open_above = s_.problem.upper[j] == kInf;
    if ((open_below && open_above) || s_.problem.lower[j] == s_.problem.upper[j]) continue;
    const double amount =
        (1.0 + std::fabs(s_.problem.cost[j])) * unit * (1.0 + s_.program.random.uniform());
    const bool up = open_above || (!open_below && s_.problem.cost[j] >= 0.0);
    s_.program.cost[j] += up ? amount : -amount;
  }
  s_.log.perturbation_started(perturbations_ > 0);
  ++perturbations_;
  s_.program.set_costs_perturbed();
  s_.duals.make_stale();
  hot_ = false;
}

void DualEngine::shift_cost(int j, double amount) {
  if (amount == 0.0) return;
  s_.trail.note_cost(s_, j);
  s_.trail.note_reduced_cost(s_, j);
  s_.program.shift_cost(j, amount);
  s_.duals.reduced_cost[j] += amount;
  s_.duals.objective += amount * s_.basis.value[j];  // only nonbasic variables are shifted
  s_.duals.lose_freshness();
}

// After a fresh computation, reduced costs that drifted out of their tolerance are made feasible:
// boxed variables flip, the costs of others are shifted to a little beyond zero.
void DualEngine::correct_duals() {
  const double tolerance = s_.run.dual_tolerance;
  for (int j = 0; j < s_.num_vars; ++j) {
    const int direction = s_.basis.move[j];
    if (direction == Basis::kStays) continue;
    const double d = s_.duals.reduced_cost[j];
    if (direction == Basis::kAnywhere) {
      if (std::fabs(d) > tolerance) shift_cost(j, -d);
    } else if (d * direction < -tolerance) {
      if (s_.program.is_boxed(j)) {
        s_.flip(j);
      } else {
        shift_cost(j, direction * tolerance * (1.0 + s_.program.random.uniform()) - d);
      }
    }
  }
}

void DualEngine::flip_infeasible_boxed() {
  const double tolerance = s_.run.dual_tolerance;
  for (int j = 0; j < s_.num_vars; ++j) {
    const int direction = s_.basis.move[j];
    if (direction == Basis::kStays || direction == Basis::kAnywhere) continue;
    if (s_.program.is_boxed(j) && s_.duals.reduced_cost[j] * direction < -tolerance) s_.flip(j);
  }
}

void DualEngine::remove_perturbation() {
  if (s_.program.costs_perturbed()) s_.log.perturbation_removed();
  if (s_.program.num_shifts() > 0) s_.log.shifts_removed(s_.program.num_shifts());
  s_.restore_costs();
}

}  // namespace kelvo
