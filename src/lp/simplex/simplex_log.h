// The texts of both simplex methods, and when they are written.
//
// Display 0 writes nothing, 1 a line at the first iteration and one per factorization, 2 a line per
// iteration. All of it goes to the log channel but for the few lines said otherwise.
#pragma once

#include "base/messages.h"
#include "lp/factor/basis_factor.h"
#include "lp/form/lp_problem.h"
#include "lp/simplex/simplex.h"

namespace kelvo {

class SimplexLog final : public FactorEvents {
 public:
  explicit SimplexLog(const LpProblem& problem);

  /// Where the messages go from now on; null drops them.
  void write_to(MessageSink* sink);

  /// Starts a run: the header is due again and the clock starts.
  void begin_run(const SimplexSettings& settings, int iterations);
  bool on() const { return display_ != 0; }

  // Iterations. `factorizations` is the factor's count, `phase_one` selects the text; `measure` is
  // the (dual) infeasibility in phase one and the objective of the minimization in phase two.
  void dual_iteration(int iteration, int factorizations, bool phase_one, double measure);
  void primal_iteration(int iteration, int factorizations, bool phase_one, double measure);
  /// True when an iteration line is due at display 1, so that its measure need not be computed
  /// otherwise.
  bool line_due(int factorizations) const;
  /// The exchange of an iteration at display 2.
  void exchange(int iteration, bool phase_one, int entering, int leaving, double objective);
  /// The line of elapsed time, when it is due; `period` ends the line with a full stop.
  void elapsed(int iteration, bool period);

  // Events of the factor.
  void compressing_files() override;
  void no_memory_for_dense() override;
  void repairing() override;
  void threshold_set(double threshold) override;
  void variable_held(int variable);
  void slack_removed();

  // Perturbation.
  void perturbation_started(bool again);
  void perturbation_removed();
  void shifts_removed(int count);

  // Pricing.
  void initializing_dual_norms(bool full);
  void reinitializing_dual_norms();
  void computed_norms(int count);
  void no_memory_for_steepest();
  void no_memory_for_devex();
  void switched_to_steepest();
  void switched_to_devex();
  void using_devex();
  void using_steepest();
  void initializing_primal_norms(bool rowwise);
  void reinitializing_primal_norms();

  // Starts that are not basic solutions.
  void dual_start_superbasics(int count);
  void primal_start_superbasics(int count);
  void dual_superbasis(int count);

  // Variables that a repair dropped, priced at the end of a primal run.
  void dropped_violates(int variable, double reduced_cost);
  void dropped_checked(int violations);

 private:
  void text(const char* line);
  void header();
  const char* variable_name(int variable, char* buffer, int size) const;

  const LpProblem& problem_;
  MessageSink* sink_;  // never null
  SimplexSettings settings_;
  int display_ = 0;
  int logged_factorizations_ = -1;
  int elapsed_iteration_ = 0;
  bool header_written_ = false;
  bool detail_header_written_ = false;
  double start_seconds_ = 0.0;
  double elapsed_seconds_ = 0.0;
};

}  // namespace kelvo
