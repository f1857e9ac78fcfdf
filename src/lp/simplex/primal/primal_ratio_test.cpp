#include "lp/simplex/primal/primal_ratio_test.h"

#include <algorithm>
#include <cmath>

#include "lp/simplex/simplex_tolerances.h"

namespace kelvo {
namespace {

// Entries this much smaller than the largest of the column are rounding errors of the solve.
constexpr double kRelativeNoise = 1e-11;
// In phase one a pivot of at least this share of the largest passed one is good enough, so that the
// step need not be shortened further for a larger one.
constexpr double kGoodPivotShare = 0.1;
// Pivots below this are accepted only right after a factorization.
constexpr double kCautiousPivot = 1e-7;

}  // namespace

PrimalRatioTest::PrimalRatioTest(SimplexState& state) : state_(state) {
  breakpoints_.reserve(2 * static_cast<std::size_t>(state.m));
}

double PrimalRatioTest::smallest_pivot() const {
  const WorkVector& alpha = state_.entering;
  double largest = 0.0;
  const int count = alpha.is_dense() ? state_.m : alpha.count;
  for (int k = 0; k < count; ++k) {
    const int p = alpha.is_dense() ? k : alpha.index[k];
    largest = std::max(largest, std::fabs(alpha.value[p]));
  }
  return std::max(simplex_tolerance::kNoPivot, kRelativeNoise * largest);
}

PrimalStep PrimalRatioTest::phase_two(int direction, double range, double tolerance) {
  const WorkVector& alpha = state_.entering;
  const int count = alpha.is_dense() ? state_.m : alpha.count;
  const double ignored = smallest_pivot();
  double relaxed = kInf;
  for (int k = 0; k < count; ++k) {
    const int p = alpha.is_dense() ? k : alpha.index[k];
    const double rate = -direction * alpha.value[p];
    if (std::fabs(rate) <= ignored) continue;
    const double bound = rate < 0.0 ? state_.basics.lower[p] : state_.basics.upper[p];
    if (std::isinf(bound)) continue;
    const double room =
        rate < 0.0 ? state_.basics.value[p] - bound : bound - state_.basics.value[p];
    relaxed = std::min(relaxed, std::max(room + tolerance, 0.0) / std::fabs(rate));
  }
  PrimalStep step;
  if (range <= relaxed) {
    if (std::isinf(range)) return step;
    step.kind = PrimalStep::Kind::flip;
    step.length = range;
    return step;
  }
  double best = 0.0;
  for (int k = 0; k < count; ++k) {
    const int p = alpha.is_dense() ? k : alpha.index[k];
    const double rate = -direction * alpha.value[p];
    if (std::fabs(rate) <= ignored) continue;
    const double bound = rate < 0.0 ? state_.basics.lower[p] : state_.basics.upper[p];
    if (std::isinf(bound)) continue;
    const double room =
        rate < 0.0 ? state_.basics.value[p] - bound : bound - state_.basics.value[p];
    const double exact = room / std::fabs(rate);
    const bool larger =
        std::fabs(rate) > best || (std::fabs(rate) == best && step.position >= 0 &&
                                   state_.program.tie_key[state_.basis.header[p]] <
                                       state_.program.tie_key[state_.basis.header[step.position]]);
    if (exact > relaxed || !larger) continue;
    best = std::fabs(rate);
    step.position = p;
    step.leaving_at = rate < 0.0 ? kAtLower : kAtUpper;
    step.length = exact;
  }
  step.length = std::max(step.length, 0.0);
  const double needed = state_.freshly_factored() ? simplex_tolerance::kPivot : kCautiousPivot;
  step.kind = best >= needed ? PrimalStep::Kind::exchange : PrimalStep::Kind::no_pivot;
  return step;
}

void PrimalRatioTest::add_breakpoints(int p, double rate, double tolerance) {
  const double x = state_.basics.value[p];
  const double lower = state_.basics.lower[p];
  const double upper = state_.basics.upper[p];
  const double size = std::fabs(rate);
  const auto add = [&](double distance, BasisStatus at) {
    breakpoints_.push_back({std::max(distance, 0.0) / size, size, p, at});
  };
  if (rate > 0.0) {
    if (x > upper + tolerance) return;  // moves away from its bound: counted in the slope already
    if (x < lower - tolerance) add(lower - x, kAtLower);
    if (upper < kInf) add(upper - x, kAtUpper);
  } else {
    if (x < lower - tolerance) return;
    if (x > upper + tolerance) add(x - upper, kAtUpper);
    if (lower > -kInf) add(x - lower, kAtLower);
  }
}

PrimalStep PrimalRatioTest::phase_one(int direction, double range, double tolerance, double slope) {
  const WorkVector& alpha = state_.entering;
  const int count = alpha.is_dense() ? state_.m : alpha.count;
  const double ignored = smallest_pivot();
  breakpoints_.clear();
  for (int k = 0; k < count; ++k) {
    const int p = alpha.is_dense() ? k : alpha.index[k];
    const double rate = -direction * alpha.value[p];
    if (std::fabs(rate) > ignored) add_breakpoints(p, rate, tolerance);
  }
  PrimalStep step;
  // Passed breakpoints are moved to the end of the heap's array, in descending order of step.
  const auto later = [](const Breakpoint& a, const Breakpoint& b) { return a.step > b.step; };
  std::make_heap(breakpoints_.begin(), breakpoints_.end(), later);
  auto heap_end = breakpoints_.end();
  double largest = 0.0;
  while (heap_end != breakpoints_.begin() && slope > 0.0) {
    if (breakpoints_.front().step > range) break;
    std::pop_heap(breakpoints_.begin(), heap_end, later);
    --heap_end;
    slope -= heap_end->pivot;
    largest = std::max(largest, heap_end->pivot);
  }
  if (slope > 0.0) {
    if (std::isinf(range)) return step;
    step.kind = PrimalStep::Kind::flip;
    step.length = range;
    return step;
  }
  const double good = std::max(kGoodPivotShare * largest, simplex_tolerance::kPivot);
  for (auto point = heap_end; point != breakpoints_.end(); ++point) {
    if (point->pivot < good) continue;
    step.kind = PrimalStep::Kind::exchange;
    step.position = point->position;
    step.leaving_at = point->at;
    step.length = point->step;
    return step;
  }
  step.kind = PrimalStep::Kind::no_pivot;
  return step;
}

}  // namespace kelvo
