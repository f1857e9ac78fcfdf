#include "lp/presolve/reductions/doubleton_equation.h"

#include "lp/presolve/presolve_tolerances.h"
#include "lp/presolve/reductions/substitution_rules.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// A homogeneous equation says that two columns are the same in different units: no digits are lost
// as long as the ratio of the units stays below this, and scaling takes care of the rest.
constexpr double kOtherUnit = 1e6;

/// New entries of column k are sums that may cancel; false when one of them would be too small or
/// too large to be kept.
bool entries_are_sound(PresolveLp& lp, int j, int row, int k, double ratio) {
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int r = lp.matrix[e].row;
    if (r == row) continue;
    const int at = lp.matrix.find(r, k);
    lp.work += std::min(lp.matrix.row_count(r), lp.matrix.col_count(k)) + 1;
    const double old = at < 0 ? 0.0 : lp.matrix[at].value;
    const double added = -lp.matrix[e].value * ratio;
    if (!entry_is_sound(lp, old, added)) return false;
  }
  return true;
}

/// Turns the bounds of x_j into bounds on x_k and notes in the record which of them count.
bool transfer_bounds(PresolveLp& lp, DoubletonEquation& record) {
  const int k = record.kept;
  // x_k = (rhs - a x_j) / b
  double low = (record.rhs - record.a * record.lower) / record.b;
  double high = (record.rhs - record.a * record.upper) / record.b;
  if (low > high) std::swap(low, high);
  const double old_lower = lp.lower[k], old_upper = lp.upper[k];
  // The same bound in two roundings: that of x_k itself stays.
  if (low - old_lower <= tol::kCancelled * std::fabs(low)) low = old_lower;
  if (old_upper - high <= tol::kCancelled * std::fabs(high)) high = old_upper;
  if (!lp.intersect_bounds(k, low, high)) return false;
  record.ends = {lp.lower[k] != old_lower, lp.upper[k] != old_upper, lp.is_fixed(k)};
  return true;
}

/// Replaces the column that goes in the other rows and in the objective.
void substitute(PresolveLp& lp, const DoubletonEquation& record) {
  const int j = record.gone, k = record.kept;
  const double ratio = record.b / record.a;
  for (int e = lp.matrix.col_first(j); e >= 0; e = lp.matrix[e].col_next) {
    const int r = lp.matrix[e].row;
    if (r == record.row) continue;
    const double value = lp.matrix[e].value;
    const int at = lp.matrix.find(r, k);
    lp.put_entry(r, k, sound_sum(at < 0 ? 0.0 : lp.matrix[at].value, -value * ratio));
    shift_limits(lp, r, value * record.rhs / record.a);
  }
  lp.change_cost(k, sound_sum(lp.cost[k], -record.cost * ratio));
  lp.offset += record.cost * record.rhs / record.a;
}

}  // namespace

bool substitute_doubleton(PresolveLp& lp, int i) {
  int ej = lp.matrix.row_first(i);
  int ek = lp.matrix[ej].row_next;
  const double rhs = lp.row_lower[i];
  const auto longer = [&](int e) { return lp.matrix.col_count(lp.matrix[e].col); };
  const double largest_ratio = rhs == 0.0 ? kOtherUnit : lp.settings.coefficient_ratio;
  const auto goes = [&](int e, int f) {  // column of e may go, divided by its entry
    return lp.may_remove(lp.matrix[e].col) &&
           std::fabs(lp.matrix[f].value) <= largest_ratio * std::fabs(lp.matrix[e].value) &&
           stays_whole(lp, e, rhs);
  };
  if (!goes(ej, ek) || (goes(ek, ej) && longer(ek) < longer(ej))) std::swap(ej, ek);
  if (!goes(ej, ek)) return false;
  const int j = lp.matrix[ej].col, k = lp.matrix[ek].col;
  if (lp.is_fixed(j) || lp.is_fixed(k)) return false;  // simpler reductions come
  const double a = lp.matrix[ej].value, b = lp.matrix[ek].value;
  if (largest_ratio * std::fabs(b) < std::fabs(a)) return false;
  if (!entries_are_sound(lp, j, i, k, b / a)) return false;

  DoubletonEquation record{i, j, k, {}, {}, a, b, rhs, lp.cost[j], lp.lower[j], lp.upper[j]};
  if (!transfer_bounds(lp, record)) return false;
  record.column = lp.record_column(j, i);
  lp.stack.push(record);
  substitute(lp, record);
  lp.erase_row(i);
  lp.erase_column(j);
  count_substitution(lp);
  return true;
}

void DoubletonEquation::restore_values(const UndoEntries&, Vector<double>& x) const {
  x[gone] = (rhs - b * x[kept]) / a;
}

void DoubletonEquation::restore_duals(const UndoEntries& entries, DualState& duals) const {
  duals.y[row] = (cost - entries.dot(column, duals.y)) / a;
  duals.z[gone] = 0.0;
  if (!ends.include(duals.column_side(kept, ends.coincide))) return;
  const double shift = duals.z[kept] / b;
  duals.y[row] += shift;
  duals.z[kept] = 0.0;
  duals.z[gone] = -a * shift;
}

void DoubletonEquation::restore_basis(const UndoEntries&, PostsolveState& state) const {
  BasisState& basis = state.basis;
  basis.cols[gone] = kBasic;
  basis.rows[row] = kAtLower;
  // What the reduced cost of the kept column was, wherever it is now.
  const double multiplier = state.duals.z[kept] - state.duals.z[gone] * b / a;
  const int side = active_side(basis.cols[kept], multiplier, ends.coincide);
  basis.cols[kept] = side;
  if (!ends.include(side)) return;
  basis.cols[kept] = kBasic;
  basis.cols[gone] = side_times(side, -a * b);
  state.x[gone] = basis.cols[gone] == kAtLower ? lower : upper;
}

void DoubletonEquation::crush_basis(BasisState& basis) const {
  // x_gone = (rhs - b x_kept) / a rises with x_kept when a b < 0.
  const int status = basis.cols[gone];
  if (basis.cols[kept] == kBasic && status != kBasic) {
    basis.cols[kept] = side_times(status, -a * b);
  }
}

bool DoubletonEquation::crush_form(const UndoEntries&, LinearForm& form) const {
  const double share = form.weight[gone] / a;
  form.weight[gone] = 0.0;
  form.weight[kept] -= share * b;
  form.offset += share * rhs;
  return true;
}

bool DoubletonEquation::reprice(const UndoEntries&, Repricing& repricing) {
  cost = repricing.cost[gone];
  const double share = cost / a;
  repricing.cost[gone] = 0.0;
  repricing.cost[kept] -= share * b;
  repricing.offset += static_cast<long double>(share) * rhs;
  return true;
}

}  // namespace kelvo
