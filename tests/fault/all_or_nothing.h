// Calls on a problem with each of their allocations failing in turn: they return 1001, the problem
// answers as before, and nothing is lost.
#pragma once

#include <kelvo.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "api/problem_image.h"
#include "fault/allocation.h"

namespace kelvo::test {

using Call = std::function<int(KLVenv, KLVprob)>;

/// A problem in an environment of its own, as `fill` makes it.
struct OwnedProblem {
  explicit OwnedProblem(const Call& fill) {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "faults");
    EXPECT_EQ(fill(env, lp), 0);
  }
  ~OwnedProblem() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
  OwnedProblem(const OwnedProblem&) = delete;
  OwnedProblem& operator=(const OwnedProblem&) = delete;

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
};

/// All that the queries say: the model, the basis, the solution (with the codes returned).
struct Answers {
  ModelImage image;
  std::vector<int> basis;
  std::vector<double> solution;
  bool operator==(const Answers&) const = default;
};

inline Answers answers_of(const OwnedProblem& p) {
  Answers answers;
  answers.image = read_model(p.env, p.lp);
  const int m = answers.image.m(), n = answers.image.n();
  answers.basis.resize(m + n + 2);
  answers.basis[0] =
      KLVgetbase(p.env, p.lp, answers.basis.data() + 1, answers.basis.data() + 1 + n);
  answers.solution.resize(2 * (m + n) + 2);
  double* const x = answers.solution.data() + 2;
  int status = 0;
  answers.solution[0] =
      KLVsolution(p.env, p.lp, &status, &answers.solution[1], x, x + n, x + n + m, x + n + 2 * m);
  answers.basis.back() = status;
  return answers;
}

/// The call of a function of the interface with these arguments behind environment and problem.
template <class Function, class... Arguments>
Call call(Function function, Arguments... arguments) {
  return [=](KLVenv env, KLVprob lp) { return function(env, lp, arguments...); };
}

struct NamedCall {
  const char* what;
  Call run;
  Call before = {};  // brings the problem into the state for the call
};

/// Work arrays may be had in another way, and what is kept between calls may go or grow.
inline constexpr AllocationFaults kKeepsRoom = {.may_keep_room = true};

/// `afterwards` is called on the problem after each failed try.
inline void expect_all_or_nothing(
    const Call& fill, const std::vector<NamedCall>& calls, AllocationFaults options = kKeepsRoom,
    const std::function<void(const OwnedProblem&, const Call&)>& afterwards = {}) {
  for (const NamedCall& each : calls) {
    SCOPED_TRACE(each.what);
    const auto prepare = [&] {
      auto problem = std::make_unique<OwnedProblem>(fill);
      if (each.before) {
        EXPECT_EQ(each.before(problem->env, problem->lp), 0);
      }
      return problem;
    };
    // Of another object: queries may leave room behind.
    const Answers before = answers_of(*prepare());
    for_each_allocation_failure(
        prepare, [&](const std::unique_ptr<OwnedProblem>& p) { return each.run(p->env, p->lp); },
        [&](const std::unique_ptr<OwnedProblem>& p) {
          EXPECT_TRUE(answers_of(*p) == before) << "the problem answers otherwise";
          if (afterwards) afterwards(*p, each.run);
        },
        options);
  }
}

}  // namespace kelvo::test
