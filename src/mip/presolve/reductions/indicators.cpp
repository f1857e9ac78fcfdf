// Indicators,  x_b = v  implies  L <= a x <= U.
//
// With x_b fixed the row holds always, or never matters. A limit that the bounds keep by themselves
// is dropped, and with the last of them the indicator. A row that cannot hold forbids x_b = v.
//
// A row with one limit, a x <= U, whose greatest activity M is not much beyond it, is as well
// written as
//
//     a x + (M - U) x_b <= M          (v = 1;  a x - (M - U) x_b <= U  for v = 0).
//
// For large M - U a small violation of x_b's being whole would undo the row.
#include "lp/presolve/presolve_tolerances.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// The largest M - U, against the largest entry of the row.
constexpr double kSmallExcess = 100.0;

class IndicatorReduction {
 public:
  explicit IndicatorReduction(PresolveMip& mip) : mip_(mip), lp_(mip.lp) {}

  /// True when indicator k is gone.
  bool look_at(int k);

 private:
  void drop_fixed_terms(ConditionalRow& row);
  Activity activity(const ConditionalRow& row) const;
  void make_row(int k);
  bool write_out(int k, const Activity& activity);
  /// The row of indicator k in the linear part, with other limits; the indicator goes.
  void put_row(int k, double binary_entry, double low, double high);

  PresolveMip& mip_;
  PresolveLp& lp_;
};

void IndicatorReduction::drop_fixed_terms(ConditionalRow& row) {
  std::size_t kept = 0;
  for (const ConditionalRow::Term& term : row.terms) {
    if (!lp_.is_fixed(term.col)) {
      row.terms[kept++] = term;
      continue;
    }
    row.lower -= term.value * lp_.lower[term.col];
    row.upper -= term.value * lp_.lower[term.col];
    mip_.release(term.col);
  }
  row.terms.resize(kept);
}

Activity IndicatorReduction::activity(const ConditionalRow& row) const {
  Activity sum;
  for (const auto& [j, a] : row.terms) {
    // The row speaks where the binary column is active.
    if (j == row.binary) {
      sum.add(a, row.active, row.active);
    } else {
      sum.add(a, lp_.lower[j], lp_.upper[j]);
    }
  }
  lp_.work += static_cast<std::int64_t>(row.terms.size());
  return sum;
}

void IndicatorReduction::put_row(int k, double binary_entry, double low, double high) {
  ConditionalRow row = mip_.indicators[k];
  mip_.remove_indicator(k);
  bool found = false;
  for (ConditionalRow::Term& term : row.terms) {
    if (term.col != row.binary) continue;
    term.value += binary_entry;
    found = true;
  }
  if (!found && binary_entry != 0.0) row.terms.push_back({row.binary, binary_entry});
  lp_.row_alive[row.row] = 1;
  for (const auto& [j, a] : row.terms) lp_.put_entry(row.row, j, a);
  lp_.change_limits(row.row, low, high);
}

void IndicatorReduction::make_row(int k) {
  put_row(k, 0.0, mip_.indicators[k].lower, mip_.indicators[k].upper);
}

bool IndicatorReduction::write_out(int k, const Activity& sum) {
  const ConditionalRow& row = mip_.indicators[k];
  const bool upper = row.upper < kInf;
  if (upper == (row.lower > -kInf)) return false;
  const double most = upper ? sum.greatest() : sum.least();
  const double error = upper ? sum.max_error : sum.min_error;
  const double excess = most - (upper ? row.upper : row.lower);  // < 0 for a lower limit
  double largest = 0.0;
  for (const auto& [j, a] : row.terms) {
    if (j == row.binary) return false;
    largest = std::max(largest, std::fabs(a));
  }
  const double allowed = kSmallExcess * std::min(1.0, largest);
  if (!(std::fabs(excess) <= allowed) || std::fabs(excess) < tol::kSmallPivot) return false;
  if (error > tol::kSame) return false;
  const double limit = row.active == 1 ? most : most - excess;
  put_row(k, row.active == 1 ? excess : -excess, upper ? -kInf : limit, upper ? limit : kInf);
  return true;
}

bool IndicatorReduction::look_at(int k) {
  ConditionalRow& row = mip_.indicators[k];
  drop_fixed_terms(row);
  const int b = row.binary;
  if (lp_.is_fixed(b)) {
    if (lp_.lower[b] == row.active) {
      make_row(k);
    } else {
      mip_.remove_indicator(k);
    }
    return true;
  }
  const Activity sum = activity(row);
  const double tolerance = lp_.settings.feasibility_tolerance;
  const auto beyond = [tolerance](double limit) {
    return tolerance * std::max(1.0, std::fabs(limit));
  };
  if ((row.upper < kInf && sum.least() > row.upper + beyond(row.upper) + sum.min_error) ||
      (row.lower > -kInf && sum.greatest() < row.lower - beyond(row.lower) - sum.max_error)) {
    if (!lp_.intersect_bounds(b, 1 - row.active, 1 - row.active)) {
      lp_.finding = {FindingKind::infeasible_indicator, row.row};
      return false;
    }
    mip_.remove_indicator(k);
    return true;
  }
  if (sum.greatest() + sum.max_error <= row.upper + tol::same_slack(row.upper)) row.upper = kInf;
  if (sum.least() - sum.min_error >= row.lower - tol::same_slack(row.lower)) row.lower = -kInf;
  if (row.upper == kInf && row.lower == -kInf) {
    mip_.remove_indicator(k);
    return true;
  }
  return write_out(k, sum);
}

}  // namespace

void reduce_indicators(PresolveMip& mip, int) {
  IndicatorReduction reduction(mip);
  for (int k = static_cast<int>(mip.indicators.size()) - 1; k >= 0 && !mip.ended(); --k) {
    reduction.look_at(k);
    mip.lp.poll();
  }
}

}  // namespace kelvo
