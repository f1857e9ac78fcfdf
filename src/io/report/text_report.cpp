#include <algorithm>
#include <charconv>

#include "io/report/report_entries.h"

namespace kelvo {
namespace {

constexpr int kLongestName = 16;

struct NumberText {
  char text[32];
};

/// Seven significant digits as printf's %G writes them, whatever the locale; -0 is 0.
NumberText number_text(double value) {
  constexpr int kDigits = 7;
  NumberText number;
  char* const end = std::to_chars(number.text, number.text + sizeof number.text - 1, value + 0.0,
                                  std::chars_format::general, kDigits)
                        .ptr;
  std::replace(number.text, end, 'e', 'E');
  *end = '\0';
  return number;
}

NumberText limit_text(double limit) {
  if (limit == kNoLowerLimit || limit == kNoUpperLimit) return {"NONE"};
  return number_text(limit);
}

void print_entry(const ReportEntry& entry, FileStream& stream) {
  stream.print(" %c%6d  %-16.16s %2s%16s%16s%16s%16s%16s\n", entry.marker, entry.number, entry.name,
               entry.status, number_text(entry.activity).text, number_text(entry.second).text,
               limit_text(entry.lower).text, limit_text(entry.upper).text,
               number_text(entry.multiplier).text);
}

void print_head(const Problem& problem, FileStream& stream) {
  const Model& model = problem.model();
  const SolutionRecord& solution = problem.solution;
  stream.print(" PROBLEM NAME     %-30.255s\n", model.name.c_str());
  stream.print(" DATA    NAME     %-20.255s\n", "");
  stream.print(" OBJECTIVE VALUE  %-14s\n", number_text(solution.objective).text);
  stream.print(" STATUS           %-16s \n", report_status(problem));
  stream.print(" ITERATION        %-5d\n", solution.iterations + solution.barrier_iterations);
  stream.print("\n OBJECTIVE        %-20.255s (%3s)\n", model.objective_name.c_str(),
               model.sense < 0 ? "MAX" : "MIN");
  for (const char* set : {"RHS   ", "RANGES", "BOUNDS"}) {
    stream.print(" %s           %-20.255s\n", set, "");
  }
  stream.write("\n");
}

struct SectionTitles {
  const char* title;
  const char* names;
  const char* second;
  const char* multiplier;
};
constexpr SectionTitles kRows = {"1 - ROWS", "......ROW.......", "SLACK ACTIVITY",
                                 ".DUAL ACTIVITY"};
constexpr SectionTitles kColumns = {"2 - COLUMNS", ".....COLUMN.....", "..INPUT COST..",
                                    ".REDUCED COST."};

void print_titles(const SectionTitles& titles, FileStream& stream) {
  stream.print(" SECTION %s\n\n", titles.title);
  stream.print("  %s  %s %s  %s  %s  %s  %s  %s\n\n", "NUMBER", titles.names, "AT",
               "...ACTIVITY...", titles.second, "..LOWER LIMIT.", "..UPPER LIMIT.",
               titles.multiplier);
}

}  // namespace

void write_text_report(const Problem& problem, const ReportTolerances& tolerances,
                       MessageSink& sink, FileStream& stream) {
  const ReportEntries entries(problem, tolerances);
  entries.tell_of_names(kLongestName, sink);
  print_head(problem, stream);
  print_titles(kRows, stream);
  print_entry(entries.objective(), stream);
  for (int i = 0; i < problem.num_rows(); ++i) print_entry(entries.row(i), stream);
  stream.write("\n");
  print_titles(kColumns, stream);
  for (int j = 0; j < problem.num_cols(); ++j) print_entry(entries.column(j), stream);
  stream.write("\n");
}

}  // namespace kelvo
