// Propagation of clauses by two watched literals.
#include "mip/domain/domain.h"

namespace kelvo {
namespace {

/// More clauses than this are not looked at again and again until their watches are free.
constexpr std::size_t kMostFreshClauses = 64;

}  // namespace

// Whether a literal cannot hold any more, so that its clauses are satisfied.
bool Domain::is_excluded(const BoundLiteral& literal) const {
  const double other = bounds_.bound(opposite(literal.bound));
  return is_tighter(literal.bound, literal.value, other);
}

double Domain::negation(const BoundLiteral& literal) const {
  if (!bounds_.is_integer(variable_of(literal.bound))) return literal.value;
  return literal.value + (is_upper(literal.bound) ? 1.0 : -1.0);
}

// All literals but `last` hold.
bool Domain::propagate_last(int clause, const BoundLiteral& last) {
  const Reason reason{ReasonKind::kClause, clause};
  if (!bounds_.holds(last)) return force(opposite(last.bound), negation(last), reason);
  bounds_.set_conflict({-1, 0.0, reason});
  return false;
}

bool Domain::propagate_clauses(int bound) {
  const double value = bounds_.bound(bound);
  int next;
  for (int watch = clauses_.first_watch(bound); watch >= 0; watch = next) {
    next = clauses_.next_watch(watch);
    work_ += 1.0;
    if (!is_as_tight(bound, value, clauses_.watched_value(watch))) continue;
    const int clause = watch >> 1;
    const BoundLiteral* literals = clauses_.literals(clause);
    const BoundLiteral& other = literals[1 - (watch & 1)];
    if (is_excluded(other)) continue;
    const int length = clauses_.length(clause);
    int k = 2;
    while (k < length && bounds_.holds(literals[k])) ++k;
    work_ += k;
    if (k < length) {
      clauses_.move_watch(watch, k);
    } else if (!propagate_last(clause, other)) {
      return false;
    }
  }
  return true;
}

// A clause that was added where literals of it hold already.
bool Domain::check_clause(int clause) {
  const BoundLiteral* literals = clauses_.literals(clause);
  const int length = clauses_.length(clause);
  int last = 0, missing = 0;
  for (int k = 0; k < length && missing < 2; ++k) {
    if (is_excluded(literals[k])) return true;
    if (bounds_.holds(literals[k])) continue;
    last = k;
    ++missing;
  }
  work_ += length;
  return missing > 1 || propagate_last(clause, literals[last]);
}

bool Domain::check_fresh_clauses() {
  std::size_t kept = 0;
  bool consistent = true;
  for (const int clause : fresh_clauses_) {
    if (!clauses_.is_alive(clause)) continue;
    if (consistent) consistent = check_clause(clause);
    // It stays as long as a return could leave it with one literal without any change to tell.
    const BoundLiteral* watched = clauses_.literals(clause);
    if (bounds_.holds(watched[0]) || bounds_.holds(watched[1])) fresh_clauses_[kept++] = clause;
  }
  fresh_clauses_.resize(kept);
  if (kept > kMostFreshClauses) {
    fresh_clauses_.erase(fresh_clauses_.begin(), fresh_clauses_.end() - kMostFreshClauses);
  }
  return consistent;
}

void Domain::add_clause(const Vector<BoundLiteral>& literals) {
  if (debug_ != nullptr) debug_->check_clause(literals);
  if (literals.empty()) {
    infeasible_ = true;
    return;
  }
  if (literals.size() == 1) {
    tighten_globally(opposite(literals[0].bound), negation(literals[0]));
    return;
  }
  fresh_clauses_.push_back(clauses_.add(literals, bounds_));
  settled_ = -1;
}

}  // namespace kelvo
