#include "mip/domain/reduced_costs.h"

#include <cmath>

namespace kelvo {
namespace {

/// Reduced costs below this are dual infeasibilities of the LP, not costs.
constexpr double kSmallestReducedCost = 1e-6;
/// The bound and the reduced costs of an LP are right to about this share of the objective.
constexpr double kObjectiveSlack = 1e-9;

/// Whether a (x_j - near end) <= room takes enough off the interval of column j. Whoever fixes
/// continuous columns by crumbs changes many bounds of the node LP for nothing.
bool is_worthwhile(const Domain& domain, int column, double coefficient, double room) {
  const double range = domain.upper(column) - domain.lower(column);
  const double share = domain.bounds().is_integer(column) ? 1.0 : 1.0 - kSmallestGain;
  return std::abs(coefficient) * share * range > room;
}

/// The value that a (x_j - near end) <= room allows column j; as the rows' propagation rounds it.
double limit_of(const Domain& domain, int column, double coefficient, double room) {
  const bool upper = coefficient > 0.0;
  const double near = upper ? domain.lower(column) : domain.upper(column);
  const double limit = near + room / coefficient;
  const double away = upper ? 1.0 : -1.0;
  if (!domain.bounds().is_integer(column)) {
    return limit + away * (outward_shift(limit) + 4.0 * kRoundoff * std::abs(near));
  }
  const double rounding = rounding_slack(std::abs(near) + std::abs(limit));
  return upper ? std::floor(limit + rounding) : std::ceil(limit - rounding);
}

}  // namespace

int fix_by_reduced_costs(Domain& domain, const Vector<double>& z, double lp_bound, double cutoff) {
  const double room =
      cutoff - lp_bound + kRowSlack + kObjectiveSlack * (std::abs(cutoff) + std::abs(lp_bound));
  if (room < 0.0) return -1;
  const Reason reason = domain.level() == 0 ? kGloballyTrue : kWithoutExplanation;
  int count = 0;
  for (int j = 0; j < domain.mip().num_cols(); ++j) {
    if (std::abs(z[j]) < kSmallestReducedCost) continue;
    const bool upper = z[j] > 0.0;
    if (!is_worthwhile(domain, j, z[j], room)) continue;
    if (std::isinf(upper ? domain.lower(j) : domain.upper(j))) continue;
    const double value = limit_of(domain, j, z[j], room);
    const Tightening result = domain.tighten(upper ? upper_of(j) : lower_of(j), value, reason);
    if (result == Tightening::kConflict) return -1;
    count += result == Tightening::kDone;
  }
  return count;
}

int fix_by_proof(Domain& domain, LinearProof proof) {
  // sum of -value x <= -rhs.
  long double activity = 0.0L;
  double size = std::abs(proof.rhs);
  const int length = static_cast<int>(proof.index.size());
  for (int k = 0; k < length; ++k) {
    const int v = proof.index[k];
    const double a = -proof.value[k];
    const double at_min = a > 0.0 ? domain.lower(v) : domain.upper(v);
    if (std::isinf(at_min)) return 0;
    activity += static_cast<long double>(a) * at_min;
    size += std::abs(a * at_min);
  }
  const double room = static_cast<double>(-static_cast<long double>(proof.rhs) - activity) +
                      kRowSlack + 2.0 * kRoundoff * size;
  if (room < 0.0) return -1;
  const int index = domain.push_proof(std::move(proof));
  const LinearProof& kept = domain.proof(index);
  int count = 0;
  for (int k = 0; k < length; ++k) {
    const int j = kept.index[k];
    const double a = -kept.value[k];
    if (j >= domain.mip().num_cols() || !is_worthwhile(domain, j, a, room)) continue;
    const double value = limit_of(domain, j, a, room);
    const Tightening result =
        domain.tighten(a > 0.0 ? upper_of(j) : lower_of(j), value, {ReasonKind::kProof, index});
    if (result == Tightening::kConflict) return -1;
    count += result == Tightening::kDone;
  }
  return count;
}

}  // namespace kelvo
