#include "parameters.h"

#include <fnmatch.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <limits>

#include "failure.h"

namespace kelvo::command {
namespace {

constexpr const char* kPrefix = "KLV_PARAM_";
constexpr int kFirstNumber = 1001;
constexpr int kLastNumber = 5999;
constexpr int kTextLength = 512;  // of a name or a text value, as the library promises

constexpr const char* kCannotRead = "cannot read a parameter";

std::string upper_case(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

std::string number_text(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.10g", value);
  return buffer;
}

int number_of(Session& session, const std::string& name) {
  std::string full = upper_case(name);
  if (full.rfind(kPrefix, 0) != 0) full = kPrefix + full;
  int number = -1;
  const int status = KLVgetparamnum(session.env(), full.c_str(), &number);
  if (status != 0) {
    session.take_errors();
    throw Failure("no parameter '" + name + "' (kelvo params lists them)");
  }
  return number;
}

int kind_of(Session& session, int number) {
  int kind = KLV_PARAMTYPE_NONE;
  if (KLVgetparamtype(session.env(), number, &kind) != 0) {
    session.take_errors();
    return KLV_PARAMTYPE_NONE;
  }
  return kind;
}

/// Smallest and largest value as a range; limits that mean "no limit" are left open.
std::string range_text(const std::string& smallest, const std::string& largest, bool no_largest) {
  if (smallest == largest) return "any";
  return no_largest ? ">= " + smallest : smallest + " .. " + largest;
}

/// What the list says of a parameter.
struct Row {
  std::string name, value, standard, range, meaning;
  bool changed() const { return value != standard; }
};

void read_integer(Session& session, int number, Row& row) {
  int value = 0, standard = 0, smallest = 0, largest = 0;
  session.check(KLVgetintparam(session.env(), number, &value), kCannotRead);
  session.check(KLVinfointparam(session.env(), number, &standard, &smallest, &largest),
                kCannotRead);
  row.value = std::to_string(value);
  row.standard = std::to_string(standard);
  row.range =
      range_text(std::to_string(smallest), std::to_string(largest), largest >= KLV_NO_COUNT_LIMIT);
}

void read_real(Session& session, int number, Row& row) {
  double value = 0, standard = 0, smallest = 0, largest = 0;
  session.check(KLVgetdblparam(session.env(), number, &value), kCannotRead);
  session.check(KLVinfodblparam(session.env(), number, &standard, &smallest, &largest),
                kCannotRead);
  row.value = number_text(value);
  row.standard = number_text(standard);
  row.range = range_text(number_text(smallest), number_text(largest), largest >= KLV_NO_LIMIT);
}

void read_text(Session& session, int number, Row& row) {
  char value[kTextLength] = "", standard[kTextLength] = "";
  session.check(KLVgetstrparam(session.env(), number, value), kCannotRead);
  session.check(KLVinfostrparam(session.env(), number, standard), kCannotRead);
  row.value = '"' + std::string(value) + '"';
  row.standard = '"' + std::string(standard) + '"';
  row.range = "text";
}

Row row_of(Session& session, int number) {
  Row row;
  switch (kind_of(session, number)) {
    case KLV_PARAMTYPE_INT:
      read_integer(session, number, row);
      break;
    case KLV_PARAMTYPE_DOUBLE:
      read_real(session, number, row);
      break;
    default:
      read_text(session, number, row);
  }
  return row;
}

/// True for the public parameters of this version that have an effect, and for all with `every`;
/// fills in name and meaning.
bool is_listed(Session& session, int number, bool every, Row& row) {
  if (kind_of(session, number) == KLV_PARAMTYPE_NONE) return false;
  char name[kTextLength] = "", meaning[kTextLength] = "";
  int has_effect = 0;
  session.check(KLVgetparamname(session.env(), number, name), kCannotRead);
  session.check(KLVgetparammeaning(session.env(), number, meaning, &has_effect), kCannotRead);
  if (name[0] == '\0') return false;
  row.name = name + std::char_traits<char>::length(kPrefix);
  row.meaning = meaning;
  if (has_effect == 0) row.meaning += " (no effect in this version)";
  return every || has_effect != 0;
}

/// A pattern with * and ? is one of the whole name, any other text a part of name or meaning.
bool fits(const Row& row, std::string pattern) {
  pattern = upper_case(pattern);
  if (pattern.rfind(kPrefix, 0) == 0) pattern.erase(0, std::char_traits<char>::length(kPrefix));
  if (pattern.find_first_of("*?") != std::string::npos) {
    return fnmatch(pattern.c_str(), row.name.c_str(), 0) == 0;
  }
  return row.name.find(pattern) != std::string::npos ||
         upper_case(row.meaning).find(pattern) != std::string::npos;
}

/// Columns as wide as their longest entry.
void print_rows(const std::vector<Row>& rows) {
  const Row title{"name", "value", "", "range", "meaning"};
  std::size_t name = title.name.size(), value = title.value.size(), range = title.range.size();
  for (const Row& row : rows) {
    name = std::max(name, row.name.size());
    value = std::max(value, row.value.size());
    range = std::max(range, row.range.size());
  }
  const auto print = [&](const Row& row) {
    std::printf("%-*s  %-*s  %-*s  %s", static_cast<int>(name), row.name.c_str(),
                static_cast<int>(value), row.value.c_str(), static_cast<int>(range),
                row.range.c_str(), row.meaning.c_str());
  };
  print(title);
  std::printf("\n");
  for (const Row& row : rows) {
    print(row);
    if (row.changed()) std::printf(" [default %s]", row.standard.c_str());
    std::printf("\n");
  }
}

/// The whole text as a number, or a Failure that names the parameter.
double to_real(const std::string& name, const std::string& text) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') throw Failure(name + ": '" + text + "' is not a number");
  return value;
}

int to_integer(const std::string& name, const std::string& text) {
  char* end = nullptr;
  errno = 0;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0') throw Failure(name + ": '" + text + "' is not an integer");
  if (errno == ERANGE || value > std::numeric_limits<int>::max() ||
      value < std::numeric_limits<int>::min()) {
    throw Failure(name + ": " + text + " is too large for an integer");
  }
  return static_cast<int>(value);
}

void apply_setting(Session& session, const std::string& setting) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos) throw Failure("--set needs NAME=VALUE, not '" + setting + "'");
  const std::string name = setting.substr(0, equals);
  const std::string value = setting.substr(equals + 1);
  const int number = number_of(session, name);
  int status = 0;
  switch (kind_of(session, number)) {
    case KLV_PARAMTYPE_INT:
      status = KLVsetintparam(session.env(), number, to_integer(name, value));
      break;
    case KLV_PARAMTYPE_DOUBLE:
      status = KLVsetdblparam(session.env(), number, to_real(name, value));
      break;
    default:
      if (value.size() >= kTextLength) throw Failure(name + ": the text is too long");
      status = KLVsetstrparam(session.env(), number, value.c_str());
  }
  if (status == KLV_ERROR_PARAMETER_TOO_SMALL || status == KLV_ERROR_PARAMETER_TOO_BIG) {
    session.take_errors();
    throw Failure("cannot set " + name + " to " + value + ": its range is " +
                  row_of(session, number).range);
  }
  session.check(status, "cannot set " + name + " to " + value);
}

}  // namespace

void read_parameters(Session& session, const std::string& file,
                     const std::vector<std::string>& settings) {
  if (!file.empty()) {
    session.check(KLVreadcopyparam(session.env(), file.c_str()), "cannot read " + file);
  }
  for (const std::string& setting : settings) apply_setting(session, setting);
}

void set_integer(Session& session, const char* name, int value) {
  session.check(KLVsetintparam(session.env(), number_of(session, name), value),
                std::string("cannot set ") + name + " to " + std::to_string(value));
}

void set_at_most(Session& session, const char* name, int value) {
  int largest = value;
  session.check(
      KLVinfointparam(session.env(), number_of(session, name), nullptr, nullptr, &largest),
      kCannotRead);
  set_integer(session, name, std::min(value, largest));
}

void set_real(Session& session, const char* name, double value) {
  session.check(KLVsetdblparam(session.env(), number_of(session, name), value),
                std::string("cannot set ") + name + " to " + number_text(value));
}

void list_parameters(Session& session, const ParameterList& list) {
  std::vector<Row> rows;
  for (int number = kFirstNumber; number <= kLastNumber; ++number) {
    Row row;
    if (!is_listed(session, number, list.every || list.changed, row) || !fits(row, list.pattern)) {
      continue;
    }
    const Row numbers = row_of(session, number);
    row.value = numbers.value;
    row.standard = numbers.standard;
    row.range = numbers.range;
    if (!list.changed || row.changed()) rows.push_back(row);
  }
  if (!rows.empty()) return print_rows(rows);
  if (list.changed && list.pattern.empty()) {
    std::printf("All parameters have their defaults.\n");
  } else {
    throw Failure("no parameter fits '" + list.pattern +
                  (list.every ? "'" : "' (--all looks at those without effect, too)"));
  }
}

}  // namespace kelvo::command
