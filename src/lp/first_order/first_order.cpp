#include "lp/first_order/first_order.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvo {

namespace {

constexpr int kScalingPasses = 10;
constexpr int kPowerIterations = 40;
constexpr double kStepShare = 0.998;  // of the largest step that converges
constexpr double kSigmaAccuracy = 1e-3;
constexpr double kSigmaMargin = 1.02;
constexpr double kShorterStep = 0.9;
constexpr double kVectorPasses = 4.0;  // cost of the vector operations, in passes over x and y
constexpr int kCheckPeriod = 25;       // iterations between looks at the residuals
// Restarts: the residual has fallen to this share; to this one and rises again; or the run since
// the last restart is this share of all iterations.
constexpr double kSufficientDecay = 0.2;
constexpr double kNecessaryDecay = 0.8;
constexpr double kLongRun = 0.36;
constexpr double kWeightSmoothing = 0.3;
constexpr double kWeightRange = 11.5;  // natural logarithm of the largest change of the weight

double square(double x) {
  return x * x;
}

double norm(const Vector<double>& v) {
  double sum = 0.0;
  for (const double x : v) sum += x * x;
  return std::sqrt(sum);
}

/// out = M v for a matrix stored by its rows (or M' v for one stored by columns).
void multiply(const SparseMatrix& matrix, const Vector<double>& v, Vector<double>& out) {
  const int* index = matrix.index.data();
  const double* value = matrix.value.data();
  for (int i = 0; i < matrix.num_major; ++i) {
    double sum = 0.0;
    for (int k = matrix.start[i]; k < matrix.start[i + 1]; ++k) sum += value[k] * v[index[k]];
    out[i] = sum;
  }
}

}  // namespace

FirstOrderMethod::FirstOrderMethod(LpProblem&& lp, StopCheck& stop)
    : stop_(stop),
      n_(lp.num_cols),
      m_(lp.num_rows),
      columns_(std::move(lp.columns)),
      cost_(lp.cost.begin(), lp.cost.begin() + n_),
      lower_(lp.lower.begin(), lp.lower.begin() + n_),
      upper_(lp.upper.begin(), lp.upper.begin() + n_),
      col_factor_(n_, 1.0),
      row_factor_(m_, 1.0) {
  for (int v = n_; v < n_ + m_; ++v) {
    row_lower_.push_back(-lp.upper[v]);
    row_upper_.push_back(-lp.lower[v]);
  }
  equilibrate();
  normalize();
  choose_step();
  for (int j = 0; j < n_; ++j) z_.x[j] = std::clamp(0.0, lower_[j], upper_[j]);
  multiply(rows_, z_.x, z_.ax);
  anchor_ = z_;
}

/// Divides rows and columns by the roots of their largest entries (or of the sums of the absolute
/// values).
void FirstOrderMethod::divide_by_norms(bool by_largest) {
  Vector<double> col(n_, 0.0), row(m_, 0.0);
  for (int j = 0; j < n_; ++j) {
    for (int k = columns_.start[j]; k < columns_.start[j + 1]; ++k) {
      const double size = std::fabs(columns_.value[k]);
      double& r = row[columns_.index[k]];
      r = by_largest ? std::max(r, size) : r + size;
      col[j] = by_largest ? std::max(col[j], size) : col[j] + size;
    }
  }
  const auto to_factor = [](double& x) { x = x > 0.0 ? 1.0 / std::sqrt(x) : 1.0; };
  std::for_each(col.begin(), col.end(), to_factor);
  std::for_each(row.begin(), row.end(), to_factor);
  for (int j = 0; j < n_; ++j) {
    for (int k = columns_.start[j]; k < columns_.start[j + 1]; ++k) {
      columns_.value[k] *= col[j] * row[columns_.index[k]];
    }
    col_factor_[j] *= col[j];
  }
  for (int i = 0; i < m_; ++i) row_factor_[i] *= row[i];
}

void FirstOrderMethod::equilibrate() {
  for (int pass = 0; pass < kScalingPasses && !stopped(); ++pass) divide_by_norms(true);
  divide_by_norms(false);
  rows_ = transpose(columns_);
  for (int j = 0; j < n_; ++j) {
    cost_[j] *= col_factor_[j];
    lower_[j] /= col_factor_[j];
    upper_[j] /= col_factor_[j];
  }
  for (int i = 0; i < m_; ++i) {
    row_lower_[i] *= row_factor_[i];
    row_upper_[i] *= row_factor_[i];
  }
}

void FirstOrderMethod::normalize() {
  double sum = 0.0;
  for (int i = 0; i < m_; ++i) {
    const double low = std::isfinite(row_lower_[i]) ? std::fabs(row_lower_[i]) : 0.0;
    const double high = std::isfinite(row_upper_[i]) ? std::fabs(row_upper_[i]) : 0.0;
    sum += square(std::max(low, high));
  }
  bound_scale_ = 1.0 / (1.0 + std::sqrt(sum));
  cost_scale_ = 1.0 / (1.0 + norm(cost_));
  for (double& c : cost_) c *= cost_scale_;
  for (Vector<double>* v : {&lower_, &upper_, &row_lower_, &row_upper_}) {
    for (double& b : *v) b *= bound_scale_;
  }
  bound_norm_ = std::sqrt(sum) * bound_scale_;
  cost_norm_ = norm(cost_);
}

/// The step from the largest singular value, by power iterations.
void FirstOrderMethod::choose_step() {
  for (Point* p : {&z_, &t_, &anchor_}) {
    p->x.assign(n_, 0.0);
    p->y.assign(m_, 0.0);
    p->ax.assign(m_, 0.0);
    p->aty.assign(n_, 0.0);
  }
  Vector<double> v(n_), image(m_);
  for (int j = 0; j < n_; ++j) v[j] = 1.0 + 0.37 * ((j * 2654435761u) % 1000) / 1000.0;
  double sigma = 1.0;
  for (int k = 0; k < kPowerIterations && !stopped(); ++k) {
    const double length = norm(v);
    if (!(length > 0.0)) break;
    for (double& x : v) x /= length;
    multiply(rows_, v, image);
    const double before = std::exchange(sigma, norm(image));
    if (std::fabs(sigma - before) <= kSigmaAccuracy * sigma) break;
    multiply(columns_, image, v);
  }
  // After the scaling no singular value exceeds 1; power iterations approach it from below.
  step_ = kStepShare / std::clamp(kSigmaMargin * sigma, 1e-12, 1.0);
  weight_ = cost_norm_ > 0.0 && bound_norm_ > 0.0 ? cost_norm_ / bound_norm_ : 1.0;
  first_weight_ = weight_;
}

/// t_ = T(z_).
void FirstOrderMethod::apply_operator() {
  const double tau = step_ / weight_, sigma = step_ * weight_;
  for (int j = 0; j < n_; ++j) {
    t_.x[j] = std::clamp(z_.x[j] - tau * (cost_[j] - z_.aty[j]), lower_[j], upper_[j]);
  }
  multiply(rows_, t_.x, t_.ax);
  for (int i = 0; i < m_; ++i) {
    const double v = z_.y[i] / sigma - (2.0 * t_.ax[i] - z_.ax[i]);
    t_.y[i] = sigma * (v + std::clamp(-v, row_lower_[i], row_upper_[i]));
  }
  multiply(columns_, t_.y, t_.aty);
}

void FirstOrderMethod::halpern_step() {
  const double keep = 1.0 / (inner_ + 2.0), move = 1.0 - keep;
  const auto step = [&](Vector<double>& z, const Vector<double>& t, const Vector<double>& a) {
    const std::size_t size = z.size();
    for (std::size_t k = 0; k < size; ++k) z[k] = move * (2.0 * t[k] - z[k]) + keep * a[k];
  };
  step(z_.x, t_.x, anchor_.x);
  step(z_.y, t_.y, anchor_.y);
  step(z_.ax, t_.ax, anchor_.ax);
  step(z_.aty, t_.aty, anchor_.aty);
  ++inner_;
  ++iterations_;
}

/// In the norm of the method, which is one as long as the step is short enough; else the step is
/// made shorter.
double FirstOrderMethod::fixed_point_residual() {
  double xx = 0.0, yy = 0.0, xy = 0.0;
  for (int j = 0; j < n_; ++j) xx += square(t_.x[j] - z_.x[j]);
  for (int i = 0; i < m_; ++i) {
    yy += square(t_.y[i] - z_.y[i]);
    xy += (t_.y[i] - z_.y[i]) * (t_.ax[i] - z_.ax[i]);
  }
  const double sum = xx * weight_ / step_ + 2.0 * xy + yy / (step_ * weight_);
  if (sum < 0.0) step_ *= kShorterStep;
  return std::sqrt(std::max(0.0, sum));
}

/// Errors of the point T(z).
void FirstOrderMethod::measure() {
  double primal = 0.0, dual = 0.0, primal_value = 0.0, dual_value = 0.0;
  for (int i = 0; i < m_; ++i) {
    primal += square(t_.ax[i] - std::clamp(t_.ax[i], row_lower_[i], row_upper_[i]));
    const double bound = t_.y[i] > 0.0 ? row_lower_[i] : row_upper_[i];
    if (std::isfinite(bound)) dual_value += t_.y[i] * bound;
  }
  for (int j = 0; j < n_; ++j) {
    const double d = cost_[j] - t_.aty[j];
    const double bound = d > 0.0 ? lower_[j] : upper_[j];
    primal_value += cost_[j] * t_.x[j];
    if (std::isfinite(bound)) {
      dual_value += d * bound;
    } else {
      dual += d * d;
    }
  }
  now_.primal_error = std::sqrt(primal) / (bound_norm_ + bound_scale_);
  now_.dual_error = std::sqrt(dual) / (cost_norm_ + cost_scale_);
  const double size = std::fabs(primal_value) + std::fabs(dual_value);
  now_.gap = std::fabs(primal_value - dual_value) / (cost_scale_ * bound_scale_ + size);
}

/// Once it was told to stop, the method does nothing more.
bool FirstOrderMethod::stopped() {
  stopped_ = stopped_ || stop_.requested();
  return stopped_;
}

bool FirstOrderMethod::should_restart(double residual) {
  if (!std::isfinite(residual_at_restart_)) residual_at_restart_ = residual;
  const bool fallen = residual <= kSufficientDecay * residual_at_restart_;
  const bool rises =
      residual <= kNecessaryDecay * residual_at_restart_ && residual > last_residual_;
  last_residual_ = residual;
  return fallen || rises || inner_ >= kLongRun * iterations_;
}

void FirstOrderMethod::restart() {
  double dx = 0.0, dy = 0.0;
  for (int j = 0; j < n_; ++j) dx += square(t_.x[j] - anchor_.x[j]);
  for (int i = 0; i < m_; ++i) dy += square(t_.y[i] - anchor_.y[i]);
  if (dx > 1e-30 && dy > 1e-30) {
    weight_ = std::exp(kWeightSmoothing * 0.5 * std::log(dy / dx) +
                       (1.0 - kWeightSmoothing) * std::log(weight_));
    // Long steps of one side make its distances long: a weight that runs away starts again.
    if (std::fabs(std::log(weight_ / first_weight_)) > kWeightRange) weight_ = first_weight_;
  }
  std::swap(z_, t_);
  anchor_ = z_;
  inner_ = 0;
  residual_at_restart_ = last_residual_ = kInf;
}

void FirstOrderMethod::keep_best() {
  if (!(now_.worst() < best_.worst())) return;
  now_.x = t_.x;
  now_.y = t_.y;
  std::swap(now_, best_);
}

bool FirstOrderMethod::run(double tolerance, int iteration_limit) {
  while (iterations_ < iteration_limit) {
    if (stopped()) return false;
    apply_operator();
    if (iterations_ % kCheckPeriod == 0) {
      measure();
      keep_best();
      if (best_.worst() <= tolerance) return true;
      if (should_restart(fixed_point_residual())) {
        restart();
        ++iterations_;
        continue;
      }
    }
    halpern_step();
  }
  return false;
}

double FirstOrderMethod::work_per_iteration(int rows, int columns, double nonzeros) {
  return 2.0 * nonzeros + kVectorPasses * (rows + columns);
}

FirstOrderPoint FirstOrderMethod::take_point() {
  for (int j = 0; j < n_ && !best_.x.empty(); ++j) best_.x[j] *= col_factor_[j] / bound_scale_;
  for (int i = 0; i < m_ && !best_.y.empty(); ++i) best_.y[i] *= row_factor_[i] / cost_scale_;
  return std::move(best_);
}

}  // namespace kelvo
