#include <cstring>

#include "base/error_code.h"
#include "env/error_table.h"
#include "io/lp_format/reader/sections.h"

namespace kelvo {
namespace {

bool has_class(char c, unsigned classes) {
  return (lp_classes(c) & classes) != 0;
}

}  // namespace

Status LpSosParser::parse(const char* text) {
  while (*text != '\0') KELVO_TRY(step(text));
  return {};
}

Status LpSosParser::step(const char*& at) {
  switch (state_) {
    case State::name: {
      if (!has_class(*at, kLpStart)) return diagnostics_.error_found(error::kExpectedName, *at);
      const std::string_view name = read_lp_name(at, diagnostics_);
      name_length_ = static_cast<int>(name.size());
      std::memcpy(name_, name.data(), name.size());
      state_ = State::colon;
      return {};
    }
    case State::colon:
      if (*at != ':') return diagnostics_.error_found(error::kExpectedColon, *at);
      ++at;
      if (*at != ':') {
        state_ = State::value;
        return {};
      }
      ++at;
      return open_set({}, saved_name());
    case State::value: {
      if (has_class(*at, kLpSign)) {
        if (sign_ != 0) return diagnostics_.error_found(error::kExpectedNumber, *at);
        sign_ = *at++ == '-' ? -1 : 1;
        return {};
      }
      if (sign_ == 0 && has_class(*at, kLpStart) && !has_class(*at, kLpExponent)) {
        const std::string_view type = read_lp_name(at, diagnostics_);
        if (at[0] != ':') return diagnostics_.error_found(error::kExpectedColon, at[0]);
        if (at[1] != ':') return diagnostics_.error_found(error::kExpectedColon, at[1]);
        at += 2;
        return open_set(saved_name(), type);
      }
      if (!has_class(*at, kLpNumeric)) return diagnostics_.error_found(error::kExpectedNumber, *at);
      double weight = 0.0;
      KELVO_TRY(read_lp_number(at, diagnostics_, weight));
      return add_member(sign_ < 0 ? -weight : weight);
    }
  }
  return {};
}

Status LpSosParser::open_set(std::string_view label, std::string_view type) {
  if (type.size() != 2 || (type[0] != 'S' && type[0] != 's'))
    return diagnostics_.error(error::kNoSetType);
  if (type[1] != '1' && type[1] != '2') {
    return report_error(diagnostics_.sink(), error::kUnknownSetType, diagnostics_.line, type[0],
                        type[1]);
  }
  if (!label.empty() && !is_lp_identifier(label))
    return diagnostics_.error_word(error::kNotAName, label);
  KELVO_TRY(collector_.close_set());
  state_ = State::name;
  return collector_.open_set(label, type[1]);
}

Status LpSosParser::add_member(double weight) {
  if (!collector_.has_set()) return diagnostics_.error(error::kNoSetType);
  state_ = State::name;
  sign_ = 0;
  if (!is_lp_identifier(saved_name())) {
    diagnostics_.warn_invalid_name(saved_name());
    return {};
  }
  const int column = find_lp_column(saved_name(), collector_, diagnostics_);
  if (column >= 0) collector_.add_member(column, weight);
  return {};
}

Status LpSosParser::close() {
  if (state_ != State::name) return diagnostics_.error(error::kNotEnoughEntries);
  return collector_.close_set();
}

}  // namespace kelvo
