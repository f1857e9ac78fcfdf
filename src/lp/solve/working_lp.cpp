#include "lp/solve/working_lp.h"

#include <algorithm>
#include <cmath>

#include "lp/simplex/state/simplex_state.h"
#include "lp/solve/refine_ray.h"

namespace kelvo {
namespace {

// Along a direction of largest entry 1 a variable moves slowly up to the first, and not at all up
// to the second: that much may be rounding.
constexpr double kSlowMove = 1e-4;
constexpr double kNoMove = 1e-13;

bool is_weight(double norm) {
  return norm > 0.0 && std::isfinite(norm);
}

}  // namespace

WorkingLp::WorkingLp(const Model& model, ScalingMethod method, MessageSink& sink)
    : requested_(method), lp_(make_lp_problem(model)) {
  close_crossed_bounds(lp_);
  scale_problem(lp_, method, scaling_, sink);
  make_simplex();
}

void WorkingLp::make_simplex() {
  simplex_.reset();
  simplex_ = make_owned<Simplex>(lp_);
  simplex_->set_slack_basis();
}

bool WorkingLp::fits(const Model& model, ScalingMethod method) const {
  return method == requested_ && has_matrix_of(lp_, scaling_, model);
}

void WorkingLp::refresh(const Model& model) {
  const LpChanges changes = refresh_costs_and_bounds(lp_, scaling_, model);
  close_crossed_bounds(lp_);
  if (changes.bounds) simplex_->bounds_changed();
  if (changes.costs) simplex_->costs_changed();
}

void WorkingLp::start_afresh() {
  make_simplex();
}

void WorkingLp::start_from(const StoredBasis& basis, const Model& model, const double* x) {
  Vector<int> status;
  stored_to_lp_status(basis, model, status);
  if (x == nullptr) {
    if (status == simplex_->status()) return;
    simplex_->set_basis(status);
    return;
  }
  Vector<double> values(lp_.num_vars(), 0.0);
  for (int j = 0; j < lp_.num_cols; ++j) {
    // Whatever a caller hands in: a number within the bounds.
    const double place = std::isnan(x[j]) ? 0.0 : x[j] * scaling_.variable_factor(j, lp_.num_cols);
    values[j] = std::clamp(place, lp_.lower[j], std::max(lp_.lower[j], lp_.upper[j]));
  }
  simplex_->set_basis(status, values.data());
}

void WorkingLp::give_norms(const StoredBasis& basis) {
  SimplexState& state = simplex_->state();
  const int n = lp_.num_cols;
  if (!basis.head.empty()) {
    Vector<int> place(lp_.num_vars(), -1);
    for (int p = 0; p < lp_.num_rows; ++p) place[state.header[p]] = p;
    std::fill(state.dual_weights.begin(), state.dual_weights.end(), 1.0);
    for (std::size_t k = 0; k < basis.head.size(); ++k) {
      const int v = basis.head[k] >= 0 ? basis.head[k] : n - 1 - basis.head[k];
      if (place[v] < 0 || !is_weight(basis.head_norm[k])) continue;
      const double factor = scaling_.variable_factor(v, n);
      state.dual_weights[place[v]] = basis.head_norm[k] * factor * factor;
    }
    state.dual_weights_valid = true;
  }
  state.given_primal_weights.clear();
  if (!basis.row_norm.empty()) {
    state.given_primal_weights.assign(lp_.num_vars(), 1.0);
    const auto give = [&](const Vector<double>& norms, int first) {
      for (std::size_t k = 0; k < norms.size(); ++k) {
        if (is_weight(norms[k])) state.given_primal_weights[first + k] = norms[k];
      }
    };
    give(basis.col_norm, 0);
    give(basis.row_norm, n);
  }
}

bool WorkingLp::has_basic_variables_of(const StoredBasis& basis) const {
  const int n = lp_.num_cols;
  const Vector<int>& status = simplex_->status();
  for (int j = 0; j < n; ++j) {
    if ((status[j] == kBasic) != (basis.col_status[j] == kBasic)) return false;
  }
  for (int i = 0; i < lp_.num_rows; ++i) {
    if ((status[n + i] == kBasic) != (basis.row_status[i] == kBasic)) return false;
  }
  return true;
}

bool WorkingLp::has_factor() const {
  return simplex_->state().factor_current();
}

void WorkingLp::change_bounds(int column, double lower, double upper) {
  const double factor = scaling_.variable_factor(column, lp_.num_cols);
  lp_.lower[column] = lower * factor;
  lp_.upper[column] = upper * factor;
  simplex_->bounds_changed();
}

bool WorkingLp::magnify_blocking(const Vector<double>& direction) {
  double largest = 0.0;
  for (const double move : direction) largest = std::max(largest, std::fabs(move));
  Vector<double> factor(lp_.num_vars(), 1.0);
  bool any = false;
  for (int v = 0; v < lp_.num_vars(); ++v) {
    const double move = direction[v] / largest;
    const double bound = move < 0.0 ? lp_.lower[v] : lp_.upper[v];
    if (std::fabs(move) > kSlowMove || std::fabs(move) <= kNoMove || std::isinf(bound)) continue;
    factor[v] = nearest_power_of_two(1.0 / std::fabs(move));
    any = true;
  }
  if (!any) return false;
  magnify_variables(lp_, factor, scaling_);
  make_simplex();
  return true;
}

bool WorkingLp::compute_basic_solution(const SimplexSettings& settings, const RunContext& context) {
  SimplexState& state = simplex_->state();
  const LentContext lent(state, context);
  state.begin_run(settings);
  if (no_factor(state.refactorize())) return false;
  state.store_results();
  return true;
}

void WorkingLp::unscaled_x(Vector<double>& x) const {
  const Vector<double>& values = simplex_->values();
  x.resize(lp_.num_cols);
  for (int j = 0; j < lp_.num_cols; ++j) {
    x[j] = values[j] / scaling_.variable_factor(j, lp_.num_cols);
  }
}

void WorkingLp::unscaled_pi(const Model& model, Vector<double>& pi) const {
  const Vector<double>& duals = simplex_->row_duals();
  const Vector<int>& status = simplex_->status();
  pi.resize(lp_.num_rows);
  for (int i = 0; i < lp_.num_rows; ++i) {
    // The dual of a row whose logical is basic is zero, whatever rounding left there.
    const bool zero = status[lp_.num_cols + i] == kBasic;
    pi[i] = zero ? 0.0 : model.sense * duals[i] / scaling_.row_factor(i) + 0.0;
  }
}

void WorkingLp::unscaled_farkas(Vector<double>& y) const {
  const Vector<double>& multipliers = simplex_->farkas_dual();
  y.resize(multipliers.size());
  for (std::size_t i = 0; i < y.size(); ++i) {
    y[i] = multipliers[i] / scaling_.row_factor(static_cast<int>(i));
  }
}

void WorkingLp::exact_direction(Vector<double>& direction) const {
  direction = simplex_->primal_ray();
  refine_ray(lp_, simplex_->status(), direction);
}

void WorkingLp::unscale_direction(const Vector<double>& direction, Vector<double>& ray) const {
  ray.resize(lp_.num_cols);
  for (int j = 0; j < lp_.num_cols; ++j) {
    ray[j] = direction[j] / scaling_.variable_factor(j, lp_.num_cols);
  }
}

}  // namespace kelvo
