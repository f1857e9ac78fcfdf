#include "io/lp_format/reader/expression.h"

#include <cmath>
#include <cstring>

#include "base/error_code.h"

namespace kelvo {
namespace {

/// How far the coefficient and the value before an indicator's arrow may be off.
constexpr double kIndicatorTolerance = 1e-10;

bool has_class(char c, unsigned classes) {
  return (lp_classes(c) & classes) != 0;
}
bool is_number_start(char c) {
  return has_class(c, kLpDigit) || c == '.';
}

}  // namespace

void LpExpressionParser::open(LpSection section) {
  const bool continues = in_objective() && is_objective(section);
  section_ = section;
  if (is_objective(section)) collector_.set_sense(section == LpSection::minimize ? 1 : -1);
  if (!continues) reset();
}

/// Gets ready for the next objective or constraint.
void LpExpressionParser::reset() {
  state_ = State::begin;
  sign_ = 1;
  coefficient_ = 1.0;
  has_bracket_ = false;
  is_indicator_ = false;
  has_label_ = false;
  label_length_ = 0;
  linear_.clear();
  quadratic_.truncate(0);
}

Status LpExpressionParser::parse(const char* text, bool& ignored) {
  at_ = text;
  ignored_ = false;
  while (*at_ != '\0' && !ignored_) KELVO_TRY(step());
  ignored = ignored_;
  return {};
}

Status LpExpressionParser::step() {
  switch (state_) {
    case State::begin:
      return read_begin();
    case State::first_term:
    case State::signed_term:
    case State::variable:
      return read_term();
    case State::after_term:
      return read_operator();
    case State::rhs:
    case State::signed_rhs:
      return read_rhs();
    case State::quad_first:
    case State::quad_signed:
    case State::quad_variable:
      return read_quad_term();
    case State::quad_operator:
      return read_quad_operator();
    case State::quad_exponent:
      return read_quad_exponent();
    case State::quad_second:
      return read_quad_second();
    case State::quad_after_term:
      return read_quad_after_term();
    case State::divisor_slash:
    case State::divisor_number:
      return read_divisor();
  }
  return {};
}

/// A label, or the first token of an expression without one.
Status LpExpressionParser::read_begin() {
  if (!has_class(*at_, kLpStart)) return read_term();
  std::string_view name;
  KELVO_TRY(take_variable(name));
  if (*at_ != ':') {
    add_term(name);
    return {};
  }
  ++at_;
  state_ = State::first_term;
  if (in_objective()) {
    collector_.set_objective_name(name);
    return {};
  }
  has_label_ = true;
  label_line_ = diagnostics_.line;
  label_length_ = static_cast<int>(name.size());
  std::memcpy(label_, name.data(), name.size());
  return {};
}

Status LpExpressionParser::read_term() {
  const char c = *at_;
  if (has_class(c, kLpStart)) {
    std::string_view name;
    KELVO_TRY(take_variable(name));
    add_term(name);
    return {};
  }
  if (state_ != State::variable) {
    if (is_number_start(c)) return take_coefficient(State::variable);
    if (has_class(c, kLpSign)) return take_sign(State::signed_term);
    if (c == '[') return open_bracket();
  }
  if (has_class(c, kLpRelation)) return misplaced_sense();
  if (has_class(c, kLpOperator)) {
    if (state_ == State::signed_term)
      return diagnostics_.error_pair(error::kAdjacentSignAndOperator, sign_line_);
    if (state_ != State::variable) return diagnostics_.error(error::kExpectedNameFirst);
  }
  return diagnostics_.error_found(error::kExpectedName, c);
}

/// A sense where a term is due. A constraint that has nothing but a label is an empty row.
Status LpExpressionParser::misplaced_sense() {
  if (state_ == State::signed_term)
    return diagnostics_.error_pair(error::kAdjacentSignAndSense, sign_line_);
  if (in_objective()) return diagnostics_.error(error::kSenseInObjective);
  if (state_ == State::first_term && has_label_) {
    take_sense();
    return {};
  }
  if (linear_.size() == 0 && quadratic_.size() == 0)
    return diagnostics_.error(error::kExpectedNameFirst);
  return diagnostics_.error_found(error::kExpectedName, *at_);
}

Status LpExpressionParser::take_sign(State next) {
  if (state_ == next) return diagnostics_.error_pair(error::kAdjacentSigns, sign_line_);
  sign_ = *at_++ == '-' ? -1 : 1;
  sign_line_ = diagnostics_.line;
  state_ = next;
  return {};
}

Status LpExpressionParser::take_coefficient(State next) {
  KELVO_TRY(read_lp_number(at_, diagnostics_, coefficient_));
  state_ = next;
  return {};
}

/// Reads a name that must be a valid identifier; `at_` is at a start character.
Status LpExpressionParser::take_variable(std::string_view& name) {
  name = read_lp_name(at_, diagnostics_);
  if (!is_lp_identifier(name)) return diagnostics_.error_word(error::kNotAName, name);
  return {};
}

void LpExpressionParser::add_term(std::string_view name) {
  if (!collector_.can_defer()) resolve_names();
  collector_.defer_column(name);
  linear_.add(-1, sign_ * coefficient_);
  sign_ = 1;
  coefficient_ = 1.0;
  state_ = State::after_term;
}

/// Must come before any other look-up of columns, so that they keep the order in which they come
/// up.
void LpExpressionParser::resolve_names() {
  collector_.resolve_columns(linear_);
}

/// What joins two terms, or the sense of a constraint.
Status LpExpressionParser::read_operator() {
  const char c = *at_;
  if (has_class(c, kLpSign)) return take_sign(State::signed_term);
  if (has_class(c, kLpRelation)) {
    if (in_objective()) return diagnostics_.error(error::kSenseInObjective);
    take_sense();
    return {};
  }
  return diagnostics_.error_found(
      in_objective() ? error::kExpectedSign : error::kExpectedSignOrSense, c);
}

/// "<", "<=", "=<", ">", ">=", "=>" and "=".
void LpExpressionParser::take_sense() {
  const char first = *at_++;
  sense_ = first == '<' ? 'L' : first == '>' ? 'G' : 'E';
  if (first != '=' && *at_ == '=') {
    ++at_;
  } else if (first == '=' && (*at_ == '<' || *at_ == '>')) {
    sense_ = *at_++ == '<' ? 'L' : 'G';
  }
  sign_ = 1;
  state_ = State::rhs;
}

Status LpExpressionParser::read_rhs() {
  const char c = *at_;
  if (has_class(c, kLpSign)) return take_sign(State::signed_rhs);
  if (has_class(c, kLpNumeric)) {
    KELVO_TRY(read_lp_number(at_, diagnostics_, rhs_));
    rhs_ *= sign_;
    return end_constraint();
  }
  if (state_ == State::signed_rhs) return diagnostics_.error(error::kExpectedRhs);
  return diagnostics_.error_found(error::kExpectedNumber, c);
}

/// Behind a right-hand side: the end of the constraint or the arrow of an indicator.
Status LpExpressionParser::end_constraint() {
  if (*at_ != '\0') {
    resolve_names();
    bool found = false;
    KELVO_TRY(read_indicator_arrow(found));
    if (found) return {};
    diagnostics_.warn_after_rhs();
    ignored_ = true;
  }
  return finish_constraint();
}

/// Turns "variable = 0" or "variable = 1" before an arrow into the switch of an indicator.
Status LpExpressionParser::read_indicator_arrow(bool& found) {
  constexpr std::string_view kArrows[] = {"->", "<->", "<-"};
  constexpr int kRelations[] = {1, 3, 2};
  const std::string_view rest(at_);
  for (int k = 0; k < 3; ++k) {
    if (!rest.starts_with(kArrows[k])) continue;
    if (section_ != LpSection::constraints) return diagnostics_.error(error::kIllegalCut);
    const bool is_switch =
        !is_indicator_ && !has_bracket_ && linear_.size() == 1 &&
        std::fabs(linear_.value[0] - 1.0) <= kIndicatorTolerance && sense_ == 'E' &&
        (std::fabs(rhs_) <= kIndicatorTolerance || std::fabs(rhs_ - 1.0) <= kIndicatorTolerance);
    if (!is_switch) return diagnostics_.error(error::kIllegalIndicator);
    at_ += kArrows[k].size();
    indicator_ = {linear_.index[0], kRelations[k], std::fabs(rhs_) <= kIndicatorTolerance};
    is_indicator_ = true;
    linear_.clear();
    sign_ = 1;
    state_ = State::first_term;
    found = true;
    return {};
  }
  return {};
}

Status LpExpressionParser::finish_constraint() {
  LpConstraint constraint;
  constraint.label = std::string_view(label_, label_length_);
  constraint.line = has_label_ ? label_line_ : diagnostics_.line;
  constraint.sense = sense_;
  constraint.rhs = rhs_;
  constraint.linear = &linear_;
  constraint.quadratic = &quadratic_;
  const bool plain = section_ == LpSection::constraints && !is_indicator_ && !has_bracket_;
  if (!plain) resolve_names();
  if (is_indicator_) {
    KELVO_TRY(collector_.add_indicator(indicator_, constraint));
  } else if (has_bracket_) {
    KELVO_TRY(collector_.add_quadratic_constraint(constraint));
  } else {
    KELVO_TRY(collector_.add_constraint(section_, constraint));
  }
  reset();
  return {};
}

Status LpExpressionParser::close() {
  resolve_names();
  if (in_objective()) {
    if (state_ == State::divisor_number) return diagnostics_.error(error::kBadQuadraticDivisor);
    if (state_ == State::divisor_slash) accept_bracket_without_divisor();
    if (state_ != State::begin && state_ != State::first_term && state_ != State::after_term) {
      diagnostics_.warn_objective_ended();
      if (state_ >= State::quad_first) quadratic_.truncate(bracket_begin_);
    }
    collector_.add_objective(linear_, quadratic_);
  } else if (is_constraints(section_) && state_ != State::begin) {
    diagnostics_.warn_unfinished_constraint();
  }
  section_ = LpSection::none;
  reset();
  return {};
}

}  // namespace kelvo
