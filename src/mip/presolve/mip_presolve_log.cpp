#include "mip/presolve/mip_presolve_log.h"

#include <climits>
#include <cmath>

namespace kelvo {

namespace {

constexpr const char* kWord = "MIP";

}  // namespace

void MipPresolveLog::summary(PresolveOutcome outcome, const PresolveStats& linear,
                             const MipPresolveStats& stats, const MipProblem& reduced) {
  if (!settings_.progress) return;
  if (stats.sets_removed > 0) {
    sink_.print(Channel::results, "MIP Presolve eliminated %d redundant SOS constraints.\n",
                stats.sets_removed);
  }
  const bool unchanged = outcome == PresolveOutcome::unchanged;
  linear_.summary({kWord, unchanged, true, linear, reduced.lp});
  if (unchanged || (reduced.num_rows() == 0 && reduced.num_cols() == 0)) return;
  int binaries = 0, integers = 0;
  for (int j = 0; j < reduced.num_cols(); ++j) {
    binaries += reduced.is_binary(j);
    integers += reduced.is_integer[j];
  }
  sink_.print(Channel::results,
              "Reduced %s has %d binaries, %d generals, %d SOSs, and %d indicators.\n", kWord,
              binaries, integers - binaries, static_cast<int>(reduced.sets.size()),
              static_cast<int>(reduced.indicators.size()));
}

void MipPresolveLog::symmetry(const Symmetry& symmetry) {
  const int patterns = static_cast<int>(symmetry.generators.size());
  if (!settings_.progress || patterns == 0) return;
  if (patterns == 1) {
    sink_.send(Channel::results, "One symmetric pattern found.\n");
  } else {
    sink_.print(Channel::results, "%d symmetric patterns found.\n", patterns);
  }
  if (symmetry.order <= INT_MAX) {
    sink_.print(Channel::results, "Found %d symmetric permutations.\n",
                static_cast<int>(symmetry.order));
    return;
  }
  const double exponent = std::floor(symmetry.log10_order);
  sink_.print(Channel::results, "Found %fe+%d symmetric permutations.\n",
              std::pow(10.0, symmetry.log10_order - exponent), static_cast<int>(exponent));
}

bool MipPresolveLog::report_is_due() {
  constexpr double kSecondsBetween = 10.0;
  const double now = wall_seconds();
  if (now - last_report_ <= kSecondsBetween) return false;
  last_report_ = now;
  return true;
}

void MipPresolveLog::in_progress() {
  if (!settings_.progress || !report_is_due()) return;
  sink_.send(Channel::results, "Symmetry detection still in progress.\n");
}

void MipPresolveLog::probing(double share, int fixed) {
  if (!reports() || !report_is_due()) return;
  sink_.print(Channel::results, "Elapsed time %5.2f sec. for %.0f%% of probing",
              wall_seconds() - start_, 100.0 * share);
  if (fixed > last_fixed_) {
    sink_.print(Channel::results, " (%d vars fixed).\n", fixed);
  } else {
    sink_.send(Channel::results, ".\n");
  }
  last_fixed_ = fixed;
}

void MipPresolveLog::probing_end(const MipPresolveStats& stats) {
  if (!reports() || stats.probing_rounds == 0) return;
  if (stats.probing_fixed > 0 || stats.probing_bounds > 0) {
    sink_.print(Channel::results, "Probing fixed %d vars, tightened %d bounds.\n",
                stats.probing_fixed, stats.probing_bounds);
  }
  sink_.print(Channel::results, "Probing time = %7.2f sec.\n", stats.probing_seconds);
}

}  // namespace kelvo
