#include "lp/solve/working_lp.h"

#include <algorithm>
#include <cmath>

#include "lp/crossover/refine_ray.h"

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

WorkingLp::WorkingLp(LpProblem&& lp, ScalingMethod method, MessageSink& sink)
    : requested_(method), lp_(std::move(lp)) {
  if (lp_.rows.num_major != lp_.num_rows) lp_.rows = transpose(lp_.columns);
  close_crossed_bounds(lp_);
  scale_problem(lp_, method, scaling_, sink);
  if (lp_.compact) lp_.rows = SparseMatrix();
  make_simplex();
}

void WorkingLp::make_simplex() {
  simplex_.reset();
  simplex_ = make_owned<Simplex>(lp_);
  simplex_->set_slack_basis();
}

void WorkingLp::start_afresh() {
  make_simplex();
}

void WorkingLp::start_from(const LpStart& start) {
  if (start.x.empty()) {
    if (start.status != simplex_->status()) simplex_->set_basis(start.status);
    return;
  }
  Vector<double> values(lp_.num_vars(), 0.0);
  for (int j = 0; j < lp_.num_cols; ++j) {
    // Whatever a caller hands in: a number within the bounds.
    const double x = start.x[j];
    const double place = std::isnan(x) ? 0.0 : x * scaling_.variable_factor(j, lp_.num_cols);
    values[j] = std::clamp(place, lp_.lower[j], std::max(lp_.lower[j], lp_.upper[j]));
  }
  simplex_->set_basis(start.status, values.data());
}

void WorkingLp::give_norms(const LpStart& start) {
  if (!start.dual_norm.empty()) {
    Vector<double> weights(lp_.num_vars(), 1.0);
    for (int v = 0; v < lp_.num_vars(); ++v) {
      const double factor = scaling_.variable_factor(v, lp_.num_cols);
      const double norm = start.dual_norm[v];
      if (is_weight(norm)) weights[v] = norm * factor * factor;
    }
    simplex_->give_dual_weights(weights);
  }
  Vector<double> weights;
  if (!start.primal_norm.empty()) weights.assign(lp_.num_vars(), 1.0);
  for (std::size_t v = 0; v < weights.size(); ++v) {
    if (is_weight(start.primal_norm[v])) weights[v] = start.primal_norm[v];
  }
  simplex_->give_primal_weights(std::move(weights));
}

bool WorkingLp::has_basic_variables_of(const Vector<int>& status) const {
  return std::equal(status.begin(), status.end(), simplex_->status().begin(),
                    [](int a, int b) { return (a == kBasic) == (b == kBasic); });
}

bool WorkingLp::has_factor() const {
  return simplex_->has_factor();
}

double WorkingLp::matrix_bytes(int nonzeros, bool compact) {
  constexpr double kEntry = sizeof(int) + sizeof(double);
  const int copies = compact ? 1 : 2;  // column-wise; row-wise, too
  return nonzeros * (copies * kEntry + Simplex::bytes_per_entry(compact));
}

LpProblem WorkingLp::unscaled_copy() const {
  LpProblem copy(lp_);
  Scaling factors(scaling_);
  unscale_problem(copy, factors);
  return copy;
}

void WorkingLp::put_cost(int column, double cost) {
  const double scaled = cost / scaling_.variable_factor(column, lp_.num_cols);
  if (lp_.cost[column] != scaled) cost_changes_.push_back({column, scaled});
}

void WorkingLp::put_bounds(int variable, double lower, double upper) {
  const double factor = scaling_.variable_factor(variable, lp_.num_cols);
  double low = lower * factor, high = upper * factor;
  if (low > high) low = high = 0.5 * low + 0.5 * high;
  if (lp_.lower[variable] == low && lp_.upper[variable] == high) return;
  bound_changes_.push_back({variable, low, high});
}

void WorkingLp::finish_changes() {
  simplex_->change_bounds(bound_changes_);
  simplex_->change_costs(cost_changes_);
  bound_changes_.clear();
  cost_changes_.clear();
}

void WorkingLp::name_like(const LpProblem& other) {
  lp_.column_name = other.column_name;
  lp_.row_name = other.row_name;
  lp_.name_context = other.name_context;
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
  has_basic_solution_ = simplex_->compute_basic_solution(settings, context);
  return has_basic_solution_;
}

void WorkingLp::unscaled_x(Vector<double>& x) const {
  const Vector<double>& values = simplex_->values();
  x.resize(lp_.num_cols);
  for (int j = 0; j < lp_.num_cols; ++j) {
    x[j] = values[j] / scaling_.variable_factor(j, lp_.num_cols);
  }
}

void WorkingLp::get_solution(LpSolution& solution) const {
  unscaled_x(solution.x);
  solution.status = simplex_->status();
  const Vector<double>& duals = simplex_->row_duals();
  solution.y.resize(lp_.num_rows);
  for (int i = 0; i < lp_.num_rows; ++i) {
    // The dual of a row whose logical is basic is zero, whatever rounding left there.
    const bool zero = solution.status[lp_.num_cols + i] == kBasic;
    solution.y[i] = zero ? 0.0 : duals[i] / scaling_.row_factor(i);
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
