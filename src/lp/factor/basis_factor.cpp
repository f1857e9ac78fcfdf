#include "lp/factor/basis_factor.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "lp/factor/lu_kernel.h"
#include "lp/factor/lu_solve.h"
#include "lp/factor/lu_update.h"

namespace kelvo {
namespace {

/// The multipliers of both files after memory ran short.
constexpr double kCompactMultiplier = 1.1;
/// Density that disables the dense switch.
constexpr double kNoDenseSwitch = 10.0;
/// Repair passes of one factorization.
constexpr int kRepairPasses = 10;
/// Largest pivot tolerance, and the step by which it is raised.
constexpr double kMaxThreshold = 0.99999;
constexpr double kThresholdStep = 0.1;
/// A smaller rise of the threshold is not worth a line in the log.
constexpr double kReportedRise = 0.01;
/// The updated pivot and the one of the solve may differ by this relative amount.
constexpr double kPivotAgreement = 1e-6;
/// With a larger pivot the drop tolerance has hurt the multipliers that btran left behind.
constexpr double kLargePivot = 100.0;
/// Two solves share a pass over the factor when both results are expected at least this dense.
constexpr double kPairDensity = 0.7;
/// Updates before the adaptive rule may ask for a factorization.
constexpr int kAdaptiveMinimum = 60;
/// Weight of a factorization in solves, for the adaptive rule; part of its work that counts.
constexpr double kRefactorWeight = 20.0;
constexpr double kFactorWorkShare = 0.1;

/// A pivot ratio above `ratio` is accepted only with a threshold of at least `threshold`.
struct ConditionLimit {
  double ratio;
  double threshold;
};
constexpr ConditionLimit kConditionLimits[] = {
    {1e9, 0.1}, {1e10, 0.2}, {1e11, 0.3}, {1e12, 0.5}, {1e13, kMaxThreshold}};

bool too_ill_conditioned(double ratio, double threshold) {
  for (const ConditionLimit& limit : kConditionLimits) {
    if (ratio > limit.ratio && threshold < limit.threshold) return true;
  }
  return false;
}

}  // namespace

struct BasisFactor::Impl {
  Impl(const SparseMatrix& matrix, const FactorSettings& s, FactorEvents* e)
      : columns(matrix), settings(s), events(e), threshold(s.markowitz_threshold), solver(lu) {
    kernel_settings.absolute_tolerance = s.absolute_tolerance;
    kernel_settings.row_multiplier = s.row_file_multiplier;
    kernel_settings.column_multiplier = s.col_file_multiplier;
    kernel_settings.dense_density = s.dense_switch_density;
  }

  FactorOutcome factorize(Vector<int>& header, bool allow_repair, Vector<BasisRepair>& repairs);
  bool begin_repair(bool allow_repair, int passes, bool& report);
  void repair(Vector<int>& header, Vector<BasisRepair>& repairs);
  KernelOutcome run_kernel(const Vector<int>& header);
  double pivot_ratio() const;
  void finish_factorization();
  void raise_threshold();

  void keep_spike(const WorkVector& x);
  void keep_row(const WorkVector& y, int position);
  void compute_row(int position);
  void transform(WorkVector& x, double expected, bool keep);
  void transform_pair(WorkVector& a, double density_a, WorkVector& b, double density_b, bool keep);
  void transform_transposed(WorkVector& y, double expected);
  void transform_transposed_pair(WorkVector& a, double density_a, WorkVector& b, double density_b);
  bool update(int position, double solve_pivot);
  void note_update();
  void collect_work() {
    statistics.work += solver.work();
    work_since += solver.work();
    solver.reset_work();
  }

  const SparseMatrix& columns;
  FactorSettings settings;
  FactorEvents* events;
  KernelSettings kernel_settings;
  double threshold;
  bool compact = false;  // memory ran short once: multipliers stay small
  bool valid = false;

  LuFactors lu;
  LuKernel kernel;
  LuSolver solver;
  PackedVector spike;    // column of the last ftran that was to be kept
  PackedVector row_eta;  // of the last btran of a unit vector, for its position
  Vector<int> scratch;

  FactorStatistics statistics;
  double factor_work = 0.0;   // of the last factorization
  double work_since = 0.0;    // of the solves and updates since then, the caller's included
  double average_work = 0.0;  // estimate of the work per iteration at the last update
  bool average_rises = false;
};

void BasisFactor::Impl::raise_threshold() {
  threshold = threshold < kThresholdStep ? kThresholdStep
                                         : std::min(threshold + kThresholdStep, kMaxThreshold);
}

double BasisFactor::Impl::pivot_ratio() const {
  double largest = 1.0, smallest = 1.0;
  for (double pivot : lu.diagonal) {
    largest = std::max(largest, std::fabs(pivot));
    smallest = std::min(smallest, std::fabs(pivot));
  }
  return largest / smallest;
}

KernelOutcome BasisFactor::Impl::run_kernel(const Vector<int>& header) {
  kernel_settings.threshold = threshold;
  const KernelOutcome outcome =
      kernel.run(columns, header.data(), static_cast<int>(header.size()), kernel_settings, lu);
  factor_work += kernel.work();
  return outcome;
}

FactorOutcome BasisFactor::Impl::factorize(Vector<int>& header, bool allow_repair,
                                           Vector<BasisRepair>& repairs) {
  valid = spike.valid = row_eta.valid = false;
  factor_work = 0.0;
  int passes = 0;
  bool report = false;
  FactorOutcome result = FactorOutcome::ok;
  for (;;) {
    KernelOutcome outcome;
    try {
      outcome = run_kernel(header);
      if (outcome == KernelOutcome::ok) {
        statistics.pivot_ratio = pivot_ratio();
        if (too_ill_conditioned(statistics.pivot_ratio, threshold)) {
          const double before = threshold;
          raise_threshold();
          if (statistics.factorizations > 0 && threshold - before > kReportedRise) report = true;
          continue;
        }
        finish_factorization();
        result = passes > 0 ? FactorOutcome::repaired : FactorOutcome::ok;
        break;
      }
      if (outcome == KernelOutcome::stopped) {
        result = FactorOutcome::stopped;
        break;
      }
      if (outcome == KernelOutcome::no_dense_memory) {
        if (events != nullptr) events->no_memory_for_dense();
        kernel_settings.dense_density = kNoDenseSwitch;
        continue;
      }
      if (passes >= kRepairPasses || !begin_repair(allow_repair, passes, report)) {
        result = FactorOutcome::singular;
        break;
      }
      repair(header, repairs);
      ++passes;
    } catch (const std::bad_alloc&) {
      kernel.release();
      lu.release_files();
      if (compact || kernel_settings.column_multiplier <= kCompactMultiplier) throw;
      if (events != nullptr) events->compressing_files();
      kernel_settings.row_multiplier = kernel_settings.column_multiplier = kCompactMultiplier;
      compact = true;
    }
  }
  statistics.work += factor_work;
  statistics.factor_work = factor_work;
  if (report && events != nullptr) events->threshold_set(threshold);
  return result;
}

bool BasisFactor::Impl::begin_repair(bool allow_repair, int passes, bool& report) {
  if (!allow_repair) return false;
  if (passes > 0) return true;
  if (statistics.repairs++ >= settings.singularity_limit) return false;
  const double before = threshold;
  raise_threshold();
  if (threshold - before > kReportedRise) report = true;
  if (events != nullptr) events->repairing();
  return true;
}

void BasisFactor::Impl::repair(Vector<int>& header, Vector<BasisRepair>& repairs) {
  const int m = columns.num_minor;
  int missing = 0;
  for (int p = 0; p < m; ++p) missing += lu.pivot_of_position[p] < 0;
  repairs.reserve(repairs.size() + missing);
  int row = 0;
  for (int p = 0; p < m; ++p) {
    if (lu.pivot_of_position[p] >= 0) continue;
    while (lu.pivot_of_row[row] >= 0) ++row;
    repairs.push_back({p, header[p], row});
    header[p] = columns.num_major + row;
    ++row;
  }
}

void BasisFactor::Impl::finish_factorization() {
  const int m = lu.m;
  solver.setup();
  spike.setup(m);
  row_eta.setup(m);
  ++statistics.factorizations;
  statistics.updates = 0;
  statistics.basis_nonzeros = kernel.nonzeros();
  statistics.factor_nonzeros = lu.nonzeros();
  work_since = 0.0;
  average_work = 0.0;
  average_rises = false;
  valid = true;
}

void BasisFactor::Impl::keep_spike(const WorkVector& x) {
  const double* a = x.value.data();
  int count = 0;
  const auto take = [&](int i) {
    if (std::fabs(a[i]) <= kDropTolerance) return;
    spike.index[count] = i;
    spike.value[count++] = a[i];
  };
  if (x.count == WorkVector::kDense) {
    for (int i = 0; i < lu.m; ++i) take(i);
  } else {
    for (int k = 0; k < x.count; ++k) take(x.index[k]);
  }
  spike.count = count;
  spike.valid = true;
}

void BasisFactor::Impl::keep_row(const WorkVector& y, int position) {
  // y'U = c e_t' has the solution (c / u_tt) (e_t - r), r being the multipliers of the row eta.
  const double* a = y.value.data();
  const int t = lu.pivot_of_position[position];
  if (a[t] == 0.0) return;
  const double scale = -1.0 / a[t];
  int count = 0;
  const auto take = [&](int i) {
    if (a[i] == 0.0 || i == t) return;
    row_eta.index[count] = i;
    row_eta.value[count++] = a[i] * scale;
  };
  if (y.count == WorkVector::kDense) {
    for (int i = 0; i < lu.m; ++i) take(i);
  } else {
    for (int k = 0; k < y.count; ++k) take(y.index[k]);
  }
  row_eta.count = count;
  row_eta.position = position;
  row_eta.valid = true;
}

void BasisFactor::Impl::compute_row(int position) {
  const int t = lu.pivot_of_position[position];
  WorkVector& y = solver.inner(0);
  y.insert(t, lu.diagonal[t]);  // so that the solution has a one at t
  solver.solve_u_transposed(y, 0.0);
  keep_row(y, position);
  y.clear();
}

void BasisFactor::Impl::transform(WorkVector& x, double expected, bool keep) {
  WorkVector& inner = solver.inner(0);
  solver.enter(x, lu.pivot_of_row, lu.row_of_pivot, inner);
  solver.solve_l(inner, expected);
  solver.solve_etas(inner);
  if (keep) keep_spike(inner);
  solver.solve_u(inner, expected, x);
}

void BasisFactor::Impl::transform_pair(WorkVector& a, double density_a, WorkVector& b,
                                       double density_b, bool keep) {
  if (std::min(density_a, density_b) < kPairDensity) {
    transform(a, density_a, keep);
    transform(b, density_b, false);
    return;
  }
  WorkVector& inner_a = solver.inner(0);
  WorkVector& inner_b = solver.inner(1);
  solver.enter(a, lu.pivot_of_row, lu.row_of_pivot, inner_a);
  solver.enter(b, lu.pivot_of_row, lu.row_of_pivot, inner_b);
  solver.solve_l_pair(inner_a, inner_b);
  solver.solve_etas(inner_a);
  solver.solve_etas(inner_b);
  if (keep) keep_spike(inner_a);
  solver.solve_u_pair(inner_a, inner_b, a, b);
}

void BasisFactor::Impl::transform_transposed(WorkVector& y, double expected) {
  const int unit = y.count == 1 ? y.index[0] : -1;
  WorkVector& inner = solver.inner(0);
  solver.enter(y, lu.pivot_of_position, lu.position_of_pivot, inner);
  solver.solve_u_transposed(inner, expected);
  if (unit >= 0) keep_row(inner, unit);
  solver.solve_etas_transposed(inner);
  solver.solve_l_transposed(inner, expected, y);
}

void BasisFactor::Impl::transform_transposed_pair(WorkVector& a, double density_a, WorkVector& b,
                                                  double density_b) {
  if (std::min(density_a, density_b) < kPairDensity) {
    transform_transposed(a, density_a);
    transform_transposed(b, density_b);
    return;
  }
  const int unit = a.count == 1 ? a.index[0] : -1;
  WorkVector& inner_a = solver.inner(0);
  WorkVector& inner_b = solver.inner(1);
  solver.enter(a, lu.pivot_of_position, lu.position_of_pivot, inner_a);
  solver.enter(b, lu.pivot_of_position, lu.position_of_pivot, inner_b);
  solver.solve_u_transposed_pair(inner_a, inner_b);
  if (unit >= 0) keep_row(inner_a, unit);
  solver.solve_etas_transposed(inner_a);
  solver.solve_etas_transposed(inner_b);
  solver.solve_l_transposed_pair(inner_a, inner_b, a, b);
}

bool BasisFactor::Impl::update(int position, double solve_pivot) {
  if (!valid || !spike.valid || statistics.updates >= settings.update_limit) return false;
  const int t = lu.pivot_of_position[position];
  if (!row_eta.valid || row_eta.position != position || std::fabs(lu.diagonal[t]) > kLargePivot) {
    row_eta.valid = false;
    compute_row(position);
    if (!row_eta.valid) return false;
  }
  // The product of the eta, scattered here, with the spike gives the new diagonal.
  double* r = solver.inner(0).value.data();
  for (int k = 0; k < row_eta.count; ++k) r[row_eta.index[k]] = row_eta.value[k];
  double diagonal = 0.0;
  for (int k = 0; k < spike.count; ++k) {
    const int i = spike.index[k];
    diagonal += i == t ? spike.value[k] : -r[i] * spike.value[k];
  }
  for (int k = 0; k < row_eta.count; ++k) r[row_eta.index[k]] = 0.0;
  const double expected = solve_pivot * lu.diagonal[t];
  if (!(std::fabs(diagonal) > settings.absolute_tolerance)) return false;
  if (!(std::fabs(diagonal - expected) <= kPivotAgreement * std::fabs(expected))) return false;
  try {
    replace_column(lu, position, spike, row_eta, diagonal, scratch);
  } catch (const std::bad_alloc&) {
    return false;
  }
  spike.valid = row_eta.valid = false;
  note_update();
  return true;
}

void BasisFactor::Impl::note_update() {
  const double work = 2.0 * (spike.count + row_eta.count);
  statistics.work += work;
  work_since += work;
  ++statistics.updates;
  const double solve_work = static_cast<double>(lu.nonzeros() + lu.etas.used);
  const double average =
      (kRefactorWeight * (solve_work + kFactorWorkShare * factor_work) + work_since) /
      (statistics.updates + 1);
  average_rises = statistics.updates > kAdaptiveMinimum && average > average_work;
  average_work = average;
}

BasisFactor::BasisFactor(const SparseMatrix& columns, const FactorSettings& settings,
                         FactorEvents* events)
    : impl_(make_owned<Impl>(columns, settings, events)) {}

BasisFactor::~BasisFactor() = default;

FactorOutcome BasisFactor::factorize(Vector<int>& header, bool allow_repair,
                                     Vector<BasisRepair>& repairs, StopCheck* stop) {
  impl_->kernel_settings.stop = stop;
  return impl_->factorize(header, allow_repair, repairs);
}

void BasisFactor::ftran(WorkVector& x, double expected_density, bool keep_for_update) {
  impl_->transform(x, expected_density, keep_for_update);
  impl_->collect_work();
}

void BasisFactor::ftran_pair(WorkVector& a, double density_a, WorkVector& b, double density_b,
                             bool keep_a_for_update) {
  impl_->transform_pair(a, density_a, b, density_b, keep_a_for_update);
  impl_->collect_work();
}

void BasisFactor::btran(WorkVector& y, double expected_density) {
  impl_->transform_transposed(y, expected_density);
  impl_->collect_work();
}

void BasisFactor::btran_pair(WorkVector& a, double density_a, WorkVector& b, double density_b) {
  impl_->transform_transposed_pair(a, density_a, b, density_b);
  impl_->collect_work();
}

bool BasisFactor::update(int position, double pivot) {
  const bool done = impl_->update(position, pivot);
  impl_->collect_work();
  return done;
}

bool BasisFactor::should_refactor() const {
  return impl_->statistics.updates >= impl_->settings.update_limit ||
         (impl_->settings.adaptive_refactor && impl_->average_rises);
}

void BasisFactor::add_work(double work) {
  impl_->work_since += work;
}
double BasisFactor::markowitz_threshold() const {
  return impl_->threshold;
}
void BasisFactor::raise_markowitz() {
  impl_->raise_threshold();
}
const FactorStatistics& BasisFactor::statistics() const {
  return impl_->statistics;
}
bool BasisFactor::valid() const {
  return impl_->valid;
}

}  // namespace kelvo
