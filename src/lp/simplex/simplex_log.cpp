#include "lp/simplex/simplex_log.h"

#include <cmath>
#include <cstdio>

#include "base/clock.h"

namespace kelvo {
namespace {

constexpr int kElapsedIterations = 1000;  // the elapsed-time line stands at multiples of this
constexpr double kElapsedSeconds = 10.0;  // and at least so long after the previous one
constexpr double kLargeObjective = 1e12;  // from here on the detailed display uses exponents

SilentSink silent;  // has no state

}  // namespace

SimplexLog::SimplexLog(const LpProblem& problem) : problem_(problem), sink_(&silent) {}

void SimplexLog::write_to(MessageSink* sink) {
  sink_ = sink != nullptr ? sink : &silent;
}

void SimplexLog::begin_run(const SimplexSettings& settings, int iterations) {
  settings_ = settings;
  display_ = settings.display;
  logged_factorizations_ = -1;
  elapsed_iteration_ = iterations;
  header_written_ = false;
  detail_header_written_ = false;
  start_seconds_ = wall_seconds();
  elapsed_seconds_ = start_seconds_;
}

void SimplexLog::text(const char* line) {
  if (on()) sink_->send(Channel::log, line);
}

void SimplexLog::header() {
  if (header_written_) return;
  header_written_ = true;
  sink_->send(Channel::log, "\nIteration log . . .\n");
}

bool SimplexLog::line_due(int factorizations) const {
  return display_ == 1 && factorizations != logged_factorizations_;
}

void SimplexLog::dual_iteration(int iteration, int factorizations, bool phase_one, double measure) {
  if (!on()) return;
  logged_factorizations_ = factorizations;
  header();
  if (!phase_one) {
    sink_->print(Channel::log, "Iteration: %5d   Dual objective     = %20.6f\n", iteration,
                 settings_.sense * measure);
  } else if (settings_.scaled) {
    sink_->print(Channel::log, "Iteration: %5d   Scaled dual infeas = %20.6f\n", iteration,
                 measure);
  } else {
    sink_->print(Channel::log, "Iteration: %5d   Dual infeasibility = %20.6f\n", iteration,
                 measure);
  }
  sink_->flush(Channel::log);
}

void SimplexLog::primal_iteration(int iteration, int factorizations, bool phase_one,
                                  double measure) {
  if (!on()) return;
  logged_factorizations_ = factorizations;
  header();
  if (!phase_one) {
    sink_->print(Channel::log, "Iteration: %5d    Objective     = %20.6f\n", iteration,
                 settings_.sense * measure);
  } else if (settings_.scaled) {
    sink_->print(Channel::log, "Iteration: %5d    Scaled infeas = %20.6f\n", iteration, measure);
  } else {
    sink_->print(Channel::log, "Iteration: %5d    Infeasibility = %20.6f\n", iteration, measure);
  }
  sink_->flush(Channel::log);
}

const char* SimplexLog::variable_name(int variable, char* buffer, int size) const {
  const int n = problem_.num_cols;
  const char* name = nullptr;
  if (variable < n) {
    if (problem_.column_name) name = problem_.column_name(problem_.name_context, variable);
    if (name == nullptr) std::snprintf(buffer, size, "x%d", variable + 1);
  } else {
    if (problem_.row_name) name = problem_.row_name(problem_.name_context, variable - n);
    if (name == nullptr) std::snprintf(buffer, size, "c%d", variable - n + 1);
  }
  if (name != nullptr) std::snprintf(buffer, size, "%.*s", size - 1, name);
  return buffer;
}

void SimplexLog::exchange(int iteration, bool phase_one, int entering, int leaving,
                          double objective) {
  if (display_ < 2) return;
  header();
  if (!detail_header_written_) {
    detail_header_written_ = true;
    sink_->send(Channel::log, "       In Variable           Out Variable\n");
  }
  char in[256];
  char out[256];
  char number[48];
  char value[64];
  const char* mark = !phase_one ? "   " : settings_.scaled ? " sI" : "  I";
  std::snprintf(number, sizeof number, "%6d%s", iteration, mark);
  const double shown = settings_.sense * objective;
  if (std::fabs(shown) < kLargeObjective) {
    std::snprintf(value, sizeof value, "%20.6f", shown);
  } else {
    std::snprintf(value, sizeof value, "%20.6e", shown);
  }
  sink_->print(Channel::log, "%s%-20s  %-20s %s\n", number, variable_name(entering, in, sizeof in),
               variable_name(leaving, out, sizeof out), value);
}

void SimplexLog::elapsed(int iteration, bool period) {
  if (!on() || iteration <= 0 || iteration % kElapsedIterations != 0) return;
  if (iteration - elapsed_iteration_ < kElapsedIterations) return;
  elapsed_iteration_ = iteration;
  const double now = wall_seconds();
  if (now - elapsed_seconds_ < kElapsedSeconds) return;
  elapsed_seconds_ = now;
  sink_->print(Channel::log,
               period ? "Elapsed time = %7.2f sec. (%d iterations).\n"
                      : "Elapsed time = %7.2f sec. (%d iterations)\n",
               now - start_seconds_, iteration);
  sink_->flush(Channel::log);
}

void SimplexLog::compressing_files() {
  sink_->send(Channel::log, "Compressing row and column files.\n");
}
void SimplexLog::no_memory_for_dense() {
  sink_->send(Channel::log, "Not enough memory for dense factorization.\n");
}
void SimplexLog::repairing() {
  text("Repairing basis singularity.\n");
}
void SimplexLog::threshold_set(double threshold) {
  if (on()) sink_->print(Channel::log, "Markowitz threshold set to %g\n", threshold);
}
void SimplexLog::variable_held(int variable) {
  if (!on()) return;
  char name[256];
  sink_->print(Channel::log, "Variable '%.255s' fixed because of singularity.\n",
               variable_name(variable, name, sizeof name));
}
void SimplexLog::slack_removed() {
  text("Slack removed by singularity.\n");
}

void SimplexLog::perturbation_started(bool again) {
  text(again ? "Reperturbation started.\n" : "Perturbation started.\n");
}
void SimplexLog::perturbation_removed() {
  text("Removing perturbation.\n");
}
void SimplexLog::shifts_removed(int count) {
  if (on()) sink_->print(Channel::log, "Removing shift (%d).\n", count);
}

void SimplexLog::initializing_dual_norms(bool full) {
  text(full ? "Initializing dual full norms . . .\n" : "Initializing dual steep norms . . .\n");
}
void SimplexLog::reinitializing_dual_norms() {
  text("Reinitializing dual norms . . .\n");
}
void SimplexLog::computed_norms(int count) {
  if (on()) sink_->print(Channel::log, "Computed %d new norms.\n", count);
}
void SimplexLog::no_memory_for_steepest() {
  sink_->send(Channel::warning, "Not enough memory for steepest-edge.\n");
}
void SimplexLog::no_memory_for_devex() {
  sink_->send(Channel::warning, "Not enough memory for devex.\n");
}
void SimplexLog::switched_to_steepest() {
  text("Switched to steepest-edge.\n");
}
void SimplexLog::switched_to_devex() {
  text("Switched to devex.\n");
}
void SimplexLog::using_devex() {
  text("Using devex.\n");
}
void SimplexLog::using_steepest() {
  text("Using steepest-edge.\n");
}
void SimplexLog::initializing_primal_norms(bool rowwise) {
  text(rowwise ? "Initializing primal norms rowwise . . .\n" : "Initializing primal norms . . .\n");
}
void SimplexLog::reinitializing_primal_norms() {
  text("Reinitializing primal norms . . .\n");
}

void SimplexLog::dual_start_superbasics(int count) {
  if (on()) sink_->print(Channel::log, "%d primal superbasics exist.\n", count);
}
void SimplexLog::primal_start_superbasics(int count) {
  if (on()) sink_->print(Channel::log, "Primal superbasis exists (%d).\n", count);
}
void SimplexLog::dual_superbasis(int count) {
  if (on()) sink_->print(Channel::log, "Dual superbasis exists (%d).\n", count);
}

void SimplexLog::dropped_violates(int variable, double reduced_cost) {
  if (!on()) return;
  char name[256];
  sink_->print(Channel::log,
               settings_.scaled ? "Scaled reduced cost of dropped variable '%.255s' = %g\n"
                                : "Reduced cost of dropped variable '%.255s' = %g\n",
               variable_name(variable, name, sizeof name), reduced_cost);
}
void SimplexLog::dropped_checked(int violations) {
  if (violations == 0) {
    text("Dropped variables satisfy optimality criteria.\n");
    return;
  }
  if (on()) sink_->print(Channel::log, "There are %d violations to optimality.\n", violations);
  text("Attempting to reinclude dropped variables.\n");
}

}  // namespace kelvo
