// Presolve and its way back: the optimal basis of the reduced program must be one of the original
// program, without another iteration.
#include "lp/presolve/presolve.h"

#include "lp/busy_lp.h"
#include "lp/crossover/dual_push.h"
#include "lp/presolve/crush.h"

namespace kelvo {
namespace {

using test::busy_lp;
using test::dense_lp;
using test::never;
using test::solve;
using test::Solved;
using test::worst_violation;

struct Tally {
  int moved = 0;  // crushed bases that are not optimal as they stand
  int solved = 0, reduced = 0, proven = 0, pushed = 0;
  std::array<int, UndoRecords::kNumKinds> records = {};
};

/// The basis that went back comes forward again and leads to the same optimum; true when it is an
/// optimal basis of the reduced program as it stands, as it is unless the way back had to change
/// it.
bool check_crushed(const Presolve& presolve, const LpProblem& reduced, const LpSolution& full,
                   double objective) {
  CrushedBasis crushed = crush_basis(presolve, full.status, full.x.data());
  crushed.value.resize(reduced.num_vars(), 0.0);
  const Solved again = solve(reduced, &crushed.status, crushed.value.data());
  EXPECT_EQ(again.outcome, SimplexOutcome::optimal);
  EXPECT_NEAR(again.objective, objective, 1e-8 * (1.0 + std::fabs(objective)));
  return again.iterations == 0 && crushed.num_basic == reduced.num_rows;
}

/// What goes back and forth comes out as it was.
void check_crushing(const Presolve& presolve, const Solved& small) {
  Vector<double> x(presolve.num_cols()), y(presolve.num_rows());
  Vector<double> reduced_x(small.basic.x.size()), reduced_y(small.basic.y.size());
  uncrush_x(presolve, small.basic.x.data(), x.data());
  crush_x(presolve, x.data(), reduced_x.data());
  for (std::size_t j = 0; j < reduced_x.size(); ++j) {
    EXPECT_NEAR(reduced_x[j], small.basic.x[j], 1e-8 * (1.0 + std::fabs(reduced_x[j])));
  }
  uncrush_y(presolve, small.basic.y.data(), small.basic.z.data(), y.data());
  crush_y(presolve, y.data(), reduced_y.data());
  for (std::size_t i = 0; i < reduced_y.size(); ++i) {
    EXPECT_NEAR(reduced_y[i], small.basic.y[i], 1e-8 * (1.0 + std::fabs(reduced_y[i])));
  }
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
  const auto counts = presolve_run.stack().records.counts();
  for (int kind = 0; kind < UndoRecords::kNumKinds; ++kind) tally.records[kind] += counts[kind];
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
  check_crushing(presolve_run, small);
  LpSolution full;
  presolve_run.postsolve(small.basic, full);
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

template <class Record>
void check_many(const PresolveSettings& settings, int count) {
  Tally tally;
  for (int seed = 0; seed < count; ++seed) {
    Random random(seed * 7919 + 17);
    const int m = 1 + random.below(8), n = 1 + random.below(9);
    const LpProblem lp = busy_lp(random, m, n);
    ASSERT_TRUE(check_program(lp, settings, tally)) << "seed " << seed;
  }
  EXPECT_GT(tally.records[UndoRecords::kind_of<Record>()], count / 50);
  EXPECT_GT(tally.solved, count / 4);
  EXPECT_LE(tally.pushed, tally.solved / 20);
  EXPECT_LE(tally.moved, tally.solved / 20);
}

struct Family {
  const char* name;
  unsigned families;
  void (*check)(const PresolveSettings&, int);
};

class PresolveFamily : public testing::TestWithParam<Family> {};

TEST_P(PresolveFamily, WayBackNeedsNoIteration) {
  PresolveSettings settings;
  settings.families = GetParam().families;
  settings.dependent_rows = 0;
  GetParam().check(settings, 1500);
}

INSTANTIATE_TEST_SUITE_P(
    Each, PresolveFamily,
    testing::Values(Family{"lines", 0, check_many<FixedColumn>},
                    Family{"singleton_rows", kSingletonRows, check_many<SingletonRow>},
                    Family{"activity", kActivityRows, check_many<ForcingRow>},
                    Family{"doubletons", kDoubletons, check_many<DoubletonEquation>},
                    Family{"free_singletons", kFreeSingletons, check_many<SubstitutedColumn>},
                    Family{"slack_columns", kSlackColumns, check_many<SlackColumn>},
                    Family{"cost_fixing", kCostFixing, check_many<FreeDirection>},
                    Family{"dual_bounds", kDualBounds, check_many<BindingRow>},
                    Family{"duplicate_rows", kDuplicateRows, check_many<DuplicateRow>},
                    Family{"duplicate_columns", kDuplicateColumns, check_many<DuplicateColumn>},
                    Family{"implied_rows", kImpliedRows, check_many<RemovedRow>},
                    Family{"row_cancellation", kRowCancellation, check_many<RowCancellation>},
                    Family{"aggregation", kAggregation, check_many<SubstitutedColumn>}),
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
    EXPECT_EQ(tally.records[UndoRecords::kind_of<RemovedRow>()], 1);
    const Presolve contradiction(dependent_equations(20), settings, {}, never);
    EXPECT_EQ(contradiction.outcome(), PresolveOutcome::infeasible);
    EXPECT_EQ(contradiction.finding().kind, FindingKind::dependent_row);
  }
  settings.dependent_rows = 0;
  EXPECT_EQ(Presolve(dependent_equations(19), settings, {}, never).outcome(),
            PresolveOutcome::unchanged);
  // Random programs, with sums of rows among them.
  settings.dependent_rows = 3;
  check_many<RemovedRow>(settings, 1500);
}

TEST(Presolve, AllReductionsTogether) {
  check_many<FixedColumn>(PresolveSettings(), 6000);
}

}  // namespace
}  // namespace kelvo
