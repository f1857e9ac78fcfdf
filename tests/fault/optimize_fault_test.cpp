// Optimizers and functions on the basis with each of their allocations failing in turn; and the
// next call works.
#include "fault/all_or_nothing.h"

namespace {

using kelvo::test::Call;
using kelvo::test::call;
using kelvo::test::NamedCall;

const int kList[] = {0, 1, 2};

/// max 3x + 2y + z,  x + y + z <= 4,  x + 3y >= 1,  x - z in [-2, 2],  0 <= x <= 3, y free of an
/// upper bound, 0 <= z <= 2; optimal value 10.
int fill(KLVenv env, KLVprob lp) {
  const double obj[] = {3, 2, 1}, rhs[] = {4, 1, -2}, range[] = {0, 0, 4};
  const double lower[] = {0, 0, 0}, upper[] = {3, 1e20, 2}, values[] = {1, 1, 1, 1, 3, 1, -1};
  const int begin[] = {0, 3, 5}, count[] = {3, 2, 2}, rows[] = {0, 1, 2, 0, 1, 0, 2};
  return KLVcopylp(env, lp, 3, 3, -1, obj, rhs, "LGR", begin, count, rows, values, lower, upper,
                   range);
}

void expect_all_or_nothing(const std::vector<NamedCall>& calls) {
  kelvo::test::expect_all_or_nothing(fill, calls, {.may_survive = true, .may_keep_room = true},
                                     [](const kelvo::test::OwnedProblem& p, const Call& run) {
                                       EXPECT_EQ(run(p.env, p.lp), 0) << "with memory again";
                                       EXPECT_EQ(KLVlpopt(p.env, p.lp), 0);
                                       double objective = 0;
                                       EXPECT_EQ(KLVgetobjval(p.env, p.lp, &objective), 0);
                                       EXPECT_NEAR(objective, 10.0, 1e-9);
                                     });
}

/// The call on a copy, which holds solution and basis but no factor: what needs one makes it first.
Call copied(const Call& run) {
  return [run](KLVenv env, KLVprob lp) {
    int status = 0;
    KLVprob copy = KLVcloneprob(env, lp, &status);
    if (copy == nullptr) return status;
    status = run(env, copy);
    EXPECT_EQ(KLVfreeprob(env, &copy), 0);
    return status;
  };
}

Call with(int parameter, int value, const Call& run) {
  return [parameter, value, run](KLVenv env, KLVprob lp) {
    const int status = KLVsetintparam(env, parameter, value);
    return status != 0 ? status : run(env, lp);
  };
}

int nothing(KLVenv, KLVprob) {
  return 0;
}

TEST(OptimizeFaults, Optimizers) {
  expect_all_or_nothing(
      {{"dual", KLVdualopt},
       {"primal", KLVprimopt},
       {"automatic, warm", KLVlpopt, KLVdualopt},
       {"after a change", KLVdualopt,
        [](KLVenv env, KLVprob lp) {
          const double bound = 3, other = 2;
          const int failures = KLVchgbds(env, lp, 1, kList, "U", &other) + KLVdualopt(env, lp);
          return failures + KLVchgbds(env, lp, 1, kList, "U", &bound);
        }},
       {"dual form", KLVdualopt, with(KLV_PARAM_PREDUAL, 1, with(KLV_PARAM_ADVIND, 0, nothing))},
       {"a start through presolve", KLVlpopt, with(KLV_PARAM_ADVIND, 2, KLVdualopt)}});
}

/// The same with whole x and y, and x, y, z in a set of type 2; the same optimal value.
int fill_mixed_integer(KLVenv env, KLVprob lp) {
  const int begin = 0;
  const double weights[] = {1, 2, 3};
  int status = fill(env, lp);
  if (status == 0) status = KLVcopyctype(env, lp, "IIS");
  if (status == 0) {
    status = KLVaddsos(env, lp, 1, 3, "2", &begin, kList, weights, nullptr);
  }
  return status;
}

TEST(OptimizeFaults, MixedIntegerOptimizer) {
  kelvo::test::expect_all_or_nothing(fill_mixed_integer,
                                     {{"search", KLVmipopt}, {"again", KLVmipopt, KLVmipopt}},
                                     {.may_survive = true, .may_keep_room = true},
                                     [](const kelvo::test::OwnedProblem& p, const Call& call) {
                                       EXPECT_EQ(call(p.env, p.lp), 0) << "with memory again";
                                       EXPECT_EQ(KLVgetstat(p.env, p.lp), KLV_STATUS_MIP_OPTIMAL);
                                       double objective = 0;
                                       EXPECT_EQ(KLVgetobjval(p.env, p.lp, &objective), 0);
                                       EXPECT_NEAR(objective, 10.0, 1e-9);
                                     });
}

TEST(OptimizeFaults, FactorAndSensitivity) {
  double numbers[3], others[3];
  int found = 0;
  const std::vector<std::pair<const char*, Call>> queries = {
      {"binvcol", call(KLVbinvcol, 0, numbers)},
      {"getbhead", call(KLVgetbhead, nullptr, numbers)},
      {"objsa", call(KLVobjsa, 0, 2, numbers, others)},
      {"checkpfeas", call(KLVcheckpfeas, &found)},
      {"getweight", [&](KLVenv env, KLVprob lp) {
         const int begin = 0;
         const double x[] = {3, 1, 0};
         return KLVgetweight(env, lp, 1, 3, &begin, kList, x, numbers, 2);
       }}};
  for (const auto& [what, query] : queries) {
    expect_all_or_nothing({{what, copied(query), KLVdualopt}});
  }
}

TEST(OptimizeFaults, Starts) {
  static const double kX[] = {3, 1, 0};
  static const int kCodes[] = {2, 1, 0}, kRows[] = {0, 1, 1};
  expect_all_or_nothing(
      {{"copystart", call(KLVcopystart, nullptr, nullptr, kX, nullptr, nullptr, nullptr),
        KLVdualopt},
       {"copystart with a basis", call(KLVcopystart, kCodes, kRows, kX, nullptr, nullptr, nullptr),
        KLVdualopt},
       {"copybasednorms", call(KLVcopybasednorms, kCodes, kRows, kX)},
       {"copypartialbase", call(KLVcopypartialbase, 3, kList, kCodes, 1, kList, kRows)}});
}

TEST(OptimizeFaults, OtherForms) {
  expect_all_or_nothing({{"dualwrite", call(KLVdualwrite, "/dev/null", nullptr), KLVdualopt},
                         {"another objective of a presolved problem",
                          [](KLVenv env, KLVprob lp) {
                            KLVprob reduced = nullptr;
                            return KLVgetredlp(env, lp, &reduced);
                          },
                          with(KLV_PARAM_REDUCE, 1, [](KLVenv env, KLVprob lp) {
                            const double cost = 2, back = 3;
                            const int failures =
                                KLVchgobj(env, lp, 1, kList, &cost) + KLVpresolve(env, lp, 2);
                            return failures + KLVchgobj(env, lp, 1, kList, &back);
                          })}});
}

TEST(OptimizeFaults, StepsByHand) {
  double down[3], up[3];
  int found = 0;
  expect_all_or_nothing(
      {{"setphase2", KLVsetphase2},
       {"pivotin", call(KLVpivotin, kList, 1), KLVdualopt},
       {"pivot",
        [](KLVenv env, KLVprob lp) {
          // Back to the slack basis at each try, so that the pivot is there to be made.
          const int status = KLVpivotin(env, lp, kList, 3);
          if (status != 0 && status != 1262) return status;
          return KLVpivot(env, lp, 0, KLV_NO_VARIABLE, 0);
        }},
       {"dratio", call(KLVdratio, kList, 3, down, up, nullptr, nullptr, nullptr, nullptr),
        KLVdualopt},
       {"checksoln", call(KLVchecksoln, &found), KLVdualopt},
       {"strongbranch", call(KLVstrongbranch, kList, 3, down, up, 10), KLVdualopt}});
}

}  // namespace
