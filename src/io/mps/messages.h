// Everything the MPS reader says. Warnings go to the warning channel, the choices it made to the
// results channel, errors to the error channel.
//
// Of the kinds of warnings that a file may cause without end, the first 20 are printed; the others
// are counted, and close() says how many there were.
#pragma once

#include <string_view>

#include "base/error_code.h"
#include "base/messages.h"
#include "base/number_text.h"
#include "base/status.h"
#include "env/error_table.h"

namespace kelvo {

/// An argument as printf takes it: a text becomes a zero-terminated copy, cut at a line's length.
template <class T>
struct Printable {
  explicit Printable(T given) : value(given) {}
  T value;
};
template <>
struct Printable<std::string_view> {
  explicit Printable(std::string_view text);
  char value[560];
};

/// The kinds of warnings that are printed 20 times at most.
enum class MpsWarning {
  truncation,
  section,
  marker,
  objective_entry,
  objective_range,
  free_row,
  column_free,
  minus_infinity,
  column_fixed,
  integrality,
  sos_member,
  count
};

class MpsMessages {
 public:
  static constexpr int kMostPrinted = 20;

  /// `show_choices`: whether objective sense, objective and set names chosen are told.
  MpsMessages(MessageSink& sink, bool show_choices) : sink_(sink), show_choices_(show_choices) {}

  // Errors: the message is printed, the status says so.
  template <class... Arguments>
  Status error(int code, const Arguments&... arguments) {
    return report_error(sink_, code, Printable(arguments).value...);
  }
  Status number_error(int line, std::string_view text, const ParsedNumber& number);
  /// 1445 and 1446: names that repeat do not end the reading at once. Prints the first 20.
  void row_repeats(std::string_view name);
  void column_repeats(std::string_view name);
  /// Success when no row (column) repeated; else how many were not printed, and the failure.
  Status close_row_repeats() {
    return close_repeats(error::kRowRepeats, error::kRowRepeatsNotPrinted, row_repeats_);
  }
  Status close_column_repeats() {
    return close_repeats(error::kColumnRepeats, error::kColumnRepeatsNotPrinted, column_repeats_);
  }

  // Choices.
  void sense_specified(int sense);
  void sense_selected();
  void objective_selected(std::string_view name);
  void set_selected(const char* section, std::string_view name);
  void free_rows_deleted(int count);

  // Warnings.
  void field_truncated(int line, std::string_view kept);
  void note_empty_number() { empty_number_ = true; }
  void section_out_of_order(int line, std::string_view header);
  void section_missing(int line, const char* section);
  void objective_not_found(std::string_view name);
  void unidentified_marker(int line);
  void blank_rhs(bool column_rhs_exists);
  void objective_entry_ignored(int line, const char* section);
  void objective_range_ignored();
  void free_row_range_ignored(std::string_view row);
  void second_bound_set();
  void column_free(const char* column, std::string_view bound_set);
  void minus_infinity(const char* column, std::string_view bound_set);
  void column_fixed(const char* column, std::string_view bound_set);
  void non_integral_bound(double value, const char* column);
  void not_a_variable(int line, std::string_view name);
  void quadratic_constraints_ignored();
  void end_missing(int line);

  /// Says how many warnings of a kind were not printed.
  void close(MpsWarning kind);
  /// What is told at the end of the file.
  void close_file();

 private:
  bool allowed(MpsWarning kind) { return ++counts_[static_cast<int>(kind)] <= kMostPrinted; }
  Status close_repeats(int code, int summary_code, int count);

  MessageSink& sink_;
  bool show_choices_;
  bool empty_number_ = false;
  int row_repeats_ = 0;
  int column_repeats_ = 0;
  int counts_[static_cast<int>(MpsWarning::count)] = {};
};

}  // namespace kelvo
