#include "lp/simplex/primal/primal_perturbation.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

// Degenerate iterations tolerated before perturbing, by number of rows.
struct Tolerated {
  int rows;
  int iterations;
};
constexpr Tolerated kTolerated[] = {{1000, 400},  {5000, 500},   {7500, 600},   {10000, 700},
                                    {15000, 900}, {20000, 1100}, {30000, 1600}, {40000, 2100}};
constexpr int kToleratedOtherwise = 2600;
// Relative gain of an iteration that counts as progress.
constexpr double kProgress = 1e-6;
// Reperturbations use a tenth of the magnitude before, at most this.
constexpr double kReperturbation = 1e-6;
// There is none of less than this: rounding errors would pass the working tolerance.
constexpr double kLeastMagnitude = 5e-9;
// Working tolerances stay this many times below the perturbation.
constexpr double kToleranceShare = 100.0;
// A leaving variable this near to its bound stands at it.
constexpr double kRounding = 1e-11;
// After so many removals the run goes on without perturbing again.
constexpr int kMostRemovals = 5;

}  // namespace

void PrimalPerturbation::begin() {
  tolerance_ = state_.run.primal_tolerance;
  magnitude_ = state_.run.settings.perturbation;
  limit_ = state_.run.settings.perturbation_limit;
  if (limit_ < 1) {
    limit_ = kToleratedOtherwise;
    for (const Tolerated& row : kTolerated) {
      if (state_.m >= row.rows) continue;
      limit_ = row.iterations;
      break;
    }
  }
  at_start_ = state_.run.settings.perturb_at_start && state_.run.settings.perturbation_limit < 1;
}

bool PrimalPerturbation::due_at_start() {
  if (!at_start_) return false;
  at_start_ = false;
  perturb();
  return true;
}

void PrimalPerturbation::observe(double gain) {
  degenerate_ = gain > kProgress ? 0 : degenerate_ + 1;
  if (degenerate_ < limit_ || removals_ >= kMostRemovals) return;
  stalled_ = perturbations_ == 0 || next_magnitude() >= kLeastMagnitude;
}

bool PrimalPerturbation::due() {
  if (!stalled_) return false;
  perturb();
  return true;
}

double PrimalPerturbation::next_magnitude() const {
  return std::min(magnitude_ / 10.0, kReperturbation);
}

void PrimalPerturbation::perturb() {
  stalled_ = false;
  degenerate_ = 0;
  if (perturbations_ > 0) magnitude_ = next_magnitude();
  ++perturbations_;
  if (magnitude_ < kToleranceShare * tolerance_) tolerance_ = magnitude_ / kToleranceShare;
  for (int p = 0; p < state_.m; ++p) {
    const int j = state_.basis.header[p];
    double& lower = state_.program.lower[j];
    double& upper = state_.program.upper[j];
    if (lower > -kInf) lower -= state_.program.random.uniform() * magnitude_;
    if (upper < kInf) upper += state_.program.random.uniform() * magnitude_;
    state_.basics.lower[p] = lower;
    state_.basics.upper[p] = upper;
  }
  state_.program.set_bounds_perturbed();
  active_ = true;
  state_.log.perturbation_started(perturbations_ > 1);
}

void PrimalPerturbation::shift_leaving_bound(int j, BasisStatus at, double value) {
  double& bound = at == kAtLower ? state_.program.lower[j] : state_.program.upper[j];
  const double beyond = at == kAtLower ? bound - value : value - bound;
  if (!(beyond > kRounding) || removals_ >= kMostRemovals) return;
  bound = value;
  ++shifts_;
  state_.program.set_bounds_perturbed();
}

void PrimalPerturbation::remove() {
  if (active_) state_.log.perturbation_removed();
  if (shifts_ > 0) state_.log.shifts_removed(shifts_);
  ++removals_;
  active_ = false;
  stalled_ = false;
  shifts_ = 0;
  degenerate_ = 0;
  tolerance_ = state_.run.primal_tolerance;
  state_.restore_bounds();
}

}  // namespace kelvo
