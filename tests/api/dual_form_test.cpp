// The dual formulation: written to a file, and taken by presolve.
#include "file_fixture.h"
#include "random_lp.h"

namespace {

class DualFormTest : public FileTest {
 protected:
  bool formed() { return contains(take(results), "DUAL formed"); }
};

TEST_F(DualFormTest, TheFileHoldsAProgramWithTheNegatedOptimum) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    const DenseLp data = random_lp(seed, {.m = 12, .n = 15});
    data.load(env, lp);
    const double primal = optimum(lp);
    double shift = 0.0;
    ASSERT_EQ(KLVdualwrite(env, lp, path("dual.mps").c_str(), &shift), 0);
    KLVprob dual = clone();
    ASSERT_EQ(KLVreadcopyprob(env, dual, path("dual.mps").c_str(), nullptr), 0);
    expect_close(-data.sense * (optimum(dual) + shift), primal, primal, "optimum");
    EXPECT_EQ(KLVfreeprob(env, &dual), 0);
  }
}

TEST_F(DualFormTest, TheFileNamesThingsAfterTheirCounterparts) {
  load_small();
  double shift = 1.0;
  ASSERT_EQ(KLVchgprobname(env, lp, "small"), 0);
  ASSERT_EQ(KLVdualwrite(env, lp, path("dual.mps").c_str(), &shift), 0);
  EXPECT_EQ(warnings, "");
  // The column "c" is measured from its lower bound -1, at a cost of 3 each.
  EXPECT_EQ(shift, 3.0);
  const std::string text = text_of("dual.mps");
  EXPECT_EQ(text.find("NAME          small.dual (objshift =   3.0000000000e+00)\n"), 0u) << text;
  for (const char* const part : {" N  obj", " L  a", " L  b", " L  c", "    first", "    second",
                                 "    third ", "    third.rg", "    a.ub", "    c.ub", "    rhs"}) {
    EXPECT_TRUE(contains(text, part)) << part << "\n" << text;
  }
  ASSERT_EQ(KLVdelnames(env, lp), 0);
  change_bound(2, 'L', 0);
  ASSERT_EQ(KLVdualwrite(env, lp, path("dual.mps").c_str(), nullptr), 0);
  EXPECT_EQ(warnings,
            "Default row names x1, x2 ... being created.\n"
            "Default variable names c1, c2 ... being created.\n");
  EXPECT_EQ(text_of("dual.mps").find("NAME          small.dual\n"), 0u);
}

TEST_F(DualFormTest, RefusesWhatHasNoDualAndNoFile) {
  load_small();
  EXPECT_EQ(KLVdualwrite(env, lp, nullptr, nullptr), 1421);
  EXPECT_EQ(KLVdualwrite(env, lp, "", nullptr), 1421);
  EXPECT_EQ(KLVdualwrite(env, lp, path("no/such/folder.mps").c_str(), nullptr), 1422);
  ASSERT_EQ(KLVchgprobtype(env, lp, 1), 0);
  EXPECT_EQ(KLVdualwrite(env, lp, path("dual.mps").c_str(), nullptr), 1017);
}

TEST_F(DualFormTest, PresolveTakesItWhenAskedAndTheAnswerIsThatOfTheProblem) {
  for (unsigned seed = 0; seed < 10; ++seed) {
    SCOPED_TRACE(seed);
    random_lp(seed, {.m = 25, .n = 30}).load(env, lp);
    const double primal = optimum(lp);
    EXPECT_FALSE(formed());
    set(KLV_PARAM_PREDUAL, 1);
    set(KLV_PARAM_ADVIND, 0);
    expect_close(optimum(lp), primal, primal, "optimum");
    EXPECT_TRUE(formed());
    ASSERT_EQ(KLVsetdefaults(env), 0);
    expect_close(optimum(lp), primal, primal, "optimum");
    EXPECT_EQ(KLVgetitcnt(env, lp), 0) << "the basis belongs to the problem";
    // A start is one of the problem: presolve does not form the dual then.
    set(KLV_PARAM_PREDUAL, 1);
    set(KLV_PARAM_ADVIND, 2);
    take(results);
    optimum(lp);
    EXPECT_FALSE(formed());
    ASSERT_EQ(KLVsetdefaults(env), 0);
  }
}

TEST_F(DualFormTest, NothingIsFormedOfAProblemThatPresolveSolves) {
  const std::string file = put("plan.lp",
                               "Maximize\n 3 x + 2 y - 0.5 z\nSubject To\n x + y + z <= 40\n"
                               " 2 x + y - z = 30\nBounds\n x <= 18\nEnd\n");
  ASSERT_EQ(KLVreadcopyprob(env, lp, file.c_str(), nullptr), 0);
  set(KLV_PARAM_PREDUAL, 1);
  EXPECT_EQ(optimum(lp), 67.5);
  EXPECT_TRUE(contains(results, "All rows and columns eliminated.")) << results;
  EXPECT_FALSE(formed());
}

}  // namespace
