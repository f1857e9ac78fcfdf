// The entries of a solution report, before they are put into a layout.
#pragma once

#include "io/report/solution_report.h"
#include "io/writer_names.h"

namespace kelvo {

/// In place of a limit that a row or column does not have.
inline constexpr double kNoLowerLimit = -1.01e75;
inline constexpr double kNoUpperLimit = 1.01e75;

struct ReportEntry {
  char marker = ' ';  // 'A': nonbasic with a multiplier of zero
  int number = 0;
  const char* name = "";
  const char* status = "BS";
  double activity = 0.0;
  double second = 0.0;  // slack of a row, cost of a column
  double lower = kNoLowerLimit;
  double upper = kNoUpperLimit;
  double multiplier = 0.0;  // -pi of a row, dj of a column
};

class ReportEntries {
 public:
  /// Keeps a reference to the problem, whose names or default ones it uses.
  ReportEntries(const Problem& problem, const ReportTolerances& tolerances);

  /// Says on the warning channel which names are longer than the layout can show, and which are
  /// made up.
  void tell_of_names(int longest, MessageSink& sink) const;
  ReportEntry objective() const;
  ReportEntry row(int i) const;
  ReportEntry column(int j) const;

 private:
  char marker(bool basic, double multiplier) const;

  const Problem& problem_;
  const Model& model_;
  const SolutionRecord& solution_;
  const ReportTolerances tolerances_;
  const WrittenNames rows_;
  const WrittenNames columns_;
};

/// "INFEASIBLE SOLN", "OPTIMAL SOLN" or "NON-OPTIMAL SOLN".
const char* report_status(const Problem& problem);

}  // namespace kelvo
