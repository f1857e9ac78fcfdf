#include <algorithm>
#include <cmath>

#include "base/name_index.h"
#include "io/basis_file.h"
#include "io/capped_warnings.h"
#include "io/mps_fields.h"
#include "io/writer_names.h"

namespace kelvo {
namespace {

constexpr int kMissingBasics = 1550;
constexpr int kUnknownCode = 1551;
constexpr int kEndMissing = 1552;
constexpr int kWrongEntries = 1553;
constexpr int kSuperbasic = 1554;

enum Code : int { kAtLower = 0, kBasic = 1, kAtUpper = 2, kFree = 3 };

/// A value counts as a bound when it agrees with it to so many times its magnitude (at least 1):
/// more than what fifteen digits lose, less than what a solver tells apart.
constexpr double kAtBound = 1e-12;

bool same_value(double a, double b) {
  return std::fabs(a - b) <= kAtBound * std::max(1.0, std::fabs(b));
}

/// What a line says. `column`, `row`: which names follow the code.
struct Record {
  char code[3];
  bool column;
  bool row;
  bool value;
  int column_status;  // -1: from the value
  int row_status;     // likewise
};
constexpr Record kRecords[] = {
    {"XU", true, true, false, kBasic, kAtUpper},
    {"XL", true, true, false, kBasic, kAtLower},
    {"BS", true, false, false, kBasic, 0},
    {"UL", true, false, false, kAtUpper, 0},
    {"LL", true, false, false, kAtLower, 0},
    {"SC", true, false, true, -1, 0},
    {"SR", false, true, true, 0, -1},
    {"BR", false, true, true, 0, kBasic},
};

class BasisParser {
 public:
  BasisParser(LineReader& lines, const Model& model, MessageSink& sink)
      : model_(model),
        names_(model, false),
        messages_(sink, false),
        fields_(lines, messages_),
        unknown_names_(sink),
        sink_(sink) {
    columns_.build(names_.columns, names_.columns.size());
    rows_.build(names_.rows, names_.rows.size());
  }

  Status parse(StoredBasis& result);

 private:
  void start();
  Status read_line();
  /// False, with a warning, when no column (row) has the name in this field.
  bool find_column(int field, int& column);
  bool find_row(int field, int& row);
  Status read_value(int field, bool& given, double& value);
  Status set_column(int column, double value);
  void set_row(int row, double activity);
  Status check() const;

  const Model& model_;
  const ModelNames names_;
  MpsMessages messages_;
  MpsFields fields_;
  CappedWarnings unknown_names_;
  MessageSink& sink_;
  NameIndex columns_;
  NameIndex rows_;
  StoredBasis basis_;
};

/// The basis of a file without lines.
void BasisParser::start() {
  basis_.present = true;
  basis_.row_status.assign(model_.num_rows, kBasic);
  basis_.col_status.assign(model_.num_cols, kAtLower);
  for (int j = 0; j < model_.num_cols; ++j) {
    if (model_.lower[j] > -kInfiniteBound) continue;
    basis_.col_status[j] = model_.upper[j] < kInfiniteBound ? kAtUpper : kFree;
  }
}

Status BasisParser::parse(StoredBasis& result) {
  start();
  KELVO_TRY(fields_.next());
  if (fields_.kind() != MpsLine::header || !fields_.header_is("NAME")) {
    return messages_.error(mps_error::kNoName, fields_.line_number());
  }
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) break;
    KELVO_TRY(read_line());
  }
  unknown_names_.close();
  messages_.close_file();
  if (fields_.kind() != MpsLine::header || !fields_.header_is("ENDATA")) {
    return messages_.error(kEndMissing);
  }
  KELVO_TRY(check());
  result = std::move(basis_);
  return {};
}

Status BasisParser::read_line() {
  const std::string_view code = fields_.raw(0);
  const Record* const record =
      std::find_if(std::begin(kRecords), std::end(kRecords),
                   [code](const Record& known) { return equal_ignoring_case(code, known.code); });
  if (record == std::end(kRecords)) {
    return messages_.error(kUnknownCode, fields_.line_number(), code);
  }
  const int names = (record->column ? 1 : 0) + (record->row ? 1 : 0);
  if (fields_.count() < 1 + names) {
    return messages_.error(kWrongEntries, fields_.line_number());
  }
  bool has_value = false;
  double value = 0.0;
  if (record->value) KELVO_TRY(read_value(1 + names, has_value, value));
  int column = -1, row = -1;
  if (record->column && !find_column(1, column)) return {};
  if (record->row && !find_row(names, row)) return {};
  if (column >= 0) {
    if (record->column_status >= 0) {
      basis_.col_status[column] = record->column_status;
    } else if (has_value) {
      KELVO_TRY(set_column(column, value));
    }
  }
  if (row >= 0) {
    if (record->row_status >= 0) {
      basis_.row_status[row] = record->row_status;
    } else if (has_value) {
      set_row(row, value);
    }
  }
  return {};
}

bool BasisParser::find_column(int field, int& column) {
  const std::string_view name = fields_.name(field);
  column = columns_.find(name, names_.columns);
  if (column != NameIndex::kNone) return true;
  unknown_names_.warn("Warning, line %d: '%.255s' is not a column name.\n", fields_.line_number(),
                      name);
  return false;
}

bool BasisParser::find_row(int field, int& row) {
  const std::string_view name = fields_.name(field);
  row = rows_.find(name, names_.rows);
  if (row != NameIndex::kNone) return true;
  unknown_names_.warn("Warning, line %d: '%.255s' is not a row name.\n", fields_.line_number(),
                      name);
  return false;
}

/// A line without its value is skipped with a warning.
Status BasisParser::read_value(int field, bool& given, double& value) {
  given = field < fields_.count();
  if (given) return fields_.number(field, value);
  sink_.print(Channel::warning, "Line %d: Missing basic value.\n", fields_.line_number());
  return {};
}

/// A nonbasic column with a value: at a bound, or free at zero. 1554 for any other value.
Status BasisParser::set_column(int column, double value) {
  const double lower = model_.lower[column], upper = model_.upper[column];
  const bool below = lower <= -kInfiniteBound, above = upper >= kInfiniteBound;
  int& status = basis_.col_status[column];
  if (!below && same_value(value, lower)) {
    // A fixed column may have been put at its upper bound by a line before.
    if (status != kAtUpper || lower != upper) status = kAtLower;
  } else if (!above && same_value(value, upper)) {
    status = kAtUpper;
  } else if (below && above && value == 0.0) {
    status = kFree;
  } else {
    return messages_.error(kSuperbasic);
  }
  return {};
}

/// A nonbasic slack: of a ranged row at the end of the range that is nearer.
void BasisParser::set_row(int row, double activity) {
  int& status = basis_.row_status[row];
  if (model_.row_sense[row] == 'R') {
    const double range = model_.range.empty() ? 0.0 : model_.range[row];
    const double low = model_.rhs[row] + std::min(range, 0.0);
    const double high = model_.rhs[row] + std::max(range, 0.0);
    status = std::fabs(activity - low) <= std::fabs(activity - high) ? kAtLower : kAtUpper;
  } else if (status == kBasic) {
    status = kAtLower;
  }
}

Status BasisParser::check() const {
  const auto basics = std::count(basis_.col_status.begin(), basis_.col_status.end(), kBasic) +
                      std::count(basis_.row_status.begin(), basis_.row_status.end(), kBasic);
  return basics == model_.num_rows ? Status() : Status::failure(kMissingBasics);
}

}  // namespace

Status read_basis(LineReader& lines, const Model& model, MessageSink& sink, StoredBasis& basis) {
  return BasisParser(lines, model, sink).parse(basis);
}

}  // namespace kelvo
