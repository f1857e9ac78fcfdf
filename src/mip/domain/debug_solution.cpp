#include "mip/domain/debug_solution.h"

#include <cmath>

namespace kelvo {
namespace {

/// The solution may miss bounds and rows by the tolerances of its own check, and bounds are
/// computed from other bounds that it may miss as well.
constexpr double kMissed = 1e-5;
constexpr double kMissedRelative = 1e-8;

double allowed(double value) {
  return kMissed + kMissedRelative * std::abs(value);
}

}  // namespace

DebugSolution::DebugSolution(const MipProblem& mip, const Vector<double>& x, Report callback,
                             void* context)
    : mip_(mip), value_(x), objective_(mip.lp.offset), report_(callback), context_(context) {
  for (int j = 0; j < mip.num_cols(); ++j) {
    if (mip.is_integer[j]) value_[j] = std::round(value_[j]);
    objective_ += mip.lp.cost[j] * value_[j];
  }
  const Vector<double> activity = row_activities(mip.lp, value_);
  for (const double a : activity) value_.push_back(-a);
}

bool DebugSolution::excludes(int bound, double value) const {
  const double x = value_[variable_of(bound)];
  return is_upper(bound) ? x > value + allowed(value) : x < value - allowed(value);
}

void DebugSolution::report(const DebugLoss& loss) {
  if (is_lost_) return;
  is_lost_ = true;
  report_(context_, loss);
}

void DebugSolution::check_bound(int position, int bound, double value, ReasonKind kind) {
  if (left_at_ != kNever || is_cut_off_ || !excludes(bound, value)) return;
  if (kind == ReasonKind::kDecision || kind == ReasonKind::kUnexplained) {
    left_at_ = position;
    return;
  }
  report({DebugLoss::Step::kBound, kind, bound, value, value_[variable_of(bound)]});
}

void DebugSolution::check_conflict(ReasonKind kind) {
  if (left_at_ != kNever || is_cut_off_) return;
  report({DebugLoss::Step::kConflict, kind, -1, 0.0, 0.0});
}

void DebugSolution::check_clause(const Vector<BoundLiteral>& literals) {
  if (is_cut_off_) return;
  for (const BoundLiteral& literal : literals) {
    const double x = value_[variable_of(literal.bound)];
    // A literal that holds by no more than the tolerance proves nothing.
    const double margin = allowed(literal.value);
    if (is_upper(literal.bound) ? x > literal.value - margin : x < literal.value + margin) {
      const bool whole = variable_of(literal.bound) < mip_.num_cols() &&
                         mip_.is_integer[variable_of(literal.bound)];
      if (!whole || !is_as_tight(literal.bound, x, literal.value)) return;
    }
  }
  report({DebugLoss::Step::kClause, ReasonKind::kClause, -1, 0.0, 0.0});
}

void DebugSolution::check_row(const int* index, const double* value, int length, double lower,
                              double upper) {
  if (is_cut_off_) return;
  double activity = 0.0, size = 0.0;
  for (int k = 0; k < length; ++k) {
    activity += value[k] * value_[index[k]];
    size += std::abs(value[k] * value_[index[k]]);
  }
  const double margin = allowed(size);
  if (activity <= upper + margin && activity >= lower - margin) return;
  report({DebugLoss::Step::kRow, ReasonKind::kRow, -1, activity > upper ? upper : lower, activity});
}

void DebugSolution::check_cliques(const CliqueTable& cliques) {
  const auto is_true = [&](int literal) {
    return std::abs(value_[variable_of(literal)] - literal_value(literal)) < 0.5;
  };
  for (int c = 0; c < cliques.end(); ++c) {
    const LiteralSpan members = cliques.members(c);
    const auto count = std::count_if(members.begin(), members.end(), is_true);
    if (count <= 1 && (count == 1 || !cliques.is_equation(c) || members.length == 0)) continue;
    report({DebugLoss::Step::kClique, ReasonKind::kClique, -1, 1.0, static_cast<double>(count)});
  }
  for (int j = 0; j < mip_.num_cols(); ++j) {
    for (const int literal : {lower_of(j), upper_of(j)}) {
      if (!cliques.is_literal(literal) || !is_true(literal)) continue;
      for (const int other : cliques.edges_of(literal)) {
        if (!is_true(other)) continue;
        report({DebugLoss::Step::kClique, ReasonKind::kClique, literal, 1.0, 2.0});
      }
    }
  }
}

}  // namespace kelvo
