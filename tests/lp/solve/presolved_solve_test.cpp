// The driver by way of presolve: the same answers as without it, in the caller's terms.
#include <gtest/gtest.h>

#include <cmath>

#include "base/random.h"
#include "lp/small_model.h"
#include "lp/solve/driver.h"
#include "lp/solve/presolved_lp.h"
#include "lp/solve/verify.h"

namespace kelvo {
namespace {

using test::small_model;

struct Outcome {
  LpAnswer answer;
  Owned<PresolvedLp> presolved;
};

Outcome solve(const Model& model, bool presolve, LpMethod method = LpMethod::dual,
              int dual_form = -1) {
  Owned<WorkingLp> working;
  SilentSink sink;
  NeverStop never;
  DriverSettings settings;
  settings.presolve.on = presolve;
  settings.presolve.dual_form = dual_form;
  Outcome run;
  run.answer = solve_lp(model, working, StoredBasis(), method, settings, {sink, never, nullptr},
                        run.presolved);
  return run;
}

/// Rows of every sense over columns of every kind, minimized or maximized.
Model random_model(Random& random) {
  Model model;
  model.sense = random.below(2) == 0 ? 1 : -1;
  const int m = 1 + random.below(9), n = 1 + random.below(10);
  SparseMatrix rows;
  rows.num_major = model.num_rows = m;
  rows.num_minor = model.num_cols = n;
  for (int i = 0; i < m; ++i) {
    const int share = 2 + random.below(4);
    double activity = 0.0;
    for (int j = 0; j < n; ++j) {
      if (random.below(share) != 0) continue;
      const double value = random.below(2) == 0 ? 1.0 : random.below(9) - 4;
      if (value == 0.0) continue;
      rows.index.push_back(j);
      rows.value.push_back(value);
      activity += value * (j % 4);
    }
    rows.start.push_back(static_cast<int>(rows.index.size()));
    const char sense = "LGERE"[random.below(5)];
    model.row_sense.push_back(sense);
    model.rhs.push_back(activity + (sense == 'E' ? 0 : random.below(3) - 1));
    if (sense == 'R') {
      model.range.resize(m, 0.0);
      model.range[i] = random.below(9) - 4;
    }
  }
  model.matrix.assign(transpose(rows));
  for (int j = 0; j < n; ++j) {
    model.objective.push_back(random.below(4) == 0 ? 0.0 : random.below(9) - 3.0 * model.sense);
    const int kind = random.below(5);
    model.lower.push_back(kind == 0 ? -kInfiniteBound : random.below(3) - 1);
    model.upper.push_back(kind <= 1 ? kInfiniteBound : 3 + random.below(4));
  }
  return model;
}

/// The answer as it stands is an optimal basic solution of the model.
void expect_optimal(const Model& model, const LpAnswer& answer, double objective) {
  ASSERT_EQ(answer.status, kOptimal);
  ASSERT_NEAR(answer.record.objective, objective, 1e-8 * (1.0 + std::fabs(objective)));
  Vector<int> status;
  stored_to_lp_status(answer.basis, model, status);
  SolutionRecord copy(answer.record);
  const Violations violations = complete_and_measure(model, status, copy);
  ASSERT_LE(violations.primal, 1e-9);
  ASSERT_LE(violations.dual, 1e-9);
  ASSERT_LE(measure_complementarity(model, status, 1e-9, copy), 1e-9);
  Owned<WorkingLp> working;
  SilentSink sink;
  NeverStop never;
  const LpAnswer again = solve_without_presolve(model, working, answer.basis, LpMethod::primal,
                                                DriverSettings(), {sink, never, nullptr});
  ASSERT_EQ(again.status, kOptimal);
  ASSERT_EQ(again.record.iterations, 0) << "the basis is not an optimal one";
}

TEST(PresolvedSolve, AgreesWithTheDirectWay) {
  int optimal = 0, reduced = 0, extra_iterations = 0;
  for (int seed = 0; seed < 2500; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Random random(7 * seed + 3);
    const Model model = random_model(random);
    const LpMethod method = seed % 2 == 0 ? LpMethod::dual : LpMethod::primal;
    const LpAnswer direct = solve(model, false, method).answer;
    const Outcome run = solve(model, true, method);
    const LpAnswer& answer = run.answer;
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
      const LpAnswer small = solve(run.presolved->reduced_model(), false, method).answer;
      extra_iterations += record.iterations - small.record.iterations;
      ASSERT_NEAR(small.record.objective + run.presolved->objective_offset(), record.objective,
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
    const LpAnswer direct = solve(model, false).answer;
    const LpMethod method = seed % 2 == 0 ? LpMethod::dual : LpMethod::primal;
    const LpAnswer answer = solve(model, true, method, 1).answer;
    if (direct.status != kOptimal) {
      EXPECT_NE(answer.status, kOptimal);
      EXPECT_NE(answer.status, kNonOptimal);
      continue;
    }
    ++optimal;
    expect_optimal(model, answer, direct.record.objective);
    // Without reductions everything is up to the dual form.
    Owned<WorkingLp> working;
    Owned<PresolvedLp> presolved;
    SilentSink sink;
    NeverStop never;
    DriverSettings settings;
    settings.presolve.dual_form = 1;
    settings.presolve.pass_limit = 0;
    expect_optimal(model,
                   solve_lp(model, working, StoredBasis(), method, settings, {sink, never, nullptr},
                            presolved),
                   direct.record.objective);
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
    LpAnswer answer = solve(model, true, method).answer;
    ASSERT_EQ(answer.status, kInfeasible);
    if (answer.record.has_primal) {
      EXPECT_TRUE(verify_farkas(model, answer.record.farkas));
    }
  }
}

}  // namespace
}  // namespace kelvo
