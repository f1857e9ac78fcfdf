// The driver by way of presolve: the same answers as without it, in the caller's terms.
#include <gtest/gtest.h>

#include <cmath>

#include "base/random.h"
#include "lp/model_solver.h"
#include "lp/small_model.h"

namespace kelvo {
namespace {

using test::small_model;

using test::ModelAnswer;
using test::ModelSolver;

struct Outcome {
  ModelAnswer answer;
  Owned<PresolvedLp> presolved;
};

Outcome solve(const Model& model, bool presolve, LpMethod method = LpMethod::dual,
              int dual_form = -1, int pass_limit = -1) {
  ModelSolver solver;
  solver.settings.presolve.on = presolve;
  solver.settings.presolve.dual_form = dual_form;
  if (pass_limit >= 0) solver.settings.presolve.pass_limit = pass_limit;
  Outcome run;
  run.answer = solver.solve(model, method);
  run.presolved = std::move(solver.kept.presolved);
  return run;
}

/// Rows of every sense over columns of every kind, minimized or maximized.
Model random_model(Random& random) {
  Model model;
  model.sense = random.below(2) == 0 ? 1 : -1;
  const int m = 1 + random.below(9), n = 1 + random.below(10);
  model.num_rows = m;
  model.num_cols = n;
  test::DenseLines rows(m, std::vector<double>(n));
  for (int i = 0; i < m; ++i) {
    const int share = 2 + random.below(4);
    double activity = 0.0;
    for (int j = 0; j < n; ++j) {
      if (random.below(share) != 0) continue;
      rows[i][j] = random.below(2) == 0 ? 1.0 : random.below(9) - 4;
      activity += rows[i][j] * (j % 4);
    }
    const char sense = "LGERE"[random.below(5)];
    model.row_sense.push_back(sense);
    model.rhs.push_back(activity + (sense == 'E' ? 0 : random.below(3) - 1));
    if (sense == 'R') {
      model.range.resize(m, 0.0);
      model.range[i] = random.below(9) - 4;
    }
  }
  model.matrix.assign(transpose(test::sparse_lines(rows, n)));
  for (int j = 0; j < n; ++j) {
    model.objective.push_back(random.below(4) == 0 ? 0.0 : random.below(9) - 3.0 * model.sense);
    const int kind = random.below(5);
    model.lower.push_back(kind == 0 ? -kInfiniteBound : random.below(3) - 1);
    model.upper.push_back(kind <= 1 ? kInfiniteBound : 3 + random.below(4));
  }
  return model;
}

/// The answer as it stands is an optimal basic solution of the model.
void expect_optimal(const Model& model, const ModelAnswer& answer, double objective) {
  ASSERT_EQ(answer.status, kOptimal);
  ASSERT_NEAR(answer.record.objective, objective, 1e-8 * (1.0 + std::fabs(objective)));
  Vector<int> status;
  stored_to_lp_status(answer.basis, model, status);
  SolutionRecord copy(answer.record);
  double apart = 0.0;
  const Violations violations = test::complete_and_measure(model, status, copy, &apart);
  ASSERT_LE(violations.primal, 1e-9);
  ASSERT_LE(violations.dual, 1e-9);
  ASSERT_LE(apart, 1e-9);
  ModelSolver again;
  again.settings.presolve.on = false;
  again.basis = answer.basis;
  const ModelAnswer second = again.solve(model, LpMethod::primal);
  ASSERT_EQ(second.status, kOptimal);
  ASSERT_EQ(second.record.iterations, 0) << "the basis is not an optimal one";
}

TEST(PresolvedSolve, AgreesWithTheDirectWay) {
  int optimal = 0, reduced = 0, extra_iterations = 0;
  for (int seed = 0; seed < 2500; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(7 * seed + 3);
    const Model model = random_model(random);
    const LpMethod method = seed % 2 == 0 ? LpMethod::dual : LpMethod::primal;
    const ModelAnswer direct = solve(model, false, method).answer;
    const Outcome run = solve(model, true, method);
    const ModelAnswer& answer = run.answer;
    if (direct.status != kOptimal) {
      // Presolve may not tell infeasible from unbounded; both may be true.
      EXPECT_TRUE(answer.status == direct.status || answer.status == kInfeasibleOrUnbounded ||
                  answer.status == kInfeasible || answer.status == kUnbounded)
          << direct.status << " " << answer.status;
      if (HasFailure()) return;
      continue;
    }
    ++optimal;
    ASSERT_EQ(answer.status, kOptimal);
    const SolutionRecord& record = answer.record;
    ASSERT_NEAR(record.objective, direct.record.objective,
                1e-8 * (1.0 + std::fabs(direct.record.objective)));
    expect_optimal(model, answer, direct.record.objective);
    if (HasFailure()) return;
    if (run.presolved != nullptr && run.presolved->outcome() == PresolveOutcome::reduced) {
      ++reduced;
      const LpProblem& reduced_lp = run.presolved->reduced();
      const ModelAnswer small = solve(make_model(reduced_lp, model.sense), false, method).answer;
      extra_iterations += record.iterations - small.record.iterations;
      ASSERT_NEAR(small.record.objective + model.sense * reduced_lp.offset, record.objective,
                  1e-8 * (1.0 + std::fabs(record.objective)));
    }
  }
  EXPECT_GT(optimal, 800);
  EXPECT_GT(reduced, 700);
  EXPECT_EQ(extra_iterations, 0);  // the way back needs none
}

TEST(PresolvedSolve, TheDualFormLeadsToAnOptimalBasisOfTheModel) {
  int optimal = 0;
  for (int seed = 0; seed < 1500; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(11 * seed + 5);
    const Model model = random_model(random);
    const ModelAnswer direct = solve(model, false).answer;
    const LpMethod method = seed % 2 == 0 ? LpMethod::dual : LpMethod::primal;
    const ModelAnswer answer = solve(model, true, method, 1).answer;
    if (direct.status != kOptimal) {
      EXPECT_NE(answer.status, kOptimal);
      EXPECT_NE(answer.status, kNonOptimal);
      continue;
    }
    ++optimal;
    expect_optimal(model, answer, direct.record.objective);
    // Without reductions everything is up to the dual form.
    expect_optimal(model, solve(model, true, method, 1, 0).answer, direct.record.objective);
    if (HasFailure()) return;
  }
  EXPECT_GT(optimal, 400);
}

TEST(PresolvedSolve, ProofsComeForTheFullModel) {
  // Infeasible only by a combination that no single reduction sees.
  const Model model = small_model(1, {1, 2, 3, 1},
                                  {{'G', 7, {1, 2, 1, 3}},
                                   {'L', 5, {2, 1, 3, 1}},
                                   {'L', 4, {1, 3, 2, 4}},
                                   {'G', 6, {3, 1, 4, 2}},
                                   {'G', 1, {1, -1, 1, -1}}});
  for (const LpMethod method : {LpMethod::dual, LpMethod::primal}) {
    ModelAnswer answer = solve(model, true, method).answer;
    ASSERT_EQ(answer.status, kInfeasible);
    if (answer.record.has_primal) {
      EXPECT_TRUE(test::verify_farkas(model, answer.record.farkas));
    }
  }
}

/// The iteration limit holds for everything that follows a presolved run, too: another run where
/// the dual form has no optimum, and iterations on the whole program, which proofs need.
TEST(PresolvedSolve, OneLimitForAllParts) {
  int limited_runs = 0;
  for (int seed = 0; seed < 1500; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(7 * seed + 3);
    const Model model = random_model(random);
    ModelSolver solver;
    solver.settings.presolve.dual_form = seed % 3 == 0 ? 1 : -1;
    const ModelAnswer free = solver.solve(model);
    if (free.status == kOptimal) continue;
    if (free.record.iterations > 0) ++limited_runs;
    for (int limit = 0; limit <= free.record.iterations + 1; ++limit) {
      ModelSolver limited;
      limited.settings.presolve.dual_form = solver.settings.presolve.dual_form;
      limited.settings.simplex.iteration_limit = limit;
      const ModelAnswer answer = limited.solve(model);
      ASSERT_LE(answer.record.iterations, limit);
      if (limit < free.record.iterations) {
        ASSERT_EQ(answer.status, kIterationLimit);
      }
      if (limit > free.record.iterations) {
        ASSERT_EQ(answer.status, free.status);
      }
    }
  }
  EXPECT_GT(limited_runs, 5);
}

/// An optimizer that ends with a pair of points: what it has goes the same way, and no simplex
/// method follows.
LpAnswer solve_without_basis(const LpTask& task) {
  LpAnswer answer = algorithm_of(LpMethod::dual).run(task);
  answer.solution.layers.basis = false;
  answer.solution.status.clear();
  return answer;
}

TEST(PresolvedSolve, PointsWithoutABasisComeBack) {
  const LpAlgorithm pointwise{"points", 0, kMethodNone, solve_without_basis};
  int optimal = 0, points = 0;
  for (int seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(13 * seed + 1);
    const Model model = random_model(random);
    const ModelAnswer direct = solve(model, false).answer;
    if (direct.status != kOptimal) continue;
    ++optimal;
    ModelSolver solver;
    solver.settings.simplex.sense = model.sense;
    solver.settings.presolve.dual_form = seed % 2 == 0 ? 1 : -1;
    SolveResult result;
    ASSERT_TRUE(solve_model(model, solver.changes, solver.kept, StoredBasis(), pointwise,
                            solver.settings, {solver.sink, solver.never}, result));
    ASSERT_EQ(result.status, kOptimal);
    ASSERT_EQ(result.solution.has_basis, result.basis.present);
    if (!result.basis.present) ++points;  // nothing may be left to solve
    ASSERT_NEAR(result.solution.objective, direct.record.objective,
                1e-8 * (1.0 + std::fabs(direct.record.objective)));
  }
  EXPECT_GT(points, optimal / 5);
  EXPECT_GT(optimal, 150);
}

}  // namespace
}  // namespace kelvo
