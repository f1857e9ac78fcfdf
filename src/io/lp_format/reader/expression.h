// Objective and constraints of the LP format.
//
//   objective    [label:] expression
//   constraint   [label:] expression sense number
//   indicator    [label:] variable = 0|1 arrow expression sense number
//   expression   terms joined by signs: [number] variable, and [ quadratic terms ] with the divisor
//                "/ 2" behind the bracket in the objective only
//
// An expression may extend over any number of lines, so the parser is a machine that is fed tokens
// and remembers its state from line to line. A constraint ends with its right-hand side; the rest
// of that line may only be the arrow of an indicator.
//
// A bracket in the objective without the divisor is taken as written: [ x^2 ] is x^2, and
// [ x^2 ] / 2 is half of it.
#pragma once

#include <string_view>

#include "io/lp_format/reader/collector.h"
#include "io/lp_format/reader/tokens.h"

namespace kelvo {

class LpExpressionParser {
 public:
  LpExpressionParser(LpCollector& collector, LpDiagnostics& diagnostics)
      : collector_(collector), diagnostics_(diagnostics) {}

  /// Enters an objective or constraint section. A second objective keyword inside the objective
  /// only changes its sense.
  void open(LpSection section);
  /// Reads a line without blanks, ended by a zero. `ignored` tells that characters behind a
  /// right-hand side, and with them the rest of the physical line, do not count.
  Status parse(const char* text, bool& ignored);
  /// Leaves the section: hands over the objective, drops an unfinished constraint.
  Status close();

 private:
  enum class State {
    begin,            // of an objective or constraint; a label may follow
    first_term,       // a term, its sign is optional
    signed_term,      // a sign has been read
    variable,         // a coefficient has been read
    after_term,       // a sign or a sense
    rhs,              // a number
    signed_rhs,       // a number, its sign has been read
    quad_first,       // the first term of a bracket
    quad_signed,      // a sign has been read inside a bracket
    quad_variable,    // a coefficient has been read inside a bracket
    quad_operator,    // '^' or '*'
    quad_exponent,    // the number 2
    quad_second,      // the second variable of a product
    quad_after_term,  // a sign or ']'
    divisor_slash,    // '/' behind the bracket of the objective
    divisor_number,   // the number 2
  };

  Status step();
  Status read_begin();
  Status read_term();
  Status read_operator();
  Status read_rhs();
  Status read_quad_term();
  Status read_quad_operator();
  Status read_quad_exponent();
  Status read_quad_second();
  Status read_quad_after_term();
  Status read_divisor();

  Status take_sign(State next);
  Status take_coefficient(State next);
  Status take_variable(std::string_view& name);
  void add_term(std::string_view name);
  void resolve_names();
  void add_quadratic_term(int second);
  Status open_bracket();
  void accept_bracket_without_divisor();
  void take_sense();
  Status misplaced_sense();
  Status end_constraint();
  Status read_indicator_arrow(bool& found);
  Status finish_constraint();
  void reset();

  bool in_objective() const { return is_objective(section_); }

  LpCollector& collector_;
  LpDiagnostics& diagnostics_;
  LpSection section_ = LpSection::none;
  State state_ = State::begin;
  const char* at_ = nullptr;  // next character of the line
  bool ignored_ = false;

  int sign_ = 1;              // of the term or right-hand side being read
  int sign_line_ = 0;         // line of that sign
  double coefficient_ = 1.0;  // of the term being read
  int first_variable_ = -1;   // of the quadratic term being read
  int bracket_sign_ = 1;
  std::size_t bracket_begin_ = 0;  // quadratic terms before the open bracket
  bool has_bracket_ = false;

  // The columns of the last terms are filled in later, see LpCollector::defer_column().
  LpLinearTerms linear_;
  LpQuadraticTerms quadratic_;
  char sense_ = 'E';
  double rhs_ = 0.0;
  bool is_indicator_ = false;  // the arrow has been read
  LpIndicator indicator_;
  bool has_label_ = false;
  int label_line_ = 0;
  int label_length_ = 0;
  char label_[kLpNameLength];  // [label_length_]
};

}  // namespace kelvo
