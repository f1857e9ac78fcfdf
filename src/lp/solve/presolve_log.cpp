#include "lp/solve/presolve_log.h"

#include "prob/model/default_names.h"
#include "prob/model/row_limits.h"

namespace kelvo {

namespace {

/// The name of a line for a message, given or by default.
class LineName {
 public:
  LineName(const NameStore& names, NameKind kind, int line)
      : fallback_(kind, line < 0 ? 0 : line),
        text_(names.present() && line >= 0 ? names[line] : fallback_.view().data()) {}
  const char* text() const { return text_; }

 private:
  DefaultName fallback_;  // its text ends with a zero
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
};

}  // namespace

void PresolveLog::finding(const Finding& finding, const Model& model) {
  if (!settings_.progress || finding.kind == FindingKind::none) return;
  const FindingText& text = kTexts[static_cast<int>(finding.kind)];
  const NameStore& names = text.of_row ? model.row_names : model.col_names;
  const NameKind kind = text.of_row ? NameKind::row : NameKind::column;
  const LineName line(names, kind, finding.line);
  const LineName other(names, kind, finding.other);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  switch (finding.kind) {
    case FindingKind::empty_row:
      sink_.print(Channel::results, text.format, line.text(), finding.sense, finding.rhs);
      break;
    case FindingKind::duplicate_rows:
      sink_.print(Channel::results, text.format, line.text(), other.text());
      break;
    default:
      sink_.print(Channel::results, text.format, line.text());
  }
#pragma GCC diagnostic pop
}

void PresolveLog::empty_interval(const Model& model, double tolerance) {
  const auto empty = [tolerance](double lower, double upper) {
    return lower > upper + tolerance || lower == kInf || upper == -kInf;
  };
  for (int j = 0; j < model.num_cols; ++j) {
    if (!empty(finite_or_infinite(model.lower[j]), finite_or_infinite(model.upper[j]))) continue;
    return finding({FindingKind::column_bounds, j}, model);
  }
  for (int i = 0; i < model.num_rows; ++i) {
    const RowLimits limits = row_limits(model, i);
    if (!empty(limits.lower, limits.upper)) continue;
    return finding({FindingKind::implied_bounds, i}, model);
  }
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

void PresolveLog::summary(const Presolve& presolve, const LpProblem& reduced) {
  if (!settings_.progress) return;
  const PresolveStats& stats = presolve.stats();
  if (settings_.aggregator != 0 && settings_.display > 0) {
    if (stats.aggregator_rounds == 1) {
      sink_.send(Channel::results, "Tried aggregator 1 time.\n");
    } else {
      sink_.print(Channel::results, "Tried aggregator %d times.\n", stats.aggregator_rounds);
    }
  }
  if (presolve.outcome() == PresolveOutcome::unchanged) {
    sink_.send(Channel::results, "No LP presolve or aggregator reductions.\n");
    return;
  }
  if (stats.rows_removed > 0 || stats.cols_removed > 0) {
    sink_.print(Channel::results, "LP Presolve eliminated %d rows and %d columns.\n",
                stats.rows_removed, stats.cols_removed);
  }
  if (stats.substitutions > 0) {
    sink_.print(Channel::results, "Aggregator did %d substitutions.\n", stats.substitutions);
  }
  if (reduced.num_rows == 0 && reduced.num_cols == 0) {
    sink_.send(Channel::results, "All rows and columns eliminated.\n");
  } else {
    sink_.print(Channel::results, "Reduced LP has %d rows, %d columns, and %d nonzeros.\n",
                reduced.num_rows, reduced.num_cols, reduced.columns.num_nonzeros());
  }
}

void PresolveLog::time() {
  if (settings_.display == 0) return;
  sink_.print(Channel::results, "Presolve time = %7.2f sec.\n", wall_seconds() - start_);
}

}  // namespace kelvo
