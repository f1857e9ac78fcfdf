#include "lp/solve/presolved_lp.h"

#include <algorithm>
#include <cmath>

#include "lp/crossover/independent_columns.h"
#include "lp/presolve/crush.h"
#include "lp/solve/presolve_log.h"

namespace kelvo {

namespace {

/// Statuses of a reduced basis that is being made right.
class CrushedStart {
 public:
  CrushedStart(const LpProblem& lp, CrushedBasis& crushed) : lp_(lp), crushed_(crushed) {}

  /// Nonbasic variables that are not where their status says go to the bound they are at; columns
  /// at none are superbasic, logicals basic.
  void move_to_point();
  /// Makes the basic variables independent and as many as there are rows; the others go to a bound.
  void keep_independent(bool at_point);

  bool is_square() const {
    return std::count(crushed_.status.begin(), crushed_.status.end(), kBasic) == lp_.num_rows;
  }

 private:
  /// The status of a nonbasic variable with these limits at this place.
  static int status_at(double place, double lower, double upper) {
    constexpr double kSamePlace = 1e-9;  // relative: places are sums and quotients of bounds
    if (std::fabs(place - lower) <= kSamePlace * (1.0 + std::fabs(lower))) return kAtLower;
    if (std::fabs(place - upper) <= kSamePlace * (1.0 + std::fabs(upper))) return kAtUpper;
    return kFreeSuper;
  }
  int column_status(int j) const {
    return status_at(crushed_.value[j], lp_.lower[j], lp_.upper[j]);
  }

  const LpProblem& lp_;
  CrushedBasis& crushed_;
};

void CrushedStart::move_to_point() {
  Vector<int>& status = crushed_.status;
  for (int j = 0; j < lp_.num_cols; ++j) {
    if (status[j] != kBasic && lp_.lower[j] < lp_.upper[j]) status[j] = column_status(j);
  }
  const Vector<double> activity = row_activities(lp_, crushed_.value);
  for (int i = 0; i < lp_.num_rows; ++i) {
    const int v = lp_.num_cols + i;
    if (status[v] == kBasic || lp_.lower[v] == lp_.upper[v]) continue;
    const int there = status_at(-activity[i], lp_.lower[v], lp_.upper[v]);
    status[v] = there == kFreeSuper ? kBasic : there;
  }
}

void CrushedStart::keep_independent(bool at_point) {
  Vector<int>& status = crushed_.status;
  const int n = lp_.num_cols, variables = static_cast<int>(status.size());
  Vector<int> basic;
  for (int v = n; v < variables; ++v) {
    if (status[v] == kBasic) basic.push_back(v);
  }
  for (int j = 0; j < n; ++j) {
    if (status[j] == kBasic) basic.push_back(j);
  }
  const Vector<char> chosen = choose_independent(lp_, basic);
  // An absent bound is replaced by the other one when the basis is used.
  for (const int v : basic) status[v] = at_point && v < n ? column_status(v) : kAtLower;
  for (int v = 0; v < variables; ++v) {
    if (chosen[v]) status[v] = kBasic;
  }
}

}  // namespace

PresolvedLp::PresolvedLp(const LpProblem& original, const PresolveSettings& settings,
                         const Vector<char>& protected_columns, const CallContext& context,
                         PresolveLog& log)
    : presolve_(original, settings, ColumnMarks{protected_columns, {}}, context.stop, &log) {
  switch (outcome()) {
    case PresolveOutcome::reduced:
    case PresolveOutcome::unchanged: {
      reduced_ = presolve_.take_reduced();
      log.summary({"LP", presolve_.outcome() == PresolveOutcome::unchanged, false,
                   presolve_.stats(), reduced_});
      has_reduced_ = outcome() == PresolveOutcome::reduced;
      break;
    }
    case PresolveOutcome::infeasible:
    case PresolveOutcome::dual_infeasible:
    case PresolveOutcome::time_limit:
    case PresolveOutcome::aborted:
      log.finding(presolve_.finding(), original);
  }
  reduced_.rows = SparseMatrix();  // made again where they are needed
  if (!has_reduced_) reduced_.columns = SparseMatrix();
}

void PresolvedLp::keep_identity(const LpProblem& original) {
  if (has_reduced_) return;
  const double offset = reduced_.offset;
  reduced_ = original;
  close_crossed_bounds(reduced_);
  reduced_.offset = offset;
  has_reduced_ = true;
}

bool PresolvedLp::change_costs(const Vector<double>& cost) {
  Vector<double> reduced_cost;
  double offset = 0.0;
  if (!presolve_.reprice(cost, reduced_cost, offset)) return false;
  std::copy(reduced_cost.begin(), reduced_cost.end(), reduced_.cost.begin());
  reduced_.offset = offset;
  return true;
}

LpStart PresolvedLp::crush(const LpStart& start, const LpProblem& original) const {
  // Only where two columns have become one do the values count, those of nonbasic ones.
  Vector<double> x(start.x);
  if (x.empty()) {
    for (int j = 0; j < original.num_cols; ++j) {
      const double place = start.status[j] == kAtUpper ? original.upper[j] : original.lower[j];
      x.push_back(std::isfinite(place) ? place : 0.0);
    }
  }
  CrushedBasis crushed = crush_basis(presolve_, start.status, x.data());
  CrushedStart reduced_start(reduced_, crushed);
  const bool at_point = !start.x.empty();
  if (at_point) reduced_start.move_to_point();
  if (at_point || !reduced_start.is_square()) reduced_start.keep_independent(at_point);
  LpStart reduced;
  reduced.present = true;
  reduced.status = std::move(crushed.status);
  reduced.x = std::move(crushed.value);
  return reduced;
}

}  // namespace kelvo
