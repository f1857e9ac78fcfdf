// The section BOUNDS.
#include <cmath>

#include "io/mps/parser.h"

namespace kelvo {
namespace {

enum : char { kLowerGiven = 1, kUpperGiven = 2, kBothGiven = 3 };

/// A lower bound below this counts as free in the warnings.
constexpr double kFreeBelow = -1e17;
/// Distance from the next integer up to which a bound counts as integral.
constexpr double kIntegralBound = 1e-10;

bool is_integer_type(char type) {
  return type == 'I' || type == 'B' || type == 'N';
}

bool is_integral(double value) {
  return std::fabs(value - std::round(value)) <= kIntegralBound;
}

/// How a type of bound changes the type of its column.
enum class TypeChange { none, integer, lower_integer, binary, semicontinuous };

char changed_type(char type, TypeChange change) {
  switch (change) {
    case TypeChange::none:
      return type;
    case TypeChange::integer:
      return 'I';
    case TypeChange::lower_integer:
      return type == 'S' || type == 'N' ? 'N' : 'I';
    case TypeChange::binary:
      return 'B';
    case TypeChange::semicontinuous:
      return type == 'I' || type == 'B' || type == 'N' ? 'N' : 'S';
  }
  return type;
}

constexpr double kFromField = 0.5;  // in the table: the bound is the value of the line

}  // namespace

struct MpsParser::BoundType {
  char code[3];
  bool has_value;
  char sets;     // which bounds: kLowerGiven, kUpperGiven
  int error;     // when one of those was given before
  double lower;  // the new bounds, kFromField for the line's value
  double upper;
  TypeChange change;
};

const MpsParser::BoundType MpsParser::kBoundTypes[] = {
    {"UP", true, kUpperGiven, error::kUpperBoundRepeats, 0, kFromField, TypeChange::none},
    {"LO", true, kLowerGiven, error::kLowerBoundRepeats, kFromField, 0, TypeChange::none},
    {"FX", true, kBothGiven, error::kFixedAfterBound, kFromField, kFromField, TypeChange::none},
    {"FR", false, kBothGiven, error::kFreeAfterBound, -kInfiniteBound, kInfiniteBound,
     TypeChange::none},
    {"MI", false, kLowerGiven, error::kLowerBoundRepeats, -kInfiniteBound, 0, TypeChange::none},
    {"PL", false, kUpperGiven, error::kUpperBoundRepeats, 0, kInfiniteBound, TypeChange::none},
    {"BV", false, kBothGiven, error::kBinaryAfterBound, 0, 1, TypeChange::binary},
    {"UI", true, kUpperGiven, error::kUpperBoundRepeats, 0, kFromField, TypeChange::integer},
    {"LI", true, kLowerGiven, error::kLowerBoundRepeats, kFromField, 0, TypeChange::lower_integer},
    {"SC", true, kUpperGiven, error::kUpperBoundRepeats, 0, kFromField, TypeChange::semicontinuous},
};

const MpsParser::BoundType* MpsParser::find_bound_type(std::string_view code) {
  for (const BoundType& type : kBoundTypes) {
    if (equal_ignoring_case(code, type.code)) return &type;
  }
  return nullptr;
}

Status MpsParser::read_bounds() {
  set_selected_ = false;
  second_set_met_ = false;
  for (;;) {
    KELVO_TRY(fields_.next());
    if (fields_.kind() != MpsLine::data) break;
    const BoundType* type = nullptr;
    KELVO_TRY(read_bound_type(type));
    const int column_field = bound_column_field(*type);
    const bool blank = column_field == 1;
    if (!set_selected_) {
      set_selected_ = true;
      set_name_ = blank ? std::string_view() : fields_.name(1);
      messages_.set_selected("BOUNDS", set_name_);
    }
    if (!blank && fields_.name(1) != set_name_) {
      if (!second_set_met_) messages_.second_bound_set();
      second_set_met_ = true;
      continue;
    }
    int column;
    KELVO_TRY(require_column(fields_.name(column_field), column));
    KELVO_TRY(apply_bound(*type, column, column_field + 1));
  }
  settle_bounds();
  return {};
}

Status MpsParser::read_bound_type(const BoundType*& type) {
  // Types are left of the names of the set and the column, which begin at position 4.
  constexpr int kNamesBegin = 4;
  type = find_bound_type(fields_.raw(0));
  if (type != nullptr) return {};
  if (fields_.position(0) >= kNamesBegin) {
    return messages_.error(error::kNoBoundType, line_number());
  }
  const std::string_view code = fields_.code(0);
  type = find_bound_type(code);
  if (type != nullptr) return {};
  return messages_.error(error::kUnknownBoundType, line_number(), code);
}

/// 1 when the line gives no set name, else 2.
int MpsParser::bound_column_field(const BoundType& type) const {
  const int fields = fields_.count();
  if (fields <= 2) return 1;
  if (fields > 3 || !fields_.looks_like_number(2)) return 2;
  // Two fields, the second may be a value: for types with a value by far the most likely.
  const bool second_is_column = find_column(fields_.raw(2)) != kNone;
  if (second_is_column) return !type.has_value || find_column(fields_.raw(1)) == kNone ? 2 : 1;
  return 1;
}

Status MpsParser::apply_bound(const BoundType& type, int column, int value_field) {
  double value = 0.0;
  if (type.has_value) {
    KELVO_TRY(fields_.number(value_field, value));
  }
  if ((bound_given_[column] & type.sets) != 0) {
    return messages_.error(type.error, line_number());
  }
  bound_given_[column] = static_cast<char>(bound_given_[column] | type.sets);
  if ((type.sets & kLowerGiven) != 0) {
    model_.lower[column] = type.lower == kFromField ? value : type.lower;
  }
  if ((type.sets & kUpperGiven) != 0) {
    model_.upper[column] = type.upper == kFromField ? value : type.upper;
  }
  model_.column_type[column] = changed_type(model_.column_type[column], type.change);
  return {};
}

/// What the bounds given to a column imply, once all are known.
void MpsParser::settle_bounds() {
  for (int column = 0; column < model_.num_cols; ++column) {
    if (bound_given_[column] != 0) settle_bound(column);
  }
  messages_.close(MpsWarning::column_free);
  messages_.close(MpsWarning::minus_infinity);
  messages_.close(MpsWarning::column_fixed);
  messages_.close(MpsWarning::integrality);
}

void MpsParser::settle_bound(int column) {
  const char given = bound_given_[column];
  double& lower = model_.lower[column];
  double& upper = model_.upper[column];
  char& type = model_.column_type[column];
  const char* const name = model_.col_names[column];
  if (given == kLowerGiven && lower < kFreeBelow) messages_.column_free(name, set_name_);
  if (given == kUpperGiven && upper == 0.0) messages_.column_fixed(name, set_name_);
  if (given == kUpperGiven && upper < 0.0) {
    lower = -kInfiniteBound;
    messages_.minus_infinity(name, set_name_);
  }
  if (!is_integer_type(type)) return;
  for (const double bound : {lower, upper}) {
    if (!is_integral(bound)) messages_.non_integral_bound(bound, name);
  }
  if (type != 'N') type = lower == 0.0 && upper == 1.0 ? 'B' : 'I';
}

}  // namespace kelvo
