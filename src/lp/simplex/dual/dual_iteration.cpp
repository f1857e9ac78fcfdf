// One iteration of the dual simplex.
#include <algorithm>
#include <cmath>

#include "lp/simplex/dual/dual_engine.h"
#include "lp/simplex/simplex_tolerances.h"

namespace kelvo {
namespace {

using namespace simplex_tolerance;

// A stored steepest-edge weight below this share of the exact one made its row look far too good;
// the choice is made again with the exact weight in place.
constexpr double kWeightAgreement = 0.25;
// Steepest-edge weights are squared norms of rows of the inverse; updates may cancel, never below
// this.
constexpr double kSmallestWeight = 1e-4;
// From this density on, a pass over the whole array is cheaper than one over the index list.
constexpr double kDensePass = 0.3;

template <class Body>
void for_each_nonzero(const WorkVector& x, Body body) {
  const double* value = x.value.data();
  if (x.is_dense() || x.count > kDensePass * x.size()) {
    const int size = x.size();
    for (int i = 0; i < size; ++i) {
      if (value[i] != 0.0) body(i, value[i]);
    }
    return;
  }
  const int* index = x.index.data();
  for (int k = 0; k < x.count; ++k) body(index[k], value[index[k]]);
}

}  // namespace

int DualEngine::choose_leaving() {
  while (true) {
    const int p = leaving_list_.choose();
    if (p < 0) return -1;
    s_.compute_row_ep(p);
    if (!exact_weights()) return p;
    const double exact = std::max(exact_weight(), kSmallestWeight);
    const double stored = s_.weights.dual[p];
    s_.trail.note_position(s_, p);
    s_.weights.dual[p] = exact;
    if (stored >= kWeightAgreement * exact) return p;
    leaving_list_.update(p);
  }
}

bool DualEngine::pivot_agrees(double row_pivot, double column_pivot) {
  const double size = std::min(std::fabs(row_pivot), std::fabs(column_pivot));
  const double difference = std::fabs(row_pivot - column_pivot);
  if (difference <= kPivotAgreement * size) return true;
  return s_.freshly_factored() && difference <= kPivotFailure * size;
}

void DualEngine::compute_columns(int q) {
  s_.entering.clear();
  s_.program.load_column(q, s_.entering);
  if (exact_weights()) {
    WorkVector& tau = s_.auxiliary;
    load_weight_column(tau);
    s_.factor().ftran_pair(s_.entering, s_.density.entering, tau, s_.density.steepest, true);
    SolveDensities::observe(s_.density.steepest, tau.density());
  } else {
    s_.factor().ftran(s_.entering, s_.density.entering, true);
  }
  SolveDensities::observe(s_.density.entering, s_.entering.density());
}

// Flips the passed variables and moves the basic ones along.
void DualEngine::apply_flips() {
  flip_column_.clear();
  for (int j : ratio_test_.flips()) {
    const double before = s_.basis.value[j];
    s_.flip(j);
    const double change = s_.basis.value[j] - before;
    s_.duals.objective += s_.duals.reduced_cost[j] * change;
    s_.program.add_column(j, change, flip_column_);
  }
  s_.factor().ftran(flip_column_, s_.density.flips);
  SolveDensities::observe(s_.density.flips, flip_column_.density());
  s_.trail.note_positions(s_, flip_column_);
  double* value = s_.basics.value.data();
  for_each_nonzero(flip_column_, [&](int p, double v) {
    value[p] -= v;
    leaving_list_.update(p);
  });
}

void DualEngine::update_duals(int q, int leaving, double dual_step) {
  s_.trail.note_reduced_costs(s_, s_.pivot_row);
  s_.trail.note_reduced_cost(s_, q);
  s_.trail.note_reduced_cost(s_, leaving);
  if (dual_step != 0.0) {
    s_.trail.note_row_duals(s_, s_.row_ep);
    double* y = s_.duals.row_duals.data();
    for (int k = 0; k < s_.row_ep.count; ++k) {
      const int i = s_.row_ep.index[k];
      y[i] += dual_step * s_.row_ep.value[i];
    }
    double* dual = s_.duals.reduced_cost.data();
    const double* alpha = s_.pivot_row.value.data();
    for (int k = 0; k < s_.pivot_row.count; ++k) {
      const int j = s_.pivot_row.index[k];
      dual[j] -= dual_step * alpha[j];
    }
  }
  s_.duals.reduced_cost[q] = 0.0;
  s_.duals.reduced_cost[leaving] = -dual_step;
}

// One pass over the entering column updates values, weights and infeasibilities.
void DualEngine::update_primals_and_weights(int position, double primal_step, double pivot) {
  s_.trail.note_positions(s_, s_.entering);
  double* value = s_.basics.value.data();
  double* weight = s_.weights.dual.data();
  const double* tau = s_.auxiliary.value.data();
  const double leaving_weight = weight[position];
  const double reciprocal = 1.0 / pivot;
  if (exact_weights()) {
    for_each_nonzero(s_.entering, [&](int p, double a) {
      value[p] -= primal_step * a;
      const double ratio = a * reciprocal;
      const double updated = weight[p] + ratio * (ratio * leaving_weight - 2.0 * tau[p]);
      weight[p] = updated > kSmallestWeight ? updated : kSmallestWeight;
      leaving_list_.update(p);
    });
    weight[position] = std::max(leaving_weight * reciprocal * reciprocal, kSmallestWeight);
  } else if (weights_ == Weights::devex) {
    for_each_nonzero(s_.entering, [&](int p, double a) {
      value[p] -= primal_step * a;
      const double ratio = a * reciprocal;
      weight[p] = std::max(weight[p], ratio * ratio * leaving_weight);
      leaving_list_.update(p);
    });
    weight[position] = std::max(leaving_weight * reciprocal * reciprocal, 1.0);
  } else {
    for_each_nonzero(s_.entering, [&](int p, double a) {
      value[p] -= primal_step * a;
      leaving_list_.update(p);
    });
  }
}

DualEngine::Step DualEngine::iterate() {
  leaving_ = choose_leaving();
  if (leaving_ < 0) return Step::no_leaving;
  const int r = leaving_;
  const double x = s_.basics.value[r];
  infeasibility_ = x < s_.basics.lower[r] ? x - s_.basics.lower[r] : x - s_.basics.upper[r];
  s_.compute_pivot_row();
  const DualRatioTest::Outcome outcome = ratio_test_.run(infeasibility_);
  if (outcome == DualRatioTest::Outcome::unbounded && !ratio_test_.has_bans()) {
    return Step::no_entering;
  }
  if (outcome != DualRatioTest::Outcome::entering) {
    // With a fresh factor the row is left alone; without one it may look better afterwards.
    if (s_.freshly_factored()) leaving_list_.ban(r);
    ratio_test_.lift_bans();
    return s_.freshly_factored() ? Step::done : Step::refactor;
  }

  const int q = ratio_test_.entering();
  compute_columns(q);
  const double pivot = s_.entering.value[r];
  if (!pivot_agrees(s_.pivot_row.value[q], pivot)) {
    ++trouble_;
    if (!s_.freshly_factored()) return Step::refactor;
    ratio_test_.ban(q);
    return Step::done;
  }
  if (!ratio_test_.flips().empty()) apply_flips();

  const int leaving = s_.basis.header[r];
  if (s_.duals.reduced_cost[q] * s_.basis.move[q] < 0.0 || s_.basis.move[q] == Basis::kAnywhere) {
    shift_cost(q, -s_.duals.reduced_cost[q]);
  }
  const double dual_step = s_.duals.reduced_cost[q] / pivot;
  const bool to_lower = infeasibility_ < 0.0;
  const double bound = to_lower ? s_.basics.lower[r] : s_.basics.upper[r];
  const double primal_step = (s_.basics.value[r] - bound) / pivot;
  s_.duals.objective += s_.duals.reduced_cost[q] * primal_step;
  update_duals(q, leaving, dual_step);
  update_primals_and_weights(r, primal_step, pivot);

  const double entering_value = s_.basis.value[q] + primal_step;
  const bool updated = s_.exchange(r, q, entering_value, to_lower ? kAtLower : kAtUpper, pivot);
  s_.basics.set_validity(Validity::updated);
  s_.duals.set_validity(Validity::updated);
  if (phase_one_) ++s_.run.phase_one_iterations;
  leaving_list_.update(r);
  ratio_test_.lift_bans();
  s_.log.exchange(s_.run.iterations, phase_one_, q, leaving, s_.duals.objective);
  if (stalls(dual_step)) {
    perturb_costs();
    return Step::refactor;
  }
  return updated && !s_.factor().should_refactor() ? Step::done : Step::refactor;
}

}  // namespace kelvo
