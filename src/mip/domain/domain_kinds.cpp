// Propagation of cliques, implications, semi-continuous columns, ordered sets and indicators.
#include <cmath>

#include "mip/domain/domain.h"

namespace kelvo {

bool Domain::propagate_literal(int literal) {
  if (bounds_.bound(literal) != literal_value(literal)) return true;
  const Reason reason{ReasonKind::kClique, literal};
  const Vector<int>& edges = cliques_.edges_of(literal);
  work_ += static_cast<double>(edges.size());
  for (const int other : edges) {
    if (!make_true(opposite(other), reason)) return false;
  }
  for (const int clique : cliques_.cliques_of(literal)) {
    const LiteralSpan members = cliques_.members(clique);
    work_ += members.length;
    for (const int other : members) {
      if (other != literal && !make_true(opposite(other), reason)) return false;
    }
  }
  const Vector<Implication>& implied = implications_.implied_by(literal);
  work_ += static_cast<double>(implied.size());
  for (const Implication& each : implied) {
    if (!force(each.bound, each.value, {ReasonKind::kImplication, literal})) return false;
  }
  return true;
}

// x = 0 or l <= x <= u. What excludes 0 leaves [l, u]; what excludes [l, u] leaves 0.
bool Domain::propagate_semi(int column) {
  const int k = semi_of_[column];
  const SemiColumn& semi = mip_.semis[k];
  const Reason reason{ReasonKind::kSemi, k};
  const double lower = bounds_.lower(column), upper = bounds_.upper(column);
  if (lower >= kNonzero || upper <= -kNonzero) {
    return force(lower_of(column), semi.lower, reason) &&
           force(upper_of(column), semi.upper, reason);
  }
  if (upper < semi.lower - outward_shift(semi.lower) ||
      lower > semi.upper + outward_shift(semi.upper)) {
    return force(upper_of(column), 0.0, reason) && force(lower_of(column), 0.0, reason);
  }
  return true;
}

// A member that is not 0 makes those 0 that cannot be not 0 together with it.
bool Domain::propagate_sets(int column) {
  int cause = -1;
  if (bounds_.lower(column) >= kNonzero) cause = lower_of(column);
  if (bounds_.upper(column) <= -kNonzero) cause = upper_of(column);
  if (cause < 0) return true;
  const Reason reason{ReasonKind::kSet, cause};
  for (int k = member_start_[column]; k < member_start_[column + 1]; ++k) {
    const OrderedSet& set = mip_.sets[memberships_[k].set];
    const int place = memberships_[k].place;
    const int members = static_cast<int>(set.members.size());
    work_ += members;
    for (int other = 0; other < members; ++other) {
      if (std::abs(other - place) < set.type) continue;
      if (!force(upper_of(set.members[other]), 0.0, reason) ||
          !force(lower_of(set.members[other]), 0.0, reason)) {
        return false;
      }
    }
  }
  return true;
}

bool Domain::propagate_switch(int literal) {
  if (bounds_.bound(literal) != literal_value(literal)) return true;
  const int column = variable_of(literal);
  for (int k = switch_start_[column]; k < switch_start_[column + 1]; ++k) {
    const Indicator& indicator = mip_.indicators[switched_[k]];
    if (indicator.active != static_cast<int>(literal_value(literal))) continue;
    const int logical = mip_.num_cols() + indicator.row;
    const Reason reason{ReasonKind::kIndicator, switched_[k]};
    if (!force(lower_of(logical), -indicator.upper, reason) ||
        !force(upper_of(logical), -indicator.lower, reason)) {
      return false;
    }
  }
  return true;
}

}  // namespace kelvo
