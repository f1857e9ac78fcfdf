// Everything the MPS reader says. Warnings go to the warning channel, the choices it made to the
// results channel, errors to the error channel.
//
// Of the kinds of warnings that a file may cause without end, the first 20 are printed; the others
// are counted, and close() says how many there were.
#pragma once

#include <string_view>

#include "base/messages.h"
#include "base/number_text.h"
#include "base/status.h"
#include "env/error_table.h"

namespace kelvo {

/// The codes that the MPS reader alone knows what to do with.
namespace mps_error {

inline constexpr int kTooManyRows = 1431;
inline constexpr int kTooManyColumns = 1432;
inline constexpr int kTooManyCoefficients = 1433;
inline constexpr int kNotANumber = 1434;
inline constexpr int kExponentTooLarge = 1435;
inline constexpr int kQuadraticSense = 1437;
inline constexpr int kIllegalCut = 1438;
inline constexpr int kIllegalIndicator = 1439;
inline constexpr int kNoName = 1441;
inline constexpr int kUnknownSetType = 1442;
inline constexpr int kRepeatedRow = 1443;
inline constexpr int kRepeatedRowInSet = 1444;
inline constexpr int kRowRepeats = 1445;
inline constexpr int kColumnRepeats = 1446;
inline constexpr int kNotARow = 1448;
inline constexpr int kNotAColumn = 1449;
inline constexpr int kNoRowSense = 1453;
inline constexpr int kLateFixed = 1454;
inline constexpr int kLateFree = 1455;
inline constexpr int kLateBinary = 1456;
inline constexpr int kUnknownBoundType = 1457;
inline constexpr int kRepeatedUpper = 1458;
inline constexpr int kRepeatedLower = 1459;
inline constexpr int kNoBoundType = 1460;
inline constexpr int kExpectingEnd = 1462;
inline constexpr int kLineTooLong = 1465;
inline constexpr int kNoRows = 1471;
inline constexpr int kNoColumns = 1472;
inline constexpr int kExpectingRanges = 1473;
inline constexpr int kRangesOutOfOrder = 1474;
inline constexpr int kExpectingQuadratic = 1475;
inline constexpr int kNoObjectiveRow = 1476;
inline constexpr int kRowRepeatsNotPrinted = 1477;
inline constexpr int kColumnRepeatsNotPrinted = 1478;
inline constexpr int kInsideIntegers = 1480;
inline constexpr int kOutsideIntegers = 1481;
inline constexpr int kInsideSet = 1482;
inline constexpr int kOutsideSet = 1483;
inline constexpr int kNoRowName = 1486;
inline constexpr int kUnknownSense = 1487;
inline constexpr int kQuadraticInConstraint = 1605;
inline constexpr int kExponentIncomplete = 1618;
inline constexpr int kNoSetType = 3301;
inline constexpr int kNotSymmetric = 5012;

}  // namespace mps_error

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
    return close_repeats(mps_error::kRowRepeats, mps_error::kRowRepeatsNotPrinted, row_repeats_);
  }
  Status close_column_repeats() {
    return close_repeats(mps_error::kColumnRepeats, mps_error::kColumnRepeatsNotPrinted,
                         column_repeats_);
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
