// One factorization with its retries: less memory, a higher threshold, a repaired basis.
#include <algorithm>
#include <cmath>
#include <new>

#include "lp/factor/basis_factor_impl.h"

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
  if (marked()) park();
  clear_maps();
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
  setup_work_arrays(lu.m);
  ++statistics.factorizations;
  statistics.updates = 0;
  statistics.basis_nonzeros = kernel.nonzeros();
  statistics.factor_nonzeros = lu.nonzeros();
  update_work = UpdateWork();
  valid = true;
}

}  // namespace kelvo
