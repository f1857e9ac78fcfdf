#include "lp/tableau/tableau_ratios.h"

#include <algorithm>
#include <cmath>

namespace kelvo {

PrimalRatio primal_ratio(CallerTableau& tableau, int v, int direction) {
  PrimalRatio best;
  const double range = tableau.upper(v) - tableau.lower(v);
  if (range < kInf) {
    best.step = range;
    best.itself = true;
    best.leaves_at = direction > 0 ? kAtUpper : kAtLower;
  }
  double largest = 0.0;
  for_each_entry(tableau.column(v), [&](int p, double alpha) {
    if (std::fabs(alpha) < kTableauEntry) return;
    const int basic = tableau.head(p);
    const bool falls = direction * alpha > 0.0;
    const double bound = falls ? tableau.lower(basic) : tableau.upper(basic);
    if (std::fabs(bound) == kInf) return;
    const double distance = std::max(0.0, std::fabs(tableau.value(basic) - bound));
    const bool outside = falls ? tableau.value(basic) < bound : tableau.value(basic) > bound;
    const double step = outside ? 0.0 : distance / std::fabs(alpha);
    if (step > best.step || (step == best.step && std::fabs(alpha) <= largest)) return;
    largest = std::fabs(alpha);
    best = {step, p, false, falls ? kAtLower : kAtUpper};
  });
  return best;
}

DualRatio dual_ratio(CallerTableau& tableau, int position, int direction) {
  DualRatio best;
  double largest = 0.0;
  tableau.for_each_movable(position, [&](int v, double alpha) {
    if (std::fabs(alpha) < kTableauEntry) return;
    // x_B = ... - alpha x_v: the basic variable rises when v moves against the sign of alpha.
    const bool rises = direction * alpha < 0.0;
    if (!(rises ? tableau.may_rise(v) : tableau.may_fall(v))) return;
    const double d = rises ? tableau.reduced_cost(v) : -tableau.reduced_cost(v);
    const double ratio = std::max(0.0, d) / std::fabs(alpha);
    if (ratio > best.ratio || (ratio == best.ratio && std::fabs(alpha) <= largest)) return;
    largest = std::fabs(alpha);
    best = {ratio, v};
  });
  return best;
}

}  // namespace kelvo
