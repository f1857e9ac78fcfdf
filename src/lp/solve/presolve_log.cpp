#include "lp/solve/presolve_log.h"

#include <algorithm>

#include "prob/model/default_names.h"

namespace kelvo {

namespace {

/// The name of a line for a message, given or by default.
class LineName {
 public:
  LineName(const LpProblem& lp, bool of_row, int line)
      : fallback_(of_row ? NameKind::row : NameKind::column, std::max(line, 0)) {
    const auto name = of_row ? lp.row_name : lp.column_name;
    text_ = name != nullptr && line >= 0 ? name(lp.name_context, line) : fallback_.c_str();
  }
  const char* text() const { return text_; }

 private:
  DefaultName fallback_;
  const char* text_;
};

struct FindingText {
  bool of_row;
  const char* format;
};

// In the order of FindingKind.
constexpr FindingText kTexts[] = {
    {true, ""},
    {true, "Infeasibility row '%.255s':  0 %c= %g.\n"},
    {false, "Dual infeasible due to empty column '%.255s'.\n"},
    {false, "Bound infeasibility column '%.255s'.\n"},
    {false, "Integer infeasible column '%.255s'.\n"},
    {true, "Row '%.255s' infeasible, all entries at implied bounds.\n"},
    {true, "Implied bounds make row '%.255s' infeasible.\n"},
    {true, "Constraints '%.255s' and '%.255s' are inconsistent.\n"},
    {false, "Primal unbounded due to dual bounds, variable '%.255s'.\n"},
    {true, "Dual infeasible due to dual bounds, row '%.255s'.\n"},
    {true, "Row '%.255s' is dependent and infeasible.\n"},
    {true, "Integer infeasible equality row '%.255s'.\n"},
    {true, "Row '%.255s' implies binary variable '%.255s' is negative.\n"},
    {true, "Row '%.255s' implies binary variable '%.255s' is greater than 1.\n"},
    {true, "Inconsistency between regular and SOS constraints.\n"},
    {true, "Infeasible indicator constraint\n"},
    {true, ""},
};

}  // namespace

void PresolveLog::finding(const Finding& finding, const LpProblem& lp) {
  if (!settings_.progress || finding.kind == FindingKind::none) return;
  const FindingText& text = kTexts[static_cast<int>(finding.kind)];
  const LineName line(lp, text.of_row, finding.line);
  const bool of_two_rows = finding.kind == FindingKind::duplicate_rows;
  const LineName other(lp, of_two_rows, finding.other);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const bool of_binary =
      finding.kind == FindingKind::binary_negative || finding.kind == FindingKind::binary_above_one;
  if (finding.kind == FindingKind::empty_row) {
    sink_.print(Channel::results, text.format, line.text(), finding.sense, finding.rhs);
  } else if (of_two_rows || of_binary) {
    sink_.print(Channel::results, text.format, line.text(), other.text());
  } else {
    sink_.print(Channel::results, text.format, line.text());
  }
#pragma GCC diagnostic pop
}

void PresolveLog::empty_interval(const LpProblem& lp, double tolerance) {
  const int v = find_empty_interval(lp, tolerance);
  if (v < 0) return;
  const bool column = v < lp.num_cols;
  finding({column ? FindingKind::column_bounds : FindingKind::implied_bounds,
           column ? v : v - lp.num_cols},
          lp);
}

void PresolveLog::report(const PresolveStats& stats) {
  constexpr double kSecondsBetween = 5.0;
  if (!settings_.progress || wall_seconds() - last_report_ <= kSecondsBetween) return;
  last_report_ = wall_seconds();
  sink_.print(Channel::results, "Presolve has eliminated %d rows and %d columns...\n",
              stats.rows_removed, stats.cols_removed);
  if (stats.substitutions > 0) {
    sink_.print(Channel::results, "Aggregator has done %d substitutions...\n", stats.substitutions);
  }
  sink_.print(Channel::results, "Presolve has improved bounds %d times...\n",
              stats.bounds_improved);
}

void PresolveLog::summary(const PresolveSummary& summary) {
  if (!settings_.progress) return;
  const PresolveStats& stats = summary.stats;
  if (settings_.aggregator != 0 && settings_.display > 0) {
    if (stats.aggregator_rounds == 1) {
      sink_.send(Channel::results, "Tried aggregator 1 time.\n");
    } else {
      sink_.print(Channel::results, "Tried aggregator %d times.\n", stats.aggregator_rounds);
    }
  }
  const char* const word = summary.word;
  if (summary.unchanged) {
    sink_.print(Channel::results, "No %s presolve or aggregator reductions.\n", word);
    return;
  }
  if (stats.rows_removed > 0 || stats.cols_removed > 0) {
    sink_.print(Channel::results, "%s Presolve eliminated %d rows and %d columns.\n", word,
                stats.rows_removed, stats.cols_removed);
  }
  if (summary.tells_coefficients && stats.coefficients_changed > 0) {
    sink_.print(Channel::results, "%s Presolve modified %d coefficients.\n", word,
                stats.coefficients_changed);
  }
  if (stats.substitutions > 0) {
    sink_.print(Channel::results, "Aggregator did %d substitutions.\n", stats.substitutions);
  }
  const LpProblem& reduced = summary.reduced;
  if (reduced.num_rows == 0 && reduced.num_cols == 0) {
    sink_.send(Channel::results, "All rows and columns eliminated.\n");
  } else {
    sink_.print(Channel::results, "Reduced %s has %d rows, %d columns, and %d nonzeros.\n", word,
                reduced.num_rows, reduced.num_cols, reduced.columns.num_nonzeros());
  }
}

void PresolveLog::time() {
  if (settings_.display == 0) return;
  sink_.print(Channel::results, "Presolve time = %7.2f sec.\n", wall_seconds() - start_);
}

}  // namespace kelvo
