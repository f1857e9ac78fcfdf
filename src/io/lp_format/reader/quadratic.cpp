// The quadratic parts of expressions: [ 2 x^2 - 4 x*y ] and the divisor behind them.

#include "base/error_code.h"
#include "io/lp_format/reader/expression.h"

namespace kelvo {
namespace {

bool has_class(char c, unsigned classes) {
  return (lp_classes(c) & classes) != 0;
}
bool is_number_start(char c) {
  return has_class(c, kLpDigit) || c == '.';
}

}  // namespace

Status LpExpressionParser::open_bracket() {
  const bool allowed = in_objective() || (section_ == LpSection::constraints && !is_indicator_);
  if (!allowed) return diagnostics_.error(error::kQuadraticTermInConstraint);
  resolve_names();
  ++at_;
  bracket_sign_ = sign_;
  bracket_begin_ = quadratic_.size();
  has_bracket_ = true;
  sign_ = 1;
  state_ = State::quad_first;
  return {};
}

Status LpExpressionParser::read_quad_term() {
  const char c = *at_;
  if (has_class(c, kLpStart)) {
    std::string_view name;
    KELVO_TRY(take_variable(name));
    first_variable_ = collector_.column(name);
    state_ = State::quad_operator;
    return {};
  }
  if (state_ != State::quad_variable) {
    if (is_number_start(c)) return take_coefficient(State::quad_variable);
    if (has_class(c, kLpSign)) return take_sign(State::quad_signed);
  }
  if (state_ == State::quad_signed) {
    if (has_class(c, kLpRelation))
      return diagnostics_.error_pair(error::kAdjacentSignAndSense, sign_line_);
    if (has_class(c, kLpOperator))
      return diagnostics_.error_pair(error::kAdjacentSignAndOperator, sign_line_);
  }
  if (c == '^' || c == '*') return diagnostics_.error(error::kExpectedNameFirst);
  return diagnostics_.error_found(error::kExpectedName, c);
}

Status LpExpressionParser::read_quad_operator() {
  if (*at_ != '^' && *at_ != '*') return diagnostics_.error(error::kExpectedPowerOrProduct);
  state_ = *at_++ == '^' ? State::quad_exponent : State::quad_second;
  return {};
}

Status LpExpressionParser::read_quad_exponent() {
  if (!is_number_start(*at_)) return diagnostics_.error(error::kExpectedExponent);
  double exponent = 0.0;
  KELVO_TRY(read_lp_number(at_, diagnostics_, exponent));
  if (exponent != 2.0) return diagnostics_.error(error::kExponentNotTwo);
  add_quadratic_term(first_variable_);
  return {};
}

Status LpExpressionParser::read_quad_second() {
  if (!has_class(*at_, kLpStart)) return diagnostics_.error_found(error::kExpectedName, *at_);
  std::string_view name;
  KELVO_TRY(take_variable(name));
  add_quadratic_term(collector_.column(name));
  return {};
}

void LpExpressionParser::add_quadratic_term(int second) {
  quadratic_.add(first_variable_, second, bracket_sign_ * sign_ * coefficient_);
  sign_ = 1;
  coefficient_ = 1.0;
  state_ = State::quad_after_term;
}

Status LpExpressionParser::read_quad_after_term() {
  if (has_class(*at_, kLpSign)) return take_sign(State::quad_signed);
  if (*at_ != ']') return diagnostics_.error_found(error::kExpectedSign, *at_);
  ++at_;
  state_ = in_objective() ? State::divisor_slash : State::after_term;
  return {};
}

Status LpExpressionParser::read_divisor() {
  if (state_ == State::divisor_slash) {
    if (*at_ == '/') {
      ++at_;
      state_ = State::divisor_number;
    } else {
      accept_bracket_without_divisor();
    }
    return {};
  }
  if (!is_number_start(*at_)) return diagnostics_.error(error::kBadQuadraticDivisor);
  double divisor = 0.0;
  KELVO_TRY(read_lp_number(at_, diagnostics_, divisor));
  if (divisor != 2.0) return diagnostics_.error(error::kBadQuadraticDivisor);
  state_ = State::after_term;
  return {};
}

void LpExpressionParser::accept_bracket_without_divisor() {
  diagnostics_.warn_deprecated_bracket();
  for (std::size_t k = bracket_begin_; k < quadratic_.size(); ++k) quadratic_.value[k] *= 2.0;
  state_ = State::after_term;
}

}  // namespace kelvo
