#include "env/params/settings.h"

#include <algorithm>
#include <cstring>

#include "base/error_code.h"
#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

// A threshold of polish-after counts as set below a tenth of its default. Values between the tenth
// and the default are stored but do not count.
constexpr int kPolishCountInUse = kCountLimit / 10;
constexpr double kPolishTimeInUse = 1e74;

}  // namespace

Settings::Settings(int processors) : processors_(std::max(processors, 1)) {
  reset_parameters();
}

void Settings::reset_parameters() {
  int text = 0;
  for (int row = 0; row < kNumParams; ++row) {
    const ParamRow& param = param_table()[row];
    switch (param.kind) {
      case ParamKind::none:
        break;
      case ParamKind::integer:
        values_[row].integer = param.int_default;
        break;
      case ParamKind::real:
        values_[row].real = param.real_default;
        break;
      case ParamKind::text:
        values_[row].integer = text;
        std::strcpy(texts_[text++], param.text_default);
        break;
    }
  }
}

Status Settings::check_int(int number, int value) const {
  const int row = param_row(number, ParamKind::integer);
  if (row < 0) return Status::failure(error::kBadParameterNumber);
  const ParamRow& param = param_table()[row];
  if (value < param.int_min) return Status::failure(error::kParameterTooSmall);
  if (value > int_max(param)) return Status::failure(error::kParameterTooBig);
  if (conflicts_with_polishing(number, value)) {
    return Status::failure(error::kIncompatibleParameters);
  }
  return Status();
}

Status Settings::check_double(int number, double value) const {
  const int row = param_row(number, ParamKind::real);
  if (row < 0) return Status::failure(error::kBadParameterNumber);
  const ParamRow& param = param_table()[row];
  // The conflict is the stronger complaint; comparisons with a NaN are false, so a NaN passes.
  if (conflicts_with_polishing(number, value)) {
    return Status::failure(error::kIncompatibleParameters);
  }
  if (param.has_bounds() && value < param.real_min) {
    return Status::failure(error::kParameterTooSmall);
  }
  if (param.has_bounds() && value > param.real_max) {
    return Status::failure(error::kParameterTooBig);
  }
  return Status();
}

Status Settings::set_int(int number, int value) {
  KELVO_TRY(check_int(number, value));
  values_[param_row(number)].integer = value;
  return Status();
}

Status Settings::set_double(int number, double value) {
  KELVO_TRY(check_double(number, value));
  values_[param_row(number)].real = value;
  return Status();
}

Status Settings::set_text(int number, const char* value) {
  const int row = param_row(number, ParamKind::text);
  if (row < 0) return Status::failure(error::kBadParameterNumber);
  char* const text = texts_[values_[row].integer];
  const std::size_t length = strnlen(value, kParamTextSize - 1);
  std::memmove(text, value, length);
  text[length] = '\0';
  return Status();
}

bool Settings::is_changed(int row) const {
  const ParamRow& param = param_table()[row];
  switch (param.kind) {
    case ParamKind::integer:
      return values_[row].integer != param.int_default;
    case ParamKind::real:
      return values_[row].real != param.real_default;
    case ParamKind::text:
      return std::strcmp(texts_[values_[row].integer], param.text_default) != 0;
    case ParamKind::none:
      break;
  }
  return false;
}

bool Settings::polish_after_in_use() const {
  return get_double(param::POLISHAFTEREPAGAP) != 0.0 ||
         get_double(param::POLISHAFTEREPGAP) != 0.0 ||
         get_int(param::POLISHAFTERNODE) < kPolishCountInUse ||
         get_int(param::POLISHAFTERINTSOL) < kPolishCountInUse ||
         get_double(param::POLISHAFTERTIME) < kPolishTimeInUse;
}

// Polishing for a given time and polishing after a given event exclude each other.
bool Settings::conflicts_with_polishing(int number, double value) const {
  switch (number) {
    case param::POLISHTIME:
      return value > 0.0 && polish_after_in_use();
    case param::POLISHAFTEREPAGAP:
    case param::POLISHAFTEREPGAP:
      return value > 0.0 && get_double(param::POLISHTIME) > 0.0;
    case param::POLISHAFTERNODE:
    case param::POLISHAFTERINTSOL:
      return value < kCountLimit && get_double(param::POLISHTIME) > 0.0;
    case param::POLISHAFTERTIME:
      return value < kNoLimit && get_double(param::POLISHTIME) > 0.0;
    default:
      return false;
  }
}

}  // namespace kelvo
