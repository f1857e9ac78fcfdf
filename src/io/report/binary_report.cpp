#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "io/report/report_entries.h"

namespace kelvo {
namespace {

constexpr std::size_t kFieldSize = 8;

/// One record of 64 bytes, filled from the left.
class Record {
 public:
  Record() { std::memset(bytes_, ' ', sizeof bytes_); }
  Record& text(std::string_view text, std::size_t width = kFieldSize) {
    text.copy(bytes_ + size_, std::min(width, text.size()));
    size_ += width;
    return *this;
  }
  Record& number(double value) {
    std::memcpy(bytes_ + size_, &value, sizeof value);
    size_ += sizeof value;
    return *this;
  }
  void write(FileStream& stream) const {
    constexpr std::uint32_t kLength = sizeof bytes_;
    char frame[sizeof kLength];
    std::memcpy(frame, &kLength, sizeof kLength);
    stream.write({frame, sizeof frame});
    stream.write({bytes_, sizeof bytes_});
    stream.write({frame, sizeof frame});
  }

 private:
  char bytes_[8 * kFieldSize];
  std::size_t size_ = 0;
};

void begin_section(std::initializer_list<const char*> names, FileStream& stream) {
  Record record;
  for (const char* name : names) record.text(name);
  record.write(stream);
}

void end_section(FileStream& stream) {
  Record().text("$ENDSEC$").write(stream);
}

void write_field(const char* name, std::string_view text, FileStream& stream) {
  constexpr std::size_t kTextSize = 7 * kFieldSize;
  Record().text(name).text(text, kTextSize).write(stream);
}

template <class Number>
void write_number(const char* name, Number value, FileStream& stream) {
  char text[32];
  const char* const end = std::to_chars(text, text + sizeof text, value).ptr;
  write_field(name, {text, static_cast<std::size_t>(end - text)}, stream);
}

void write_entry(const ReportEntry& entry, FileStream& stream) {
  Record record;
  record.number(entry.activity).number(entry.second).number(entry.lower).number(entry.upper);
  record.number(entry.multiplier).number(entry.number).text(entry.status).text(entry.name);
  record.write(stream);
}

void write_head(const Problem& problem, FileStream& stream) {
  const Model& model = problem.model();
  const SolutionRecord& solution = problem.solution;
  begin_section({"HSECTION", "FIELD", "TEXT"}, stream);
  write_field("PROBLEM", model.name, stream);
  write_field("OBJECTIV", model.objective_name, stream);
  write_field("SENSE", model.sense < 0 ? "MAX" : "MIN", stream);
  write_field("STATUS", report_status(problem), stream);
  write_number("VALUE", solution.objective, stream);
  write_number("ITERATNS", solution.iterations + solution.barrier_iterations, stream);
  end_section(stream);
}

}  // namespace

void write_binary_report(const Problem& problem, const ReportTolerances& tolerances,
                         MessageSink& sink, FileStream& stream) {
  const ReportEntries entries(problem, tolerances);
  entries.tell_of_names(kFieldSize, sink);
  write_head(problem, stream);
  begin_section(
      {"RSECTION", "NUMBER", "STATUS", "ACTIVITY", "SLACK", "LLIMIT", "ULIMIT", "DUALACT"}, stream);
  write_entry(entries.objective(), stream);
  for (int i = 0; i < problem.num_rows(); ++i) write_entry(entries.row(i), stream);
  end_section(stream);
  begin_section({"CSECTION", "NUMBER", "STATUS", "ACTIVITY", "ICOST", "LLIMIT", "ULIMIT", "RCOST"},
                stream);
  for (int j = 0; j < problem.num_cols(); ++j) write_entry(entries.column(j), stream);
  end_section(stream);
}

}  // namespace kelvo
