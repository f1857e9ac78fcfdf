// Presolve of programs with integer columns, against enumeration: the optimum of the reduced
// program is that of the original one, and its point comes back whole and feasible.
#include <optional>

#include "lp/busy_lp.h"
#include "lp/presolve/crush.h"

namespace kelvo {
namespace {

using test::busy_lp;
using test::dense_lp;
using test::never;
using test::solve;
using test::Solved;
using test::worst_infeasibility;

/// The best point with whole values, looked for up to `window` from the finite bound of a column
/// that has only one, from 0 where there is none.
class Enumeration {
 public:
  Enumeration(const LpProblem& lp, const Vector<char>& integer, int window)
      : lp_(lp), integer_(integer), window_(window), x_(lp.num_cols, 0.0) {
    for (int j = 0; j < lp.num_cols; ++j) continuous_ |= !integer[j];
    if (continuous_) rest_ = lp;
    try_column(0);
  }
  bool found() const { return !best_.empty() || (lp_.num_cols == 0 && objective_ < kInf); }
  double objective() const { return objective_; }
  const Vector<double>& best() const { return best_; }

 private:
  void try_column(int j) {
    while (j < lp_.num_cols && !integer_[j]) ++j;
    if (j == lp_.num_cols) return try_point();
    double low = lp_.lower[j], high = lp_.upper[j];
    if (low == -kInf) low = (high == kInf ? 0.0 : high) - window_;
    if (high == kInf) high = (lp_.lower[j] == -kInf ? 0.0 : low) + window_;
    for (double value = std::ceil(low); value <= high; value += 1.0) {
      x_[j] = value;
      try_column(j + 1);
    }
  }
  void try_point() {
    if (continuous_) {
      for (int j = 0; j < lp_.num_cols; ++j) {
        if (integer_[j]) rest_.lower[j] = rest_.upper[j] = x_[j];
      }
      const Solved solved = solve(rest_);
      if (solved.outcome == SimplexOutcome::optimal) offer(solved.objective, solved.basic.x);
      return;
    }
    double objective = lp_.offset;
    for (int j = 0; j < lp_.num_cols; ++j) objective += lp_.cost[j] * x_[j];
    if (objective < objective_ && worst_infeasibility(lp_, x_) <= 1e-9) offer(objective, x_);
  }
  void offer(double objective, const Vector<double>& x) {
    if (objective >= objective_) return;
    objective_ = objective;
    best_ = x;
  }

  const LpProblem& lp_;
  const Vector<char>& integer_;
  const int window_;
  bool continuous_ = false;
  LpProblem rest_;  // for the continuous columns
  Vector<double> x_, best_;
  double objective_ = kInf;
};

struct Tally {
  int optimal = 0, proven = 0;
  std::array<int, UndoRecords::kNumKinds> records = {};
};

constexpr int kWindow = 6;

void check_program(const LpProblem& lp, const Vector<char>& integer, Tally& tally) {
  Presolve presolve(lp, PresolveSettings(), {{}, integer}, never);
  const Enumeration direct(lp, integer, kWindow);
  if (presolve.outcome() == PresolveOutcome::infeasible) {
    ++tally.proven;
    ASSERT_FALSE(direct.found()) << "finding " << static_cast<int>(presolve.finding().kind);
    return;
  }
  // What improves with the window may be unbounded.
  const Enumeration wider(lp, integer, 2 * kWindow);
  const bool bounded = direct.found() && wider.objective() >= direct.objective() - 1e-9;
  if (presolve.outcome() == PresolveOutcome::dual_infeasible) {
    ASSERT_FALSE(bounded) << "finding " << static_cast<int>(presolve.finding().kind);
    return;
  }
  if (!bounded) return;
  ++tally.optimal;
  const auto counts = presolve.stack().records.counts();
  for (int kind = 0; kind < UndoRecords::kNumKinds; ++kind) tally.records[kind] += counts[kind];
  const LpProblem reduced = presolve.take_reduced();
  Vector<char> marks;
  for (const int j : presolve.kept_cols()) marks.push_back(integer[j]);
  const Enumeration small(reduced, marks, 5 * kWindow);
  ASSERT_TRUE(small.found());
  ASSERT_NEAR(small.objective(), direct.objective(), 1e-7);
  Vector<double> x(lp.num_cols);
  uncrush_x(presolve, small.best().data(), x.data());
  ASSERT_LE(worst_infeasibility(lp, x), 1e-7);
  double objective = lp.offset;
  for (int j = 0; j < lp.num_cols; ++j) {
    objective += lp.cost[j] * x[j];
    const double off = integer[j] ? std::fabs(x[j] - std::round(x[j])) : 0.0;
    ASSERT_LE(off, 1e-9) << "column " << j;
  }
  ASSERT_NEAR(objective, direct.objective(), 1e-7);
}

/// A busy program whose columns have a finite bound and few whole values, unless one is absent;
/// some limits are between whole numbers.
LpProblem small_box(Random& random, int m, int n, int steps, int most_open,
                    const Vector<char>& integer) {
  LpProblem lp = busy_lp(random, m, n);
  int open_columns = 0;
  for (int j = 0; j < n; ++j) {
    if (!integer[j]) continue;
    const bool open = open_columns < most_open && random.below(4) == 0;
    open_columns += open;
    if (lp.lower[j] == -kInf && lp.upper[j] == kInf) lp.lower[j] = -steps / 2;
    if (lp.lower[j] == -kInf && !open) lp.lower[j] = lp.upper[j] - steps;
    if (lp.upper[j] == kInf && !open) lp.upper[j] = lp.lower[j] + steps;
    if (random.below(6) == 0) lp.upper[j] += 0.5;
    if (random.below(6) == 0) lp.lower[j] -= 0.5;
  }
  for (int v = n; v < lp.num_vars(); ++v) {
    if (lp.lower[v] < lp.upper[v] && random.below(5) == 0) lp.upper[v] += 0.5;
  }
  return lp;
}

void check_many(int count, int most_columns, int integer_columns, int steps) {
  Tally tally;
  for (int seed = 0; seed < count; ++seed) {
    Random random(seed * 7907 + 3);
    const int m = 1 + random.below(4), n = 1 + random.below(most_columns);
    Vector<char> integer(n, 0);
    for (int k = 0; k < integer_columns; ++k) integer[random.below(n)] = 1;
    if (integer_columns >= n) integer.assign(n, 1);
    const LpProblem lp = small_box(random, m, n, steps, integer_columns < 4 ? 1 : 2, integer);
    check_program(lp, integer, tally);
    ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
  }
  EXPECT_GT(tally.optimal, count / 3);
  for (int kind = 0; kind < UndoRecords::kNumKinds; ++kind) {
    // Whole values make no row bind for certain.
    if (kind == UndoRecords::kind_of<BindingRow>() && integer_columns == most_columns) continue;
    EXPECT_GT(tally.records[kind], 0) << UndoRecords::kNames[kind];
  }
}

TEST(IntegerPresolve, PureProgramsKeepTheirOptimum) {
  check_many(6000, 4, 4, 3);
}

TEST(IntegerPresolve, MixedProgramsKeepTheirOptimum) {
  check_many(1500, 6, 2, 2);
}

TEST(IntegerPresolve, ColumnsStayWhereTheyAreNotWholeByThemselves) {
  Tally tally;
  // Multiples with gaps in their sum: x + 3 y with x in {0, 1}.
  check_program(dense_lp({{1, 0, 1}, {3, 0, 3}}, {{1, 3}}, {{4.5, kInf}}), {1, 1}, tally);
  // x = (8 - y - 3 z) / 2 is implied free, but whole for some y and z only.
  check_program(
      dense_lp({{1, -40, 40}, {2, 0, 2}, {-3, 0, 1}}, {{2, 1, 3}, {1, 1, 0}}, {{8, 8}, {-kInf, 3}}),
      {1, 1, 1}, tally);
  // A slack in steps of 2.
  check_program(dense_lp({{-1, 0, 4}, {0, 0, 2}}, {{1, 2}}, {{4.5, 5.5}}), {1, 1}, tally);
  EXPECT_EQ(tally.optimal, 3);
  PresolveSettings settings;
  const auto kept = [&settings](const LpProblem& lp) {
    return Presolve(lp, settings, {{}, {1, 1}}, never).kept_cols().size();
  };
  EXPECT_EQ(kept(dense_lp({{1, 0, 9}, {1, 0, 9}}, {{2, 3}}, {{7, 7}})), 2u);
  EXPECT_LT(kept(dense_lp({{1, 0, 9}, {1, 0, 9}}, {{1, 3}}, {{7, 7}})), 2u);
}

TEST(IntegerPresolve, BoundsAreRounded) {
  PresolveSettings settings;
  const Presolve none(dense_lp({{1, 2.3, 2.7}}, {{1}}, {{-kInf, 9}}), settings, {{}, {1}}, never);
  EXPECT_EQ(none.finding().kind, FindingKind::column_bounds);
  const Presolve fixed(dense_lp({{1, 2.5, 2.5}}, {{1}}, {{-kInf, 9}}), settings, {{}, {1}}, never);
  EXPECT_EQ(fixed.finding().kind, FindingKind::integer_column);
}

}  // namespace
}  // namespace kelvo
