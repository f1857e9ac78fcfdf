// What presolve of a mixed-integer program says.
#pragma once

#include "lp/solve/presolve_log.h"
#include "mip/form/mip_problem.h"
#include "mip/presolve/mip_presolve_settings.h"
#include "mip/presolve/symmetry/symmetry.h"

namespace kelvo {

class MipPresolveLog final : public MipPresolveProgress, public SymmetryProgress {
 public:
  MipPresolveLog(MessageSink& sink, const MipPresolveSettings& settings)
      : sink_(sink),
        settings_(settings.lp),
        linear_(sink, settings.lp),
        start_(wall_seconds()),
        last_report_(start_) {}

  /// Eliminations, every few seconds.
  void report(const PresolveStats& stats) override { linear_.report(stats); }
  void probing(double share, int fixed) override;
  /// Why there is nothing to solve.
  void finding(const Finding& finding, const LpProblem& lp) { linear_.finding(finding, lp); }
  /// What was eliminated and what is left.
  void summary(PresolveOutcome outcome, const PresolveStats& linear, const MipPresolveStats& stats,
               const MipProblem& reduced);
  /// The end of probing, which took so many seconds.
  void probing_end(const MipPresolveStats& stats);
  void symmetry(const Symmetry& symmetry);
  void in_progress() override;

 private:
  bool reports() const { return settings_.progress && settings_.display > 0; }
  /// True when enough time has passed since the last report.
  bool report_is_due();

  MessageSink& sink_;
  const PresolveSettings& settings_;
  PresolveLog linear_;
  const double start_;
  double last_report_;
  int last_fixed_ = 0;
};

}  // namespace kelvo
