#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "base/random.h"
#include "lp/model_solver.h"
#include "lp/simplex/simplex_support.h"
#include "lp/small_model.h"

namespace kelvo {
namespace {

using test::small_model;

using test::ModelAnswer;
using test::StopAt;
using test::verify_farkas;
using test::verify_ray;

struct Bench : test::ModelSolver {
  Bench() { settings.presolve.on = false; }
};

ModelAnswer solve_once(const Model& model, LpMethod method = LpMethod::dual,
                       ScalingMethod scaling = ScalingMethod::equilibrate) {
  Bench bench;
  bench.settings.scaling = scaling;
  return bench.solve(model, method);
}

// max 3x + 2y,  x + y <= 4,  x + 3y <= 6,  x <= 3: optimum (3, 1), objective 11.
Model textbook() {
  Model model = small_model(-1, {3, 2}, {{'L', 4, {1, 1}}, {'L', 6, {1, 3}}});
  model.upper[0] = 3;
  return model;
}

TEST(Driver, SolvesInTheCallersTerms) {
  for (const LpMethod method : {LpMethod::dual, LpMethod::primal}) {
    const ModelAnswer answer = solve_once(textbook(), method);
    EXPECT_EQ(answer.status, kOptimal);
    EXPECT_EQ(answer.record.method, method == LpMethod::dual ? kMethodDual : kMethodPrimal);
    EXPECT_NEAR(answer.record.objective, 11.0, 1e-9);
    EXPECT_NEAR(answer.record.x[0], 3.0, 1e-9);
    EXPECT_NEAR(answer.record.x[1], 1.0, 1e-9);
    EXPECT_TRUE(answer.record.primal_feasible && answer.record.dual_feasible);
    // The vertex is degenerate (both rows tight), so duals are not unique; the value is.
    const Vector<double>& pi = answer.record.pi;
    const Vector<double>& dj = answer.record.dj;
    EXPECT_NEAR(4 * pi[0] + 6 * pi[1] + 3 * dj[0], 11.0, 1e-9);
    EXPECT_GE(pi[0], -1e-9);
    EXPECT_GE(pi[1], -1e-9);
  }
}

/// Duals are derivatives by the right-hand side, whatever the row's kind and the sense.
TEST(Driver, DualsAreDerivatives) {
  for (const int sense : {1, -1}) {
    for (int row = 0; row < 4; ++row) {
      Model model = small_model(sense, {2.0 * sense, 3.0 * sense, 1.0 * sense},
                                {{'G', 2, {1, 1, 0.25}},
                                 {'E', 1, {1, -1, 0.5}},
                                 {'L', -1, {-1, 0, -2}},
                                 {'R', 3, {0, 1, 2}, 4}});
      const ModelAnswer base = solve_once(model);
      ASSERT_EQ(base.status, kOptimal);
      constexpr double kStep = 1e-4;
      model.rhs[row] += kStep;
      const ModelAnswer moved = solve_once(model);
      ASSERT_EQ(moved.status, kOptimal);
      EXPECT_NEAR((moved.record.objective - base.record.objective) / kStep, base.record.pi[row],
                  1e-6)
          << "sense " << sense << " row " << row;
    }
  }
}

TEST(Driver, InfeasibleComesWithAProof) {
  const Model model =
      small_model(1, {1, 1}, {{'G', 5, {1, 2}}, {'L', 2, {1, 1}}, {'L', 1, {0, 100}}});
  for (const LpMethod method : {LpMethod::dual, LpMethod::primal}) {
    ModelAnswer answer = solve_once(model, method);
    EXPECT_EQ(answer.status, kInfeasible);
    EXPECT_FALSE(answer.record.primal_feasible);
    EXPECT_TRUE(verify_farkas(model, answer.record.farkas));
  }
}

TEST(Driver, UnboundedComesWithADirection) {
  const Model model = small_model(-1, {1, 1}, {{'L', 1, {1, -1}}, {'G', -3, {1, -0.25}}});
  for (const LpMethod method : {LpMethod::dual, LpMethod::primal}) {
    ModelAnswer answer = solve_once(model, method);
    EXPECT_EQ(answer.status, kUnbounded);
    EXPECT_TRUE(answer.record.primal_feasible);
    EXPECT_TRUE(verify_ray(model, answer.record.ray));
  }
}

/// Methods, each without and with presolve.
template <class Check>
void solve_every_way(const Model& model, Check check) {
  for (const LpMethod method : {LpMethod::dual, LpMethod::primal}) {
    for (const bool presolve : {false, true}) {
      Bench bench;
      bench.settings.presolve.on = presolve;
      check(bench.solve(model, method));
    }
  }
}

/// min -x - y/2 + z,  x - (1 - 1e-9) y + z <= 10,  y - x <= 5,  x + y - z >= 1: along (1, 1, 0)
/// the first row is broken by 1e-9 per unit, far beyond what pivots of the usual size show.
TEST(Driver, ADirectionThatIsBlockedFarAwayIsNone) {
  const Model model = small_model(
      1, {-1, -0.5, 1}, {{'L', 10, {1, -1 + 1e-9, 1}}, {'L', 5, {-1, 1, 0}}, {'G', 1, {1, 1, -1}}});
  solve_every_way(model, [](const ModelAnswer& answer) {
    EXPECT_EQ(answer.status, kOptimal);
    EXPECT_NEAR(answer.record.objective, -2.25e10, 1e4);
  });
}

/// Equations whose coefficients are no short fractions, with a direction along which all columns
/// grow: no double can hold it exactly, and yet it is there.
TEST(Driver, DirectionsThatDoublesCannotHold) {
  for (int seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(seed);
    Model model;
    const int m = 2 + random.below(12), n = m + 1 + random.below(m);
    model.num_rows = m;
    model.num_cols = n;
    test::DenseLines rows(m, std::vector<double>(n));
    for (int i = 0; i < m; ++i) {
      double sum = 0.0;
      int last = 0;
      for (int j = 0; j < n; ++j) {
        if (random.below(3) != 0 && j != i) continue;
        rows[i][j] = (random.uniform() - 0.5) * std::pow(10.0, random.below(4) - 1);
        sum += rows[i][j] * (1.0 + j);
        last = j;
      }
      rows[i][last] -= sum / (1.0 + last);  // A (1, 2, ..., n)' = 0
    }
    model.matrix.assign(transpose(test::sparse_lines(rows, n)));
    model.row_sense.assign(m, 'E');
    model.rhs.assign(m, 0.0);
    model.objective.assign(n, -1.0);
    model.lower.assign(n, 0.0);
    model.upper.assign(n, kInfiniteBound);
    solve_every_way(model, [](const ModelAnswer& answer) {
      EXPECT_TRUE(answer.status == kUnbounded || answer.status == kInfeasibleOrUnbounded)
          << answer.status;
    });
  }
}

TEST(Driver, ProgramsWithoutRowsOrColumnsOrRoom) {
  Model columns_only = small_model(-1, {1, -1, 0}, {});
  columns_only.upper[0] = 5;
  columns_only.lower[1] = -2;
  ModelAnswer answer = solve_once(columns_only);
  EXPECT_EQ(answer.status, kOptimal);
  EXPECT_EQ(answer.record.objective, 7.0);
  EXPECT_EQ(answer.basis.col_status, (Vector<int>{kAtUpper, kAtLower, kAtLower}));
  columns_only.upper[0] = 1e20;
  answer = solve_once(columns_only);
  EXPECT_EQ(answer.status, kUnbounded);
  EXPECT_TRUE(verify_ray(columns_only, answer.record.ray));

  const Model rows_only = small_model(1, {}, {{'L', 1, {}}, {'G', 2, {}}});
  answer = solve_once(rows_only);
  EXPECT_EQ(answer.status, kInfeasible);
  EXPECT_TRUE(verify_farkas(rows_only, answer.record.farkas));
  EXPECT_EQ(solve_once(small_model(1, {}, {{'L', 1, {}}})).status, kOptimal);

  Model crossed = textbook();
  crossed.lower[1] = 2;
  crossed.upper[1] = 1;
  EXPECT_EQ(solve_once(crossed).status, kInfeasible);
  crossed.lower[1] = 1 + 1e-9;  // within the tolerance
  EXPECT_EQ(solve_once(crossed).status, kOptimal);
  crossed.lower[1] = 1e20;
  EXPECT_EQ(solve_once(crossed).status, kInfeasible);
}

TEST(Driver, ScaledOptimumIsMadeGoodOnTheModel) {
  // Scaled by 2^20 the row is violated by 5e-11 at the origin, unscaled by 5e-5.
  const Model model = small_model(1, {1, 1}, {{'G', 5e-5, {1e6, -1e6}}, {'L', 3, {1, 1}}});
  Bench bench;
  bench.settings.restart_passes = false;
  ModelAnswer answer = bench.solve(model);
  EXPECT_EQ(answer.status, kOptimalUnscaledInfeasible);
  EXPECT_FALSE(answer.record.primal_feasible);

  answer = solve_once(model);
  EXPECT_EQ(answer.status, kOptimal);
  EXPECT_TRUE(answer.record.primal_feasible);
  EXPECT_NEAR(answer.record.x[0], 5e-11, 1e-14);
}

/// Random programs: bounded or not, feasible or not, with coefficients of several magnitudes.
Model random_model(std::uint64_t seed) {
  Random random(seed * 7919 + 13);
  Model model;
  model.sense = random.uniform() < 0.5 ? 1 : -1;
  model.num_cols = 1 + random.below(9);
  model.num_rows = 1 + random.below(9);
  const auto number = [&] { return std::floor(9.0 * random.uniform()) - 4.0; };
  test::DenseLines columns(model.num_cols, std::vector<double>(model.num_rows));
  for (std::vector<double>& column : columns) {
    const double magnitude = std::pow(10.0, random.below(4) - 1);
    for (double& entry : column) {
      entry = number() * magnitude;
      if (random.uniform() < 0.5) entry = 0.0;
    }
    model.objective.push_back(number());
    const double lower = number();
    model.lower.push_back(random.uniform() < 0.2 ? -1e20 : lower);
    model.upper.push_back(random.uniform() < 0.3 ? 1e20 : lower + random.below(6));
  }
  for (int i = 0; i < model.num_rows; ++i) {
    model.rhs.push_back(3.0 * number());
    model.row_sense.push_back("LGERL"[random.below(5)]);
    model.range.push_back(model.row_sense.back() == 'R' ? number() : 0.0);
  }
  model.matrix.assign(test::sparse_lines(columns, model.num_rows));
  return model;
}

void expect_same_outcome(const ModelAnswer& a, const ModelAnswer& b) {
  EXPECT_EQ(a.status, b.status);
  if (a.status != kOptimal || b.status != kOptimal) return;
  EXPECT_NEAR(a.record.objective, b.record.objective, 1e-6 * (1.0 + std::fabs(a.record.objective)));
}

TEST(Driver, MethodsAndScalingsAgree) {
  int count[4] = {};
  for (std::uint64_t seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE(seed);
    const Model model = random_model(seed);
    const ModelAnswer reference = solve_once(model);
    ASSERT_TRUE(reference.status >= kOptimal && reference.status <= kInfeasible)
        << reference.status;
    ++count[reference.status];
    expect_same_outcome(reference, solve_once(model, LpMethod::primal));
    expect_same_outcome(reference, solve_once(model, LpMethod::dual, ScalingMethod::none));
    expect_same_outcome(reference, solve_once(model, LpMethod::primal, ScalingMethod::aggressive));
  }
  // The generator must reach every outcome.
  for (const int status : {kOptimal, kUnbounded, kInfeasible}) EXPECT_GE(count[status], 20);
}

TEST(Driver, WarmStartsAgreeWithColdOnes) {
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    SCOPED_TRACE(seed);
    Random random(seed);
    Model model = random_model(seed);
    Bench bench;
    bench.solve(model);
    for (int step = 0; step < 6; ++step) {
      SCOPED_TRACE(step);
      const int j = random.below(model.num_cols);
      const int i = random.below(model.num_rows);
      switch (step) {
        case 0:
          model.upper[j] = model.lower[j] + 2;
          break;
        case 1:
          model.objective[j] = 2.5;
          break;
        case 2:
          model.rhs[i] += 1;
          break;
        case 3:
          model.sense = -model.sense;
          break;
        case 4:
          model.matrix.set(i, j, 0.5);
          break;
        default:
          model.row_sense[i] = 'G';
          model.range[i] = 0;
      }
      const LpMethod method = step % 2 == 0 ? LpMethod::dual : LpMethod::primal;
      bench.changes.structure = step == 4;
      expect_same_outcome(bench.solve(model, method), solve_once(model));
    }
  }
}

TEST(Driver, KeepsTheWorkingLpWhileTheMatrixStands) {
  Model model = textbook();
  Bench bench;
  const int cold = bench.solve(model).record.iterations;
  EXPECT_GT(cold, 0);
  const WorkingLp* const kept = bench.kept.working.get();
  EXPECT_EQ(bench.solve(model).record.iterations, 0);
  model.rhs[0] = 3.5;
  EXPECT_NEAR(bench.solve(model).record.objective, 10.0, 1e-9);
  EXPECT_EQ(bench.kept.working.get(), kept);

  bench.settings.use_basis = false;
  model.rhs[0] = 4;
  EXPECT_EQ(bench.solve(model).record.iterations, cold);

  bench.settings.use_basis = true;
  model.matrix.set(1, 0, 2.0);
  bench.changes.structure = true;
  EXPECT_NEAR(bench.solve(model).record.objective, 9.0, 1e-9);
}

TEST(Driver, LimitsLeaveTheLastBasis) {
  Bench bench;
  bench.settings.simplex.iteration_limit = 0;
  ModelAnswer answer = bench.solve(textbook());
  EXPECT_EQ(answer.status, kIterationLimit);
  EXPECT_EQ(answer.record.iterations, 0);
  EXPECT_EQ(answer.basis.row_status, (Vector<int>{kBasic, kBasic}));
  EXPECT_TRUE(answer.record.has_primal && answer.record.has_basis);

  for (const StopReason reason : {StopReason::time_limit, StopReason::user_abort}) {
    StopAt stop(1, reason);
    Bench stopped;
    stopped.stop = &stop;
    answer = stopped.solve(textbook());
    EXPECT_EQ(answer.status, reason == StopReason::time_limit ? kTimeLimit : kUserAborted);
    EXPECT_TRUE(answer.record.has_primal);
    // What was reached is where the next call goes on.
    stopped.stop = &stopped.never;
    EXPECT_EQ(stopped.solve(textbook()).status, kOptimal);
  }
  StopAt hook(0, StopReason::user_abort);
  Bench hooked;
  hooked.hook = &hook;
  EXPECT_EQ(hooked.solve(textbook()).status, kUserAborted);
}

// Many columns per row: the start basis comes from a part of them.
Model wide_covering() {
  constexpr int kRows = 60;
  constexpr int kColumns = 12000;
  Random random(5);
  Model model;
  model.num_rows = kRows;
  model.num_cols = kColumns;
  model.row_sense.assign(kRows, 'G');
  model.rhs.assign(kRows, 1.0);
  model.lower.assign(kColumns, 0.0);
  model.upper.assign(kColumns, kInfiniteBound);
  SparseMatrix matrix;
  matrix.num_major = kColumns;
  matrix.num_minor = kRows;
  for (int j = 0; j < kColumns; ++j) {
    model.objective.push_back(1 + random.below(300));
    const int row = random.below(kRows);
    for (const int step : {0, 1 + random.below(20), 21 + random.below(20)}) {
      matrix.index.push_back((row + step) % kRows);
      matrix.value.push_back(1.0 + step % 3);
    }
    matrix.start.push_back(static_cast<int>(matrix.index.size()));
  }
  model.matrix.assign(std::move(matrix));
  return model;
}

TEST(Driver, StartsWideModelsFromAPartOfTheirColumns) {
  const Model model = wide_covering();
  Bench plain;  // a rule that is asked for is followed throughout
  plain.settings.simplex.dual_pricing = DualPricing::steepest;
  const ModelAnswer expected = plain.solve(model);
  for (const LpMethod method : {LpMethod::dual, LpMethod::primal}) {
    Bench bench;
    const ModelAnswer answer = bench.solve(model, method);
    EXPECT_EQ(answer.status, kOptimal);
    EXPECT_TRUE(answer.record.dual_feasible);
    EXPECT_NEAR(answer.record.objective, expected.record.objective, 1e-6);
    EXPECT_NE(answer.record.iterations, expected.record.iterations);
    EXPECT_EQ(bench.solve(model, method).record.iterations, 0);

    // Its iterations count, and its end is that of the run.
    const int half = answer.record.iterations / 2;
    Bench limited;
    limited.settings.simplex.iteration_limit = half;
    const ModelAnswer part = limited.solve(model, method);
    EXPECT_EQ(part.status, kIterationLimit);
    EXPECT_EQ(part.record.iterations, half);
    EXPECT_TRUE(part.record.has_primal && part.basis.present);
    for (const bool by_hook : {true, false}) {
      StopAt stop(half, StopReason::time_limit);
      Bench stopped;
      if (by_hook) stopped.hook = &stop;
      if (!by_hook) stopped.stop = &stop;
      const ModelAnswer rest = stopped.solve(model, method);
      EXPECT_EQ(rest.status, by_hook ? kUserAborted : kTimeLimit);
      EXPECT_LE(rest.record.iterations, half);
    }
  }
}

}  // namespace
}  // namespace kelvo
