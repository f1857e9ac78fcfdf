#include "lp/crossover/dual_push.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "lp/factor/basis_factor.h"

namespace kelvo {

namespace {

// A multiplier of this size, or of this share of the terms that it is the sum of, is 0 but for
// rounding. A basic variable taken for a priced one by mistake would leave the basis for a bound at
// which it does not stand.
constexpr double kZeroMultiplier = 1e-10;
constexpr double kRoundingShare = 1e-11;
// The duals are the solution of one system: all carry this part of the rounding of the largest.
constexpr double kRoundingOfSolve = 1e-2;
// Entries of a tableau row that are smaller do not block: they are rounding, and useless as pivots.
constexpr double kPivot = 1e-7;
// Where several variables block within this much of the step, or this share of their multipliers,
// the largest pivot among them enters.
constexpr double kSlack = 1e-9;

class DualPush {
 public:
  DualPush(const LpProblem& lp, Vector<double>& y, Vector<int>& status, StopCheck& stop)
      : lp_(lp),
        y_(y),
        status_(status),
        was_basic_(lp.num_vars(), 0),
        stop_(stop),
        factor_(lp.columns, FactorSettings(), nullptr),
        direction_(lp.num_rows),
        column_(lp.num_rows),
        row_(lp.num_vars()) {}

  bool run();

 private:
  bool start();
  bool refactorize();
  bool take_back(const BasisRepair& repair);
  bool is_fixed(int v) const { return lp_.lower[v] == lp_.upper[v]; }
  /// The bound that the sign of its multiplier, or the lack of another one, says v stands at.
  BasisStatus bound_of(int v) const {
    if (lp_.lower[v] == -kInf) return kAtUpper;
    return z_[v] < 0.0 && lp_.upper[v] < kInf ? kAtUpper : kAtLower;
  }
  /// True when a variable that was basic is known to stand at a bound.
  bool may_leave(int v) const { return is_fixed(v) || is_priced(v); }
  bool is_priced(int v) const {
    return std::fabs(z_[v]) > kZeroMultiplier + kRoundingShare * terms_[v];
  }
  void compute_multipliers();
  bool push(int position);
  void compute_row(int position);
  int entering_variable(double wanted, double& step) const;
  double slope(int j, double wanted) const;
  void move(double step);
  void compute_column(int j);
  bool exchange(int position, int entering);

  const LpProblem& lp_;
  Vector<double>& y_;
  Vector<int>& status_;
  Vector<char> was_basic_;  // [variables] 1: basic at the start
  StopCheck& stop_;
  BasisFactor factor_;
  Vector<int> header_;             // [rows]
  Vector<double> z_;               // [variables]
  Vector<double> terms_;           // [variables] size of what z_ is the sum of, at the start
  WorkVector direction_, column_;  // [rows]
  WorkVector row_;                 // [variables] tableau row, nonbasic ones only
};

bool DualPush::refactorize() {
  Vector<BasisRepair> repairs;
  return factor_.factorize(header_, false, repairs, &stop_) == FactorOutcome::ok;
}

/// The first factorization. Columns that turn out dependent come back in place of variables that
/// stand at a bound, unless they are such themselves.
bool DualPush::start() {
  Vector<BasisRepair> repairs;
  const FactorOutcome outcome = factor_.factorize(header_, true, repairs, &stop_);
  if (outcome == FactorOutcome::ok) return true;
  if (outcome != FactorOutcome::repaired) return false;
  for (const BasisRepair& repair : repairs) {
    status_[repair.leaving] = bound_of(repair.leaving);
    status_[lp_.num_cols + repair.row] = kBasic;
  }
  for (const BasisRepair& repair : repairs) {
    if (!may_leave(repair.leaving) && !take_back(repair)) return false;
  }
  return true;
}

bool DualPush::take_back(const BasisRepair& repair) {
  compute_column(repair.leaving);
  int best = -1;
  double largest = kPivot;
  for (int p = 0; p < lp_.num_rows; ++p) {
    const int v = header_[p];
    if (std::fabs(column_.value[p]) <= largest || !was_basic_[v] || !may_leave(v)) continue;
    largest = std::fabs(column_.value[p]);
    best = p;
  }
  return best >= 0 && exchange(best, repair.leaving);
}

void DualPush::compute_multipliers() {
  double largest = 0.0;
  for (double y : y_) largest = std::max(largest, std::fabs(y));
  const double common = kRoundingOfSolve * largest;
  z_.assign(lp_.cost.begin(), lp_.cost.begin() + lp_.num_cols);
  terms_.assign(lp_.num_vars(), common);
  for (int j = 0; j < lp_.num_cols; ++j) {
    terms_[j] = std::fabs(z_[j]);
    for (int k = lp_.columns.start[j]; k < lp_.columns.start[j + 1]; ++k) {
      const double a = lp_.columns.value[k], y = y_[lp_.columns.index[k]];
      z_[j] -= a * y;
      terms_[j] += std::fabs(a) * (std::fabs(y) + common);
    }
  }
  for (int i = 0; i < lp_.num_rows; ++i) z_.push_back(-y_[i]);
}

void DualPush::compute_row(int position) {
  direction_.clear();
  direction_.insert(position, 1.0);
  factor_.btran(direction_, 0.1);
  direction_.pack();
  row_.clear();
  const auto add = [this](int j, double value) {
    if (status_[j] == kBasic || value == 0.0) return;
    if (row_.value[j] == 0.0) row_.index[row_.count++] = j;
    row_.value[j] += value;
    if (row_.value[j] == 0.0) row_.value[j] = std::numeric_limits<double>::min();
  };
  for (int k = 0; k < direction_.count; ++k) {
    const int i = direction_.index[k];
    const double r = direction_.value[i];
    for (int e = lp_.rows.start[i]; e < lp_.rows.start[i + 1]; ++e) {
      add(lp_.rows.index[e], r * lp_.rows.value[e]);
    }
    add(lp_.num_cols + i, r);
  }
}

/// How fast the multiplier of j approaches 0 from its allowed side; 0 when it does not.
double DualPush::slope(int j, double wanted) const {
  const double change = wanted > 0.0 ? row_.value[j] : -row_.value[j];  // z_j falls by it
  if (std::fabs(change) < kPivot || is_fixed(j)) return 0.0;
  if (status_[j] == kAtLower) return std::max(0.0, change);
  if (status_[j] == kAtUpper) return std::max(0.0, -change);
  return std::fabs(change);
}

/// The variable that blocks, and the step it allows; -1 when the wanted step goes through.
int DualPush::entering_variable(double wanted, double& step) const {
  double allowed = std::fabs(wanted);
  bool blocked = false;
  for (int k = 0; k < row_.count; ++k) {
    const int j = row_.index[k];
    const double fall = slope(j, wanted);
    const double relaxed = (1.0 + kSlack) * std::fabs(z_[j]) + kSlack;
    if (fall == 0.0 || relaxed >= allowed * fall) continue;
    allowed = relaxed / fall;
    blocked = true;
  }
  if (!blocked) return -1;
  int best = -1;
  double largest = 0.0;
  for (int k = 0; k < row_.count; ++k) {
    const int j = row_.index[k];
    const double fall = slope(j, wanted);
    if (fall <= largest || std::fabs(z_[j]) > allowed * fall) continue;
    largest = fall;
    best = j;
  }
  step = std::copysign(std::fabs(z_[best]) / largest, wanted);
  return best;
}

void DualPush::move(double step) {
  for (int k = 0; k < direction_.count; ++k) {
    y_[direction_.index[k]] += step * direction_.value[direction_.index[k]];
  }
  for (int k = 0; k < row_.count; ++k) z_[row_.index[k]] -= step * row_.value[row_.index[k]];
}

void DualPush::compute_column(int j) {
  column_.clear();
  if (j < lp_.num_cols) {
    for (int k = lp_.columns.start[j]; k < lp_.columns.start[j + 1]; ++k) {
      column_.insert(lp_.columns.index[k], lp_.columns.value[k]);
    }
  } else {
    column_.insert(j - lp_.num_cols, 1.0);
  }
  factor_.ftran(column_, 0.1, true);
}

/// Exchanges by the column computed last.
bool DualPush::exchange(int position, int entering) {
  const double pivot = column_.value[position];
  if (std::fabs(pivot) < kPivot) return false;
  const bool updated = factor_.update(position, pivot);
  const int leaving = header_[position];
  status_[leaving] = bound_of(leaving);
  status_[entering] = kBasic;
  header_[position] = entering;
  return (updated && !factor_.should_refactor()) || refactorize();
}

bool DualPush::push(int position) {
  const int v = header_[position];
  compute_row(position);
  const double wanted = z_[v];
  double step = wanted;
  const int entering = entering_variable(wanted, step);
  move(step);
  z_[v] -= step;
  if (entering < 0) {
    z_[v] = 0.0;
    return true;
  }
  z_[entering] = 0.0;
  compute_column(entering);
  return exchange(position, entering);
}

bool DualPush::run() {
  for (int v = 0; v < lp_.num_vars(); ++v) {
    if (status_[v] != kBasic) continue;
    header_.push_back(v);
    was_basic_[v] = 1;
  }
  if (static_cast<int>(header_.size()) != lp_.num_rows) return false;
  compute_multipliers();
  if (!start()) return false;
  for (int p = 0; p < lp_.num_rows; ++p) {
    if (!is_priced(header_[p])) continue;
    if (stop_.requested() || !push(p)) return false;
  }
  return true;
}

}  // namespace

bool push_duals(const LpProblem& lp, Vector<double>& y, Vector<int>& status, StopCheck& stop) {
  Vector<double> pushed_y(y);
  Vector<int> pushed_status(status);
  if (!DualPush(lp, pushed_y, pushed_status, stop).run()) return false;
  y.swap(pushed_y);
  status.swap(pushed_status);
  return true;
}

}  // namespace kelvo
