// The domain by hand: what is derived, and what is left alone.
#include "mip/domain/domain.h"

#include <gtest/gtest.h>

#include "mip/domain/clique_merging.h"
#include "mip/domain/clique_rows.h"
#include "mip/domain/conflict_analysis.h"
#include "mip/domain/reduced_costs.h"
#include "random_mip.h"

namespace kelvo {
namespace {

/// A program under construction with its domain.
struct Fixture {
  MipProblem mip;
  Owned<CliqueTable> cliques;
  Owned<ImplicationTable> implications;
  Owned<Domain> domain;

  Domain& start() {
    test::finish(mip);
    cliques = make_owned<CliqueTable>(mip);
    implications = make_owned<ImplicationTable>(mip);
    domain = make_owned<Domain>(mip, *cliques, *implications);
    return *domain;
  }
  void binaries(int count) {
    for (int k = 0; k < count; ++k) test::add_column(mip, 0.0, 1.0, true);
  }
};

TEST(Domain, RoundsIntegersAndMovesContinuousBoundsOutwards) {
  Fixture f;
  test::add_column(f.mip, 0.0, 100.0, true);
  test::add_column(f.mip, 0.0, kInf, false);
  test::add_column(f.mip, 0.2, 8.7, true);
  test::add_row(f.mip, {0.1, 0.0, 0.0}, -kInf, 0.3);  // 0.3 / 0.1 is below 3
  test::add_row(f.mip, {0.0, 3.0, 0.0}, -kInf, 1.0);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(0), 3.0);
  EXPECT_GT(domain.upper(1), 1.0 / 3.0);
  EXPECT_LT(domain.upper(1), 1.0 / 3.0 + 1e-5);
  EXPECT_EQ(domain.lower(2), 1.0);
  EXPECT_EQ(domain.upper(2), 8.0);
}

TEST(Domain, LargeIntegersKeepTheirUnits) {
  Fixture f;
  test::add_column(f.mip, 0.0, 1e12, true);
  test::add_column(f.mip, 0.0, 1.0, true);
  test::add_row(f.mip, {1.0, -1e12, 0.0}, -kInf, 0.0);
  test::add_row(f.mip, {1.0, 1.0, 0.0}, 1e9, kInf);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.lower(1), 1.0);
  EXPECT_EQ(domain.lower(0), 1e9 - 1.0);
  domain.decide(upper_of(0), 1e9);
  EXPECT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(0), 1e9);
}

TEST(Domain, EndsSequencesOfSmallSteps) {
  // x <= y - 1 and y <= x: infeasible, one unit at a time; and its continuous sister, which
  // converges.
  Fixture f;
  test::add_column(f.mip, 0.0, 1e9, true);
  test::add_column(f.mip, 0.0, 1e9, true);
  test::add_column(f.mip, 0.0, 1.0, false);
  test::add_column(f.mip, 0.0, 1.0, false);
  test::add_row(f.mip, {1.0, -1.0, 0.0, 0.0}, -kInf, -1.0);
  test::add_row(f.mip, {-1.0, 1.0, 0.0, 0.0}, -kInf, 0.0);
  test::add_row(f.mip, {0.0, 0.0, 1.0, -0.9}, -kInf, 0.0);
  test::add_row(f.mip, {0.0, 0.0, -1.0, 1.0}, -kInf, 0.0);
  Domain& domain = f.start();
  domain.propagate();
  EXPECT_LT(domain.work(), 2000.0);
}

TEST(Domain, ReportsChangedVariablesOnceAndReturnsExactly) {
  Fixture f;
  for (int k = 0; k < 3; ++k) test::add_column(f.mip, 0.0, 10.0, true);
  test::add_row(f.mip, {1.0, 1.0, 1.0}, 5.0, 5.0);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  Vector<int> changed;
  domain.take_changed(changed);
  const DomainMark root = domain.mark();
  domain.decide(lower_of(0), 4.0);
  domain.tighten(upper_of(0), 4.0, kDecided);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(1), 1.0);
  Vector<int> visited;
  domain.bounds().for_each_changed(root, [&](int v) { visited.push_back(v); });
  EXPECT_EQ(visited, (Vector<int>{0, 1, 2}));
  // Found below, but true everywhere.
  domain.tighten_globally(upper_of(2), 0.0);
  ASSERT_TRUE(domain.propagate());
  domain.backtrack(root);
  EXPECT_EQ(domain.upper(0), 5.0);
  EXPECT_EQ(domain.upper(1), 5.0);
  EXPECT_EQ(domain.upper(2), 0.0);
  domain.take_changed(changed);
  std::sort(changed.begin(), changed.end());
  EXPECT_EQ(changed, (Vector<int>{0, 1, 2}));
}

TEST(Domain, KindsOfConstraints) {
  Fixture f;
  test::add_column(f.mip, 0.0, 8.0, false);  // 0 or 2..8
  test::add_column(f.mip, 0.0, 5.0, false);  // members of a set of type 2
  test::add_column(f.mip, 0.0, 5.0, false);
  test::add_column(f.mip, 0.0, 5.0, false);
  test::add_column(f.mip, 0.0, 1.0, true);  // switch
  test::add_row(f.mip, {1.0, 1.0, 0.0, 0.0, 0.0}, -kInf, kInf);
  f.mip.semis.push_back({0, 2.0, 8.0});
  f.mip.sets.push_back({2, {1, 2, 3}, {1.0, 2.0, 3.0}});
  f.mip.indicators.push_back({4, 1, 0, -kInf, 4.0});
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  const DomainMark root = domain.mark();
  domain.decide(lower_of(0), 0.5);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.lower(0), 2.0);
  domain.decide(lower_of(1), 3.0);  // the row has no room left: the switch is off
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(4), 0.0);
  EXPECT_EQ(domain.upper(2), 5.0);
  EXPECT_EQ(domain.upper(3), 0.0);
  domain.backtrack(root);
  domain.decide(lower_of(4), 1.0);
  ASSERT_TRUE(domain.propagate());
  EXPECT_NEAR(domain.upper(0), 4.0, 1e-5);
  EXPECT_EQ(domain.lower(f.mip.num_cols()), -4.0);
  domain.decide(lower_of(1), 2.5);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(0), 0.0);
  domain.backtrack(root);
  EXPECT_EQ(domain.lower(f.mip.num_cols()), -kInf);
}

TEST(Domain, WorkLimitStopsAndContinues) {
  Fixture f;
  f.binaries(20);
  for (int k = 0; k + 1 < 20; ++k) {
    Vector<double> a(20, 0.0);
    a[k] = 1.0;
    a[k + 1] = -1.0;
    test::add_row(f.mip, a, -kInf, 0.0);
  }
  Domain& domain = f.start();
  domain.propagate();
  domain.decide(lower_of(0), 1.0);
  EXPECT_TRUE(domain.propagate(5.0));
  EXPECT_FALSE(domain.is_settled());
  EXPECT_EQ(domain.lower(19), 0.0);
  EXPECT_TRUE(domain.propagate());
  EXPECT_TRUE(domain.is_settled());
  EXPECT_EQ(domain.lower(19), 1.0);
}

TEST(ConflictAnalysis, FindsTheFirstImplicationPoint) {
  // x0 => x1; x1 => x2; x1 => x3; x2 and x3 exclude each other unless x4. x1 alone is to blame.
  Fixture f;
  f.binaries(6);
  test::add_row(f.mip, {1.0, -1.0, 0.0, 0.0, 0.0, 0.0}, -kInf, 0.0);
  test::add_row(f.mip, {0.0, 1.0, -1.0, 0.0, 0.0, 0.0}, -kInf, 0.0);
  test::add_row(f.mip, {0.0, 1.0, 0.0, -1.0, 0.0, 0.0}, -kInf, 0.0);
  test::add_row(f.mip, {0.0, 0.0, 1.0, 1.0, -1.0, 0.0}, -kInf, 1.0);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  ConflictAnalysis analysis(domain);
  domain.decide(upper_of(4), 0.0);
  ASSERT_TRUE(domain.propagate());
  domain.decide(upper_of(5), 0.0);
  domain.decide(lower_of(0), 1.0);
  ASSERT_FALSE(domain.propagate());
  LearnedClause decided, learned;
  ConflictSettings no_work;
  no_work.work_limit = 0.0;
  EXPECT_FALSE(ConflictAnalysis(domain, no_work).analyze(ConflictCut::kFirstUip, learned));
  ASSERT_TRUE(analysis.analyze(ConflictCut::kDecisions, decided));
  ASSERT_EQ(decided.literals.size(), 2u);
  EXPECT_EQ(decided.literals[0].bound, lower_of(0));
  ASSERT_TRUE(analysis.analyze(ConflictCut::kFirstUip, learned));
  ASSERT_EQ(learned.literals.size(), 2u);
  EXPECT_EQ(learned.literals[0].bound, lower_of(1));
  EXPECT_EQ(learned.literals[1].bound, upper_of(4));
  EXPECT_EQ(learned.backjump_level, 1);
  domain.backtrack_to_level(learned.backjump_level);
  analysis.learn(learned);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(1), 0.0);
  EXPECT_EQ(domain.upper(0), 0.0);
  EXPECT_GT(analysis.scores().of_variable(1), analysis.scores().of_variable(5));
  // The clause holds on to its literals elsewhere, the other way round too.
  domain.backtrack_to_level(0);
  domain.decide(lower_of(1), 1.0);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.lower(4), 1.0);
}

TEST(ConflictAnalysis, DropsWhatFollowsButNothingInCircles) {
  // y >= 1 => b => x >= 2 => y >= 2, and with all of it u1 or u2, which v excludes. b implies x and
  // y >= 2; y >= 2 implies b as well, but it came later.
  Fixture f;
  test::add_column(f.mip, -3.0, 10.0, true);  // y
  f.binaries(1);                              // b
  test::add_column(f.mip, -3.0, 10.0, true);  // x
  f.binaries(3);                              // u1, u2, v
  test::add_row(f.mip, {1.0, -10.0, 0.0, 0.0, 0.0, 0.0}, -kInf, 0.0);
  test::add_row(f.mip, {0.0, -5.0, 1.0, 0.0, 0.0, 0.0}, -3.0, kInf);
  test::add_row(f.mip, {1.0, 0.0, -1.0, 0.0, 0.0, 0.0}, 0.0, kInf);
  test::add_row(f.mip, {1.0, 3.0, 1.0, -1.0, -1.0, 0.0}, -kInf, 6.0);
  test::add_row(f.mip, {0.0, 0.0, 0.0, 1.0, 0.0, 1.0}, -kInf, 1.0);
  test::add_row(f.mip, {0.0, 0.0, 0.0, 0.0, 1.0, 1.0}, -kInf, 1.0);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  domain.decide(lower_of(0), 1.0);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.lower(0), 2.0);
  domain.decide(lower_of(5), 1.0);
  ASSERT_FALSE(domain.propagate());
  ConflictAnalysis analysis(domain);
  LearnedClause learned;
  ASSERT_TRUE(analysis.analyze(ConflictCut::kFirstUip, learned));
  ASSERT_EQ(learned.literals.size(), 2u);
  EXPECT_EQ(learned.literals[0].bound, lower_of(5));
  EXPECT_EQ(learned.literals[1].bound, lower_of(1));
  EXPECT_EQ(learned.backjump_level, 1);
}

TEST(ConflictAnalysis, RelaxesBoundsThatARowDoesNotNeed) {
  // x + y + z >= 10 with x <= 2, y <= 3, z <= 1: any x <= 5 would do.
  Fixture f;
  for (int k = 0; k < 3; ++k) test::add_column(f.mip, 0.0, 20.0, true);
  Domain& domain = f.start();
  const LinearProof proof{{0, 1, 2}, {1.0, 1.0, 1.0}, 10.0};
  domain.decide(upper_of(0), 2.0);
  domain.decide(upper_of(1), 3.0);
  domain.decide(upper_of(2), 1.0);
  ConflictAnalysis analysis(domain);
  LearnedClause learned;
  ASSERT_TRUE(analysis.analyze(proof, ConflictCut::kDecisions, learned));
  double total = 0.0;
  for (const BoundLiteral& literal : learned.literals) total += literal.value;
  EXPECT_EQ(total, 9.0);
  domain.backtrack_to_level(2);
  EXPECT_FALSE(analysis.analyze(proof, ConflictCut::kDecisions, learned));
}

TEST(ClauseStore, KeepsActiveClausesAndReasons) {
  Fixture f;
  f.binaries(12);
  Domain& domain = f.start();
  ClauseStore& clauses = domain.mutable_clauses();
  for (int k = 0; k + 4 < 12; ++k) {
    domain.add_clause({{lower_of(k), 1.0},
                       {lower_of(k + 1), 1.0},
                       {lower_of(k + 2), 1.0},
                       {lower_of(k + 3), 1.0}});
  }
  ASSERT_TRUE(domain.propagate());
  for (int k = 0; k < 3; ++k) domain.decide(lower_of(k), 1.0);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(3), 0.0);
  clauses.bump(7);
  clauses.reduce(domain.bounds());
  EXPECT_LT(clauses.size(), 8);
  EXPECT_TRUE(clauses.is_alive(0));  // the reason of x3 = 0
  EXPECT_TRUE(clauses.is_alive(7));
  domain.backtrack_to_level(0);
  for (const int k : {7, 8, 9}) domain.decide(lower_of(k), 1.0);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(10), 0.0);
}

TEST(Cliques, OfAKnapsackRow) {
  // 5 x0 + 4 x1 + 3 (1 - x2) + 2 x3 <= 6: {0, 1, not 2} and {0, 3}.
  Fixture f;
  f.binaries(4);
  test::add_row(f.mip, {5.0, 4.0, -3.0, 2.0}, -kInf, 3.0);
  test::add_row(f.mip, {1.0, 1.0, 1.0, 1.0}, 1.0, 1.0);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  CliqueTable& table = *f.cliques;
  add_cliques_of_rows(domain, table);
  const int not2 = literal_of(2, false);
  EXPECT_TRUE(table.are_in_clique(lower_of(0), lower_of(1)));
  EXPECT_TRUE(table.are_in_clique(lower_of(1), not2));
  EXPECT_FALSE(table.are_in_clique(lower_of(3), not2));
  ASSERT_EQ(table.end(), 2);
  EXPECT_EQ(table.members(0).length, 3);
  EXPECT_FALSE(table.is_equation(0));
  EXPECT_TRUE(table.is_equation(1));
  // Not 2 is in conflict with 0 and 1, and with 2 itself, but not with 3.
  Vector<int> part;
  EXPECT_EQ(table.partition({not2, lower_of(3), lower_of(0), lower_of(1)}, part), 2);
  EXPECT_EQ(part, (Vector<int>{0, 1, 0, 0}));
}

TEST(Cliques, MergingAndGrowthFindFixings) {
  Fixture f;
  f.binaries(6);
  f.start();
  CliqueTable& table = *f.cliques;
  const Vector<int> small = {0, 2, 4}, large = {0, 2, 4, 6};
  table.add(small.data(), 3, true);
  table.add(large.data(), 4, false);
  EXPECT_EQ(merge_cliques(table), 1);
  Vector<int> forced;
  table.take_forced(forced);
  EXPECT_EQ(forced, Vector<int>{opposite(6)});
  // Edges from 8 to all members of the equation: 8 is false. A plain clique would have grown.
  for (const int literal : small) table.add_edge(8, literal);
  const Vector<int> plain = {1, 3, 11};
  table.add(plain.data(), 3, false);
  for (const int literal : plain) table.add_edge(10 - 1, literal);
  EXPECT_EQ(grow_cliques(table), 1);
  table.take_forced(forced);
  EXPECT_EQ(forced, Vector<int>{opposite(8)});
  EXPECT_EQ(table.members(2).length, 4);
  // Degenerate cliques.
  const Vector<int> twice = {0, 0, 5}, complement = {6, 7, 2};
  table.add(twice.data(), 3, false);
  table.add(complement.data(), 3, false);
  table.take_forced(forced);
  EXPECT_EQ(forced, (Vector<int>{opposite(0), opposite(2)}));
}

TEST(Implications, BecomeVariableBounds) {
  Fixture f;
  test::add_column(f.mip, 0.0, 50.0, false);
  f.binaries(2);
  test::add_row(f.mip, {1.0, -30.0, 0.0}, -kInf, 10.0);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  add_implication(domain, literal_of(1, false), {upper_of(0), 10.0}, *f.cliques, *f.implications);
  const Vector<VariableBound>& bounds = f.implications->variable_bounds(upper_of(0));
  ASSERT_EQ(bounds.size(), 1u);
  EXPECT_EQ(bounds[0].coefficient * 0.0 + bounds[0].constant, 10.0);
  EXPECT_NEAR(bounds[0].coefficient + bounds[0].constant, 40.0, 1e-4);
  add_implication(domain, literal_of(1, false), {upper_of(0), 12.0}, *f.cliques, *f.implications);
  EXPECT_EQ(f.implications->size(), 1);
  add_implication(domain, literal_of(1, true), {lower_of(2), 1.0}, *f.cliques, *f.implications);
  EXPECT_TRUE(f.cliques->are_in_clique(literal_of(1, true), literal_of(2, false)));
  domain.decide(upper_of(1), 0.0);
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(0), 10.0);
}

TEST(ReducedCosts, FixAtTheRootForGoodAndBelowWithProof) {
  // minimize 3 x0 + 5 x1 + x2 over x0 + x1 + x2 >= 1; the LP bound is 1 with y = 1.
  Fixture f;
  f.binaries(3);
  f.mip.lp.cost = {3.0, 5.0, 1.0};
  test::add_row(f.mip, {1.0, 1.0, 1.0}, 1.0, kInf);
  Domain& domain = f.start();
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(fix_by_reduced_costs(domain, {2.0, 4.0, 0.0}, 1.0, 4.5), 1);
  EXPECT_EQ(domain.upper(1), 0.0);
  EXPECT_EQ(domain.upper(0), 1.0);
  EXPECT_EQ(fix_by_reduced_costs(domain, {2.0, 4.0, 0.0}, 1.0, 0.9), -1);
  domain.decide(upper_of(2), 0.0);
  EXPECT_EQ(fix_by_proof(domain, {{0, 1}, {-2.0, -4.0}, -1.5}), 1);
  EXPECT_EQ(domain.upper(0), 0.0);
  EXPECT_FALSE(domain.propagate());  // nothing covers the row
  ConflictAnalysis analysis(domain);
  LearnedClause learned;
  ASSERT_TRUE(analysis.analyze(ConflictCut::kDecisions, learned));
  ASSERT_EQ(learned.literals.size(), 1u);
  EXPECT_EQ(learned.literals[0].bound, upper_of(2));
  // Without explanation the fixing is a literal of its own, of the same level as the decision.
  domain.backtrack_to_level(0);
  domain.decide(upper_of(2), 0.0);
  domain.tighten(upper_of(0), 0.0, kWithoutExplanation);
  ASSERT_FALSE(domain.propagate());
  ASSERT_TRUE(analysis.analyze(ConflictCut::kFirstUip, learned));
  EXPECT_EQ(learned.literals.size(), 2u);
  EXPECT_EQ(learned.backjump_level, 0);
}

TEST(DebugSolution, NamesTheStepThatLosesIt) {
  Fixture f;
  f.binaries(3);
  test::add_row(f.mip, {1.0, 1.0, 0.0}, -kInf, 1.0);
  Domain& domain = f.start();
  Vector<DebugLoss> losses;
  const auto report = [](void* context, const DebugLoss& loss) {
    static_cast<Vector<DebugLoss>*>(context)->push_back(loss);
  };
  DebugSolution solution(f.mip, {1.0, 0.0, 1.0}, report, &losses);
  domain.set_debug_solution(&solution);
  domain.decide(lower_of(1), 1.0);  // leaves the solution's path
  ASSERT_TRUE(domain.propagate());
  EXPECT_EQ(domain.upper(0), 0.0);
  domain.backtrack_to_level(0);
  domain.add_clause({{lower_of(0), 1.0}, {lower_of(1), 1.0}});
  EXPECT_TRUE(losses.empty());
  domain.decide(lower_of(0), 1.0);
  domain.tighten(upper_of(2), 0.0, {ReasonKind::kImplication, lower_of(0)});  // wrong
  domain.add_clause({{lower_of(0), 1.0}, {lower_of(2), 1.0}});                // wrong, too late
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].step, DebugLoss::Step::kBound);
  EXPECT_EQ(losses[0].kind, ReasonKind::kImplication);
  EXPECT_EQ(losses[0].bound, upper_of(2));
}

}  // namespace
}  // namespace kelvo
