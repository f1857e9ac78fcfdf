#include <algorithm>
#include <cmath>

#include "base/error_code.h"
#include "io/capped_warnings.h"
#include "io/mps/fields.h"
#include "io/order/order_file.h"

namespace kelvo {
namespace {

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool is_blank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The field that begins at or behind a position, which moves behind the field.
std::string_view next_field(std::string_view text, std::size_t& at) {
  while (at < text.size() && is_blank(text[at])) ++at;
  const std::size_t begin = std::min(at, text.size());
  while (at < text.size() && !is_blank(text[at])) ++at;
  return text.substr(begin, at - begin);
}

class OrderParser {
 public:
  OrderParser(LineReader& lines, const ColumnLookup& columns, MessageSink& sink)
      : columns_(columns),
        messages_(sink, false),
        fields_(lines, messages_),
        warnings_(sink),
        sink_(sink),
        entry_of_(columns.num_columns(), kNone) {}

  Status parse(PriorityOrder& result);

 private:
  static constexpr int kNone = -1;

  Status read_line();
  Status read_direction(int& direction);
  Status read_priority(std::string_view field, int entry, int& priority);

  const ColumnLookup& columns_;
  MpsMessages messages_;
  MpsFields fields_;
  CappedWarnings warnings_;
  MessageSink& sink_;
  Vector<int> entry_of_;  // [columns] position in the order, or kNone
  PriorityOrder order_;
};

Status OrderParser::parse(PriorityOrder& result) {
  bool ended = false;
  KELVO_TRY(fields_.read_named_lines([this] { return read_line(); }, ended));
  warnings_.close();
  if (!ended) sink_.send(Channel::warning, "Warning: 'ENDATA' missing.\n");
  result = std::move(order_);
  return {};
}

Status OrderParser::read_line() {
  int direction = 0;
  KELVO_TRY(read_direction(direction));
  std::size_t at = 4;
  const std::string_view name = next_field(fields_.text(), at);
  const int column = columns_.find(name);
  if (column < 0) {
    warnings_.warn("Warning, line %d: '%.255s' is not a variable.\n", fields_.line_number(), name);
    return {};
  }
  const bool repeated = entry_of_[column] != kNone;
  const int entry = repeated ? entry_of_[column] : order_.size();
  int priority = 0;
  KELVO_TRY(read_priority(next_field(fields_.text(), at), entry, priority));
  if (repeated) {
    warnings_.warn("Warning, line %d: repeated entry for '%.255s'.\n", fields_.line_number(), name);
    order_.priority[entry] = priority;
    order_.direction[entry] = direction;
    return {};
  }
  entry_of_[column] = entry;
  order_.column.push_back(column);
  order_.priority.push_back(priority);
  order_.direction.push_back(direction);
  return {};
}

Status OrderParser::read_direction(int& direction) {
  const std::string_view text = fields_.text();
  const char first = text.size() > 1 ? upper(text[1]) : ' ';
  const char second = text.size() > 2 ? upper(text[2]) : ' ';
  direction = 0;
  if (is_blank(first) || is_blank(second)) return {};
  if (first == 'U' && second == 'P') {
    direction = 1;
  } else if (first == 'D' && second == 'N') {
    direction = -1;
  } else {
    return messages_.error(error::kUnknownDirection, fields_.line_number(), first, second);
  }
  return {};
}

/// Fractions are cut off.
Status OrderParser::read_priority(std::string_view field, int entry, int& priority) {
  field = field.substr(0, MpsFields::kNumberLength);
  const ParsedNumber number = parse_number(field.data(), field.data() + field.size(), false);
  if (number.fault != NumberFault::none) {
    return messages_.number_error(fields_.line_number(), field, number);
  }
  if (number.value < 0.0) return messages_.error(error::kNegativePriority, entry);
  if (number.value > kLargestPriority) {
    return messages_.error(error::kBeyondIntegerLimit, fields_.line_number(),
                           int{kLargestPriority});
  }
  priority = static_cast<int>(number.value);
  return {};
}

}  // namespace

Status read_order(LineReader& lines, const ColumnLookup& columns, MessageSink& sink,
                  PriorityOrder& order) {
  return OrderParser(lines, columns, sink).parse(order);
}

}  // namespace kelvo
