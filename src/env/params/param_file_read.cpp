#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>

#include "base/error_code.h"
#include "base/file_stream.h"
#include "base/line_reader.h"
#include "env/error_table.h"
#include "env/params/param_file.h"
#include "env/params/param_file_format.h"
#include "env/params/param_numbers.h"
#include "env/params/set_parameter.h"
#include "env/version.h"

namespace kelvo {
namespace {

constexpr int kLineLimit = 4096;
constexpr std::string_view kBlanks = " \t\r\f\v";

/// Takes the first token off a line; empty when only blanks are left.
std::string_view take_token(std::string_view& line) {
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  const std::string_view token = line.substr(0, line.find_first_of(kBlanks));
  line.remove_prefix(token.size());
  return token;
}

// std::from_chars reads the same in every locale, but knows no plus sign.
std::string_view without_plus(std::string_view token) {
  const bool plus = token.size() > 1 && token[0] == '+' && token[1] != '-';
  return plus ? token.substr(1) : token;
}

struct IntegerText {
  bool readable = false;
  bool has_fraction = false;
  int value = 0;  // the integer part, kept within the range of int
};

IntegerText read_integer(std::string_view token) {
  token = without_plus(token);
  const char* const end = token.data() + token.size();
  IntegerText result;
  const auto [rest, problem] = std::from_chars(token.data(), end, result.value);
  if (problem == std::errc::invalid_argument) return result;
  if (problem == std::errc::result_out_of_range) {
    result.value =
        token[0] == '-' ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
  }
  const bool point = rest != end && *rest == '.';
  const char* const fraction = point ? rest + 1 : rest;
  result.has_fraction = point && fraction != end;
  result.readable = (rest == end || point) &&
                    std::all_of(fraction, end, [](char c) { return c >= '0' && c <= '9'; });
  return result;
}

bool read_real(std::string_view token, double& value) {
  token = without_plus(token);
  const char* const end = token.data() + token.size();
  const auto [rest, problem] = std::from_chars(token.data(), end, value);
  return problem == std::errc() && rest == end;
}

/// A line that was accepted and waits for the end of the file.
struct PendingSetting {
  int row;  // of the parameter table
  int line;
  int integer;  // kind integer
  double real;  // kind real
  String text;  // kind text
};

class ParameterFileReader {
 public:
  ParameterFileReader(Environment& environment, const char* name)
      : environment_(environment), messages_(environment.messages()), name_(name) {}

  Status read() {
    FileStream stream;
    if (!open_input(name_, ".prm", stream).ok()) return unreadable();
    LineReader lines(stream);
    KELVO_TRY(next_line(lines));
    if (at_end_ || !read_header(lines.text())) {
      return report_error(messages_, error::kBadHeader, std::max(line_, 1));
    }
    for (;;) {
      KELVO_TRY(next_line(lines));
      if (at_end_) break;
      KELVO_TRY(read_setting(lines.text()));
    }
    return close_file(stream).ok() ? Status() : unreadable();
  }

  /// Makes the accepted lines the settings of the environment.
  Status apply() {
    Settings trial = environment_.settings();
    trial.reset_parameters();
    for (const PendingSetting& pending : pending_) {
      const Status status =
          set(pending, [&](auto number, auto value) { return assign(trial, number, value); });
      if (!status.ok()) return refuse(pending.line, status.code());
    }
    // Nothing can go wrong from here on.
    environment_.reserve_screen();
    set_default_parameters(environment_);
    for (const PendingSetting& pending : pending_) {
      const Status status = set(
          pending, [&](auto number, auto value) { return assign(environment_, number, value); });
      if (!status.ok()) return status;
    }
    return Status();
  }

 private:
  static Status assign(Settings& s, int number, int value) { return s.set_int(number, value); }
  static Status assign(Settings& s, int number, double value) {
    return s.set_double(number, value);
  }
  static Status assign(Settings& s, int number, const char* value) {
    return s.set_text(number, value);
  }
  static Status assign(Environment& e, int number, int value) {
    return set_int_parameter(e, number, value);
  }
  static Status assign(Environment& e, int number, double value) {
    return set_double_parameter(e, number, value);
  }
  static Status assign(Environment& e, int number, const char* value) {
    return set_text_parameter(e, number, value);
  }

  template <class Assign>
  static Status set(const PendingSetting& pending, Assign to) {
    const ParamRow& param = param_table()[pending.row];
    switch (param.kind) {
      case ParamKind::integer:
        return to(param.number, pending.integer);
      case ParamKind::real:
        return to(param.number, pending.real);
      case ParamKind::text:
        return to(param.number, pending.text.c_str());
      case ParamKind::none:
        break;
    }
    return Status();
  }

  Status next_line(LineReader& lines) {
    const LineReader::Outcome outcome = lines.next(kLineLimit);
    line_ = lines.line_number();
    at_end_ = outcome == LineReader::Outcome::end;
    if (outcome == LineReader::Outcome::failed) return unreadable();
    if (outcome == LineReader::Outcome::piece) {
      return report_error(messages_, error::kLineTooLong, line_, kLineLimit);
    }
    return Status();
  }

  bool read_header(std::string_view line) {
    const std::string_view header = kParameterFileHeader;
    if (!line.starts_with(header)) return false;
    line.remove_prefix(header.size());
    if (line.empty() || kBlanks.find(line[0]) == kBlanks.npos) return false;
    const std::string_view version = take_token(line);
    if (version.empty()) return false;
    if (version != kVersion) {
      messages_.print(Channel::warning,
                      "Warning:  KELVO version found in file %s (%.*s) does not match\n"
                      "          this KELVO version (%s).\n",
                      name_, static_cast<int>(version.size()), version.data(), kVersion);
    }
    return true;
  }

  Status read_setting(std::string_view line) {
    const std::string_view parameter = take_token(line);
    if (parameter.empty()) return Status();
    PendingSetting pending{-1, line_, 0, 0.0, String()};
    KELVO_TRY(find_parameter(parameter, pending.row));
    switch (param_table()[pending.row].kind) {
      case ParamKind::integer:
        KELVO_TRY(read_integer_value(take_token(line), pending));
        break;
      case ParamKind::real:
        KELVO_TRY(read_real_value(take_token(line), pending));
        break;
      case ParamKind::text:
        KELVO_TRY(read_text_value(line, pending));
        break;
      case ParamKind::none:
        break;
    }
    pending_.push_back(std::move(pending));
    return Status();
  }

  Status find_parameter(std::string_view token, int& row) {
    int number = 0;
    const char* const end = token.data() + token.size();
    const auto [rest, problem] = std::from_chars(token.data(), end, number);
    if (rest == end && problem != std::errc::invalid_argument) {
      row = problem == std::errc() ? param_row(number) : -1;
      return row >= 0 ? Status() : refuse(line_, error::kBadParameterNumber);
    }
    row = param_row_by_name(String(token).c_str());
    return row >= 0 ? Status() : refuse(line_, error::kBadParameterName);
  }

  Status read_integer_value(std::string_view token, PendingSetting& pending) {
    if (token.empty()) return no_value();
    const IntegerText text = read_integer(token);
    if (!text.readable) return not_a_number(token);
    if (text.has_fraction) {
      messages_.print(Channel::warning,
                      "Warning, line %d: non-integral value specified for integer parameter.\n",
                      line_);
    }
    pending.integer = text.value;
    return accept(environment_.settings().check_int(number_of(pending), pending.integer));
  }

  Status read_real_value(std::string_view token, PendingSetting& pending) {
    if (token.empty()) return no_value();
    if (!read_real(token, pending.real)) return not_a_number(token);
    return accept(environment_.settings().check_double(number_of(pending), pending.real));
  }

  Status read_text_value(std::string_view line, PendingSetting& pending) {
    const std::size_t open = line.find('"');
    const std::size_t close = line.rfind('"');
    if (open == line.npos || close == open) return no_value();
    const std::string_view text = line.substr(open + 1, close - open - 1);
    if (text.size() >= kParamTextSize) return refuse(line_, error::kTextParameterTooLong);
    pending.text = text;
    return Status();
  }

  static int number_of(const PendingSetting& pending) { return param_table()[pending.row].number; }

  Status accept(Status check) const { return check.ok() ? check : refuse(line_, check.code()); }

  Status no_value() const { return report_error(messages_, error::kNotEnoughEntries, line_); }

  Status not_a_number(std::string_view token) const {
    return report_error(messages_, error::kNotANumber, line_, String(token).c_str());
  }

  Status unreadable() const { return report_error(messages_, error::kCannotReadFile, name_); }

  /// Reports a code whose text has no place for the number of the line.
  Status refuse(int line, int code) const {
    messages_.print(Channel::error, "KELVO Error %5d: Line %d: %s.\n", code, line,
                    error_message(code));
    return Status::reported(code);
  }

  Environment& environment_;
  MessageSink& messages_;
  const char* const name_;
  bool at_end_ = false;
  int line_ = 0;
  Vector<PendingSetting> pending_;  // in the order of the file
};

}  // namespace

Status read_parameter_file(Environment& environment, const char* name) {
  if (name[0] == '\0') return report_error(environment.messages(), error::kNoFileName);
  ParameterFileReader reader(environment, name);
  KELVO_TRY(reader.read());
  return reader.apply();
}

}  // namespace kelvo
