#include "io/report/report_entries.h"

#include <algorithm>
#include <cmath>

namespace kelvo {
namespace {

/// Bounds this near to each other hold a column fixed.
constexpr double kFixedWidth = 1e-10;

/// Limits and status of a nonbasic row.
void describe_row(const Model& model, int i, int status, ReportEntry& entry) {
  const double rhs = model.rhs[i];
  switch (model.row_sense[i]) {
    case 'L':
      entry.upper = rhs;
      entry.status = "UL";
      break;
    case 'G':
      entry.lower = rhs;
      entry.status = "LL";
      break;
    case 'R': {
      const double range = model.range.empty() ? 0.0 : model.range[i];
      entry.lower = rhs + std::min(range, 0.0);
      entry.upper = rhs + std::max(range, 0.0);
      entry.status = status == kAtUpper ? "UL" : "LL";
      break;
    }
    default:
      entry.lower = entry.upper = rhs;
      entry.status = "EQ";
      break;
  }
}

bool is_violated(const ReportEntry& row, char sense, bool basic, double tolerance) {
  switch (sense) {
    case 'L':
      return row.second < -tolerance;
    case 'G':
      return row.second > tolerance;
    case 'R':
      return basic &&
             (row.activity < row.lower - tolerance || row.activity > row.upper + tolerance);
    default:
      return std::fabs(row.second) > tolerance;
  }
}

}  // namespace

ReportEntries::ReportEntries(const Problem& problem, const ReportTolerances& tolerances)
    : problem_(problem),
      model_(problem.model()),
      solution_(problem.solution),
      tolerances_(tolerances),
      rows_(model_.row_names, model_.num_rows, 'c', false),
      columns_(model_.col_names, model_.num_cols, 'x', false) {}

void ReportEntries::tell_of_names(int longest, MessageSink& sink) const {
  const auto tell_if_cut = [&](const WrittenNames& names, const char* kind) {
    if (names.generated() || names.longest() <= longest) return;
    sink.print(Channel::warning, "Warning, %s names truncated to %d characters.\n", kind, longest);
  };
  tell_if_cut(rows_, "row");
  tell_if_cut(columns_, "column");
  if (columns_.generated() && columns_.size() > 0) {
    sink.send(Channel::warning, "Default variable names x1, x2 ... being created.\n");
  }
  if (rows_.generated() && rows_.size() > 0) {
    sink.send(Channel::warning, "Default row names c1, c2 ... being created.\n");
  }
}

char ReportEntries::marker(bool basic, double multiplier) const {
  return basic || std::fabs(multiplier) > tolerances_.optimality ? ' ' : 'A';
}

ReportEntry ReportEntries::objective() const {
  ReportEntry entry;
  entry.number = 1;
  entry.name = model_.objective_name.c_str();
  entry.activity = solution_.objective;
  entry.second = 0.0 - solution_.objective;
  entry.multiplier = 1.0;
  return entry;
}

ReportEntry ReportEntries::row(int i) const {
  ReportEntry entry;
  const int status = problem_.basis.row_status[i];
  const bool basic = status == kBasic;
  entry.number = i + 2;
  entry.name = rows_[i];
  // The right-hand side minus the activity in ranged rows, too.
  entry.activity = solution_.activity[i];
  entry.second = model_.rhs[i] - entry.activity;
  entry.multiplier = 0.0 - solution_.pi[i];
  entry.marker = marker(basic, entry.multiplier);
  describe_row(model_, i, status, entry);
  if (basic) entry.status = "BS";
  if (!solution_.primal_feasible &&
      is_violated(entry, model_.row_sense[i], basic, tolerances_.feasibility)) {
    entry.status = "**";
  }
  return entry;
}

ReportEntry ReportEntries::column(int j) const {
  static constexpr const char* kStatusTexts[] = {"LL", "BS", "UL", "FR"};
  ReportEntry entry;
  const int status = problem_.basis.col_status[j];
  const bool basic = status == kBasic;
  const double lower = model_.lower[j], upper = model_.upper[j];
  entry.number = model_.num_rows + j + 2;
  entry.name = columns_[j];
  entry.activity = solution_.x[j];
  entry.second = model_.objective[j];
  if (lower > -kInfiniteBound) entry.lower = lower;
  if (upper < kInfiniteBound) entry.upper = upper;
  entry.multiplier = solution_.dj[j];
  entry.marker = marker(basic, entry.multiplier);
  entry.status = kStatusTexts[status];
  if (!basic && std::fabs(upper - lower) <= kFixedWidth) entry.status = "EQ";
  const double tolerance = tolerances_.feasibility;
  if (!solution_.primal_feasible && basic &&
      (entry.activity < lower - tolerance || entry.activity > upper + tolerance)) {
    entry.status = "**";
  }
  return entry;
}

const char* report_status(const Problem& problem) {
  if (!problem.solution.primal_feasible) return "INFEASIBLE SOLN";
  const int status = problem.solution_status;
  return status == kOptimal || status == kOptimalUnscaledInfeasible ? "OPTIMAL SOLN"
                                                                    : "NON-OPTIMAL SOLN";
}

}  // namespace kelvo
