// Bounds that rows imply by the bounds of their other columns, to a fixed point.
//
// Of integer columns they are rounded and kept. Of continuous ones they are taken when they are
// much better, and given up again at the end (PresolveMip::loosen_bounds): they tell other
// reductions how large a big-M has to be.
//
// Sequences of ever smaller steps would converge without end, so sweeps and work are limited.
#include "lp/presolve/presolve_tolerances.h"
#include "mip/presolve/reductions/mip_reductions.h"

namespace kelvo {

namespace tol = presolve_tolerance;

namespace {

constexpr int kMostSweeps = 12;
constexpr std::int64_t kWorkPerNonzero = 20;
// The share by which the interval of a continuous column has to shrink.
constexpr double kWorthwhile = 0.05;
// Bounds beyond are of no use as a big-M and only lose digits elsewhere.
constexpr double kLargestBound = 1e8;

class BoundTightening {
 public:
  explicit BoundTightening(PresolveMip& mip)
      : mip_(mip),
        lp_(mip.lp),
        continuous_(mip.settings.bound_strengthening != 0),
        work_limit_(lp_.work + kWorkPerNonzero * lp_.matrix.num_nonzeros() + 10000) {}

  void run(int since) {
    for (int sweep = 0; sweep < kMostSweeps; ++sweep) {
      const int start = lp_.moment();
      bool better = false;
      for (int i = 0; i < lp_.num_rows(); ++i) {
        if (!lp_.row_alive[i] || !lp_.row_list.changed_since(i, since)) continue;
        better |= tighten_by(i);
        lp_.poll();
        if (mip_.ended() || lp_.work > work_limit_) return;
      }
      if (!better) return;
      since = start;
    }
  }

 private:
  bool tighten_by(int i);
  bool offer(int j, double bound, bool is_upper);

  PresolveMip& mip_;
  PresolveLp& lp_;
  const bool continuous_;
  const std::int64_t work_limit_;
};

bool BoundTightening::offer(int j, double bound, bool is_upper) {
  if (!(std::fabs(bound) < kLargestBound)) return false;
  const double held = is_upper ? lp_.upper[j] : lp_.lower[j];
  const double gain = is_upper ? held - bound : bound - held;
  if (lp_.is_integer(j)) {
    if (gain <= tol::kWholeBound) return false;
    const double whole =
        is_upper ? std::floor(bound + tol::kWholeBound) : std::ceil(bound - tol::kWholeBound);
    if (is_upper ? whole >= held : whole <= held) return false;
    lp_.intersect_bounds(j, is_upper ? -kInf : whole, is_upper ? whole : kInf);
    return true;
  }
  const double width = lp_.upper[j] - lp_.lower[j];
  if (!continuous_ || !(gain > 0.0)) return false;
  if (std::isfinite(width) ? gain <= kWorthwhile * width : std::isfinite(held)) return false;
  mip_.strengthen_bound(j, bound, is_upper);
  return true;
}

bool BoundTightening::tighten_by(int i) {
  const Interval limits{lp_.row_lower[i], lp_.row_upper[i]};
  if (!lp_.activity(i).speaks(limits)) return false;
  lp_.work += lp_.matrix.row_count(i);
  bool better = false;
  for (int e = lp_.matrix.row_first(i); e >= 0 && !mip_.ended(); e = lp_.matrix[e].row_next) {
    if (std::fabs(lp_.matrix[e].value) < tol::kSmallPivot) continue;
    const int j = lp_.matrix[e].col;
    if (lp_.is_fixed(j)) continue;
    const Interval implied = lp_.implied_bounds(e);
    better |= offer(j, implied.lower, false);
    if (!mip_.ended()) better |= offer(j, implied.upper, true);
  }
  return better;
}

}  // namespace

void tighten_bounds(PresolveMip& mip, int since) {
  BoundTightening(mip).run(since);
}

}  // namespace kelvo
