#include "mip/domain/dual_proof.h"

#include <cmath>

namespace kelvo {
namespace {

/// A coefficient that is this share of the terms it was summed from is rounding. It is left out
/// where no bound can replace it: the column is unbounded, and without this hardly any proof would
/// hold.
constexpr double kCancelled = 1e-12;
/// Coefficients smaller than this share of the largest are replaced by their column's bounds: they
/// are dual infeasibilities, or would propagate nothing but noise.
constexpr double kNegligible = 1e-9;
/// A row of proof is longer than this plus the share of the columns only where it is of no use.
constexpr int kShortProof = 100;
constexpr double kLongProof = 0.15;
/// A row whose coefficients differ by more than this factor is not kept.
constexpr double kWidestRange = 1e7;

/// Coefficients of sum value x >= rhs as they are summed.
class Summation {
 public:
  explicit Summation(int num_vars) : sum_(num_vars, 0.0L), size_(num_vars, 0.0) {}

  void add(int v, long double value) {
    sum_[v] += value;
    size_[v] += std::abs(static_cast<double>(value));
  }
  void add_row(const RowView& row, double multiplier) {
    for (int k = 0; k < row.length; ++k) {
      add(row.index[k], static_cast<long double>(multiplier) * row.value[k]);
    }
  }

  /// Replaces what may be replaced by global bounds and gives the rest, scaled by a power of two,
  /// which rounds nothing, to coefficients of about 1: the slack that all users allow is absolute.
  LinearProof finish(const Domain& domain, long double rhs) const {
    const int n = domain.mip().num_cols();
    double largest = 0.0;
    for (int v = 0; v < n; ++v) largest = std::max(largest, std::abs(value_of(v)));
    LinearProof proof;
    for (int v = 0; v < static_cast<int>(sum_.size()); ++v) {
      const double value = value_of(v);
      if (value == 0.0) continue;
      const double most = domain.bounds().global(value > 0.0 ? upper_of(v) : lower_of(v));
      if ((v >= n || std::abs(value) < kNegligible * largest || is_cancelled(v)) &&
          std::isfinite(most)) {
        rhs -= sum_[v] * most;
      } else if (!is_cancelled(v)) {
        proof.index.push_back(v);
        proof.value.push_back(value);
      }
    }
    const double scale = largest > 0.0 ? std::exp2(-std::floor(std::log2(largest))) : 1.0;
    for (double& value : proof.value) value *= scale;
    proof.rhs = static_cast<double>(rhs * scale);
    return proof;
  }

 private:
  double value_of(int v) const { return static_cast<double>(sum_[v]); }
  bool is_cancelled(int v) const { return std::abs(value_of(v)) <= kCancelled * size_[v]; }

  Vector<long double> sum_;  // [num_vars]
  Vector<double> size_;      // [num_vars] of the terms
};

Summation multiply_rows(const Domain& domain, const Vector<double>& multipliers, double sign) {
  const MipProblem& mip = domain.mip();
  Summation sum(mip.lp.num_vars());
  for (int i = 0; i < mip.num_rows(); ++i) {
    const double y = sign * multipliers[i];
    // Any multipliers give a proof: a wrong sign, small as it may be, is better left out where the
    // row has no limit on that side.
    const int logical = mip.num_cols() + i;
    if (y == 0.0 || std::isinf(y > 0.0 ? domain.upper(logical) : domain.lower(logical))) continue;
    sum.add_row(domain.rows().view(i), y);
    sum.add(logical, y);
  }
  return sum;
}

/// The largest activity of a proof within the local bounds, less its right-hand side.
double largest_excess(const Domain& domain, const LinearProof& proof) {
  long double excess = -proof.rhs;
  for (std::size_t k = 0; k < proof.index.size(); ++k) {
    const int v = proof.index[k];
    excess += static_cast<long double>(proof.value[k]) *
              (proof.value[k] > 0.0 ? domain.upper(v) : domain.lower(v));
  }
  return static_cast<double>(excess);
}

}  // namespace

LinearProof farkas_proof(const Domain& domain, const Vector<double>& ray) {
  LinearProof proof = multiply_rows(domain, ray, 1.0).finish(domain, 0.0L);
  if (largest_excess(domain, proof) < 0.0) return proof;
  return multiply_rows(domain, ray, -1.0).finish(domain, 0.0L);
}

LinearProof bound_proof(const Domain& domain, const Vector<double>& duals, double cutoff) {
  const LpProblem& lp = domain.mip().lp;
  Summation sum = multiply_rows(domain, duals, 1.0);
  for (int j = 0; j < lp.num_cols; ++j) {
    if (lp.cost[j] != 0.0) sum.add(j, -lp.cost[j]);
  }
  return sum.finish(domain, static_cast<long double>(lp.offset) - cutoff);
}

int add_proof_row(Domain& domain, const LinearProof& proof) {
  const int length = static_cast<int>(proof.index.size());
  const int n = domain.mip().num_cols();
  if (length == 0 || length > kShortProof + kLongProof * n) return -1;
  double smallest = kInf, largest = 0.0;
  for (int k = 0; k < length; ++k) {
    if (proof.index[k] >= n) return -1;
    smallest = std::min(smallest, std::abs(proof.value[k]));
    largest = std::max(largest, std::abs(proof.value[k]));
  }
  if (!(largest <= kWidestRange * smallest) || !std::isfinite(proof.rhs)) return -1;
  return domain.add_row(proof.index.data(), proof.value.data(), length, proof.rhs, kInf);
}

}  // namespace kelvo
