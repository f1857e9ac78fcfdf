// Phase one of the dual simplex: a dual feasible basis from artificial bounds.
//
// The problem's bounds are replaced by a box around 0 that has, for each variable, room exactly
// where its true bounds are open:
//
//     free [-1000, 1000],  only a lower bound [0, 1],  only an upper one [-1, 0],  boxed [0, 0]
//
// With every variable boxed each basis is dual feasible after flips, so the ordinary dual method
// solves it. Its optimal value is minus the (weighted) sum of dual infeasibilities of the best
// basis: 0 exactly when the true problem has a dual feasible one.
#include "lp/simplex/dual/dual_engine.h"

namespace kelvo {
namespace {

// Weighs the infeasibility of free variables, which should become basic and stay so.
constexpr double kFreeBox = 1000.0;

}  // namespace

int DualEngine::count_dual_infeasibilities(bool boxed_too, double tolerance) const {
  int count = 0;
  for (int j = 0; j < s_.num_vars; ++j) {
    if (s_.basis.move[j] == Basis::kStays || (!boxed_too && s_.program.is_boxed(j))) continue;
    count += DualValues::wrong(s_.duals.reduced_cost[j], s_.basis.move[j], tolerance);
  }
  return count;
}

void DualEngine::begin_phase_one() {
  phase_one_ = true;
  for (int j = 0; j < s_.num_vars; ++j) {
    const bool open_below = s_.problem.lower[j] == -kInf;
    const bool open_above = s_.problem.upper[j] == kInf;
    const double room = open_below && open_above ? kFreeBox : 1.0;
    s_.program.lower[j] = open_below ? -room : 0.0;
    s_.program.upper[j] = open_above ? room : 0.0;
    if (s_.basis.status[j] != kBasic && (open_below || open_above)) {
      s_.basis.status[j] = s_.duals.reduced_cost[j] < 0.0 ? kAtUpper : kAtLower;
    }
  }
  s_.program.set_bounds_perturbed();
  s_.refresh_nonbasic();
}

void DualEngine::end_phase_one() {
  phase_one_ = false;
  for (int j = 0; j < s_.num_vars; ++j) {
    if (s_.basis.status[j] == kBasic || s_.problem.lower[j] > -kInf || s_.problem.upper[j] < kInf) {
      continue;
    }
    s_.basis.status[j] = kFreeSuper;
    s_.basis.value[j] = 0.0;
  }
  s_.restore_bounds();
  // Fixed and boxed variables could not move so far, and their reduced costs were not kept.
  if (s_.factor_current()) s_.compute_duals();
  flip_infeasible_boxed();
}

std::optional<DualEngine::PhaseEnd> DualEngine::run_phase_one() {
  begin_phase_one();
  const PhaseEnd end = run_phase();
  end_phase_one();
  if (end == PhaseEnd::stopped) return end;
  return std::nullopt;
}

}  // namespace kelvo
