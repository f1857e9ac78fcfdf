#include "mip/domain/explainer.h"

#include <cmath>

namespace kelvo {
namespace {

/// Share of the slack that relaxing one bound may use: the rest covers the rounding of the bound.
constexpr double kSpent = 1.0 - 1e-9;

BoundLiteral true_literal(int literal) {
  return {literal, literal_value(literal)};
}

}  // namespace

Explainer::Inequality Explainer::side_of_row(int row, bool at_least) const {
  const RowSystem& rows = domain_.rows();
  const double sign = at_least ? -1.0 : 1.0;
  const int logical = rows.logical_of(row);
  double rhs = 0.0;
  if (logical < 0) rhs = at_least ? -rows.state(row).lower : rows.state(row).upper;
  return {rows.view(row), sign, logical, rhs};
}

Explainer::Inequality Explainer::side_of_proof(const LinearProof& proof) const {
  const RowView entries{proof.index.data(), proof.value.data(),
                        static_cast<int>(proof.index.size())};
  return {entries, -1.0, -1, -proof.rhs};
}

bool Explainer::explain(const BoundLiteral& literal, Reason reason, int position,
                        Vector<BoundLiteral>& explanation) {
  switch (reason.kind) {
    case ReasonKind::kDecision:
    case ReasonKind::kUnexplained:
      return false;
    case ReasonKind::kGlobal:
      return true;
    case ReasonKind::kRow:
      return explain_row(side_of_row(reason.index >> 1, reason.index & 1), &literal, position,
                         explanation);
    case ReasonKind::kIndicatorRow: {
      const Indicator& indicator = domain_.indicator(reason.index >> 1);
      const bool below = reason.index & 1;
      const Inequality row{domain_.rows().view(indicator.row), below ? -1.0 : 1.0, -1,
                           below ? -indicator.lower : indicator.upper};
      return explain_row(row, nullptr, position, explanation);
    }
    case ReasonKind::kIndicator: {
      const Indicator& indicator = domain_.indicator(reason.index);
      explanation.push_back(true_literal(literal_of(indicator.binary, indicator.active != 0)));
      return true;
    }
    case ReasonKind::kClique:
    case ReasonKind::kImplication:
      explanation.push_back(true_literal(reason.index));
      return true;
    case ReasonKind::kSemi:
      explain_semi(reason.index, position, explanation);
      return true;
    case ReasonKind::kSet: {
      const double away = domain_.bounds().is_integer(variable_of(reason.index)) ? 1.0 : kNonzero;
      explanation.push_back({reason.index, is_upper(reason.index) ? -away : away});
      return true;
    }
    case ReasonKind::kClause:
      explain_clause(literal, reason.index, explanation);
      return true;
    case ReasonKind::kProof:
      return explain_row(side_of_proof(domain_.proof(reason.index)), &literal, position,
                         explanation);
  }
  return false;
}

bool Explainer::explain_conflict(Vector<BoundLiteral>& explanation) {
  const Conflict& conflict = domain_.conflict();
  const LocalBounds& bounds = domain_.bounds();
  if (conflict.bound < 0) {
    // Without a bound there is no literal to imply: the reason is a violated row or clause.
    if (conflict.reason.kind == ReasonKind::kClause) {
      explain_clause({-1, 0.0}, conflict.reason.index, explanation);
      return true;
    }
    return explain_row(side_of_row(conflict.reason.index >> 1, conflict.reason.index & 1), nullptr,
                       bounds.size(), explanation);
  }
  const BoundLiteral derived{conflict.bound, conflict.value};
  const int other = opposite(conflict.bound);
  double limit = bounds.bound(other);
  if (bounds.is_integer(variable_of(other))) {
    // Any bound that leaves no whole number will do.
    limit = is_upper(other) ? std::ceil(conflict.value - kWholeTolerance) - 1.0
                            : std::floor(conflict.value + kWholeTolerance) + 1.0;
  }
  explanation.push_back({other, limit});
  return explain(derived, conflict.reason, bounds.size(), explanation);
}

bool Explainer::explain_violation(const LinearProof& proof, Vector<BoundLiteral>& explanation) {
  const Inequality row = side_of_proof(proof);
  terms_.clear();
  activity_ = 0.0L;
  size_ = std::abs(row.rhs);
  for (int k = 0; k < row.entries.length; ++k) {
    if (!add_term(row.entries.index[k], -row.entries.value[k], domain_.bounds().size())) {
      return false;
    }
  }
  const long double slack = activity_ - row.rhs - kRowSlack - kRoundoff * size_;
  if (slack <= 0.0L) return false;
  relax(slack, explanation);
  return true;
}

// The term's smallest value before `position`; false when that is infinite.
bool Explainer::add_term(int variable, double coefficient, int position) {
  if (coefficient == 0.0) return true;
  const LocalBounds& bounds = domain_.bounds();
  const int bound = coefficient > 0.0 ? lower_of(variable) : upper_of(variable);
  const double value = bounds.value_before(bound, position);
  if (std::isinf(value)) return false;
  activity_ += static_cast<long double>(coefficient) * value;
  size_ += std::abs(coefficient * value);
  const double global = bounds.global(bound);
  if (!is_tighter(bound, value, global)) return true;
  terms_.push_back({bound, coefficient, value, std::abs(coefficient * (value - global))});
  return true;
}

// What the activity of the other columns must exceed for the row to imply the literal.
double Explainer::threshold(const Inequality& row, const BoundLiteral& literal,
                            double coefficient) const {
  const double away = is_upper(literal.bound) ? 1.0 : -1.0;
  const double w = literal.value;
  const double reach = domain_.bounds().is_integer(variable_of(literal.bound))
                           ? w + away * (1.0 - rounding_slack(w))
                           : w - away * outward_shift(w);
  return row.rhs + kRowSlack - coefficient * reach;
}

bool Explainer::explain_row(const Inequality& row, const BoundLiteral* literal, int position,
                            Vector<BoundLiteral>& explanation) {
  terms_.clear();
  activity_ = 0.0L;
  size_ = std::abs(row.rhs);
  double required = row.rhs + kRowSlack;
  const int implied = literal == nullptr ? -1 : variable_of(literal->bound);
  for (int k = 0; k < row.entries.length; ++k) {
    const double a = row.sign * row.entries.value[k];
    if (row.entries.index[k] == implied) {
      required = threshold(row, *literal, a);
      size_ += std::abs(a * literal->value);
    } else if (!add_term(row.entries.index[k], a, position)) {
      return false;
    }
  }
  if (row.logical >= 0 && !add_term(row.logical, row.sign, position)) return false;
  work_ += row.entries.length;
  relax(activity_ - required - kRoundoff * size_, explanation);
  return true;
}

// Spends the slack on the bounds of terms_ and appends what has to stay.
void Explainer::relax(long double slack, Vector<BoundLiteral>& explanation) {
  const LocalBounds& bounds = domain_.bounds();
  std::sort(terms_.begin(), terms_.end(), [](const Term& a, const Term& b) {
    return a.cost != b.cost ? a.cost < b.cost : a.bound < b.bound;
  });
  for (const Term& term : terms_) {
    if (term.cost < slack) {
      slack -= term.cost;
      continue;
    }
    BoundLiteral literal{term.bound, term.value};
    const bool whole = bounds.is_integer(variable_of(term.bound));
    double room =
        slack > 0.0L ? static_cast<double>(slack) * kSpent / std::abs(term.coefficient) : 0.0;
    if (whole) room = std::floor(room);
    if (room > (whole ? 0.0 : outward_shift(term.value))) {
      literal.value += is_upper(term.bound) ? room : -room;
      slack -= static_cast<long double>(room) * std::abs(term.coefficient);
    }
    explanation.push_back(literal);
  }
}

void Explainer::explain_semi(int semi, int position, Vector<BoundLiteral>& explanation) const {
  const LocalBounds& bounds = domain_.bounds();
  const int column = domain_.semi(semi).column;
  const double away = bounds.is_integer(column) ? 1.0 : kNonzero;
  const double lower = bounds.value_before(lower_of(column), position);
  const double upper = bounds.value_before(upper_of(column), position);
  if (lower >= kNonzero) {
    explanation.push_back({lower_of(column), away});
  } else if (upper <= -kNonzero) {
    explanation.push_back({upper_of(column), -away});
  } else if (const double least = domain_.semi(semi).lower; upper < least - outward_shift(least)) {
    explanation.push_back({upper_of(column), upper});
  } else {
    explanation.push_back({lower_of(column), lower});
  }
}

void Explainer::explain_clause(const BoundLiteral& literal, int clause,
                               Vector<BoundLiteral>& explanation) const {
  const BoundLiteral* literals = domain_.clauses().literals(clause);
  for (int k = 0; k < domain_.clauses().length(clause); ++k) {
    if (literals[k].bound != opposite(literal.bound)) explanation.push_back(literals[k]);
  }
}

}  // namespace kelvo
