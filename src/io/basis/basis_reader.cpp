#include <algorithm>
#include <cmath>
#include <limits>

#include "base/error_code.h"
#include "base/name_index.h"
#include "io/basis/basis_file.h"
#include "io/capped_warnings.h"
#include "io/mps/fields.h"
#include "io/writer_names.h"

namespace kelvo {
namespace {

/// In place of a value that has not been read; no number of a file is like it.
constexpr double kNotGiven = std::numeric_limits<double>::quiet_NaN();

/// A value counts as a bound when it agrees with it to so many times its magnitude (at least 1):
/// more than what fifteen digits lose, less than what a solver tells apart.
constexpr double kAtBound = 1e-12;

bool same_value(double a, double b) {
  return std::fabs(a - b) <= kAtBound * std::max(1.0, std::fabs(b));
}

/// What a line says. `column`, `row`: which names follow the code; `value`: a value must follow
/// them.
struct Record {
  char code[3];
  bool column;
  bool row;
  bool value;
  int column_status;  // -1: from the value
  int row_status;     // the same
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
  /// `point`: null for a plain file, else what the values of a restart file are stored in.
  BasisParser(LineReader& lines, const Model& model, MessageSink& sink, RestartPoint* point)
      : model_(model),
        point_(point),
        names_(model, false),
        messages_(sink, false),
        fields_(lines, messages_),
        unknown_names_(sink),
        missing_values_(sink) {
    columns_.build(names_.columns, names_.columns.size());
    rows_.build(names_.rows, names_.rows.size());
  }

  Status parse(StoredBasis& result);

 private:
  void start();
  void start_point();
  void finish_point();
  Status read_line();
  /// False, with a warning, when no column (row) has the name in this field.
  bool find_column(int field, int& column);
  bool find_row(int field, int& row);
  Status read_value(int field, bool& given, double& value);
  Status set_column(int column, double value);
  void set_row(int row, double activity);
  Status check() const;

  const Model& model_;
  RestartPoint* const point_;
  const ModelNames names_;
  MpsMessages messages_;
  MpsFields fields_;
  CappedWarnings unknown_names_;
  CappedWarnings missing_values_;
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
    basis_.col_status[j] = model_.upper[j] < kInfiniteBound ? kAtUpper : kFreeSuper;
  }
}

void BasisParser::start_point() {
  point_->activity.assign(model_.num_rows, 0.0);
  point_->x.assign(model_.num_cols, kNotGiven);
}

/// Columns without a value are at their bounds.
void BasisParser::finish_point() {
  for (int j = 0; j < model_.num_cols; ++j) {
    if (!std::isnan(point_->x[j])) continue;
    const int status = basis_.col_status[j];
    point_->x[j] = status == kAtLower ? model_.lower[j] : status == kAtUpper ? model_.upper[j] : 0;
  }
}

Status BasisParser::parse(StoredBasis& result) {
  start();
  if (point_ != nullptr) start_point();
  bool ended = false;
  KELVO_TRY(fields_.read_named_lines([this] { return read_line(); }, ended));
  missing_values_.close();
  unknown_names_.close();
  messages_.close_file();
  if (!ended) return messages_.error(error::kEndMissing);
  KELVO_TRY(check());
  if (point_ != nullptr) finish_point();
  result = std::move(basis_);
  return {};
}

Status BasisParser::read_line() {
  const std::string_view code = fields_.raw(0);
  const Record* const record =
      std::find_if(std::begin(kRecords), std::end(kRecords),
                   [code](const Record& known) { return equal_ignoring_case(code, known.code); });
  if (record == std::end(kRecords)) {
    return messages_.error(error::kUnknownBasisIndicator, fields_.line_number(), code);
  }
  const int names = (record->column ? 1 : 0) + (record->row ? 1 : 0);
  if (fields_.count() < 1 + names) {
    return messages_.error(error::kWrongNumberOfEntries, fields_.line_number());
  }
  bool has_value = false;
  double value = 0.0;
  if (record->value || (point_ != nullptr && fields_.count() > 1 + names)) {
    KELVO_TRY(read_value(1 + names, has_value, value));
  }
  int column = -1, row = -1;
  if (record->column && !find_column(1, column)) return {};
  if (record->row && !find_row(names, row)) return {};
  if (point_ != nullptr && has_value) {
    if (column >= 0) {
      point_->x[column] = value;
    } else {
      if (model_.row_sense[row] == 'G') value = 0.0 - value;
      point_->activity[row] = value;
    }
  }
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
  missing_values_.warn("Line %d: Missing basic value.\n", fields_.line_number());
  return {};
}

/// A nonbasic column with a value: at a bound, or free at zero. With any other value it is
/// superbasic, in a plain file 1554.
Status BasisParser::set_column(int column, double value) {
  const double lower = model_.lower[column], upper = model_.upper[column];
  const bool below = lower <= -kInfiniteBound, above = upper >= kInfiniteBound;
  int& status = basis_.col_status[column];
  if (!below && same_value(value, lower)) {
    // A fixed column may have been put at its upper bound by a line before.
    if (status != kAtUpper || lower != upper) status = kAtLower;
  } else if (!above && same_value(value, upper)) {
    status = kAtUpper;
  } else if (point_ != nullptr || (below && above && value == 0.0)) {
    status = kFreeSuper;
  } else {
    return messages_.error(error::kSuperbasicNotAllowed);
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
  return basics == model_.num_rows ? Status() : Status::failure(error::kTooFewBasicVariables);
}

}  // namespace

Status read_basis(LineReader& lines, const Model& model, MessageSink& sink, StoredBasis& basis) {
  return BasisParser(lines, model, sink, nullptr).parse(basis);
}

Status read_restart(LineReader& lines, const Model& model, MessageSink& sink, StoredBasis& basis,
                    RestartPoint& point) {
  RestartPoint fresh;
  const Status status = BasisParser(lines, model, sink, &fresh).parse(basis);
  if (status.ok()) point = std::move(fresh);
  sink.send(Channel::results, status.ok() ? "Load of restart from file succeeded.\n"
                                          : "Load of restart from file failed.\n");
  return status;
}

}  // namespace kelvo
