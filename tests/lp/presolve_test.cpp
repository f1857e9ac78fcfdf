// Presolve and its way back: the optimal basis of the reduced program must be one of the original
// program, without another iteration.
#include "lp/presolve/presolve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "lp/dual_push.h"
#include "lp/presolve/crush_basis.h"
#include "simplex_support.h"

namespace kelvo {
namespace {

using test::dense_lp;

SilentSink silent;
NeverStop never;

struct Solved {
  SimplexOutcome outcome;
  BasicSolution basic;
  Vector<double> z;
  double objective;
  int iterations;
};

Solved solve(const LpProblem& lp, const Vector<int>* start = nullptr,
             const double* values = nullptr) {
  Simplex simplex(lp, silent, never);
  if (start != nullptr) {
    simplex.set_basis(*start, values);
  } else {
    simplex.set_slack_basis();
  }
  SimplexSettings settings;
  settings.feasibility_tolerance = settings.optimality_tolerance = 1e-9;
  Solved solved;
  // The dual simplex may perturb and leave an optimal basis; the primal one stops at it.
  solved.outcome = start == nullptr ? simplex.run_dual(settings) : SimplexOutcome::non_optimal;
  if (solved.outcome != SimplexOutcome::optimal) solved.outcome = simplex.run_primal(settings);
  solved.basic.x.assign(simplex.values().begin(), simplex.values().begin() + lp.num_cols);
  solved.basic.y = simplex.row_duals();
  solved.basic.status = simplex.status();
  solved.z = simplex.reduced_costs();
  solved.z.resize(lp.num_cols);
  solved.objective = simplex.objective();
  solved.iterations = simplex.iterations();
  return solved;
}

double outside(double value, double low, double high) {
  return std::max({0.0, low - value, value - high});
}

/// Largest violation of any condition on an optimal basic solution.
double worst_violation(const LpProblem& lp, const BasicSolution& solution) {
  const int n = lp.num_cols;
  double worst = 0.0;
  int basic = 0;
  Vector<double> value(solution.x);
  Vector<double> multiplier(lp.cost);
  value.resize(lp.num_vars(), 0.0);
  for (int j = 0; j < n; ++j) {
    for (int k = lp.columns.start[j]; k < lp.columns.start[j + 1]; ++k) {
      const int i = lp.columns.index[k];
      value[n + i] -= lp.columns.value[k] * solution.x[j];
      multiplier[j] -= lp.columns.value[k] * solution.y[i];
    }
  }
  for (int i = 0; i < lp.num_rows; ++i) multiplier[n + i] = -solution.y[i];
  for (int v = 0; v < lp.num_vars(); ++v) {
    worst = std::max(worst, outside(value[v], lp.lower[v], lp.upper[v]));
    const bool fixed = lp.lower[v] == lp.upper[v];
    switch (solution.status[v]) {
      case kBasic:
        ++basic;
        worst = std::max(worst, std::fabs(multiplier[v]));
        break;
      case kAtLower:
        worst = std::max(worst, std::fabs(value[v] - lp.lower[v]));
        if (!fixed) worst = std::max(worst, -multiplier[v]);
        break;
      case kAtUpper:
        worst = std::max(worst, std::fabs(value[v] - lp.upper[v]));
        if (!fixed) worst = std::max(worst, multiplier[v]);
        break;
      default:
        worst = std::max(worst, std::fabs(multiplier[v]));
    }
  }
  return basic == lp.num_rows ? worst : kInf;
}

/// Random programs in which everything that presolve looks for happens often: short rows and
/// columns, multiples of lines, fixed, free and one-sided columns, ranges, redundant limits.
LpProblem busy_lp(Random& random, int m, int n) {
  std::vector<std::vector<double>> rows(m, std::vector<double>(n, 0.0));
  std::vector<test::ColumnSpec> columns(n);
  std::vector<std::pair<double, double>> limits(m);
  std::vector<double> point(n), dual(m);
  for (double& value : point) value = random.below(9) - 3;
  for (auto& row : rows) {
    const int longest = random.below(3) == 0 ? n : 3;
    for (int k = 1 + random.below(longest); k > 0; --k) row[random.below(n)] = random.below(7) - 3;
  }
  for (int k = random.below(3); k > 0; --k) {  // multiples of rows
    const int from = random.below(m), to = random.below(m);
    const double ratio = random.below(2) == 0 ? 2.0 : -0.5;
    if (from == to) continue;
    for (int j = 0; j < n; ++j) rows[to][j] = ratio * rows[from][j];
  }
  for (int k = random.below(3); k > 0; --k) {  // rows that contain another one, and sums of rows
    const int from = random.below(m), to = random.below(m), extra = random.below(m);
    const double ratio = random.below(2) == 0 ? 1.0 : -2.0;
    if (from == to || extra == to) continue;
    for (int j = 0; j < n; ++j) {
      const double rest = random.below(3) == 0 ? random.below(3) : 0.0;
      rows[to][j] = ratio * rows[from][j] + (k == 1 ? rows[extra][j] : rest);
    }
  }
  for (int k = random.below(3); k > 0; --k) {  // multiples of columns
    const int from = random.below(n), to = random.below(n);
    const double ratio = random.below(2) == 0 ? 2.0 : -0.5;
    if (from == to) continue;
    for (auto& row : rows) row[to] = ratio * row[from];
  }
  for (int i = 0; i < m; ++i) {
    double activity = 0.0;
    for (int j = 0; j < n; ++j) activity += rows[i][j] * point[j];
    const double give = random.below(2) == 0 ? 0.0 : random.below(6);
    switch (random.below(5)) {
      case 0:
        limits[i] = {activity - give, kInf};
        dual[i] = random.below(3);
        break;
      case 1:
        limits[i] = {-kInf, activity + give};
        dual[i] = -random.below(3);
        break;
      case 2:
        limits[i] = {activity - give, activity + random.below(4)};
        dual[i] = random.below(5) - 2;
        break;
      default:
        limits[i] = {activity, activity};
        dual[i] = random.below(5) - 2;
    }
  }
  const bool proportional_costs = random.below(2) == 0;
  for (int j = 0; j < n; ++j) {
    double priced = 0.0;
    for (int i = 0; i < m; ++i) priced += dual[i] * rows[i][j];
    const double low = point[j] - (random.below(2) == 0 ? 0 : random.below(4));
    const double high = point[j] + (random.below(2) == 0 ? 0 : random.below(6));
    const double extra = proportional_costs ? 0.0 : random.below(4);
    switch (random.below(6)) {
      case 0:
        columns[j] = {priced, -kInf, kInf};
        break;
      case 1:
        columns[j] = {priced - extra, -kInf, high};
        break;
      case 2:
        columns[j] = {priced + random.below(7) - 3, low, high};
        break;
      case 3:
        columns[j] = {0.0, low, kInf};
        break;
      default:
        columns[j] = {priced + extra, low, kInf};
    }
  }
  return dense_lp(columns, rows, limits);
}

struct Tally {
  int moved = 0;  // crushed bases that are not optimal as they stand
  int solved = 0, reduced = 0, proven = 0, pushed = 0, records[kNumUndoKinds] = {};
};

/// The basis that went back comes forward again and leads to the same optimum; true when it is an
/// optimal basis of the reduced program as it stands, as it is unless the way back had to change
/// it.
bool check_crushed(const Presolve& presolve, const LpProblem& reduced, const BasicSolution& full,
                   double objective) {
  CrushedBasis crushed = crush_basis(presolve, full.status, full.x.data());
  crushed.value.resize(reduced.num_vars(), 0.0);
  const Solved again = solve(reduced, &crushed.status, crushed.value.data());
  EXPECT_EQ(again.outcome, SimplexOutcome::optimal);
  EXPECT_NEAR(again.objective, objective, 1e-8 * (1.0 + std::fabs(objective)));
  return again.iterations == 0 && crushed.num_basic == reduced.num_rows;
}

/// One program with the given reductions; true as long as everything is right.
bool check_program(const LpProblem& lp, const PresolveSettings& settings, Tally& tally) {
  const Presolve presolve_run(lp, settings, {}, never);
  const Solved direct = solve(lp);
  const PresolveOutcome outcome = presolve_run.outcome();
  if (outcome == PresolveOutcome::infeasible || outcome == PresolveOutcome::dual_infeasible) {
    ++tally.proven;
    EXPECT_NE(direct.outcome, SimplexOutcome::optimal)
        << "finding " << static_cast<int>(presolve_run.finding().kind);
    return direct.outcome != SimplexOutcome::optimal;
  }
  if (outcome == PresolveOutcome::reduced) ++tally.reduced;
  for (int k = 0; k < presolve_run.stack().size(); ++k) {
    ++tally.records[static_cast<int>(presolve_run.stack().record(k).kind)];
  }
  Presolve copy = presolve_run;
  const LpProblem reduced = copy.take_reduced();
  const Solved small = solve(reduced);
  if (direct.outcome != SimplexOutcome::optimal || small.outcome != SimplexOutcome::optimal) {
    const bool agree =
        (direct.outcome == SimplexOutcome::optimal) == (small.outcome == SimplexOutcome::optimal);
    EXPECT_TRUE(agree) << static_cast<int>(direct.outcome) << static_cast<int>(small.outcome);
    return agree;
  }
  ++tally.solved;
  BasicSolution full;
  presolve_run.postsolve(small.basic, small.z, full);
  if (!full.basis_is_settled) {
    ++tally.pushed;
    EXPECT_TRUE(push_duals(lp, full.y, full.status, never));
  }
  const double wrong = worst_violation(lp, full);
  EXPECT_LE(wrong, 1e-9);
  const double size = 1.0 + std::fabs(direct.objective);
  EXPECT_NEAR(small.objective, direct.objective, 1e-8 * size);
  // The basis itself: nonsingular, and optimal as it stands.
  const Solved again = solve(lp, &full.status);
  EXPECT_EQ(again.outcome, SimplexOutcome::optimal);
  EXPECT_EQ(again.iterations, 0);
  EXPECT_NEAR(again.objective, direct.objective, 1e-8 * size);
  if (!check_crushed(presolve_run, reduced, full, small.objective)) ++tally.moved;
  return !testing::Test::HasFailure();
}

void check_many(const PresolveSettings& settings, int count, UndoKind kind) {
  Tally tally;
  for (int seed = 0; seed < count; ++seed) {
    Random random(seed * 7919 + 17);
    const int m = 1 + random.below(8), n = 1 + random.below(9);
    const LpProblem lp = busy_lp(random, m, n);
    ASSERT_TRUE(check_program(lp, settings, tally)) << "seed " << seed;
  }
  EXPECT_GT(tally.records[static_cast<int>(kind)], count / 50);
  EXPECT_GT(tally.solved, count / 4);
  EXPECT_LE(tally.pushed, tally.solved / 20);
  EXPECT_LE(tally.moved, tally.solved / 20);
}

struct Family {
  const char* name;
  unsigned families;
  UndoKind kind;
};

class PresolveFamily : public testing::TestWithParam<Family> {};

TEST_P(PresolveFamily, WayBackNeedsNoIteration) {
  PresolveSettings settings;
  settings.families = GetParam().families;
  settings.dependent_rows = 0;
  check_many(settings, 1500, GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    Each, PresolveFamily,
    testing::Values(Family{"lines", 0, UndoKind::fixed_column},
                    Family{"singleton_rows", kSingletonRows, UndoKind::singleton_row},
                    Family{"activity", kActivityRows, UndoKind::forcing_row},
                    Family{"doubletons", kDoubletons, UndoKind::doubleton},
                    Family{"free_singletons", kFreeSingletons, UndoKind::substituted_column},
                    Family{"slack_columns", kSlackColumns, UndoKind::slack_column},
                    Family{"cost_fixing", kCostFixing, UndoKind::free_direction},
                    Family{"dual_bounds", kDualBounds, UndoKind::row_side},
                    Family{"duplicate_rows", kDuplicateRows, UndoKind::duplicate_row},
                    Family{"duplicate_columns", kDuplicateColumns, UndoKind::duplicate_column},
                    Family{"implied_rows", kImpliedRows, UndoKind::removed_row},
                    Family{"row_cancellation", kRowCancellation, UndoKind::row_cancellation},
                    Family{"aggregation", kAggregation, UndoKind::substituted_column}),
    [](const auto& family) { return std::string(family.param.name); });

/// Three equations of many columns, the last of which has the matrix of first + 2 second.
LpProblem dependent_equations(double last_rhs) {
  std::vector<std::vector<double>> rows = {{1, 2, 0, 3, 1, 0}, {0, 1, 2, -1, 4, 1}, {}};
  for (int j = 0; j < 6; ++j) rows[2].push_back(rows[0][j] + 2 * rows[1][j]);
  std::vector<test::ColumnSpec> columns(6, {1.0, 0.0, 5.0});
  return dense_lp(columns, rows, {{7, 7}, {6, 6}, {last_rhs, last_rhs}});
}

TEST(Presolve, DependentEquations) {
  PresolveSettings settings;
  settings.families = 0;
  for (const int effort : {-1, 1, 3}) {
    settings.dependent_rows = effort;
    Tally tally;
    EXPECT_TRUE(check_program(dependent_equations(19), settings, tally));
    EXPECT_EQ(tally.records[static_cast<int>(UndoKind::removed_row)], 1);
    const Presolve contradiction(dependent_equations(20), settings, {}, never);
    EXPECT_EQ(contradiction.outcome(), PresolveOutcome::infeasible);
    EXPECT_EQ(contradiction.finding().kind, FindingKind::dependent_row);
  }
  settings.dependent_rows = 0;
  EXPECT_EQ(Presolve(dependent_equations(19), settings, {}, never).outcome(),
            PresolveOutcome::unchanged);
  // Random programs, with sums of rows among them.
  settings.dependent_rows = 3;
  check_many(settings, 1500, UndoKind::removed_row);
}

TEST(Presolve, AllReductionsTogether) {
  check_many(PresolveSettings(), 6000, UndoKind::fixed_column);
}

}  // namespace
}  // namespace kelvo
