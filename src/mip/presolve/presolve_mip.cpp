#include "mip/presolve/presolve_mip.h"

#include <cmath>

namespace kelvo {

namespace {

/// The linear part without the rows of indicators.
LpProblem without_conditional_rows(const MipProblem& mip) {
  LpProblem lp(mip.lp);
  if (mip.indicators.empty()) return lp;
  Vector<char> is_conditional(lp.num_rows, 0);
  for (const Indicator& indicator : mip.indicators) is_conditional[indicator.row] = 1;
  SparseMatrix& columns = lp.columns;
  int end = 0;
  for (int j = 0; j < lp.num_cols; ++j) {
    const int first = columns.start[j];
    columns.start[j] = end;
    for (int k = first; k < mip.lp.columns.start[j + 1]; ++k) {
      if (is_conditional[columns.index[k]]) continue;
      columns.index[end] = columns.index[k];
      columns.value[end++] = columns.value[k];
    }
  }
  columns.start[lp.num_cols] = end;
  columns.index.resize(end);
  columns.value.resize(end);
  return lp;
}

template <class T>
void remove_at(Vector<T>& items, int k) {
  if (k + 1 < static_cast<int>(items.size())) items[k] = std::move(items.back());
  items.pop_back();
}

}  // namespace

PresolveMip::PresolveMip(const MipProblem& mip, const MipPresolveSettings& mip_settings,
                         StopCheck& stop, MipPresolveProgress* mip_progress)
    : settings(mip_settings),
      lp(without_conditional_rows(mip), mip_settings.lp, {{}, mip.is_integer}, stop, mip_progress),
      semis(mip.semis),
      sets(mip.sets),
      progress(mip_progress),
      original_(mip),
      num_original_rows_(mip.lp.num_rows),
      holds_(mip.lp.num_cols, 0),
      lower_(mip.lp.num_cols, {-kInf, -kInf}),
      upper_(mip.lp.num_cols, {kInf, kInf}) {
  const SparseMatrix& rows = mip.lp.rows;
  for (const Indicator& indicator : mip.indicators) {
    ConditionalRow conditional{indicator.binary, indicator.active, indicator.row,
                               indicator.lower,  indicator.upper,  {}};
    const int i = indicator.row;
    hold(indicator.binary);
    for (int k = rows.start[i]; k < rows.start[i + 1]; ++k) {
      conditional.terms.push_back({rows.index[k], rows.value[k]});
      hold(rows.index[k]);
    }
    indicators.push_back(std::move(conditional));
    lp.row_alive[i] = 0;
  }
  for (const SemiColumn& semi : semis) hold(semi.column);
  for (const OrderedSet& set : sets) {
    for (const int j : set.members) hold(j);
  }
}

void PresolveMip::hold(int j) {
  if (holds_[j]++ == 0) lp.protect(j, true);
}

void PresolveMip::release(int j) {
  if (--holds_[j] == 0) lp.protect(j, false);
}

void PresolveMip::remove_semi(int k) {
  release(semis[k].column);
  remove_at(semis, k);
}

void PresolveMip::remove_set(int k) {
  for (const int j : sets[k].members) release(j);
  remove_at(sets, k);
  ++stats.sets_removed;
}

void PresolveMip::remove_indicator(int k) {
  release(indicators[k].binary);
  for (const ConditionalRow::Term& term : indicators[k].terms) release(term.col);
  remove_at(indicators, k);
  ++stats.indicators_removed;
}

void PresolveMip::remove_member(OrderedSet& set, int place) {
  release(set.members[place]);
  set.members.erase(set.members.begin() + place);
  set.weights.erase(set.weights.begin() + place);
}

void PresolveMip::mark_implied_integer(int j) {
  lp.mark_integer(j);
  ++stats.implied_integers;
}

void PresolveMip::strengthen_bound(int j, double bound, bool is_upper) {
  double& held = is_upper ? lp.upper[j] : lp.lower[j];
  Strengthened& memory = is_upper ? upper_[j] : lower_[j];
  if (memory.derived != held) memory.stated = held;
  const bool kept = lp.intersect_bounds(j, is_upper ? -kInf : bound, is_upper ? bound : kInf);
  if (kept) memory.derived = held;
}

void PresolveMip::loosen_bounds() {
  for (int j = 0; j < lp.num_cols() && !lp.ended(); ++j) {
    if (!lp.col_alive[j] || lp.is_integer(j) || lp.is_fixed(j) || !lp.may_remove(j)) continue;
    if (lp.upper[j] == upper_[j].derived && upper_[j].stated > lp.upper[j] &&
        lp.is_implied(j, true)) {
      lp.change_bounds(j, lp.lower[j], upper_[j].stated);
    }
    if (lp.lower[j] == lower_[j].derived && lower_[j].stated < lp.lower[j] &&
        lp.is_implied(j, false)) {
      lp.change_bounds(j, lower_[j].stated, lp.upper[j]);
    }
  }
}

std::int64_t PresolveMip::changes() const {
  const PresolveStats& linear = lp.stats;
  return std::int64_t{linear.rows_removed} + linear.cols_removed + 2 * linear.substitutions +
         linear.coefficients_changed + linear.bounds_improved + stats.sets_removed +
         stats.indicators_removed + stats.implied_integers + 4 * stats.probing_fixed +
         lp.stack.size();
}

void PresolveMip::add_conditional_rows(ReducedMip& reduced) const {
  LpProblem& linear = reduced.mip.lp;
  for (const ConditionalRow& conditional : indicators) {
    const int i = linear.num_rows++;
    reduced.mip.indicators.push_back({reduced.col_map[conditional.binary], conditional.active, i,
                                      conditional.lower, conditional.upper});
    for (const ConditionalRow::Term& term : conditional.terms) {
      linear.rows.index.push_back(reduced.col_map[term.col]);
      linear.rows.value.push_back(term.value);
    }
    linear.rows.start.push_back(static_cast<int>(linear.rows.index.size()));
    linear.cost.push_back(0.0);
    linear.lower.push_back(-kInf);
    linear.upper.push_back(kInf);
    reduced.kept_rows.push_back(conditional.row);
    reduced.row_map[conditional.row] = i;
  }
  if (indicators.empty()) return;
  linear.rows.num_major = linear.num_rows;
  linear.columns = transpose(linear.rows);
}

ReducedMip PresolveMip::reduced_form() const {
  ReducedMip reduced;
  KeptLines rows(lp.row_alive), cols(lp.col_alive);
  MipProblem& mip = reduced.mip;
  mip.lp = lp.reduced_form(rows, cols);
  reduced.row_map.assign(rows.place.begin(), rows.place.begin() + num_original_rows_);
  reduced.col_map = std::move(cols.place);
  for (const int i : rows.lines) reduced.kept_rows.push_back(i < num_original_rows_ ? i : -1);
  add_conditional_rows(reduced);
  for (const int j : cols.lines) {
    mip.is_integer.push_back(lp.is_integer(j));
    if (!original_.priority.empty()) {
      mip.priority.push_back(original_.priority[j]);
      mip.direction.push_back(original_.direction[j]);
    }
  }
  reduced.kept_cols = std::move(cols.lines);
  for (const SemiColumn& semi : semis) {
    mip.semis.push_back({reduced.col_map[semi.column], semi.lower, semi.upper});
  }
  for (const OrderedSet& set : sets) {
    mip.sets.push_back(set);
    for (int& j : mip.sets.back().members) j = reduced.col_map[j];
  }
  return reduced;
}

}  // namespace kelvo
