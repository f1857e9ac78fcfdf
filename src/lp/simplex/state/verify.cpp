// Verification of values that came by updates: as good as after a fresh factorization, for one pass
// over the matrix and one solve.
#include <algorithm>
#include <cassert>
#include <cmath>

#include "lp/simplex/state/simplex_state.h"

namespace kelvo {
namespace {

// What is accepted: reduced costs of basic variables up to this share of the largest dual, and
// corrections of basic values up to this share of the largest row activity.
constexpr double kDualRest = 1e-11;
constexpr double kPrimalError = 1e-9;

/// The pass: prices out every variable, and sums the residual of A x + s = 0 in rest [m].
class Pass {
 public:
  Pass(SimplexState& state, double* rest) : s_(state), rest_(rest), objective_(s_.problem.offset) {}

  void over_columns() {
    const SparseMatrix& columns = s_.problem.columns;
    const double* y = s_.duals.row_duals.data();
    for (int j = 0; j < s_.n; ++j) {
      const double x = place(j);
      const int end = columns.start[j + 1];
      double d = s_.program.cost[j];
      if (x == 0.0) {
        for (int k = columns.start[j]; k < end; ++k) d -= y[columns.index[k]] * columns.value[k];
      } else {
        for (int k = columns.start[j]; k < end; ++k) {
          d -= y[columns.index[k]] * columns.value[k];
          rest_[columns.index[k]] += columns.value[k] * x;
        }
      }
      see(j, d, x);
    }
  }

  void over_logicals() {
    const double* y = s_.duals.row_duals.data();
    for (int i = 0; i < s_.m; ++i) {
      const int j = s_.n + i;
      const double x = place(j);
      rest_[i] += x;
      largest_activity_ = std::max(largest_activity_, std::fabs(x));
      largest_dual_ = std::max(largest_dual_, std::fabs(y[i]));
      see(j, s_.program.cost[j] - y[i], x);
    }
  }

  bool dual_feasible() const { return feasible_ && worst_dual_ <= kDualRest * largest_dual_; }
  double largest_activity() const { return largest_activity_; }
  double objective() const { return objective_; }

 private:
  double place(int j) const {
    return s_.basis.is_basic(j) ? s_.basics.value[s_.basis.position[j]] : s_.basis.value[j];
  }
  void see(int j, double d, double x) {
    objective_ += s_.program.cost[j] * x;
    if (s_.basis.is_basic(j)) {
      worst_dual_ = std::max(worst_dual_, std::fabs(d));
      d = 0.0;
    }
    if (DualValues::wrong(d, s_.basis.move[j], s_.run.dual_tolerance)) feasible_ = false;
    s_.duals.reduced_cost[j] = d;
  }

  SimplexState& s_;
  double* rest_;
  double objective_;
  bool feasible_ = true;
  double worst_dual_ = 0.0;
  double largest_dual_ = 1.0;
  double largest_activity_ = 1.0;
};

/// Takes the error [m] of the basic values, by position, out of them; true when it is small and
/// they are feasible.
bool correct(BasicValues& basics, const WorkVector& errors, double largest_error,
             double tolerance) {
  bool feasible = true;
  const int count = errors.is_dense() ? errors.size() : errors.count;
  for (int k = 0; k < count; ++k) {
    const int p = errors.is_dense() ? k : errors.index[k];
    const double error = errors.value[p];
    const double x = basics.value[p] - error;
    if (std::fabs(error) > largest_error || x < basics.lower[p] - tolerance ||
        x > basics.upper[p] + tolerance) {
      feasible = false;
    }
    basics.value[p] = x;
  }
  return feasible;
}

}  // namespace

bool SimplexState::verify() {
  assert(basics.current() && factor_current() && basics.moves.count == 0);
  full.clear();
  full.count = WorkVector::kDense;
  Pass pass(*this, full.value.data());
  pass.over_columns();
  pass.over_logicals();
  if (!pass.dual_feasible()) {
    full.clear();
    return false;
  }
  full.pack();
  factor().ftran(full, density.flips);
  const double largest_error = kPrimalError * pass.largest_activity();
  const bool feasible = correct(basics, full, largest_error, run.primal_tolerance);
  full.clear();
  if (!feasible) return false;
  duals.objective = pass.objective();
  duals.set_feasible(true);
  duals.set_validity(Validity::fresh);
  basics.set_validity(Validity::fresh);
  verified_ = true;
  return true;
}

}  // namespace kelvo
