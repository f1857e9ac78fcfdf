// Presolve and postsolve, layer by layer: a feasible point comes back as one of the same objective,
// an optimal pair as an optimal pair, and an optimal basis as one that needs no iteration.
#include "lp/presolve/presolve.h"

#include "lp/busy_lp.h"
#include "lp/crossover/dual_push.h"
#include "lp/presolve/crush.h"
#include "lp/presolve/solve_reduced.h"

namespace kelvo {
namespace {

using test::busy_lp;
using test::dense_lp;
using test::never;
using test::solve;
using test::Solved;
using test::worst_infeasibility;
using test::worst_optimality;
using test::worst_violation;

struct Tally {
  int moved = 0;  // crushed bases that are not optimal at once
  int solved = 0, reduced = 0, proven = 0, pushed = 0;
  std::array<int, UndoRecords::kNumKinds> records = {};
};

/// The basis that was restored is crushed again and leads to the same optimum; true when it is an
/// optimal basis of the reduced program at once, as it is unless postsolve had to change it.
bool check_crushed(const Presolve& presolve, const LpProblem& reduced, const LpSolution& full,
                   double objective) {
  CrushedBasis crushed = crush_basis(presolve, full.status, full.x.data());
  crushed.value.resize(reduced.num_vars(), 0.0);
  const Solved again = solve(reduced, &crushed.status, crushed.value.data());
  EXPECT_EQ(again.outcome, SimplexOutcome::optimal);
  EXPECT_NEAR(again.objective, objective, 1e-8 * (1.0 + std::fabs(objective)));
  return again.iterations == 0 && crushed.num_basic == reduced.num_rows;
}

/// A vertex of the program, or of its optimal face, that is best for a random objective.
Vector<double> some_vertex(LpProblem lp, const LpSolution* optimum, Random& random) {
  constexpr double kFar = 50.0;
  for (int v = 0; v < lp.num_vars(); ++v) {
    if (v < lp.num_cols) {
      lp.cost[v] = random.below(9) - 4;
      if (lp.lower[v] == -kInf) lp.lower[v] = std::min(-kFar, lp.upper[v] - 1.0);
      if (lp.upper[v] == kInf) lp.upper[v] = std::max(kFar, lp.lower[v] + 1.0);
    }
    if (optimum == nullptr) continue;
    const double multiplier = v < lp.num_cols ? optimum->z[v] : -optimum->y[v - lp.num_cols];
    if (multiplier > 1e-7) lp.upper[v] = lp.lower[v];
    if (multiplier < -1e-7) lp.lower[v] = lp.upper[v];
  }
  const Solved solved = solve(lp);
  return solved.outcome == SimplexOutcome::optimal ? solved.basic.x : Vector<double>();
}

void expect_same(const Vector<double>& a, const Vector<double>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t k = 0; k < a.size(); ++k)
    EXPECT_NEAR(a[k], b[k], 1e-8 * (1.0 + std::fabs(a[k])));
}

double value_of(const Vector<double>& weight, double offset, const Vector<double>& x) {
  for (std::size_t j = 0; j < x.size(); ++j) offset += weight[j] * x[j];
  return offset;
}

/// Linear forms have the same value before and after.
void check_forms(const Presolve& presolve, const Vector<double>& small, const Vector<double>& full,
                 Random& random) {
  const Vector<int>& kept = presolve.kept_cols();
  const auto over_kept = [&](const LinearForm& form) {
    double value = form.offset;
    for (std::size_t k = 0; k < kept.size(); ++k) value += form.weight[kept[k]] * small[k];
    return value;
  };
  for (int j = 0; j < presolve.num_cols(); ++j) {
    LinearForm form;
    form.weight.assign(presolve.num_cols(), 0.0);
    form.weight[j] = 1 + random.below(3);
    form.weight[random.below(presolve.num_cols())] += 1.0;
    const double value = value_of(form.weight, 0.0, full);
    if (!crush_form(presolve, form)) continue;
    EXPECT_NEAR(over_kept(form), value, 1e-7);
  }
  LinearForm form;
  form.weight.assign(presolve.num_cols(), 0.0);
  for (const int j : kept) form.weight[j] = random.below(5) - 2;
  const double value = over_kept(form);
  uncrush_form(presolve, form);
  EXPECT_NEAR(value_of(form.weight, form.offset, full), value, 1e-7);
}

/// A feasible point of the reduced program, whatever it is, comes back as a feasible point of the
/// same objective, and is crushed to itself.
void check_values(const LpProblem& lp, const Presolve& presolve, const LpProblem& reduced,
                  Random& random) {
  Vector<double> small = some_vertex(reduced, nullptr, random);
  const Vector<double> other = some_vertex(reduced, nullptr, random);
  if (small.empty() || other.empty()) return;
  for (const double share : {0.0, 0.5}) {
    for (std::size_t k = 0; k < small.size(); ++k) {
      small[k] += share * (other[k] - small[k]);
    }
    Vector<double> full(lp.num_cols), again(small.size());
    uncrush_x(presolve, small.data(), full.data());
    EXPECT_LE(worst_infeasibility(lp, full), 1e-8);
    EXPECT_NEAR(value_of(lp.cost, lp.offset, full), value_of(reduced.cost, reduced.offset, small),
                1e-7);
    crush_x(presolve, full.data(), again.data());
    expect_same(small, again);
    check_forms(presolve, small, full, random);
  }
}

/// Optimal values and duals come back without a basis, also from within the optimal face.
void check_pair(const LpProblem& lp, const Presolve& presolve, const LpProblem& reduced,
                const LpSolution& optimum, Random& random) {
  LpSolution small = optimum, full;
  small.layers.basis = false;
  const Vector<double> other = some_vertex(reduced, &optimum, random);
  for (std::size_t k = 0; k < other.size(); ++k) small.x[k] = 0.5 * small.x[k] + 0.5 * other[k];
  presolve.postsolve(small, full);
  EXPECT_TRUE(full.status.empty());
  EXPECT_LE(worst_optimality(lp, full), 1e-7);
  Vector<double> again(small.y.size());
  crush_y(presolve, full.y.data(), again.data());
  expect_same(small.y, again);
}

/// One program with the given reductions; true as long as everything is right.
bool check_program(const LpProblem& lp, const PresolveSettings& settings, Tally& tally,
                   Random* layers = nullptr) {
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
  const LpProblem reduced = Presolve(presolve_run).take_reduced();
  Solved small;
  LpSolution full;
  solve_reduced(
      presolve_run, reduced,
      [&](const LpProblem& program, LpSolution& solution) {
        small = solve(program);
        solution = small.basic;
        return small.outcome == SimplexOutcome::optimal;
      },
      full);
  if (direct.outcome != SimplexOutcome::optimal || small.outcome != SimplexOutcome::optimal) {
    const bool agree =
        (direct.outcome == SimplexOutcome::optimal) == (small.outcome == SimplexOutcome::optimal);
    EXPECT_TRUE(agree) << static_cast<int>(direct.outcome) << static_cast<int>(small.outcome);
    return agree;
  }
  ++tally.solved;
  if (layers != nullptr) {
    check_values(lp, presolve_run, reduced, *layers);
    check_pair(lp, presolve_run, reduced, small.basic, *layers);
  }
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
    ASSERT_TRUE(check_program(lp, settings, tally, seed % 4 == 0 ? &random : nullptr))
        << "seed " << seed;
  }
  EXPECT_GT(tally.records[UndoRecords::kind_of<Record>()], count / 50);
  EXPECT_GT(tally.solved, count / 4);
  EXPECT_LE(tally.pushed, tally.solved / 20);
  EXPECT_EQ(tally.moved, 0);
}

struct Family {
  const char* name;
  unsigned families;
  void (*check)(const PresolveSettings&, int);
};

class PresolveFamily : public testing::TestWithParam<Family> {};

TEST_P(PresolveFamily, ComesBackInLayers) {
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

/// Other costs than those that were presolved, without reductions that argue from costs.
TEST(Presolve, FollowsOtherCosts) {
  PresolveSettings settings;
  settings.dual_reductions = false;
  int followed = 0;
  for (int seed = 0; seed < 800; ++seed) {
    Random random(seed * 104729 + 5);
    LpProblem lp = busy_lp(random, 1 + random.below(8), 1 + random.below(9));
    Presolve presolve(lp, settings, {}, never);
    if (presolve.outcome() != PresolveOutcome::reduced) continue;
    for (int j = 0; j < lp.num_cols; ++j) lp.cost[j] += random.below(5) - 2;
    LpProblem reduced = presolve.take_reduced();
    Vector<double> cost;
    if (!presolve.reprice(lp.cost, cost, reduced.offset)) continue;
    std::copy(cost.begin(), cost.end(), reduced.cost.begin());
    const Solved small = solve(reduced), direct = solve(lp);
    ASSERT_EQ(small.outcome == SimplexOutcome::optimal, direct.outcome == SimplexOutcome::optimal)
        << "seed " << seed;
    if (direct.outcome != SimplexOutcome::optimal) continue;
    ++followed;
    LpSolution full;
    presolve.postsolve(small.basic, full);
    ASSERT_LE(worst_optimality(lp, full), 1e-7) << "seed " << seed;
    ASSERT_NEAR(small.objective, direct.objective, 1e-7) << "seed " << seed;
  }
  EXPECT_GT(followed, 200);
}

TEST(Presolve, AllReductionsTogether) {
  check_many<FixedColumn>(PresolveSettings(), 6000);
}

}  // namespace
}  // namespace kelvo
