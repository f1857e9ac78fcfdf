// What presolve says.
#pragma once

#include "base/clock.h"
#include "base/messages.h"
#include "lp/presolve/presolve.h"

namespace kelvo {

/// What presolve made of a program.
struct PresolveSummary {
  const char* word;  // for the kind of the program: "LP", "MIP" and so on
  bool unchanged;
  bool tells_coefficients;  // those of a mixed-integer program
  const PresolveStats& stats;
  const LpProblem& reduced;
};

class PresolveLog final : public PresolveProgress {
 public:
  PresolveLog(MessageSink& sink, const PresolveSettings& settings)
      : sink_(sink), settings_(settings), start_(wall_seconds()), last_report_(start_) {}

  /// How far presolve has come, every few seconds.
  void report(const PresolveStats& stats) override;

  /// Why there is nothing to solve.
  void finding(const Finding& finding, const LpProblem& lp);
  /// The same for a variable whose bounds cross by more than the tolerance, if there is one.
  void empty_interval(const LpProblem& lp, double tolerance);
  /// What was eliminated and what is left.
  void summary(const PresolveSummary& summary);
  void time();

 private:
  MessageSink& sink_;
  const PresolveSettings& settings_;
  const double start_;
  double last_report_;
};

}  // namespace kelvo
