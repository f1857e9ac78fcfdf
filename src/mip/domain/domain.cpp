#include "mip/domain/domain.h"

#include <cmath>

namespace kelvo {

Domain::Domain(const MipProblem& mip, const CliqueTable& cliques,
               const ImplicationTable& implications)
    : mip_(mip),
      cliques_(cliques),
      implications_(implications),
      bounds_(mip),
      rows_(mip, bounds_),
      clauses_(mip.lp.num_vars()),
      kinds_(mip.num_cols(), 0),
      uses_(mip.num_rows(), 0) {
  find_kinds();
  infeasible_ = bounds_.in_conflict();
}

void Domain::find_kinds() {
  const int n = mip_.num_cols();
  for (int j = 0; j < n; ++j) {
    if (mip_.is_binary(j)) kinds_[j] |= kLiteral;
  }
  if (!mip_.semis.empty()) semi_of_.assign(n, -1);
  for (int k = 0; k < static_cast<int>(mip_.semis.size()); ++k) {
    kinds_[mip_.semis[k].column] |= kSemiColumn;
    semi_of_[mip_.semis[k].column] = k;
  }
  if (!mip_.sets.empty()) {
    member_start_.assign(n + 1, 0);
    for (const OrderedSet& set : mip_.sets) {
      for (const int j : set.members) ++member_start_[j + 1];
    }
    for (int j = 0; j < n; ++j) member_start_[j + 1] += member_start_[j];
    memberships_.resize(member_start_[n]);
    Vector<int> next(member_start_.begin(), member_start_.end() - 1);
    for (int s = 0; s < static_cast<int>(mip_.sets.size()); ++s) {
      const Vector<int>& members = mip_.sets[s].members;
      for (int k = 0; k < static_cast<int>(members.size()); ++k) {
        kinds_[members[k]] |= kSetMember;
        memberships_[next[members[k]]++] = {s, k};
      }
    }
  }
  if (!mip_.indicators.empty()) {
    row_indicator_.assign(mip_.num_rows(), -1);
    switch_start_.assign(n + 1, 0);
    for (const Indicator& indicator : mip_.indicators) ++switch_start_[indicator.binary + 1];
    for (int j = 0; j < n; ++j) switch_start_[j + 1] += switch_start_[j];
    switched_.resize(mip_.indicators.size());
    Vector<int> next(switch_start_.begin(), switch_start_.end() - 1);
    for (int k = 0; k < static_cast<int>(mip_.indicators.size()); ++k) {
      const Indicator& indicator = mip_.indicators[k];
      kinds_[indicator.binary] |= kSwitch;
      switched_[next[indicator.binary]++] = k;
      row_indicator_[indicator.row] = k;
      rows_.set_indicator_row(indicator.row);
    }
  }
}

Tightening Domain::decide(int bound, double value) {
  bounds_.start_level();
  return tighten(bound, value, kDecided);
}

Tightening Domain::tighten(int bound, double value, Reason reason) {
  const Tightening result = bounds_.tighten(bound, value, reason);
  if (result == Tightening::kConflict && bounds_.level() == 0) infeasible_ = true;
  if (debug_ != nullptr) check_debug_solution(result, bound, value, reason.kind);
  return result;
}

Tightening Domain::tighten_globally(int bound, double value) {
  if (bounds_.level() == 0) return tighten(bound, value, kGloballyTrue);
  pending_.push_back({bound, value});
  const Tightening result = bounds_.tighten_globally(bound, value);
  if (debug_ != nullptr) check_debug_solution(result, bound, value, ReasonKind::kGlobal);
  return result;
}

void Domain::check_debug_solution(Tightening result, int bound, double value, ReasonKind kind) {
  if (result == Tightening::kNone) return;
  const bool done = result == Tightening::kDone;
  debug_->check_bound(bounds_.size() - done, bound, done ? bounds_.bound(bound) : value, kind);
}

void Domain::apply_changes() {
  for (; applied_ < bounds_.size(); ++applied_) rows_.apply(bounds_.change(applied_));
}

bool Domain::handle_change(int position) {
  const int bound = bounds_.change(position).bound;
  const int v = variable_of(bound);
  if (v < mip_.num_cols() && kinds_[v] != 0) {
    const unsigned char kinds = kinds_[v];
    if ((kinds & kLiteral) && !propagate_literal(bound)) return false;
    if ((kinds & kSemiColumn) && !propagate_semi(v)) return false;
    if ((kinds & kSetMember) && !propagate_sets(v)) return false;
    if ((kinds & kSwitch) && !propagate_switch(bound)) return false;
  }
  return propagate_clauses(bound);
}

// What the bounds of the start say about semi-continuous columns, sets and indicators.
bool Domain::apply_constraints() {
  for (int j = 0; j < mip_.num_cols(); ++j) {
    const unsigned char kinds = kinds_[j];
    if ((kinds & kSemiColumn) && !propagate_semi(j)) return false;
    if ((kinds & kSetMember) && !propagate_sets(j)) return false;
    if (!bounds_.is_fixed(j)) continue;
    const int literal = literal_of(j, bounds_.lower(j) > 0.5);
    if ((kinds & kLiteral) && !propagate_literal(literal)) return false;
    if ((kinds & kSwitch) && !propagate_switch(literal)) return false;
  }
  return true;
}

bool Domain::propagate(double work_limit) {
  if (infeasible_ || bounds_.in_conflict()) return false;
  const double stop_at = work() + work_limit;
  bool consistent = check_fresh_clauses();
  if (consistent && !started_) {
    started_ = true;
    consistent = apply_constraints();
  }
  while (consistent && work() < stop_at) {
    apply_changes();
    if (handled_ < bounds_.size()) {
      consistent = handle_change(handled_++);
      continue;
    }
    const int row = rows_.pop();
    if (row < 0) {
      settled_ = bounds_.size();
      return true;
    }
    consistent = propagate_row(row);
  }
  if (!consistent && bounds_.level() == 0) infeasible_ = true;
  if (!consistent && debug_ != nullptr) debug_->check_conflict(bounds_.conflict().reason.kind);
  return consistent;
}

void Domain::backtrack(const DomainMark& mark) {
  const int first = bounds_.first_undone(mark);
  while (bounds_.size() > first) {
    const int position = bounds_.size() - 1;
    if (position < applied_) rows_.undo(bounds_.change(position));
    bounds_.undo_last();
  }
  applied_ = std::min(applied_, first);
  handled_ = std::min(handled_, first);
  if (first <= settled_) rows_.clear_queue();
  settled_ = std::min(settled_, first);
  while (!proofs_.empty() && proofs_.back().position >= first) proofs_.pop_back();
  bounds_.drop_levels(mark.level);
  if (debug_ != nullptr) debug_->backtrack(first);
  if (bounds_.level() > 0) return;
  rows_.recycle();
  for (const BoundLiteral& literal : pending_) {
    tighten(literal.bound, literal.value, kGloballyTrue);
  }
  pending_.clear();
}

void Domain::backtrack_to_level(int level) {
  if (level >= bounds_.level()) return;
  backtrack({bounds_.level_start(level + 1), level});
}

int Domain::add_row(const int* index, const double* value, int length, double lower, double upper) {
  if (debug_ != nullptr) debug_->check_row(index, value, length, lower, upper);
  apply_changes();
  const int row = rows_.add(index, value, length, lower, upper);
  uses_.resize(rows_.num_rows(), 0);
  uses_[row] = 0;
  settled_ = -1;
  return row;
}

void Domain::remove_row(int row) {
  rows_.remove(row);
  if (bounds_.level() == 0) rows_.recycle();
}

void Domain::set_cutoff(double cutoff) {
  if (!(cutoff < cutoff_)) return;
  cutoff_ = cutoff;
  if (debug_ != nullptr) debug_->set_cutoff(cutoff);
  const double limit = cutoff - mip_.lp.offset;
  if (cutoff_row_ >= 0) {
    rows_.lower_limit(cutoff_row_, limit);
    settled_ = -1;
    return;
  }
  Vector<int> index;
  Vector<double> value;
  for (int j = 0; j < mip_.num_cols(); ++j) {
    if (mip_.lp.cost[j] == 0.0) continue;
    index.push_back(j);
    value.push_back(mip_.lp.cost[j]);
  }
  cutoff_row_ = add_row(index.data(), value.data(), static_cast<int>(index.size()), -kInf, limit);
}

int Domain::push_proof(LinearProof proof) {
  proofs_.push_back({std::move(proof), bounds_.size()});
  return static_cast<int>(proofs_.size()) - 1;
}

void Domain::set_debug_solution(DebugSolution* solution) {
  debug_ = solution;
  if (solution == nullptr) return;
  if (cutoff_ < kInf) solution->set_cutoff(cutoff_);
  solution->check_cliques(cliques_);
}

}  // namespace kelvo
