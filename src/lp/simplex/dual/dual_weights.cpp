// Pricing weights of the dual simplex at the start of a run and after repairs.
#include <algorithm>
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"

namespace kelvo {
namespace {

// Stands for the norm of a row that came out as zero.
constexpr double kZeroNorm = 1e-13;
// Under automatic pricing exact norms of a given basis are computed as long as their solves touch
// fewer nonzeros than this many passes over the matrix and the rows.
constexpr double kAutomaticWork = 20.0;

}  // namespace

void DualEngine::choose_pricing() {
  switch (s_.settings.dual_pricing) {
    case DualPricing::standard:
      weights_ = Weights::none;
      break;
    case DualPricing::devex:
      weights_ = Weights::devex;
      break;
    default:
      weights_ = Weights::steepest;
  }
}

void DualEngine::initialize_weights() {
  const DualPricing pricing = s_.settings.dual_pricing;
  if (weights_ == Weights::steepest && s_.dual_weights_valid) return;
  std::fill(s_.dual_weights.begin(), s_.dual_weights.end(), 1.0);
  s_.dual_weights_valid = weights_ == Weights::steepest;
  if (weights_ != Weights::steepest || pricing == DualPricing::steepest_unit) return;
  const bool asked = pricing != DualPricing::automatic;
  if (asked && s_.iterations == s_.run_start_iteration) {
    s_.log.initializing_dual_norms(pricing == DualPricing::steepest_slack);
  } else if (asked) {
    s_.log.reinitializing_dual_norms();
  }
  const int computed = compute_exact_weights(asked);
  if (asked && s_.iterations != s_.run_start_iteration) s_.log.computed_norms(computed);
}

// The squared norms of all rows of the inverse; returns how many were computed. Unless `all`, stops
// at the work limit and leaves unit weights, which the method corrects as it meets them.
int DualEngine::compute_exact_weights(bool all) {
  const double budget = s_.factor().statistics().work +
                        kAutomaticWork * (s_.problem.columns.num_nonzeros() + s_.num_vars);
  int computed = 0;
  for (int p = 0; p < s_.m; ++p) {
    if (!all && s_.factor().statistics().work > budget) break;
    if (s_.stop().requested()) break;
    s_.compute_row_ep(p);
    double norm = 0.0;
    for (int k = 0; k < s_.row_ep.count; ++k) {
      const double v = s_.row_ep.value[s_.row_ep.index[k]];
      norm += v * v;
    }
    s_.dual_weights[p] = norm > 0.0 ? norm : kZeroNorm;
    ++computed;
  }
  s_.row_ep.clear();
  return computed;
}

}  // namespace kelvo
