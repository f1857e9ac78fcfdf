// The sections RHS and RANGES.
#include <cmath>

#include "io/mps/parser.h"

namespace kelvo {

namespace {

const char* section_name(bool ranges) {
  return ranges ? "RANGES" : "RHS";
}

}  // namespace

Status MpsParser::read_rim(bool ranges) {
  set_selected_ = false;
  Vector<char> given(line_kind_.size(), 0);
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) break;
    const bool blank = has_blank_set();
    if (!set_selected_) {
      set_selected_ = true;
      set_name_ = blank ? std::string_view() : fields_.name(0);
      if (blank && !ranges) {
        const bool column_exists = find_column("rhs") != kNone;
        messages_.blank_rhs(column_exists);
        if (!column_exists) set_name_ = "rhs";
      }
      messages_.set_selected(section_name(ranges), set_name_);
    }
    if (!blank && fields_.name(0) != set_name_) continue;
    const int first = blank ? 0 : 1;
    KELVO_TRY(read_rim_entry(first, ranges, given));
    if (fields_.count() > first + 2) {
      KELVO_TRY(read_rim_entry(first + 2, ranges, given));
    }
  }
  messages_.close(MpsWarning::objective_entry);
  messages_.close(MpsWarning::objective_range);
  messages_.close(MpsWarning::free_row);
  return {};
}

/// True when the line gives no set name: pairs only, told from a set name with an empty value.
bool MpsParser::has_blank_set() const {
  if (fields_.count() % 2 != 0 || !fields_.looks_like_number(1)) return false;
  return find_row(fields_.raw(1)) == kNone || find_row(fields_.raw(0)) != kNone;
}

Status MpsParser::read_rim_entry(int field, bool ranges, Vector<char>& given) {
  const std::string_view name = fields_.name(field);
  int row;
  KELVO_TRY(require_row(name, row));
  double value;
  KELVO_TRY(fields_.number(field + 1, value));
  const int line = rows_[row].line;
  if (line == kObjective) {
    if (ranges) {
      messages_.objective_range_ignored();
    } else {
      messages_.objective_entry_ignored(line_number(), section_name(ranges));
    }
    return {};
  }
  if (line == kFreeRow) {
    if (ranges) messages_.free_row_range_ignored(name);
    return {};
  }
  if (given[line] != 0) {
    return messages_.error(error::kSetRepeatsRow, section_name(ranges), std::string_view(set_name_),
                           name);
  }
  given[line] = 1;
  if (ranges) return set_range(line, value);
  model_.rhs[line] = value;
  return {};
}

Status MpsParser::set_range(int line, double value) {
  if (line_kind_[line] != MpsLineKind::row) {
    return messages_.error(error::kIllegalCut, line_number());
  }
  if (model_.range.empty()) model_.range.assign(line_kind_.size(), 0.0);
  char& sense = model_.row_sense[line];
  if (sense == 'G') value = std::fabs(value);
  if (sense == 'L') value = -std::fabs(value);
  model_.range[line] = value;
  sense = 'R';
  return {};
}

}  // namespace kelvo
