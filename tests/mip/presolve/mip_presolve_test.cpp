// Presolve of mixed-integer programs against enumeration: every reduction keeps the optimum, points
// come back feasible with the same objective value, and feasible points have their image.
#include "mip/presolve/mip_presolve.h"

#include <gtest/gtest.h>

#include <map>

#include "mip/small_mips.h"
#include "support/recording_sink.h"

namespace kelvo {
namespace {

using test::MipEnumeration;
using test::never;
using test::small_mip;
using test::SmallMipKind;

constexpr double kSameObjective = 1e-6;

/// Enumerates the program after every reduction and names the first one that changes the optimum.
class OptimumWatch final : public MipPresolveWatch {
 public:
  explicit OptimumWatch(double objective) : objective_(objective) {}
  void after(const char* reduction, const PresolveMip& mip) override {
    ++turns_[reduction];
    if (!guilty.empty()) return;
    const ReducedMip now = mip.reduced_form();
    const MipEnumeration small(now.mip);
    if (std::fabs(small.objective() - objective_) > kSameObjective) {
      guilty = std::string(reduction) + " makes " + std::to_string(small.objective()) + " of " +
               std::to_string(objective_);
    }
  }
  std::string guilty;
  std::map<std::string, int> turns_;

 private:
  const double objective_;
};

double value_of(const MipProblem& mip, const Vector<double>& x) {
  double value = mip.lp.offset;
  for (int j = 0; j < mip.num_cols(); ++j) value += mip.lp.cost[j] * x[j];
  return value;
}

struct Tally {
  int optimal = 0, infeasible = 0;
  std::map<std::string, int> turns;
  MipPresolveStats stats;
};

std::string name_guilty(const MipProblem& mip, const MipPresolveSettings& settings,
                        double objective, Tally& tally) {
  OptimumWatch watch(objective);
  SilentSink sink;
  MipPresolve presolve(mip, settings, {sink, never, &watch});
  for (const auto& [name, turns] : watch.turns_) tally.turns[name] += turns;
  return watch.guilty;
}

void check(const MipProblem& mip, const MipPresolveSettings& settings, bool watched, Tally& tally) {
  const MipEnumeration direct(mip);
  if (direct.unbounded()) return;
  SilentSink sink;
  MipPresolve presolve(mip, settings, {sink, never});
  const auto guilty = [&] { return name_guilty(mip, settings, direct.objective(), tally); };
  if (watched) {
    ASSERT_EQ(guilty(), "");
  }
  if (presolve.outcome() != PresolveOutcome::reduced &&
      presolve.outcome() != PresolveOutcome::unchanged) {
    ++tally.infeasible;
    ASSERT_FALSE(direct.found()) << "finding " << static_cast<int>(presolve.finding().kind) << " "
                                 << guilty();
    return;
  }
  const MipProblem reduced = presolve.take_reduced();
  const MipEnumeration small(reduced);
  ASSERT_EQ(small.found(), direct.found()) << guilty();
  if (!direct.found()) return;
  ++tally.optimal;
  tally.stats.sets_removed += presolve.stats().sets_removed;
  tally.stats.indicators_removed += presolve.stats().indicators_removed;
  tally.stats.implied_integers += presolve.stats().implied_integers;
  tally.stats.probing_fixed += presolve.stats().probing_fixed;
  ASSERT_NEAR(small.objective(), direct.objective(), kSameObjective) << guilty();
  const Vector<double> x = presolve.postsolve(small.best());
  const MipResiduals residuals = measure_point(mip, x, {});
  EXPECT_TRUE(residuals.within({1e-6, 1e-7}))
      << "bound " << residuals.bound << " row " << residuals.row << " integrality "
      << residuals.integrality << " set " << residuals.set;
  ASSERT_NEAR(value_of(mip, x), value_of(reduced, small.best()), kSameObjective);
  const Vector<double> crushed = presolve.crush(settings.lp.dual_reductions ? x : direct.best());
  ASSERT_TRUE(measure_point(reduced, crushed, {}).within({1e-5, 1e-6}));
  ASSERT_NEAR(value_of(reduced, crushed), direct.objective(), kSameObjective);
}

void check_many(int from, int count, const SmallMipKind& kind, Tally& tally) {
  for (int seed = from; seed < from + count; ++seed) {
    const MipProblem mip = small_mip(seed, kind);
    MipPresolveSettings settings;
    settings.lp.dual_reductions = seed % 4 != 0;
    settings.lp.nonlinear = seed % 5 != 0;
    settings.coefficient_reduction = seed % 7 == 0 ? 1 : 2;
    check(mip, settings, seed % 3 == 0, tally);
    ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
  }
  EXPECT_GT(tally.optimal, count / 4);
}

TEST(MipPresolve, PureProgramsKeepTheirOptimum) {
  Tally tally;
  check_many(0, 3000, {4, 5, 5, 3, false}, tally);
}

TEST(MipPresolve, MixedProgramsKeepTheirOptimum) {
  Tally tally;
  check_many(0, 1500, {5, 6, 3, 2, false}, tally);
}

TEST(MipPresolve, ProgramsOfAllKindsKeepTheirOptimum) {
  Tally tally;
  check_many(0, 1500, {4, 6, 3, 2, true}, tally);
  EXPECT_GT(tally.stats.sets_removed, 0);
  EXPECT_GT(tally.stats.indicators_removed, 0);
}

/// What presolve of a program says.
std::string messages_of(const MipProblem& mip, const MipPresolveSettings& settings = {}) {
  test::RecordingSink sink;
  const MipPresolve presolve(mip, settings, {sink, never});
  return sink.take();
}

MipProblem program(const std::vector<test::ColumnSpec>& columns,
                   const std::vector<std::vector<double>>& rows,
                   const std::vector<std::pair<double, double>>& limits, Vector<char> integer) {
  MipProblem mip;
  mip.lp = with_rows(test::dense_lp(columns, rows, limits));
  mip.is_integer = std::move(integer);
  return mip;
}

TEST(MipPresolve, SaysWhyThereIsNoPoint) {
  const std::vector<test::ColumnSpec> binary(1, {1, 0, 1}), pair(2, {1, 0, 1});
  EXPECT_EQ(messages_of(program(binary, {{1}}, {{2, kInf}}, {1})),
            "Row 'c1' implies binary variable 'x1' is greater than 1.\n");
  EXPECT_EQ(messages_of(program(binary, {{2}}, {{-kInf, -2}}, {1})),
            "Row 'c1' implies binary variable 'x1' is negative.\n");
  EXPECT_EQ(
      messages_of(program({{1, 0, 9}, {1, 0, 9}, {1, 0, 9}}, {{2, 4, 6}}, {{7, 7}}, {1, 1, 1})),
      "Integer infeasible equality row 'c1'.\n");
  EXPECT_EQ(messages_of(program(pair, {{1, 1}}, {{3, kInf}}, {1, 1})),
            "Implied bounds make row 'c1' infeasible.\n");
  EXPECT_EQ(messages_of(program({{1, 2.3, 2.7}}, {{1}}, {{-kInf, 9}}, {1})),
            "Bound infeasibility column 'x1'.\n");
  MipProblem sets = program({{1, 1, 2}, {1, 1, 2}}, {{1, 1}}, {{-kInf, 5}}, {0, 0});
  sets.sets.push_back({1, {0, 1}, {1, 2}});
  EXPECT_EQ(messages_of(sets), "Inconsistency between regular and SOS constraints.\n");
  MipProblem indicator = program({{1, 1, 1}, {1, 0, 2}}, {{0, 1}}, {{-kInf, kInf}}, {1, 0});
  indicator.indicators.push_back({0, 1, 0, 5.0, kInf});
  EXPECT_NE(messages_of(indicator), "");
}

TEST(MipPresolve, SaysWhatIsLeft) {
  // Two knapsacks that nothing reduces but the coefficient of x1, and a set that the first row
  // holds.
  MipProblem mip = program({{-3, 0, 1}, {-2, 0, 1}, {-2, 0, 1}, {-1, 0, 1}},
                           {{9, 4, 3, 0}, {0, 2, 3, 2}, {1, 0, 0, 1}},
                           {{-kInf, 10}, {-kInf, 4}, {-kInf, 1}}, {1, 1, 1, 1});
  mip.sets.push_back({1, {0, 3}, {1, 2}});
  MipPresolveSettings settings;
  settings.lp.dual_reductions = false;
  settings.probing = -1;
  const std::string text = messages_of(mip, settings);
  EXPECT_NE(text.find("MIP Presolve eliminated 1 redundant SOS constraints.\n"), text.npos) << text;
  EXPECT_NE(text.find("Reduced MIP has "), text.npos) << text;
  EXPECT_NE(text.find(" generals, 0 SOSs, and 0 indicators.\n"), text.npos) << text;
  EXPECT_EQ(text.find("Probing"), text.npos) << text;
  settings.lp.on = false;
  EXPECT_EQ(messages_of(mip, settings), "");
}

TEST(MipPresolve, ColumnsMadeWholeByTheirRows) {
  // x4 = x1 + 2 x2 and x4 <= 3 x3 + 1 with bounds of its own that no row implies.
  const MipProblem mip = program({{-1, 0, 3}, {-2, 0, 3}, {1, 0, 3}, {-1.5, 0, 4}},
                                 {{1, 2, 0, -1}, {0, 0, -3, 1}, {3, 0, 2, 2}},
                                 {{0, 0}, {-kInf, 1}, {-kInf, 17}}, {1, 1, 1, 0});
  MipPresolveSettings settings;
  settings.lp.aggregator = 0;
  settings.lp.nonlinear = false;
  settings.lp.dual_reductions = false;
  Tally tally;
  check(mip, settings, true, tally);
  EXPECT_EQ(tally.stats.implied_integers, 1);
}

TEST(MipPresolve, ProbingFindsEqualColumns) {
  // x1 = 1 and x1 = 0 both decide x2 and x3 through x4, x5.
  const MipProblem mip = program(
      {{-1, 0, 1}, {-2, 0, 1}, {-1, 0, 1}, {1, 0, 1}, {1, 0, 1}, {-3, 0, 1}},
      {{1, 0, 0, -1, 0, 0},
       {0, -1, 0, 1, 0, 0},
       {-1, 1, 0, 0, 0, 0},
       {1, 0, 1, 0, 0, 1},
       {-1, 0, -1, 0, 1, -1},
       {0, 2, 3, 1, 4, 2}},
      {{-kInf, 0}, {-kInf, 0}, {-kInf, 0}, {-kInf, 1}, {-kInf, 0}, {-kInf, 7}}, {1, 1, 1, 1, 1, 1});
  MipPresolveSettings settings;
  settings.lp.dual_reductions = false;
  Tally tally;
  check(mip, settings, true, tally);
  EXPECT_GT(tally.stats.probing_fixed, 0);
}

}  // namespace
}  // namespace kelvo
