#include "base/error_code.h"
#include "io/lp_format/reader/sections.h"

namespace kelvo {
namespace {

bool has_class(char c, unsigned classes) {
  return (lp_classes(c) & classes) != 0;
}

bool equals_ignoring_case(std::string_view text, std::string_view upper_case) {
  if (text.size() != upper_case.size()) return false;
  for (std::size_t k = 0; k < text.size(); ++k) {
    const char c = text[k];
    if ((c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c) != upper_case[k]) return false;
  }
  return true;
}

bool is_infinity(std::string_view text) {
  return equals_ignoring_case(text, "INF") || equals_ignoring_case(text, "INFINITY");
}

/// True for a text that starts like a value; any other text can only be a name.
bool is_value(std::string_view text) {
  if (text.empty()) return false;
  return has_class(text[0], kLpSign | kLpDigit) || text[0] == '.' || is_infinity(text);
}

class BoundLine {
 public:
  BoundLine(LpCollector& collector, LpDiagnostics& diagnostics)
      : collector_(collector), diagnostics_(diagnostics) {}

  Status read(std::string_view line);

 private:
  Status split(std::string_view line);
  Status read_free(std::string_view line);
  Status read_single();
  Status read_double();
  Status read_value(std::string_view text, double& value);
  Status read_name(std::string_view text, int& column);
  void add(int column, char sense, double value);

  LpCollector& collector_;
  LpDiagnostics& diagnostics_;
  int num_senses_ = 0;
  char sense_[2] = {};        // [num_senses_] 'L', 'E' or 'G'
  std::string_view part_[3];  // [num_senses_ + 1] the texts around the senses
};

/// 'L', 'E' or 'G', or 0 for a run of relation characters that is no sense.
char sense_of(std::string_view run) {
  if (run == "<" || run == "<=" || run == "=<") return 'L';
  if (run == ">" || run == ">=" || run == "=>") return 'G';
  return run == "=" ? 'E' : '\0';
}

/// Cuts the line at its senses.
Status BoundLine::split(std::string_view line) {
  std::size_t begin = 0;
  std::size_t at = 0;
  while (at < line.size()) {
    if (!has_class(line[at], kLpRelation)) {
      ++at;
      continue;
    }
    const std::size_t end_of_part = at;
    while (at < line.size() && has_class(line[at], kLpRelation)) ++at;
    const char sense = sense_of(line.substr(end_of_part, at - end_of_part));
    if (sense == '\0' || num_senses_ == 2) return diagnostics_.error(error::kBadBoundSense);
    part_[num_senses_] = line.substr(begin, end_of_part - begin);
    sense_[num_senses_++] = sense;
    begin = at;
  }
  part_[num_senses_] = line.substr(begin);
  return {};
}

Status BoundLine::read(std::string_view line) {
  KELVO_TRY(split(line));
  if (num_senses_ == 0) return read_free(line);
  return num_senses_ == 1 ? read_single() : read_double();
}

Status BoundLine::read_free(std::string_view line) {
  constexpr std::string_view kFree = "FREE";
  if (line.size() < kFree.size() ||
      !equals_ignoring_case(line.substr(line.size() - kFree.size()), kFree)) {
    return diagnostics_.error(error::kNoBoundSense);
  }
  line.remove_suffix(kFree.size());
  if (line.empty()) return diagnostics_.error(error::kExpectedNameFirst);
  int column = -1;
  KELVO_TRY(read_name(line, column));
  add(column, 'G', -kInfiniteBound);
  add(column, 'L', kInfiniteBound);
  return {};
}

Status BoundLine::read_single() {
  const bool value_first = is_value(part_[0]);
  const std::string_view name = part_[value_first ? 1 : 0];
  const std::string_view number = part_[value_first ? 0 : 1];
  if (name.empty()) return diagnostics_.error(error::kExpectedNameFirst);
  if (!value_first && !is_value(number)) return diagnostics_.error(error::kNoBoundNumber);
  double value = 0.0;
  int column = -1;
  KELVO_TRY(read_value(number, value));
  if (value_first && is_value(name)) return diagnostics_.error_found(error::kExpectedName, name[0]);
  KELVO_TRY(read_name(name, column));
  // "3 <= x" says what "x >= 3" says.
  const char sense = sense_[0];
  add(column, !value_first || sense == 'E' ? sense : sense == 'L' ? 'G' : 'L', value);
  return {};
}

Status BoundLine::read_double() {
  if (!is_value(part_[0])) return diagnostics_.error(error::kExpectedNumberFirst);
  if (part_[1].empty()) return diagnostics_.error(error::kExpectedNameFirst);
  if (part_[2].empty()) return diagnostics_.error(error::kNoBoundNumber);
  if (is_value(part_[1])) return diagnostics_.error_found(error::kExpectedName, part_[1][0]);
  if (!is_value(part_[2])) return diagnostics_.error_found(error::kExpectedNumber, part_[2][0]);
  double first = 0.0;
  double second = 0.0;
  int column = -1;
  KELVO_TRY(read_value(part_[0], first));
  KELVO_TRY(read_value(part_[2], second));
  KELVO_TRY(read_name(part_[1], column));
  if (sense_[0] != sense_[1]) diagnostics_.warn_sense_conflict();
  add(column, sense_[0] == 'E' ? 'E' : sense_[0] == 'L' ? 'G' : 'L', first);
  add(column, sense_[1], second);
  return {};
}

Status BoundLine::read_value(std::string_view text, double& value) {
  const bool has_sign = has_class(text[0], kLpSign);
  const bool negative = text[0] == '-';
  if (has_sign) text.remove_prefix(1);
  if (text.empty()) return diagnostics_.error(error::kNoBoundNumber);
  if (is_infinity(text)) {
    value = kInfiniteBound;
  } else {
    if (has_class(text[0], kLpSign))
      return diagnostics_.error_pair(error::kAdjacentSigns, diagnostics_.line);
    if (!has_class(text[0], kLpNumeric))
      return diagnostics_.error_found(error::kExpectedNumber, text[0]);
    const char* at = text.data();
    KELVO_TRY(read_lp_number(at, diagnostics_, value));
    if (at != text.data() + text.size()) return diagnostics_.error_word(error::kNotANumber, text);
  }
  if (negative) value = -value;
  return {};
}

/// Reads a part that is a name and nothing else; `column` stays -1 when it is not known.
Status BoundLine::read_name(std::string_view text, int& column) {
  if (!has_class(text[0], kLpStart)) return diagnostics_.error_found(error::kExpectedName, text[0]);
  std::size_t length = 0;
  while (length < text.size() && !has_class(text[length], kLpDelimiter)) ++length;
  if (length < text.size()) return diagnostics_.error(error::kBadBoundSense);
  if (length > kLpNameLength) {
    text = text.substr(0, kLpNameLength);
    diagnostics_.warn_truncated(text);
  }
  if (!is_lp_identifier(text)) {
    diagnostics_.warn_invalid_name(text);
  } else {
    column = find_lp_column(text, collector_, diagnostics_);
  }
  return {};
}

void BoundLine::add(int column, char sense, double value) {
  if (column < 0) return;
  collector_.add_bound(column, sense == 'E' ? 'B' : sense == 'L' ? 'U' : 'L', value);
}

}  // namespace

int find_lp_column(std::string_view name, LpCollector& collector, LpDiagnostics& diagnostics) {
  const int column = collector.find_column(name);
  if (column < 0) diagnostics.warn_unknown_name(name);
  return column;
}

Status read_lp_bound(const char* text, LpCollector& collector, LpDiagnostics& diagnostics) {
  return BoundLine(collector, diagnostics).read(text);
}

Status read_lp_types(const char* text, LpSection section, LpCollector& collector,
                     LpDiagnostics& diagnostics) {
  for (;;) {
    while ((lp_classes(*text) & (kLpBlank | kLpEnd)) == kLpBlank) ++text;
    if (has_class(*text, kLpEnd)) return {};
    if (!has_class(*text, kLpStart)) return diagnostics.error_found(error::kExpectedName, *text);
    const std::string_view name = read_lp_name(text, diagnostics);
    if (!is_lp_identifier(name)) {
      diagnostics.warn_invalid_name(name);
      continue;
    }
    const int column = find_lp_column(name, collector, diagnostics);
    if (column >= 0) collector.add_type(column, section);
  }
}

}  // namespace kelvo
