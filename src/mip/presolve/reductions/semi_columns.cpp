// Semi-continuous columns,  x_j = 0  or  l_j <= x_j <= u_j.
//
// The interval of the column in the linear part is the hull of 0 and [l_j, u_j]. Where tighter
// bounds of the hull leave 0 or the interval alone, or where 0 lies inside the interval, the column
// is continuous (or integer) from then on.
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace {

enum class Left { both, zero, interval, nothing };

Left what_is_left(const PresolveLp& lp, const SemiColumn& semi) {
  const double low = lp.lower[semi.column], high = lp.upper[semi.column];
  const double tolerance = lp.settings.feasibility_tolerance;
  const bool zero = low <= tolerance && high >= -tolerance;
  const bool interval = semi.lower <= high + tolerance && semi.upper >= low - tolerance;
  if (zero) return interval ? Left::both : Left::zero;
  return interval ? Left::interval : Left::nothing;
}

/// True when the column is an ordinary one from now on.
bool settle(PresolveLp& lp, SemiColumn& semi) {
  const int j = semi.column;
  switch (what_is_left(lp, semi)) {
    case Left::zero:
      lp.intersect_bounds(j, 0.0, 0.0);
      return true;
    case Left::interval:
      lp.intersect_bounds(j, semi.lower, semi.upper);
      return true;
    case Left::nothing:
      lp.fail(FindingKind::column_bounds, j);
      return true;
    case Left::both:
      break;
  }
  semi.lower = std::max(semi.lower, lp.lower[j]);
  semi.upper = std::min(semi.upper, lp.upper[j]);
  if (lp.is_integer(j)) {
    semi.lower = std::ceil(semi.lower - lp.settings.feasibility_tolerance);
    semi.upper = std::floor(semi.upper + lp.settings.feasibility_tolerance);
    if (semi.lower > semi.upper) {
      lp.intersect_bounds(j, 0.0, 0.0);
      return true;
    }
  }
  if (semi.lower <= 0.0 && semi.upper >= 0.0) return true;
  // The smallest step from 0 of a positive integer column is no jump.
  return lp.is_integer(j) && semi.lower <= 1.0 && semi.upper >= -1.0;
}

}  // namespace

void reduce_semi_columns(PresolveMip& mip, int) {
  for (int k = static_cast<int>(mip.semis.size()) - 1; k >= 0 && !mip.ended(); --k) {
    if (settle(mip.lp, mip.semis[k])) mip.remove_semi(k);
  }
}

}  // namespace kelvo
