#include "io/mps/messages.h"

#include <algorithm>
#include <cstring>

namespace kelvo {
namespace {

constexpr const char* kNotPrinted[static_cast<int>(MpsWarning::count)] = {
    "%d truncation warning messages not printed.\n",
    "%d section warnings not printed.\n",
    "%d MARKER warnings not printed.\n",
    "%d OBJ warnings not printed.\n",
    "%d warnings not printed.\n",
    "%d warnings not printed.\n",
    "%d Column-free warnings not printed.\n",
    "%d Minus-infinity warnings not printed.\n",
    "%d Column-fixed warnings not printed.\n",
    "%d Bound-integrality warnings not printed.\n",
    "%d warnings not printed.\n",
};

}  // namespace

Printable<std::string_view>::Printable(std::string_view text) {
  const std::size_t length = std::min(text.size(), sizeof(value) - 1);
  if (length > 0) std::memcpy(value, text.data(), length);
  value[length] = '\0';
}

using Text = Printable<std::string_view>;

Status MpsMessages::number_error(int line, std::string_view text, const ParsedNumber& number) {
  if (number.fault == NumberFault::trailing_characters)
    return error(error::kNotANumber, line, text);
  const std::string_view exponent =
      text.substr(static_cast<std::size_t>(number.exponent - text.data()));
  if (number.fault == NumberFault::exponent_too_large)
    return error(error::kExponentOutOfRange, line, exponent);
  const bool started = number.fault != NumberFault::exponent_not_started;
  return error(error::kExponentIncomplete, line, exponent, started ? "ended" : "started");
}

void MpsMessages::row_repeats(std::string_view name) {
  if (++row_repeats_ <= kMostPrinted) static_cast<void>(error(error::kRowRepeats, name));
}

void MpsMessages::column_repeats(std::string_view name) {
  if (++column_repeats_ <= kMostPrinted) static_cast<void>(error(error::kColumnRepeats, name));
}

Status MpsMessages::close_repeats(int code, int summary_code, int count) {
  if (count == 0) return {};
  if (count > kMostPrinted) static_cast<void>(error(summary_code, count - kMostPrinted));
  return Status::reported(code);
}

void MpsMessages::sense_specified(int sense) {
  if (!show_choices_) return;
  sink_.send(Channel::results, sense < 0 ? "Specified objective sense: MAXIMIZE\n"
                                         : "Specified objective sense: MINIMIZE\n");
}

void MpsMessages::sense_selected() {
  if (show_choices_) sink_.send(Channel::results, "Selected objective sense:  MINIMIZE\n");
}

void MpsMessages::objective_selected(std::string_view name) {
  if (!show_choices_) return;
  sink_.print(Channel::results, "Selected objective  name:  %.255s", Text(name).value);
  sink_.send(Channel::results, "\n");
}

void MpsMessages::set_selected(const char* section, std::string_view name) {
  if (!show_choices_) return;
  sink_.print(Channel::results, "Selected %-10s name:  %.255s\n", section, Text(name).value);
}

void MpsMessages::free_rows_deleted(int count) {
  if (!show_choices_ || count == 0) return;
  if (count == 1) {
    sink_.send(Channel::results, "  [1 free row deleted]\n");
  } else {
    sink_.print(Channel::results, "  [%d free rows deleted]\n", count);
  }
}

void MpsMessages::field_truncated(int line, std::string_view kept) {
  if (!allowed(MpsWarning::truncation)) return;
  sink_.print(Channel::warning, "Warning, line %d:  '%s' truncated.\n", line, Text(kept).value);
}

void MpsMessages::section_out_of_order(int line, std::string_view header) {
  if (!allowed(MpsWarning::section)) return;
  sink_.print(Channel::warning, "Warning, line %d:  %s section illegal or out of order.\n", line,
              Text(header).value);
}

void MpsMessages::section_missing(int line, const char* section) {
  sink_.print(Channel::warning, "Warning, line %d:  %s section missing or ", line, section);
  sink_.send(Channel::warning, "out of order.\n");
}

void MpsMessages::objective_not_found(std::string_view name) {
  sink_.print(Channel::warning, "Warning:  Specified objective '%.255s' not found.\n",
              Text(name).value);
}

void MpsMessages::unidentified_marker(int line) {
  if (!allowed(MpsWarning::marker)) return;
  sink_.print(Channel::warning, "Line %d:  Unidentified MARKER found. Ignored.\n", line);
}

void MpsMessages::blank_rhs(bool column_rhs_exists) {
  if (!column_rhs_exists) {
    sink_.send(Channel::warning, "Warning:  Blank RHS name changed to 'rhs'.\n");
    return;
  }
  sink_.send(Channel::warning, "Warning:  Blank RHS name unchanged.  Column with ");
  sink_.send(Channel::warning, "name 'rhs' already exists.\n");
}

void MpsMessages::objective_entry_ignored(int line, const char* section) {
  if (!allowed(MpsWarning::objective_entry)) return;
  sink_.print(Channel::warning, "Warning, line %d:  OBJ coefficient in %s section ignored.\n", line,
              section);
}

void MpsMessages::objective_range_ignored() {
  if (!allowed(MpsWarning::objective_range)) return;
  sink_.print(Channel::warning, "Warning:  Objective coefficient in %s section ignored.\n",
              "RANGES");
}

void MpsMessages::free_row_range_ignored(std::string_view row) {
  if (!allowed(MpsWarning::free_row)) return;
  sink_.print(Channel::warning, "Warning:  %s '%.255s' value for free row '%.255s' ignored.\n",
              "RANGES", "range", Text(row).value);
}

void MpsMessages::second_bound_set() {
  sink_.send(Channel::warning, "Warning:  More than one bound set specified. ");
  sink_.send(Channel::warning, "Only the first set is used.\n");
}

void MpsMessages::column_free(const char* column, std::string_view bound_set) {
  if (!allowed(MpsWarning::column_free)) return;
  sink_.print(Channel::warning, "Warning:  Column '%s' in bound '%s' is Free.\n", column,
              Text(bound_set).value);
}

void MpsMessages::minus_infinity(const char* column, std::string_view bound_set) {
  if (!allowed(MpsWarning::minus_infinity)) return;
  sink_.print(Channel::warning, "Warning:  Lower bound on column '%s' in bound '%s'\n", column,
              Text(bound_set).value);
  sink_.send(Channel::warning, "          changed to minus infinity.\n");
}

void MpsMessages::column_fixed(const char* column, std::string_view bound_set) {
  if (!allowed(MpsWarning::column_fixed)) return;
  sink_.print(Channel::warning, "Warning:  Column '%s' in bound '%s' is Fixed.\n", column,
              Text(bound_set).value);
}

void MpsMessages::non_integral_bound(double value, const char* column) {
  if (!allowed(MpsWarning::integrality)) return;
  sink_.print(Channel::warning,
              "Warning:  Non-integral bound value %g for integer column '%.255s'.\n", value,
              column);
}

void MpsMessages::not_a_variable(int line, std::string_view name) {
  if (!allowed(MpsWarning::sos_member)) return;
  sink_.print(Channel::warning, "Warning, line %d: '%.255s' is not a variable.\n", line,
              Text(name).value);
}

void MpsMessages::quadratic_constraints_ignored() {
  sink_.send(Channel::warning, "Warning:  Quadratic constraints ignored.\n");
}

void MpsMessages::end_missing(int line) {
  sink_.print(Channel::warning, "Warning, line %d:  'ENDATA' missing.\n", line);
}

void MpsMessages::close(MpsWarning kind) {
  const int rest = counts_[static_cast<int>(kind)] - kMostPrinted;
  if (rest > 0) sink_.print(Channel::warning, kNotPrinted[static_cast<int>(kind)], rest);
}

void MpsMessages::close_file() {
  if (empty_number_) {
    sink_.send(Channel::warning, "Warning:  Empty numeric fields read as zeros.\n");
  }
  close(MpsWarning::section);
  close(MpsWarning::marker);
  close(MpsWarning::truncation);
}

}  // namespace kelvo
