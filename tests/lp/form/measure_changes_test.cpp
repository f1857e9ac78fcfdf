// What is measured of the differences alone must be what a full measure finds.
#include "lp/form/measure_changes.h"

#include <gtest/gtest.h>

#include "lp/busy_lp.h"

namespace kelvo {
namespace {

TEST(MeasureChanges, AgreesWithAFullMeasure) {
  Random random(8);
  const int m = 25, n = 40;
  LpProblem lp = test::busy_lp(random, m, n);
  LpSolution solution;
  for (int j = 0; j < n; ++j) solution.x.push_back(random.below(5));
  for (int i = 0; i < m; ++i) solution.y.push_back(random.below(5) - 2.0);
  for (int v = 0; v < n + m; ++v) solution.status.push_back(random.below(3));
  MeasuredSolution before;
  for (int round = 0; round < 200; ++round) {
    before.solution = solution;
    before.violations = complete_and_measure(ProgramView(lp), before.solution);
    if (round % 2 == 0) before.violations = Violations();  // what has changed alone is seen
    // Now and then one kind of change alone.
    const int kinds = 1 + random.below(15);
    for (int k = random.below(3); k >= 0; --k) {
      if ((kinds & 1) != 0) solution.x[random.below(n)] = random.below(100) / 7.0;
      if ((kinds & 2) != 0) solution.y[random.below(m)] = random.below(100) / 7.0 - 5.0;
      if ((kinds & 4) != 0) solution.status[random.below(n + m)] = random.below(3);
    }
    Vector<int> changed;
    for (int k = 0; k < 2 && (kinds & 8) != 0; ++k) {
      changed.push_back(random.below(n));
      lp.lower[changed.back()] = random.below(3);
      lp.upper[changed.back()] = lp.lower[changed.back()] + random.below(2);
    }
    const Violations found = measure_changes(ProgramView(lp), before, changed.data(),
                                             static_cast<int>(changed.size()), solution);
    LpSolution again = solution;
    const Violations full = complete_and_measure(ProgramView(lp), again);
    EXPECT_EQ(solution.activity, again.activity);
    EXPECT_EQ(solution.z, again.z);
    EXPECT_EQ(solution.objective, again.objective);
    if (round % 2 != 0) {
      EXPECT_EQ(found.primal, std::max(before.violations.primal, full.primal));
      EXPECT_EQ(found.dual, std::max(before.violations.dual, full.dual));
      continue;
    }
    // Violations that were there before are not seen; new ones are.
    MeasuredSolution old = before;
    const Violations was = complete_and_measure(ProgramView(lp), old.solution);
    EXPECT_TRUE(full.primal <= was.primal || found.primal == full.primal);
    EXPECT_TRUE(full.dual <= was.dual || found.dual == full.dual);
  }
}

}  // namespace
}  // namespace kelvo
