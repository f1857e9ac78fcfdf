// Optimizers and functions on the basis with each of their allocations failing in turn: they return
// 1001, the problem answers as before, nothing is lost, and the next call works.
#include <kelvo.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fault/allocation.h"

namespace {

using kelvo::test::AllocationFaults;
using kelvo::test::for_each_allocation_failure;

/// max 3x + 2y + z,  x + y + z <= 4,  x + 3y >= 1,  x - z in [-2, 2],  0 <= x <= 3, y free of an
/// upper bound, 0 <= z <= 2; optimal value 10.
struct LinearProblem {
  LinearProblem() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "faults");
    const double obj[] = {3, 2, 1}, rhs[] = {4, 1, -2}, range[] = {0, 0, 4};
    const double lower[] = {0, 0, 0}, upper[] = {3, 1e20, 2};
    const int begin[] = {0, 3, 5}, count[] = {3, 2, 2}, rows[] = {0, 1, 2, 0, 1, 0, 2};
    const double values[] = {1, 1, 1, 1, 3, 1, -1};
    EXPECT_EQ(KLVcopylp(env, lp, 3, 3, -1, obj, rhs, "LGR", begin, count, rows, values, lower,
                        upper, range),
              0);
  }
  ~LinearProblem() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
  LinearProblem(const LinearProblem&) = delete;
  LinearProblem& operator=(const LinearProblem&) = delete;

  /// All that is known of the result.
  std::string answers() const {
    double numbers[16] = {};
    int status = 0;
    std::string text = std::to_string(KLVsolution(env, lp, &status, numbers, numbers + 1,
                                                  numbers + 4, numbers + 7, numbers + 10)) +
                       " " + std::to_string(status);
    for (const double number : numbers) text += " " + std::to_string(number);
    return text;
  }

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
};

using Call = std::function<int(KLVenv, KLVprob)>;

/// `before` brings the problem into the state in which `call` is made.
void expect_all_or_nothing(const char* what, const Call& before, const Call& call) {
  SCOPED_TRACE(what);
  std::string answers;
  const auto prepare = [&] {
    auto problem = std::make_unique<LinearProblem>();
    EXPECT_EQ(before(problem->env, problem->lp), 0);
    answers = problem->answers();
    return problem;
  };
  for_each_allocation_failure(
      prepare, [&](const std::unique_ptr<LinearProblem>& p) { return call(p->env, p->lp); },
      [&](const std::unique_ptr<LinearProblem>& p) {
        EXPECT_EQ(p->answers(), answers);
        EXPECT_EQ(call(p->env, p->lp), 0) << "with memory again";
        EXPECT_EQ(KLVlpopt(p->env, p->lp), 0);
        double objective = 0;
        EXPECT_EQ(KLVgetobjval(p->env, p->lp, &objective), 0);
        EXPECT_NEAR(objective, 10.0, 1e-9);
      },
      // Work arrays may be had in another way, and what is kept between calls may go or grow.
      AllocationFaults{.may_survive = true, .may_keep_room = true});
}

int nothing(KLVenv, KLVprob) {
  return 0;
}

/// A copy holds solution and basis but no factor: what needs one makes it first.
struct Copied {
  explicit Copied(const Call& call) : call_(call) {}
  int operator()(KLVenv env, KLVprob lp) const {
    int status = 0;
    KLVprob copy = KLVcloneprob(env, lp, &status);
    if (copy == nullptr) return status;
    status = call_(env, copy);
    EXPECT_EQ(KLVfreeprob(env, &copy), 0);
    return status;
  }
  Call call_;
};

TEST(OptimizeFaults, Optimizers) {
  expect_all_or_nothing("dual", nothing, KLVdualopt);
  expect_all_or_nothing("primal", nothing, KLVprimopt);
  expect_all_or_nothing("automatic, warm", KLVdualopt, KLVlpopt);
  expect_all_or_nothing(
      "after a change",
      [](KLVenv env, KLVprob lp) {
        const int first = 0;
        const double bound = 3, other = 2;
        int status = KLVchgbds(env, lp, 1, &first, "U", &other);
        if (status == 0) status = KLVdualopt(env, lp);
        return status != 0 ? status : KLVchgbds(env, lp, 1, &first, "U", &bound);
      },
      KLVdualopt);
}

TEST(OptimizeFaults, FactorAndSensitivity) {
  double numbers[3];
  expect_all_or_nothing("binvcol", KLVdualopt, Copied([&](KLVenv env, KLVprob lp) {
                          return KLVbinvcol(env, lp, 0, numbers);
                        }));
  expect_all_or_nothing("getbhead", KLVdualopt, Copied([&](KLVenv env, KLVprob lp) {
                          return KLVgetbhead(env, lp, nullptr, numbers);
                        }));
  expect_all_or_nothing("objsa", KLVdualopt, Copied([&](KLVenv env, KLVprob lp) {
                          double low[3], high[3];
                          return KLVobjsa(env, lp, 0, 2, low, high);
                        }));
  expect_all_or_nothing("checkpfeas", KLVdualopt, Copied([&](KLVenv env, KLVprob lp) {
                          int found = 0;
                          return KLVcheckpfeas(env, lp, &found);
                        }));
}

TEST(OptimizeFaults, Starts) {
  const double x[] = {3, 1, 0};
  const int codes[] = {2, 1, 0}, rows[] = {0, 1, 1}, list[] = {0, 1, 2};
  const auto with = [](int parameter, int value, const Call& call) {
    return [parameter, value, call](KLVenv env, KLVprob lp) {
      const int status = KLVsetintparam(env, parameter, value);
      return status != 0 ? status : call(env, lp);
    };
  };
  expect_all_or_nothing("copystart", KLVdualopt, [&](KLVenv env, KLVprob lp) {
    return KLVcopystart(env, lp, nullptr, nullptr, x, nullptr, nullptr, nullptr);
  });
  expect_all_or_nothing("copystart with a basis", KLVdualopt, [&](KLVenv env, KLVprob lp) {
    return KLVcopystart(env, lp, codes, rows, x, nullptr, nullptr, nullptr);
  });
  expect_all_or_nothing("copybasednorms", nothing, [&](KLVenv env, KLVprob lp) {
    return KLVcopybasednorms(env, lp, codes, rows, x);
  });
  expect_all_or_nothing("copypartialbase", nothing, [&](KLVenv env, KLVprob lp) {
    return KLVcopypartialbase(env, lp, 3, list, codes, 1, list, rows);
  });
  expect_all_or_nothing("a start through presolve", with(KLV_PARAM_ADVIND, 2, KLVdualopt),
                        KLVlpopt);
  expect_all_or_nothing("getweight", KLVdualopt, Copied([&](KLVenv env, KLVprob lp) {
                          const int begin = 0;
                          double weight = 0;
                          return KLVgetweight(env, lp, 1, 3, &begin, list, x, &weight, 2);
                        }));
}

TEST(OptimizeFaults, DualFormAndPresolvedProblem) {
  expect_all_or_nothing(
      "dual form",
      [](KLVenv env, KLVprob) {
        const int status = KLVsetintparam(env, KLV_PARAM_PREDUAL, 1);
        return status != 0 ? status : KLVsetintparam(env, KLV_PARAM_ADVIND, 0);
      },
      KLVdualopt);
  expect_all_or_nothing("dualwrite", KLVdualopt, [](KLVenv env, KLVprob lp) {
    return KLVdualwrite(env, lp, "/dev/null", nullptr);
  });
  expect_all_or_nothing(
      "another objective",
      [](KLVenv env, KLVprob lp) {
        const int first = 0;
        const double cost = 2, back = 3;
        int status = KLVsetintparam(env, KLV_PARAM_REDUCE, 1);
        if (status == 0) status = KLVchgobj(env, lp, 1, &first, &cost);
        if (status == 0) status = KLVpresolve(env, lp, 2);
        return status != 0 ? status : KLVchgobj(env, lp, 1, &first, &back);
      },
      [](KLVenv env, KLVprob lp) {
        KLVprob reduced = nullptr;
        return KLVgetredlp(env, lp, &reduced);
      });
}

TEST(OptimizeFaults, StepsByHand) {
  const int first = 0, list[] = {0, 1, 2};
  double down[3], up[3];
  expect_all_or_nothing("setphase2", nothing, KLVsetphase2);
  expect_all_or_nothing("pivotin", KLVdualopt,
                        [&](KLVenv env, KLVprob lp) { return KLVpivotin(env, lp, &first, 1); });
  expect_all_or_nothing("pivot", nothing, [&](KLVenv env, KLVprob lp) {
    // Back to the slack basis at each try, so that the pivot is there to be made.
    const int status = KLVpivotin(env, lp, list, 3);
    if (status != 0 && status != 1262) return status;
    return KLVpivot(env, lp, 0, KLV_NO_VARIABLE, 0);
  });
  expect_all_or_nothing("dratio", KLVdualopt, [&](KLVenv env, KLVprob lp) {
    return KLVdratio(env, lp, list, 3, down, up, nullptr, nullptr, nullptr, nullptr);
  });
  expect_all_or_nothing("checksoln", KLVdualopt, [&](KLVenv env, KLVprob lp) {
    int status = 0;
    return KLVchecksoln(env, lp, &status);
  });
  expect_all_or_nothing("strongbranch", KLVdualopt, [&](KLVenv env, KLVprob lp) {
    return KLVstrongbranch(env, lp, list, 3, down, up, 10);
  });
}

}  // namespace
