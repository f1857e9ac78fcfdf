#include "lp/sifting/row_prices.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelvo {
namespace {

// The bound is taken to be so much below the optimum; the step aims there.
constexpr double kGap = 0.05;
// After so many passes without a gain of the least share the step is halved, down to the smallest.
constexpr int kPatience = 10;
constexpr double kLeastGain = 1e-3;
constexpr double kSmallestStep = 0.02;
// The direction is this mixture of the newest subgradient and the last direction.
constexpr double kNewest = 0.7;

/// The Lagrangian bound of prices y, with its subgradient.
double bound_of(const CoveringProgram& program, const Vector<double>& y,
                Vector<double>& subgradient) {
  subgradient = program.need;
  double bound = 0.0;
  for (std::size_t i = 0; i < y.size(); ++i) bound += program.need[i] * y[i];
  const SparseMatrix& a = program.columns;
  for (int j = 0; j < a.num_major; ++j) {
    double d = program.cost[j];
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) d -= y[a.index[k]] * a.value[k];
    if (d >= 0.0) continue;
    bound += d * program.range[j];
    for (int k = a.start[j]; k < a.start[j + 1]; ++k) {
      subgradient[a.index[k]] -= a.value[k] * program.range[j];
    }
  }
  return bound;
}

}  // namespace

Vector<double> improve_row_prices(const CoveringProgram& program, const Vector<double>& start,
                                  int passes, StopCheck& stop) {
  const int m = static_cast<int>(program.need.size());
  Vector<double> y(start);
  Vector<double> best(start);
  Vector<double> subgradient(m, 0.0);
  Vector<double> direction(m, 0.0);
  // A bound above what all columns cost together shows that they cannot cover the rows.
  double all = 0.0;
  for (std::size_t j = 0; j < program.cost.size(); ++j) {
    all += std::max(0.0, program.cost[j]) * program.range[j];
  }
  double best_bound = -std::numeric_limits<double>::infinity();
  double step = 1.0;
  int idle = 0;
  for (int pass = 0; pass < passes && step > kSmallestStep && !stop.requested(); ++pass) {
    const double bound = bound_of(program, y, subgradient);
    if (bound > best_bound) {
      if (bound > best_bound + kLeastGain * std::fabs(best_bound)) idle = 0;
      best_bound = bound;
      best = y;
    }
    if (best_bound > all) break;
    if (++idle > kPatience) {
      step *= 0.5;
      idle = 0;
      y = best;
      std::fill(direction.begin(), direction.end(), 0.0);
      continue;
    }
    double norm = 0.0;
    for (int i = 0; i < m; ++i) {
      if (program.need[i] == 0.0) continue;
      direction[i] = kNewest * subgradient[i] + (1.0 - kNewest) * direction[i];
      if (y[i] > 0.0 || direction[i] > 0.0) norm += direction[i] * direction[i];
    }
    if (norm == 0.0) break;
    const double length = step * (kGap * std::fabs(best_bound) + best_bound - bound) / norm;
    for (int i = 0; i < m; ++i) {
      if (program.need[i] != 0.0) y[i] = std::max(0.0, y[i] + length * direction[i]);
    }
  }
  return best;
}

}  // namespace kelvo
