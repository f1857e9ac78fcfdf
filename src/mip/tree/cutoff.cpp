#include "mip/tree/cutoff.h"

#include <cmath>

namespace kelvo {
namespace {

constexpr double kNegligible = 1e-10;

/// The largest g of which both are multiples, by Euclid's algorithm; 0 when the remainders do not
/// end clearly.
double common_divisor(double a, double b) {
  constexpr double kRelativeZero = 1e-9;  // of the smaller number: a remainder that is rounding
  constexpr int kMostSteps = 60;
  const double zero = kRelativeZero * std::min(a, b);
  for (int step = 0; step < kMostSteps && b > zero; ++step) {
    const double remainder = std::abs(a - b * std::round(a / b));
    a = b;
    b = remainder;
  }
  return b > zero ? 0.0 : a;
}

bool is_multiple(double value, double of) {
  constexpr double kTolerance = 1e-9;  // of a unit; the sum of many such costs stays a multiple
  const double ratio = value / of;
  return std::abs(ratio - std::round(ratio)) <= kTolerance;
}

}  // namespace

double objective_granularity(const MipProblem& mip) {
  constexpr double kLargestRatio = 1e7;  // beyond it the objective's own digits end
  double g = 0.0;
  double largest = 0.0;
  for (int j = 0; j < mip.num_cols(); ++j) {
    const double cost = std::abs(mip.lp.cost[j]);
    if (cost == 0.0) continue;
    if (!mip.is_integer[j]) return 0.0;
    largest = std::max(largest, cost);
    g = g == 0.0 ? cost : common_divisor(std::max(cost, g), std::min(cost, g));
    if (g == 0.0 || largest > kLargestRatio * g) return 0.0;
  }
  if (g == 0.0) return 0.0;
  for (int j = 0; j < mip.num_cols(); ++j) {
    if (!is_multiple(mip.lp.cost[j], g)) return 0.0;
  }
  return g;
}

Cutoff::Cutoff(const MipProblem& mip, const SearchSettings& settings)
    : offset_(mip.lp.offset),
      granularity_(objective_granularity(mip)),
      absolute_improvement_(settings.absolute_improvement),
      relative_improvement_(settings.relative_improvement),
      integrality_(settings.integrality) {
  if (settings.cutoff < kNoValue) {
    const double widened = settings.cutoff + kNegligible + std::abs(settings.cutoff * kNegligible);
    value_ = lowered_to_grid(widened);
  }
}

double Cutoff::lowered_to_grid(double cutoff) const {
  constexpr double kRounding = 1e-13;
  if (granularity_ <= kNegligible) return cutoff;
  const double above = std::max(integrality_, kNegligible);
  const double steps = std::ceil((cutoff - offset_) / granularity_ - kRounding) - 1.0 + above;
  return std::min(cutoff, steps * granularity_ + offset_);
}

void Cutoff::improve(double objective) {
  double cutoff = objective - std::abs(objective * kNegligible);
  if (std::abs(absolute_improvement_) > kNegligible) {
    // A negative improvement keeps worse nodes open; it never makes a worse solution the incumbent.
    cutoff = objective - absolute_improvement_;
  } else if (std::abs(objective) * relative_improvement_ > kNegligible) {
    cutoff = objective - std::abs(objective) * relative_improvement_;
  }
  value_ = std::min(value_, lowered_to_grid(cutoff));
}

double Cutoff::rounded_bound(double bound) const {
  if (granularity_ <= kNegligible || std::abs(bound) >= kNoValue) return bound;
  const double steps = std::ceil((bound - offset_) / granularity_ - integrality_);
  return std::max(bound, steps * granularity_ + offset_);
}

}  // namespace kelvo
