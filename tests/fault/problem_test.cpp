// Every function on a problem, with each of its allocations failing in turn: it returns 1001, the
// problem answers as before, and nothing is lost.
#include <kelvo.h>

#include <functional>
#include <string>
#include <vector>

#include "fault/allocation.h"

namespace {

using kelvo::test::AllocationFaults;
using kelvo::test::for_each_allocation_failure;

/// A problem with six rows and four columns, all named, in an environment of its own.
struct NamedProblem {
  NamedProblem() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "faults");
    std::vector<int> begin, count, index;
    std::vector<double> value;
    for (int j = 0; j < 4; ++j) {
      begin.push_back(static_cast<int>(index.size()));
      for (int i = j % 2; i < 6; i += 2) {
        index.push_back(i);
        value.push_back(10 * i + j);
      }
      count.push_back(static_cast<int>(index.size()) - begin.back());
    }
    const double numbers[] = {1, 2, 3, 4, 5, 6};
    const char* names[] = {"n0", "n1", "n2", "n3", "n4", "n5"};
    EXPECT_EQ(
        KLVcopylpwnames(env, lp, 4, 6, 1, numbers, numbers, "LLRGEE", begin.data(), count.data(),
                        index.data(), value.data(), numbers, numbers, numbers, names, names),
        0);
  }
  ~NamedProblem() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
  NamedProblem(const NamedProblem&) = delete;
  NamedProblem& operator=(const NamedProblem&) = delete;

  /// All that the queries say, as one text.
  std::string answers() const {
    std::string text;
    const int m = KLVgetnumrows(env, lp), n = KLVgetnumcols(env, lp), nz = KLVgetnumnz(env, lp);
    text += std::to_string(m) + " " + std::to_string(n) + " " + std::to_string(nz) + "\n";
    std::vector<double> numbers(m + n + nz + 1);
    std::vector<int> begin(n + 1), index(nz + 1);
    const auto say = [&](int status, int count) {
      text += std::to_string(status) + ":";
      for (int k = 0; k < count; ++k) text += " " + std::to_string(numbers[k]);
      text += "\n";
    };
    say(KLVgetobj(env, lp, numbers.data(), 0, n - 1), n);
    say(KLVgetlb(env, lp, numbers.data(), 0, n - 1), n);
    say(KLVgetub(env, lp, numbers.data(), 0, n - 1), n);
    say(KLVgetrhs(env, lp, numbers.data(), 0, m - 1), m);
    say(KLVgetrngval(env, lp, numbers.data(), 0, m - 1), m);
    int entries = 0, surplus = 0;
    say(KLVgetcols(env, lp, &entries, begin.data(), index.data(), numbers.data(), nz + 1, &surplus,
                   0, n - 1),
        nz);
    for (int k = 0; k < nz; ++k) text += std::to_string(index[k]) + ",";
    std::vector<char> store(1000), senses(m + 1);
    std::vector<char*> names(m + n + 1);
    for (const auto get : {KLVgetrowname, KLVgetcolname}) {
      const int count = get == KLVgetrowname ? m : n;
      get(env, lp, names.data(), store.data(), 1000, &surplus, 0, count - 1);
      for (int k = 0; k < count; ++k) text += std::string(names[k]) + "|";
    }
    KLVgetsense(env, lp, senses.data(), 0, m - 1);
    return text + senses.data();
  }

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
};

using Edit = std::function<int(KLVenv, KLVprob)>;

void expect_all_or_nothing(const char* what, const Edit& edit) {
  SCOPED_TRACE(what);
  std::string before;
  for_each_allocation_failure(
      [&] {
        NamedProblem problem;
        before = problem.answers();
        // Make the object anew: queries above may have left room behind.
        return std::make_unique<NamedProblem>();
      },
      [&](const std::unique_ptr<NamedProblem>& p) { return edit(p->env, p->lp); },
      [&](const std::unique_ptr<NamedProblem>& p) { EXPECT_EQ(p->answers(), before); },
      AllocationFaults{.may_keep_room = true});
}

const double kNumbers[] = {7, 8, 9, 10};
const int kBegin[] = {0, 2};
const int kPlaces[] = {0, 3, 1, 2};
const char* kNames[] = {"a fairly long name, longer than the others", "q"};

TEST(ProblemFaults, CreatingCloningAndFreeing) {
  for_each_allocation_failure([] { return std::make_unique<NamedProblem>(); },
                              [](const std::unique_ptr<NamedProblem>& p) {
                                int status = -1;
                                KLVprob made = KLVcreateprob(
                                    p->env, &status, "a name that needs a block of its own");
                                EXPECT_EQ(made == nullptr, status != 0);
                                return status;
                              },
                              [](const std::unique_ptr<NamedProblem>&) {});
  for_each_allocation_failure([] { return std::make_unique<NamedProblem>(); },
                              [](const std::unique_ptr<NamedProblem>& p) {
                                int status = -1;
                                KLVprob made = KLVcloneprob(p->env, p->lp, &status);
                                EXPECT_EQ(made == nullptr, status != 0);
                                return status;
                              },
                              [](const std::unique_ptr<NamedProblem>&) {});
}

TEST(ProblemFaults, Additions) {
  expect_all_or_nothing("copylp", [](KLVenv env, KLVprob lp) {
    const int count[] = {2, 2};
    return KLVcopylpwnames(env, lp, 2, 4, 1, kNumbers, kNumbers, "LREG", kBegin, count, kPlaces,
                           kNumbers, kNumbers, kNumbers, kNumbers, kNames, nullptr);
  });
  expect_all_or_nothing("newrows", [](KLVenv env, KLVprob lp) {
    return KLVnewrows(env, lp, 2, kNumbers, "RR", kNumbers, kNames);
  });
  expect_all_or_nothing("addrows", [](KLVenv env, KLVprob lp) {
    return KLVaddrows(env, lp, 2, 2, 4, kNumbers, "LG", kBegin, kPlaces, kNumbers, kNames, kNames);
  });
  expect_all_or_nothing("newcols", [](KLVenv env, KLVprob lp) {
    return KLVnewcols(env, lp, 2, kNumbers, nullptr, nullptr, "BI", kNames);
  });
  expect_all_or_nothing("addcols", [](KLVenv env, KLVprob lp) {
    return KLVaddcols(env, lp, 2, 4, kNumbers, kBegin, kPlaces, kNumbers, nullptr, nullptr, kNames);
  });
}

TEST(ProblemFaults, Changes) {
  const int rows[] = {1, 0}, columns[] = {2, 2};
  expect_all_or_nothing("chgcoef",
                        [](KLVenv env, KLVprob lp) { return KLVchgcoef(env, lp, 0, 1, 5.0); });
  expect_all_or_nothing("chgcoeflist", [&](KLVenv env, KLVprob lp) {
    return KLVchgcoeflist(env, lp, 2, rows, columns, kNumbers);
  });
  expect_all_or_nothing("chgbds", [&](KLVenv env, KLVprob lp) {
    return KLVchgbds(env, lp, 2, columns, "LU", kNumbers);
  });
  expect_all_or_nothing(
      "chgsense", [&](KLVenv env, KLVprob lp) { return KLVchgsense(env, lp, 2, rows, "RR"); });
  expect_all_or_nothing("chgrowname", [&](KLVenv env, KLVprob lp) {
    return KLVchgrowname(env, lp, 2, rows, kNames);
  });
  expect_all_or_nothing("chgprobname",
                        [](KLVenv env, KLVprob lp) { return KLVchgprobname(env, lp, kNames[0]); });
  expect_all_or_nothing("delcols",
                        [](KLVenv env, KLVprob lp) { return KLVdelcols(env, lp, 1, 2); });
  expect_all_or_nothing("delrows",
                        [](KLVenv env, KLVprob lp) { return KLVdelrows(env, lp, 1, 2); });
}

/// Rows and coefficients that wait are merged by the next query; when that fails the query says so
/// and they go on waiting.
TEST(ProblemFaults, MergingWhatWaits) {
  const auto add = [](const NamedProblem& p) {
    const int rows[] = {0, 6, 7}, columns[] = {1, 2, 1};
    EXPECT_EQ(KLVaddrows(p.env, p.lp, 0, 2, 4, kNumbers, "RG", kBegin, kPlaces, kNumbers, nullptr,
                         kNames),
              0);
    EXPECT_EQ(KLVchgcoeflist(p.env, p.lp, 3, rows, columns, kNumbers), 0);
  };
  NamedProblem reference;
  add(reference);
  const std::string expected = reference.answers();
  for_each_allocation_failure(
      [&] {
        auto p = std::make_unique<NamedProblem>();
        add(*p);
        return p;
      },
      [](const std::unique_ptr<NamedProblem>& p) {
        double number = 0;
        return KLVgetcoef(p->env, p->lp, 0, 1, &number);
      },
      [&](const std::unique_ptr<NamedProblem>& p) { EXPECT_EQ(p->answers(), expected); },
      AllocationFaults{.may_keep_room = true});
}

TEST(ProblemFaults, Queries) {
  for_each_allocation_failure([] { return std::make_unique<NamedProblem>(); },
                              [](const std::unique_ptr<NamedProblem>& p) {
                                int index = -1;
                                return KLVgetrowindex(p->env, p->lp, "n4", &index);
                              },
                              [](const std::unique_ptr<NamedProblem>&) {});
  for_each_allocation_failure([] { return std::make_unique<NamedProblem>(); },
                              [](const std::unique_ptr<NamedProblem>& p) {
                                int count = 0, surplus = 0, begin[3], index[20];
                                double value[20];
                                return KLVgetrows(p->env, p->lp, &count, begin, index, value, 20,
                                                  &surplus, 1, 3);
                              },
                              [](const std::unique_ptr<NamedProblem>&) {});
}

}  // namespace
