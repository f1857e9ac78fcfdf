#include "lp/simplex/state/basis_inverse.h"

namespace kelvo {
namespace {

FactorSettings factor_settings(const SimplexSettings& settings) {
  FactorSettings result;
  result.markowitz_threshold = settings.markowitz_threshold;
  result.absolute_tolerance = settings.singularity_tolerance;
  result.row_file_multiplier = settings.row_file_multiplier;
  result.col_file_multiplier = settings.col_file_multiplier;
  result.singularity_limit = settings.singularity_limit;
  result.adaptive_refactor = settings.refactor_frequency == 0;
  if (settings.refactor_frequency > 0) result.update_limit = settings.refactor_frequency - 1;
  return result;
}

bool differ(const FactorSettings& a, const FactorSettings& b) {
  return a.markowitz_threshold != b.markowitz_threshold ||
         a.absolute_tolerance != b.absolute_tolerance ||
         a.singularity_limit != b.singularity_limit ||
         a.row_file_multiplier != b.row_file_multiplier ||
         a.col_file_multiplier != b.col_file_multiplier ||
         a.adaptive_refactor != b.adaptive_refactor || a.update_limit != b.update_limit;
}

}  // namespace

BasisInverse::BasisInverse(const SparseMatrix& columns, FactorEvents* events)
    : columns_(columns), events_(events), settings_(factor_settings(SimplexSettings())) {
  make_factor();
}

void BasisInverse::make_factor() {
  factor_ = make_owned<BasisFactor>(columns_, settings_, events_);
  current_ = false;
}

void BasisInverse::configure(const SimplexSettings& settings) {
  const FactorSettings wanted = factor_settings(settings);
  if (!differ(wanted, settings_)) return;
  settings_ = wanted;
  make_factor();
}

FactorOutcome BasisInverse::factorize(Vector<int>& header, bool allow_repair, StopCheck* stop) {
  repairs_.clear();
  current_ = false;
  const FactorOutcome outcome = factor_->factorize(header, allow_repair, repairs_, stop);
  current_ = outcome == FactorOutcome::ok || outcome == FactorOutcome::repaired;
  stopped_ = outcome == FactorOutcome::stopped;
  return outcome;
}

void BasisInverse::add_rows(const SparseMatrix& basic_part) {
  if (current_) current_ = factor_->add_rows(basic_part);
}

void BasisInverse::delete_rows(const Vector<int>& rows, const Vector<int>& positions) {
  if (current_) current_ = factor_->delete_rows(rows, positions);
}

void BasisInverse::return_to(FactorMark mark) noexcept {
  current_ = factor_->rollback(mark);
  factor_->release(mark);
}

}  // namespace kelvo
