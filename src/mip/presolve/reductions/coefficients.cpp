// Smaller coefficients of integer columns, for a tighter relaxation with the same whole points.
//
// Let M be the greatest activity of  a x <= U  and d = M - U > 0. Where an integer column with
// a_j > d is not at its upper bound, the row holds whatever the others do, and it still does with
//
//     a_j' = d,   U' = U - (a_j - d) u_j,
//
// while at x_j = u_j nothing changes. With a_j < -d the bound is the lower one and a_j' = -d. d
// stays the same, so that all columns of a row are treated in one go. A row with two limits is
// treated when one of them never binds. (M. W. P. Savelsbergh, "Preprocessing and probing
// techniques for mixed integer programming problems", ORSA Journal on Computing 6, 1994.)
#include "lp/presolve/presolve_tolerances.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

// What would be left of an entry is at least this share of it: less is the rounding of some bound.
constexpr double kLeastShare = 1e-4;
// Greater activities have lost the digits that count.
constexpr double kMostActivity = 1e9;

class CoefficientTightening {
 public:
  explicit CoefficientTightening(PresolveMip& mip) : mip_(mip), lp_(mip.lp) {}
  void tighten(int i);

 private:
  /// The entries of row i as that of  sign * a x <= limit  with the excess d.
  void reduce_entries(int i, double sign, double excess, double limit);

  PresolveMip& mip_;
  PresolveLp& lp_;
};

void CoefficientTightening::tighten(int i) {
  const Activity& activity = lp_.activity(i);
  const double low = lp_.row_lower[i], high = lp_.row_upper[i];
  const bool holds_low =
      low == -kInf || activity.least() - activity.min_error >= low - tol::same_slack(low);
  const bool holds_high =
      high == kInf || activity.greatest() + activity.max_error <= high + tol::same_slack(high);
  if (holds_low == holds_high) return;
  const double sign = holds_low ? 1.0 : -1.0;
  const double most = holds_low ? activity.greatest() : -activity.least();
  const double error = holds_low ? activity.max_error : activity.min_error;
  if (!(std::fabs(most) < kMostActivity) || error > tol::kSame) return;
  const double limit = holds_low ? high : -low;
  reduce_entries(i, sign, most - limit, limit);
}

void CoefficientTightening::reduce_entries(int i, double sign, double excess, double limit) {
  const bool binary_only = mip_.settings.coefficient_reduction < 2;
  const double rounding = tol::kSame * std::max({1.0, std::fabs(limit), excess});
  int changed = 0;
  lp_.work += lp_.matrix.row_count(i);
  for (int e = lp_.matrix.row_first(i); e >= 0; e = lp_.matrix[e].row_next) {
    const int j = lp_.matrix[e].col;
    const double a = sign * lp_.matrix[e].value;
    if (!lp_.is_integer(j) || lp_.is_fixed(j) || (binary_only && !mip_.is_binary(j))) continue;
    if (std::fabs(a) <= excess + rounding || excess < kLeastShare * std::fabs(a)) continue;
    const double smaller = a > 0.0 ? excess : -excess;
    const double bound = a > 0.0 ? lp_.upper[j] : lp_.lower[j];
    limit -= (a - smaller) * bound;
    lp_.change_entry(e, sign * smaller);
    ++changed;
  }
  if (changed == 0) return;
  lp_.stats.coefficients_changed += changed;
  // The other limit never binds.
  lp_.change_limits(i, sign > 0.0 ? -kInf : -limit, sign > 0.0 ? limit : kInf);
}

}  // namespace

void tighten_coefficients(PresolveMip& mip, int since) {
  PresolveLp& lp = mip.lp;
  if (mip.settings.coefficient_reduction == 0) return;
  CoefficientTightening reduction(mip);
  for (int i = 0; i < lp.num_rows() && !mip.ended(); ++i) {
    if (!lp.row_alive[i] || lp.is_equation(i) || !lp.row_list.changed_since(i, since)) continue;
    reduction.tighten(i);
    lp.poll();
  }
}

}  // namespace kelvo
