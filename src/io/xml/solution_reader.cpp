#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/name_index.h"
#include "io/capped_warnings.h"
#include "io/xml/solution_file.h"
#include "io/xml/xml_parser.h"
#include "io/xml/xml_writer.h"

namespace kelvo {
namespace {

/// A name of this many characters may have been cut when it was written: each of them may have
/// taken as many as an entity.
constexpr std::size_t kLongestEntity = 6;
constexpr std::size_t kLeastCutName = kLongestXmlText / kLongestEntity - 1;

constexpr int kNoStatus = -1;

std::string_view trimmed(std::string_view text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

template <class T>
bool to_number(std::string_view text, T& value) {
  text = trimmed(text);
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end;
}

int to_status(std::string_view text) {
  if (text == "LL") return kAtLower;
  if (text == "BS") return kBasic;
  if (text == "UL") return kAtUpper;
  return text == "SB" ? kFreeSuper : kNoStatus;
}

/// The attributes of a constraint or variable; views into the parser's memory.
struct Entry {
  std::string_view name;
  bool named = false;
  int index = -1;
  int status = kNoStatus;
  double value = ReadSolution::kNotGiven;  // slack of a constraint
  double dual = ReadSolution::kNotGiven;   // reduced cost of a variable
};

/// Warnings of one kind of thing, each kind of warning capped.
struct Warnings {
  Warnings(MessageSink& sink, bool of_variables)
      : unknown(sink), out_of_range(sink), repeated_name(sink), repeated_index(sink) {
    unknown_text = of_variables ? "Warning, line %d: '%.255s' is not a variable.\n"
                                : "Warning, line %d: '%.255s' is not a constraint.\n";
    out_of_range_text = of_variables ? "Warning, line %d: Variable index '%d' out of range.\n"
                                     : "Warning, line %d: Constraint index '%d' out of range.\n";
    repeated_index_text = of_variables ? "Warning, line %d: repeated entry for variable index %d.\n"
                                       : "Warning, line %d: repeated entry for index %d.\n";
  }
  void close() {
    for (CappedWarnings* kind : {&unknown, &out_of_range, &repeated_name, &repeated_index}) {
      kind->close();
    }
  }

  const char* unknown_text;
  const char* out_of_range_text;
  const char* repeated_index_text;
  CappedWarnings unknown, out_of_range, repeated_name, repeated_index;
};

/// Finds rows or columns of a model by what a file says about them.
class Matcher {
 public:
  Matcher(const NameStore& names, int count, MessageSink& sink, bool of_variables)
      : names_(names), count_(count), seen_(count, 0), warnings_(sink, of_variables) {}

  /// A new solution begins: nothing has been seen.
  void restart() { ++round_; }
  /// The row or column of an entry, or -1 with a warning.
  int find(const Entry& entry, const XmlParser& parser) {
    const bool by_name = entry.named && names_.present();
    const int found = by_name ? find_name(entry) : entry.index;
    if (by_name ? found < 0 : found < 0 || found >= count_) {
      if (by_name) {
        warnings_.unknown.warn(warnings_.unknown_text, parser.line(), entry.name);
      } else {
        warnings_.out_of_range.warn(warnings_.out_of_range_text, parser.line(), entry.index);
      }
      return -1;
    }
    if (seen_[found] == round_) {
      if (by_name) {
        warnings_.repeated_name.warn("Warning, line %d: repeated entry for '%.255s'.\n",
                                     parser.line(), entry.name);
      } else {
        warnings_.repeated_index.warn(warnings_.repeated_index_text, parser.line(), found);
      }
      return -1;
    }
    seen_[found] = round_;
    return found;
  }
  void close() { warnings_.close(); }

 private:
  /// The index is right in files that were written for the same model; it also tells equal names
  /// and names that were cut apart.
  int find_name(const Entry& entry) {
    const bool indexed = entry.index >= 0 && entry.index < count_;
    if (indexed && names_.view(entry.index) == entry.name) return entry.index;
    if (lookup_.size() == 0) lookup_.build(names_, count_);
    const int found = lookup_.find(entry.name, names_);
    if (found >= 0 || !indexed || entry.name.size() < kLeastCutName) return found;
    return names_.view(entry.index).substr(0, entry.name.size()) == entry.name ? entry.index : -1;
  }

  const NameStore& names_;
  const int count_;
  Vector<int> seen_;  // [count] the last round in which each was seen
  int round_ = 0;
  NameIndex lookup_;  // built when the first index does not tell
  Warnings warnings_;
};

enum class Kind { solution, starts };

/// Follows the elements of a file and collects its solutions.
class SolutionReader final : public XmlHandler {
 public:
  SolutionReader(const Model& model, Kind kind, MessageSink& sink)
      : model_(model),
        kind_(kind),
        sink_(sink),
        parser_(*this),
        columns_(model.col_names, model.num_cols, sink, true),
        rows_(model.row_names, model.num_rows, sink, false),
        wrong_numbers_(sink) {}

  template <class Source>
  Status read(Source& source) {
    KELVO_TRY(parser_.parse(source, sink_));
    columns_.close();
    rows_.close();
    wrong_numbers_.close();
    return {};
  }
  ReadSolution& solution() { return current_; }
  Vector<MipStart>& starts() { return starts_; }

  void begin(std::string_view element, const XmlAttributes& attributes) override;
  void end(std::string_view element) override;

 private:
  void begin_solution();
  void read_header(const XmlAttributes& attributes);
  Entry read_entry(const XmlAttributes& attributes);
  void read_number(std::string_view text, double& value);
  void read_variable(const XmlAttributes& attributes);
  void read_constraint(const XmlAttributes& attributes);

  const Model& model_;
  const Kind kind_;
  MessageSink& sink_;
  XmlParser parser_;
  Matcher columns_;
  Matcher rows_;
  CappedWarnings wrong_numbers_;

  int depth_ = 0;             // elements open
  int solution_depth_ = 0;    // 0 outside of a solution
  int other_rows_depth_ = 0;  // 0 outside of a list of other constraints than rows
  int solutions_ = 0;         // begun so far
  bool warned_ = false;       // of a second solution
  String scratch_;
  String name_;  // of the entry read last, where it had to be converted
  ReadSolution current_;
  Vector<MipStart> starts_;
};

void SolutionReader::begin(std::string_view element, const XmlAttributes& attributes) {
  ++depth_;
  if (solution_depth_ == 0) {
    if (element != "KELVOSolution") return;
    if (kind_ == Kind::solution && solutions_ > 0) {
      if (!warned_) {
        sink_.send(Channel::warning,
                   "Warning: more than one KELVOSolution element in file, only first one "
                   "processed.\n");
      }
      warned_ = true;
      return;
    }
    begin_solution();
    return;
  }
  if (element == "variable") {
    read_variable(attributes);
  } else if (element == "constraint") {
    if (kind_ == Kind::solution && other_rows_depth_ == 0) read_constraint(attributes);
  } else if (element == "header") {
    read_header(attributes);
  } else if (other_rows_depth_ == 0 &&
             (element == "quadraticConstraints" || element == "indicatorConstraints")) {
    other_rows_depth_ = depth_;
  }
}

void SolutionReader::end(std::string_view) {
  if (depth_ == other_rows_depth_) other_rows_depth_ = 0;
  if (depth_ == solution_depth_) {
    solution_depth_ = 0;
    if (kind_ == Kind::starts && current_.start.size() > 0) {
      starts_.push_back(std::move(current_.start));
    }
  }
  --depth_;
}

void SolutionReader::begin_solution() {
  solution_depth_ = depth_;
  ++solutions_;
  columns_.restart();
  rows_.restart();
  current_ = ReadSolution();
  if (kind_ == Kind::starts) return;
  current_.col_status.assign(model_.num_cols, kNoStatus);
  current_.row_status.assign(model_.num_rows, kNoStatus);
  current_.reduced_cost.assign(model_.num_cols, ReadSolution::kNotGiven);
  current_.slack.assign(model_.num_rows, ReadSolution::kNotGiven);
  current_.dual.assign(model_.num_rows, ReadSolution::kNotGiven);
}

void SolutionReader::read_header(const XmlAttributes& attributes) {
  for (int k = 0; k < attributes.size(); ++k) {
    const std::string_view name = attributes.name(k);
    if (name == "solutionName") {
      current_.start.name = attributes.value(k, scratch_);
    } else if (name == "MIPStartEffortLevel" && kind_ == Kind::starts) {
      const std::string_view text = attributes.value(k, scratch_);
      int effort = kEffortAutomatic;
      if (to_number(text, effort) && effort >= kEffortAutomatic) {
        current_.start.effort = effort;
      } else {
        wrong_numbers_.warn("Warning, line %d: '%.255s' is not an effort level.\n", parser_.line(),
                            text);
      }
    }
  }
}

void SolutionReader::read_number(std::string_view text, double& value) {
  double number = 0.0;
  if (to_number(text, number) && std::isfinite(number)) {
    value = number;
  } else {
    wrong_numbers_.warn("Warning, line %d: '%.255s' is not a number.\n", parser_.line(), text);
  }
}

Entry SolutionReader::read_entry(const XmlAttributes& attributes) {
  Entry entry;
  for (int k = 0; k < attributes.size(); ++k) {
    const std::string_view name = attributes.name(k);
    if (name == "name") {
      entry.name = attributes.value(k, name_);
      entry.named = true;
      continue;
    }
    const std::string_view text = attributes.value(k, scratch_);
    if (name == "index") {
      if (!to_number(text, entry.index)) entry.index = -1;
    } else if (name == "status") {
      entry.status = to_status(text);
    } else if (name == "value" || name == "slack") {
      read_number(text, entry.value);
    } else if (name == "dual" || name == "reducedCost") {
      read_number(text, entry.dual);
    }
  }
  return entry;
}

void SolutionReader::read_variable(const XmlAttributes& attributes) {
  const Entry entry = read_entry(attributes);
  const int j = columns_.find(entry, parser_);
  if (j < 0) return;
  if (!std::isnan(entry.value)) {
    MipStart& start = current_.start;
    start.column.push_back(j);
    start.value.push_back(entry.value);
  }
  if (kind_ == Kind::starts) return;
  current_.col_status[j] = entry.status;
  current_.reduced_cost[j] = entry.dual;
}

void SolutionReader::read_constraint(const XmlAttributes& attributes) {
  const Entry entry = read_entry(attributes);
  const int i = rows_.find(entry, parser_);
  if (i < 0) return;
  current_.row_status[i] = entry.status;
  current_.slack[i] = entry.value;
  current_.dual[i] = entry.dual;
}

template <class Source>
Status read_one(Source& source, const Model& model, MessageSink& sink, ReadSolution& read) {
  SolutionReader reader(model, Kind::solution, sink);
  KELVO_TRY(reader.read(source));
  read = std::move(reader.solution());
  return {};
}

template <class Source>
Status read_starts(Source& source, const Model& model, MessageSink& sink,
                   Vector<MipStart>& starts) {
  SolutionReader reader(model, Kind::starts, sink);
  KELVO_TRY(reader.read(source));
  starts = std::move(reader.starts());
  return {};
}

}  // namespace

bool ReadSolution::has_basis() const {
  const auto given = [](int status) { return status != kNoStatus; };
  return !(col_status.empty() && row_status.empty()) &&
         std::all_of(col_status.begin(), col_status.end(), given) &&
         std::all_of(row_status.begin(), row_status.end(), given);
}

Status read_solution(FileStream& stream, const Model& model, MessageSink& sink,
                     ReadSolution& read) {
  return read_one(stream, model, sink, read);
}

Status read_solution(std::string_view text, const Model& model, MessageSink& sink,
                     ReadSolution& read) {
  return read_one(text, model, sink, read);
}

Status read_mip_starts(FileStream& stream, const Model& model, MessageSink& sink,
                       Vector<MipStart>& starts) {
  return read_starts(stream, model, sink, starts);
}

Status read_mip_starts(std::string_view text, const Model& model, MessageSink& sink,
                       Vector<MipStart>& starts) {
  return read_starts(text, model, sink, starts);
}

}  // namespace kelvo
