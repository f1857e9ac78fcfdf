// The sections NAME to LAZYCONS.
#include <limits>

#include "io/mps/parser.h"

namespace kelvo {
namespace {

constexpr int kMostRows = std::numeric_limits<int>::max() - 1;

/// The sense a text asks for, or 0.
int sense_of(std::string_view text) {
  if (text.size() < 3) return 0;
  if (equal_ignoring_case(text.substr(0, 3), "MAX")) return -1;
  return equal_ignoring_case(text.substr(0, 3), "MIN") ? 1 : 0;
}

}  // namespace

Status MpsParser::read_name() {
  KELVO_TRY(fields_.take_name());
  // The name is the field behind the five characters "NAME ".
  constexpr std::size_t kSkipped = 5;
  const std::string_view first = fields_.raw(0);
  model_.name =
      first.size() > kSkipped ? first.substr(kSkipped, MpsFields::kNameLength) : fields_.name(1);
  return {};
}

Status MpsParser::read_preamble() {
  enum { kSenseNext, kObjectiveNext, kReferenceNext, kRowsNext } stage = kSenseNext;
  bool sense_given = false;
  KELVO_TRY(skip_data());
  while (fields_.kind() == MpsLine::header && !fields_.header_is("ROWS")) {
    if (stage <= kSenseNext && fields_.header_is("OBJSENSE")) {
      stage = kObjectiveNext;
      sense_given = true;
      KELVO_TRY(read_objective_sense());
    } else if (stage <= kObjectiveNext && fields_.header_is("OBJNAME")) {
      stage = kReferenceNext;
      KELVO_TRY(read_row_name(wanted_objective_, objective_wanted_));
    } else if (stage <= kReferenceNext && fields_.header_is("REFROW")) {
      stage = kRowsNext;
      KELVO_TRY(read_row_name(wanted_reference_, reference_wanted_));
    } else {
      messages_.section_out_of_order(line_number(), fields_.text());
      KELVO_TRY(skip_data());
    }
  }
  if (fields_.kind() == MpsLine::end) return messages_.error(error::kNoRowsSection, line_number());
  if (!sense_given) messages_.sense_selected();
  return {};
}

Status MpsParser::read_objective_sense() {
  const int sense_in_header = sense_of(fields_.raw(1));
  KELVO_TRY(fields_.next());
  if (fields_.kind() == MpsLine::data) {
    model_.sense = sense_of(fields_.raw(0));
    if (model_.sense == 0) {
      return messages_.error(error::kUnknownObjectiveSense, line_number(), fields_.raw(0));
    }
    KELVO_TRY(skip_data());
  } else {
    model_.sense = sense_in_header;
    if (model_.sense == 0) {
      const std::string_view text =
          fields_.kind() == MpsLine::header ? fields_.raw(0) : std::string_view();
      return messages_.error(error::kUnknownObjectiveSense, line_number(), text);
    }
  }
  messages_.sense_specified(model_.sense);
  return {};
}

/// The name on the line that follows an OBJNAME or REFROW header.
Status MpsParser::read_row_name(String& name, bool& given) {
  KELVO_TRY(fields_.next());
  if (fields_.kind() != MpsLine::data) return {};
  name = fields_.name(0);
  given = true;
  return skip_data();
}

Status MpsParser::read_rows() {
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) break;
    KELVO_TRY(declare_row());
  }
  KELVO_TRY(messages_.close_row_repeats());
  KELVO_TRY(choose_objective());
  while (fields_.kind() == MpsLine::header) {
    if (fields_.header_is("USERCUTS")) {
      KELVO_TRY(read_cuts(MpsLineKind::user_cut));
    } else if (fields_.header_is("LAZYCONS")) {
      KELVO_TRY(read_cuts(MpsLineKind::lazy_constraint));
    } else {
      break;
    }
  }
  KELVO_TRY(messages_.close_row_repeats());
  const int lines = static_cast<int>(line_kind_.size());
  model_.rhs.assign(lines, 0.0);
  record_of_.assign(lines, kNone);
  if (reference_wanted_) {
    KELVO_TRY(require_row(wanted_reference_, reference_row_));
  }
  return {};
}

/// One line of ROWS, USERCUTS or LAZYCONS: a type and a name.
Status MpsParser::declare_row() {
  const std::string_view type = fields_.raw(0);
  char sense = '\0';
  if (type.size() == 1) {
    for (const char letter : {'N', 'L', 'G', 'E'}) {
      if (equal_ignoring_case(type, std::string_view(&letter, 1))) sense = letter;
    }
  }
  if (sense == '\0') return messages_.error(error::kNoRowSense, line_number());
  if (fields_.count() < 2) return messages_.error(error::kNoRowName, line_number());
  const std::string_view name = fields_.name(1);
  const int number = row_names_.size();
  if (number >= kMostRows) return messages_.error(error::kTooManyRows);
  if (row_index_.insert(name, number, row_names_) != number) {
    messages_.row_repeats(name);
    return {};
  }
  row_names_.append(name);
  if (sense == 'N') {
    rows_.push_back({kFreeRow});
    return {};
  }
  rows_.push_back({static_cast<int>(line_kind_.size())});
  line_kind_.push_back(MpsLineKind::row);
  declared_.push_back(number);
  model_.row_sense.push_back(sense);
  return {};
}

Status MpsParser::choose_objective() {
  int first_free = kNone, free_rows = 0;
  for (int row = 0; row < row_names_.size(); ++row) {
    if (rows_[row].line != kFreeRow) continue;
    if (first_free == kNone) first_free = row;
    ++free_rows;
  }
  if (first_free == kNone) {
    return messages_.error(error::kNoObjectiveRow, line_number());
  }
  if (objective_wanted_) {
    const int wanted = find_row(wanted_objective_);
    if (wanted != kNone && rows_[wanted].line == kFreeRow) {
      objective_row_ = wanted;
    } else {
      messages_.objective_not_found(wanted_objective_);
    }
  }
  if (objective_row_ == kNone) {
    objective_row_ = first_free;
    messages_.objective_selected(row_names_.view(first_free));
  }
  rows_[objective_row_].line = kObjective;
  model_.objective_name = row_names_.view(objective_row_);
  model_.has_objective_name = true;
  messages_.free_rows_deleted(free_rows - 1);
  return {};
}

Status MpsParser::read_cuts(MpsLineKind kind) {
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) return {};
    const std::size_t lines = line_kind_.size();
    const int rows = row_names_.size();
    KELVO_TRY(declare_row());
    if (row_names_.size() == rows) continue;  // a repeated name
    if (line_kind_.size() == lines) {
      return messages_.error(error::kIllegalCut, line_number());
    }
    line_kind_.back() = kind;
  }
}

}  // namespace kelvo
