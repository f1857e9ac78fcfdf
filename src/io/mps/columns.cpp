// The section COLUMNS.
#include <cstring>
#include <limits>

#include "io/mps/parser.h"

namespace kelvo {
namespace {

constexpr int kMostColumns = std::numeric_limits<int>::max() - 1;
constexpr std::size_t kMostEntries = std::numeric_limits<int>::max();

/// Marker texts are compared over this many characters.
constexpr std::size_t kMarkerLength = 8;

bool same_marker(std::string_view field, std::string_view marker) {
  return field.substr(0, kMarkerLength) == marker;
}

}  // namespace

Status MpsParser::read_columns() {
  if (fields_.kind() != MpsLine::header || !fields_.header_is("COLUMNS")) {
    return messages_.error(error::kNoColumnsSection, line_number());
  }
  fields_.expect_names(&column_index_, &row_index_);
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) break;
    KELVO_TRY(read_column_line());
  }
  fields_.expect_names(nullptr, nullptr);
  KELVO_TRY(messages_.close_column_repeats());
  const int columns = model_.col_names.size();
  model_.num_cols = columns;
  model_.lower.assign(columns, 0.0);
  model_.upper.assign(columns, kInfiniteBound);
  bound_given_.assign(columns, 0);
  model_.col_names.create();
  return {};
}

Status MpsParser::read_column_line() {
  int field;
  if (is_marker(field)) return read_marker(field);
  const std::string_view name = fields_.name(0);
  if (column_ == kNone || name.size() != column_name_length_ ||
      std::memcmp(model_.col_names[column_], name.data(), name.size()) != 0) {
    KELVO_TRY(begin_column(name));
  }
  if (skip_column_) return {};
  KELVO_TRY(read_entry(1));
  return fields_.count() > 3 ? read_entry(3) : Status();
}

Status MpsParser::begin_column(std::string_view name) {
  const int columns = model_.col_names.size();
  if (columns >= kMostColumns) return messages_.error(error::kTooManyColumns);
  column_ = column_index_.insert(name, columns, model_.col_names);
  column_name_length_ = name.size();
  skip_column_ = column_ != columns;
  if (skip_column_) {
    messages_.column_repeats(name);
    return {};
  }
  model_.col_names.append(name);
  column_start_.push_back(static_cast<int>(entry_line_.size()));
  model_.objective.push_back(0.0);
  model_.column_type.push_back(integer_block_ ? 'I' : 'C');
  if (set_block_) {
    SparseMatrix& members = model_.sos.members;
    const int position = static_cast<int>(members.index.size()) - members.start.end()[-2] + 1;
    members.index.push_back(column_);
    members.value.push_back(reference_wanted_ ? 0.0 : position);
    ++members.start.back();
  }
  return {};
}

/// The pair of row name and value that begins at a field.
Status MpsParser::read_entry(int field) {
  const std::string_view name = fields_.name(field);
  int row;
  KELVO_TRY(require_row(name, row));
  double value;
  KELVO_TRY(fields_.number(field + 1, value));
  DeclaredRow& declared = rows_[row];
  if (declared.last_column == column_) {
    return messages_.error(error::kColumnRepeatsRow, model_.col_names.view(column_), name);
  }
  declared.last_column = column_;
  if (row == reference_row_ && set_block_) give_weight(value);
  const int line = declared.line;
  if (line >= 0) {
    if (entry_line_.size() >= kMostEntries) {
      return messages_.error(error::kTooManyCoefficients);
    }
    entry_line_.push_back(line);
    entry_value_.push_back(value);
  } else if (line == kObjective) {
    model_.objective[column_] = value;
  }
  return {};
}

/// The current column's weight in the open set; it is no member when its lines began before the
/// set.
void MpsParser::give_weight(double weight) {
  SparseMatrix& members = model_.sos.members;
  const bool any = members.start.back() > members.start.end()[-2];
  if (any && members.index.back() == column_) members.value.back() = weight;
}

/// True when field 1 or 2 of the line is the word that makes it a marker.
bool MpsParser::is_marker(int& field) const {
  for (field = 1; field <= 2 && field < fields_.count(); ++field) {
    const std::string_view text = fields_.raw(field);
    if (text.front() == '\'' && same_marker(text, "'MARKER'")) return true;
  }
  return false;
}

Status MpsParser::read_marker(int field) {
  const std::string_view kind = fields_.raw(field + 1);
  if (same_marker(kind, "'INTORG'")) {
    if (integer_block_) return messages_.error(error::kIntegersBeginTwice, line_number());
    integer_block_ = true;
  } else if (same_marker(kind, "'INTEND'")) {
    if (!integer_block_) return messages_.error(error::kIntegersEndWithoutBegin, line_number());
    integer_block_ = false;
  } else if (same_marker(kind, "'SOSORG'")) {
    if (set_block_) return messages_.error(error::kSetBeginsTwice, line_number());
    KELVO_TRY(open_column_set(field));
    set_block_ = true;
  } else if (same_marker(kind, "'SOSEND'")) {
    if (!set_block_) return messages_.error(error::kSetEndsWithoutBegin, line_number());
    set_block_ = false;
  } else {
    messages_.unidentified_marker(line_number());
  }
  return {};
}

/// Opens the set whose columns follow; `field` is where the word 'MARKER' is.
Status MpsParser::open_column_set(int field) {
  const bool type_first = field == 2;
  return open_set(type_first ? fields_.raw(0) : fields_.raw(field + 2),
                  type_first ? fields_.name(1) : fields_.name(0));
}

}  // namespace kelvo
