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

enum Kind { kNone = 0, kInteger = 1, kReal = 2, kText = 3 };

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
  int kind = kNone;
  if (KLVgetparamtype(session.env(), number, &kind) != 0) {
    session.take_errors();
    return kNone;
  }
  return kind;
}

/// One parameter's row in the list: its value, default and bounds as texts.
struct Row {
  const char* type = "";
  std::string value, standard, bounds;
};

std::string bounds_text(const std::string& smallest, const std::string& largest) {
  return smallest == largest ? "any" : smallest + " .. " + largest;
}

Row row_of(Session& session, int number, int kind) {
  KLVenv env = session.env();
  Row row;
  if (kind == kInteger) {
    int value = 0, standard = 0, smallest = 0, largest = 0;
    session.check(KLVgetintparam(env, number, &value), "cannot read a parameter");
    session.check(KLVinfointparam(env, number, &standard, &smallest, &largest),
                  "cannot read a parameter");
    row = {"int", std::to_string(value), std::to_string(standard),
           bounds_text(std::to_string(smallest), std::to_string(largest))};
  } else if (kind == kReal) {
    double value = 0, standard = 0, smallest = 0, largest = 0;
    session.check(KLVgetdblparam(env, number, &value), "cannot read a parameter");
    session.check(KLVinfodblparam(env, number, &standard, &smallest, &largest),
                  "cannot read a parameter");
    row = {"double", number_text(value), number_text(standard),
           bounds_text(number_text(smallest), number_text(largest))};
  } else {
    char value[kTextLength] = "", standard[kTextLength] = "";
    session.check(KLVgetstrparam(env, number, value), "cannot read a parameter");
    session.check(KLVinfostrparam(env, number, standard), "cannot read a parameter");
    row = {"string", '"' + std::string(value) + '"', '"' + std::string(standard) + '"', "any"};
  }
  return row;
}

bool fits(const std::string& name, const std::string& pattern) {
  if (pattern.find_first_of("*?") == std::string::npos)
    return name.find(pattern) != std::string::npos;
  return fnmatch(pattern.c_str(), name.c_str(), 0) == 0 ||
         fnmatch(pattern.c_str(), name.c_str() + std::char_traits<char>::length(kPrefix), 0) == 0;
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

}  // namespace

void apply_setting(Session& session, const std::string& setting) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string::npos) throw Failure("--set needs NAME=VALUE, not '" + setting + "'");
  const std::string name = setting.substr(0, equals);
  const std::string value = setting.substr(equals + 1);
  const int number = number_of(session, name);
  int status = 0;
  switch (kind_of(session, number)) {
    case kInteger:
      status = KLVsetintparam(session.env(), number, to_integer(name, value));
      break;
    case kReal:
      status = KLVsetdblparam(session.env(), number, to_real(name, value));
      break;
    default:
      if (value.size() >= kTextLength) throw Failure(name + ": the text is too long");
      status = KLVsetstrparam(session.env(), number, value.c_str());
  }
  session.check(status, "cannot set " + name + " to " + value);
}

void set_integer(Session& session, const char* name, int value) {
  session.check(KLVsetintparam(session.env(), number_of(session, name), value),
                std::string("cannot set ") + name + " to " + std::to_string(value));
}

void set_at_most(Session& session, const char* name, int value) {
  int largest = value;
  session.check(
      KLVinfointparam(session.env(), number_of(session, name), nullptr, nullptr, &largest),
      "cannot read a parameter");
  set_integer(session, name, std::min(value, largest));
}

void set_real(Session& session, const char* name, double value) {
  session.check(KLVsetdblparam(session.env(), number_of(session, name), value),
                std::string("cannot set ") + name + " to " + number_text(value));
}

void list_parameters(Session& session, const std::string& pattern) {
  const std::string wanted = upper_case(pattern);
  bool any = false;
  for (int number = kFirstNumber; number <= kLastNumber; ++number) {
    const int kind = kind_of(session, number);
    if (kind == kNone) continue;
    char name[kTextLength] = "";
    session.check(KLVgetparamname(session.env(), number, name), "cannot read a parameter");
    if (name[0] == '\0' || !fits(name, wanted)) continue;
    if (!any)
      std::printf("%-32s %6s %-6s %12s %12s  %s\n", "name", "number", "type", "value", "default",
                  "bounds");
    any = true;
    const Row row = row_of(session, number, kind);
    std::printf("%-32s %6d %-6s %12s %12s  %s\n", name, number, row.type, row.value.c_str(),
                row.standard.c_str(), row.bounds.c_str());
  }
  if (!any) throw Failure("no parameter fits '" + pattern + "'");
}

}  // namespace kelvo::command
