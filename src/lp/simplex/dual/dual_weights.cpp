// Pricing weights of the dual simplex at the start of a run and after repairs, and what their
// updates need.
//
// Steepest edge measures the row of the inverse at a position, rho' = e_p'B^-1, by |rho|^2; in the
// full space by |rho'[A I]|^2, the length of the edge in all variables.
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
  switch (s_.run.settings.dual_pricing) {
    case DualPricing::standard:
      weights_ = Weights::none;
      break;
    case DualPricing::devex:
      weights_ = Weights::devex;
      break;
    case DualPricing::steepest_slack:
      weights_ = Weights::steepest_full;
      break;
    case DualPricing::automatic:
    case DualPricing::steepest:
    case DualPricing::steepest_unit:
      weights_ = Weights::steepest;
  }
}

void DualEngine::initialize_weights() {
  const DualPricing pricing = s_.run.settings.dual_pricing;
  const bool full = weights_ == Weights::steepest_full;
  const bool exact = full || weights_ == Weights::steepest;
  const bool asked = full || pricing == DualPricing::steepest;
  // Weights that come with the slack basis are exact, but a caller who asks for norms hears of it.
  const bool kept = s_.weights.valid() && s_.weights.in_full_space() == full;
  if (exact && kept && !(asked && s_.weights.of_slack_basis())) return;
  const bool at_slack_basis = kept && s_.weights.of_slack_basis();
  if (exact) {
    s_.weights.set_valid(full);
  } else {
    s_.weights.invalidate();
  }
  if (asked && s_.run.run_iterations() == 0) {
    s_.log.initializing_dual_norms(full);
  } else if (asked) {
    s_.log.reinitializing_dual_norms();
  }
  if (at_slack_basis) return;
  std::fill(s_.weights.dual.begin(), s_.weights.dual.end(), 1.0);
  if (!exact || pricing == DualPricing::steepest_unit) return;
  const int computed = compute_exact_weights(asked);
  if (asked && s_.run.run_iterations() != 0) s_.log.computed_norms(computed);
}

double DualEngine::exact_weight() {
  double sum = 0.0;
  for (int k = 0; k < s_.row_ep.count; ++k) {
    const double v = s_.row_ep.value[s_.row_ep.index[k]];
    sum += v * v;
  }
  if (weights_ != Weights::steepest_full) return sum;
  compute_full_row();
  for (int k = 0; k < full_row_.count; ++k) {
    const double v = full_row_.value[full_row_.index[k]];
    sum += v * v;
  }
  return sum;
}

void DualEngine::compute_full_row() {
  if (full_row_.size() != s_.n) full_row_.setup(s_.n);
  full_row_.clear();
  if (!s_.problem.has_rows()) {
    const SparseMatrix& columns = s_.problem.columns;
    for (int j = 0; j < s_.n; ++j) {
      double product = 0.0;
      for (int e = columns.start[j]; e < columns.start[j + 1]; ++e) {
        product += s_.row_ep.value[columns.index[e]] * columns.value[e];
      }
      if (product != 0.0) full_row_.add(j, product);
    }
    return;
  }
  const SparseMatrix& rows = s_.problem.rows;
  for (int k = 0; k < s_.row_ep.count; ++k) {
    const int i = s_.row_ep.index[k];
    const double factor = s_.row_ep.value[i];
    for (int e = rows.start[i]; e < rows.start[i + 1]; ++e) {
      full_row_.add(rows.index[e], factor * rows.value[e]);
    }
  }
}

// tau := B^-1 r with r = rho for norms of the rows of B^-1, rho the one at the leaving position,
// and r = [A I] (rho'[A I])' = rho + A (rho'A)' for norms in the full space: entry p is the inner
// product of the rows p and the leaving one, as the update of the norms needs it.
void DualEngine::load_weight_column(WorkVector& tau) {
  tau.clear();
  for (int k = 0; k < s_.row_ep.count; ++k) {
    const int i = s_.row_ep.index[k];
    tau.insert(i, s_.row_ep.value[i]);
  }
  if (weights_ != Weights::steepest_full) return;
  compute_full_row();
  for (int k = 0; k < full_row_.count; ++k) {
    const int j = full_row_.index[k];
    s_.program.add_column(j, full_row_.value[j], tau);
  }
}

// The squared norms of all rows; returns how many were computed. Unless `all`, stops at the work
// limit and leaves unit weights, which the method corrects as it meets them.
int DualEngine::compute_exact_weights(bool all) {
  const double budget = s_.factor().statistics().work +
                        kAutomaticWork * (s_.problem.columns.num_nonzeros() + s_.num_vars);
  int computed = 0;
  for (int p = 0; p < s_.m; ++p) {
    if (!all && s_.factor().statistics().work > budget) break;
    if (s_.run.stop().requested()) break;
    s_.compute_row_ep(p);
    const double norm = exact_weight();
    s_.weights.dual[p] = norm > 0.0 ? norm : kZeroNorm;
    ++computed;
  }
  s_.row_ep.clear();
  return computed;
}

}  // namespace kelvo
