#include "io/mps/parser.h"

#include <algorithm>

#include "base/error_code.h"

namespace kelvo {
namespace {

/// No requested capacity may exceed this, nor may twice the columns.
constexpr int kLargestCapacity = 524999999;

/// Where the reader is after COLUMNS; sections come in this order.
enum Stage { kBeforeRanges, kBeforeBounds, kBeforeSets, kBeforeQuadratic, kBeforeEnd, kDone };
constexpr Stage kBeforeIndicators = kBeforeQuadratic;

}  // namespace

int MpsParser::find_row(std::string_view name) const {
  return row_lookup_.find(name, row_names_, row_index_);
}

int MpsParser::find_column(std::string_view name) const {
  return column_lookup_.find(name, model_.col_names, column_index_);
}

Status MpsParser::require_row(std::string_view name, int& row) const {
  row = find_row(name);
  return row != kNone ? Status() : messages_.error(error::kNotARow, line_number(), name);
}

Status MpsParser::require_column(std::string_view name, int& column) const {
  column = find_column(name);
  return column != kNone ? Status() : messages_.error(error::kNotAColumn, line_number(), name);
}

Status MpsParser::skip_data() {
  do {
    KELVO_TRY(fields_.next());
  } while (fields_.kind() == MpsLine::data);
  return {};
}

Status MpsParser::parse(Model& result) {
  for (const int capacity :
       {settings_.rows, settings_.columns + 1, settings_.nonzeros, settings_.quadratic_nonzeros}) {
    if (capacity > kLargestCapacity) return Status::failure(error::kProblemSizeLimits);
  }
  if (settings_.columns > kLargestCapacity / 2) return Status::failure(error::kProblemSizeLimits);
  make_room();

  KELVO_TRY(read_name());
  KELVO_TRY(read_preamble());
  KELVO_TRY(read_rows());
  KELVO_TRY(read_columns());
  KELVO_TRY(read_sections_after_columns());
  KELVO_TRY(build_quadratic());
  finish();
  messages_.close_file();
  result = std::move(model_);
  return {};
}

void MpsParser::make_room() {
  rows_.reserve(settings_.rows);
  model_.row_sense.reserve(settings_.rows);
  model_.objective.reserve(settings_.columns);
  model_.column_type.reserve(settings_.columns);
  column_start_.reserve(settings_.columns);
  // A text has hardly more nonzeros than one for so many of its bytes. Room that is not used costs
  // next to nothing.
  constexpr std::size_t kBytesPerNonzero = 32;
  const auto nonzeros = static_cast<std::size_t>(settings_.nonzeros);
  entry_line_.reserve(std::max(nonzeros, text_size_ / kBytesPerNonzero));
  entry_value_.reserve(std::max(nonzeros, text_size_ / kBytesPerNonzero));
  // The table of columns is cleared as a whole, so it gets room for what sparse models need only.
  constexpr std::size_t kBytesPerColumn = 512, kMostColumns = 1 << 22;
  column_index_.reserve(static_cast<int>(std::min(text_size_ / kBytesPerColumn, kMostColumns)));
}

Status MpsParser::read_sections_after_columns() {
  if (fields_.kind() == MpsLine::header && fields_.header_is("RHS")) {
    KELVO_TRY(read_rim(false));
  } else {
    messages_.section_missing(line_number(), "RHS");
  }
  int stage = kBeforeRanges;
  while (stage != kDone) {
    if (fields_.kind() == MpsLine::end) {
      messages_.end_missing(line_number());
      return {};
    }
    KELVO_TRY(read_section(stage));
  }
  return {};
}

/// Reads the section whose header is the current line, if it may come at this stage.
Status MpsParser::read_section(int& stage) {
  const auto is = [&](const char* keyword) { return fields_.header_is(keyword); };
  if (is("ENDATA")) {
    stage = kDone;
    return {};
  }
  if (is("RANGES") && stage != kBeforeEnd) {
    if (stage > kBeforeBounds) return messages_.error(error::kRangesOutOfOrder, line_number());
    if (stage == kBeforeRanges) {
      stage = kBeforeBounds;
      return read_rim(true);
    }
  } else if (is("BOUNDS") && stage <= kBeforeBounds) {
    stage = kBeforeSets;
    return read_bounds();
  } else if (is("SOS") && stage <= kBeforeSets) {
    stage = kBeforeQuadratic;
    return read_sets();
  } else if (stage <= kBeforeQuadratic && (is("QMATRIX") || is("QUADOBJ"))) {
    stage = kBeforeQuadratic;
    return read_quadratic_objective(is("QUADOBJ"));
  } else if (stage <= kBeforeQuadratic && is("QCMATRIX")) {
    stage = kBeforeQuadratic;
    return read_quadratic_constraint();
  } else if (stage <= kBeforeIndicators && is("INDICATORS")) {
    stage = kBeforeEnd;
    return read_indicators();
  }
  if (stage <= kBeforeSets) return messages_.error(error::kExpectingRanges, line_number());
  if (stage == kBeforeQuadratic) {
    return messages_.error(error::kExpectingQuadraticSection, line_number());
  }
  return messages_.error(error::kExpectingEnd, line_number());
}

Status read_mps(LineReader& lines, const MpsReaderSettings& settings, MessageSink& sink,
                Model& model) {
  MpsParser parser(lines, settings, sink);
  return parser.parse(model);
}

}  // namespace kelvo
