#include "lp/factor/basis_factor.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <new>

#include "lp/factor/basis_factor_impl.h"

namespace kelvo {
namespace {

/// The updated pivot and the one of the solve may differ by this relative amount.
constexpr double kPivotAgreement = 1e-6;
/// With a larger pivot the drop tolerance has hurt the multipliers that btran left behind.
constexpr double kLargePivot = 100.0;
/// Two solves share a pass over the factor when both results are expected at least this dense.
constexpr double kPairDensity = 0.7;
/// The adaptive rule compares averages: the work of single iterations differs too much. This is the
/// weight of the newest one in the average of the recent ones.
constexpr double kRecentShare = 0.05;
/// Updates before the adaptive rule may ask for a factorization.
constexpr int kAdaptiveMinimum = 60;
/// What a factorization costs, for the adaptive rule: so many solves and this part of its work,
constexpr double kRefactorWeight = 5.0;
constexpr double kFactorWorkShare = 0.5;
/// and passes over matrix and variables, since all values are computed again with it.
constexpr double kValuePasses = 4.0;

}  // namespace

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
    replace_column(lu, position, spike, row_eta, diagonal, marked() ? &journal : nullptr, scratch);
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
  update_work.since += work;
  ++statistics.updates;
  const double solve_work = static_cast<double>(lu.nonzeros() + lu.etas.used);
  const double matrix_pass = static_cast<double>(columns.num_nonzeros()) + columns.num_major + lu.m;
  const double average = (kRefactorWeight * solve_work + kFactorWorkShare * factor_work +
                          kValuePasses * matrix_pass + update_work.since) /
                         (statistics.updates + 1);
  const double spent = update_work.since - update_work.at_update;
  update_work.at_update = update_work.since;
  update_work.recent +=
      std::max(kRecentShare, 1.0 / statistics.updates) * (spent - update_work.recent);
  update_work.pays = statistics.updates > kAdaptiveMinimum && update_work.recent > average;
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

// Solves between the caller's numbering and the one inside differ only while rows are deleted.

void BasisFactor::ftran(WorkVector& x, double expected_density, bool keep_for_update) {
  Impl& impl = *impl_;
  if (impl.row_map.active()) {
    WorkVector& inside = impl.inside[0];
    impl.row_map.enter(x, inside);
    impl.transform(inside, expected_density, keep_for_update);
    impl.position_map.leave(inside, x);
  } else {
    impl.transform(x, expected_density, keep_for_update);
  }
  impl.collect_work();
}

void BasisFactor::ftran_pair(WorkVector& a, double density_a, WorkVector& b, double density_b,
                             bool keep_a_for_update) {
  Impl& impl = *impl_;
  if (impl.row_map.active()) {
    ftran(a, density_a, keep_a_for_update);
    ftran(b, density_b);
    return;
  }
  impl.transform_pair(a, density_a, b, density_b, keep_a_for_update);
  impl.collect_work();
}

void BasisFactor::btran(WorkVector& y, double expected_density) {
  Impl& impl = *impl_;
  if (impl.row_map.active()) {
    WorkVector& inside = impl.inside[0];
    impl.position_map.enter(y, inside);
    impl.transform_transposed(inside, expected_density);
    impl.row_map.leave(inside, y);
  } else {
    impl.transform_transposed(y, expected_density);
  }
  impl.collect_work();
}

void BasisFactor::btran_pair(WorkVector& a, double density_a, WorkVector& b, double density_b) {
  Impl& impl = *impl_;
  if (impl.row_map.active()) {
    btran(a, density_a);
    btran(b, density_b);
    return;
  }
  impl.transform_transposed_pair(a, density_a, b, density_b);
  impl.collect_work();
}

bool BasisFactor::update(int position, double pivot) {
  const bool done = impl_->update(impl_->position_map.inner(position), pivot);
  impl_->collect_work();
  return done;
}

bool BasisFactor::should_refactor() const {
  return impl_->statistics.updates >= impl_->settings.update_limit ||
         (impl_->settings.adaptive_refactor && impl_->update_work.pays);
}

bool BasisFactor::add_rows(const SparseMatrix& rows) {
  const bool done = impl_->add_rows(rows);
  impl_->collect_work();
  return done;
}

bool BasisFactor::delete_rows(const Vector<int>& rows, const Vector<int>& positions) {
  return impl_->delete_rows(rows, positions);
}

FactorMark BasisFactor::checkpoint() {
  assert(impl_->valid);
  return impl_->checkpoint();
}

bool BasisFactor::rollback(FactorMark mark) {
  if (!impl_->outstanding(mark)) return false;
  impl_->rollback(mark);
  return true;
}

void BasisFactor::release(FactorMark mark) {
  if (impl_->outstanding(mark)) impl_->release(mark);
}

void BasisFactor::add_work(double work) {
  impl_->update_work.since += work;
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
