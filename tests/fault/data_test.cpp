// Data that is not plain linear, with each allocation of a change failing in turn: the change
// returns 1001, every query answers as before, and nothing is lost.
#include <kelvo.h>

#include <functional>
#include <string>
#include <vector>

#include "fault/allocation.h"

namespace {

using kelvo::test::AllocationFaults;
using kelvo::test::for_each_allocation_failure;

const int kBegin[] = {0, 2};
const int kColumns[] = {1, 0, 2, 3};
const double kNumbers[] = {4, 3, 2, 1};
const char* const kNames[] = {"a name that needs a block of its own", "q"};

/// Four columns and one of everything.
struct FullProblem {
  FullProblem() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "faults");
    int failures = KLVnewcols(env, lp, 4, kNumbers, nullptr, kNumbers, "BIBC", nullptr);
    failures += KLVaddsos(env, lp, 1, 2, "1", kBegin, kColumns, kNumbers, nullptr);
    failures += KLVaddindconstr(env, lp, 0, 0, 2, 1.0, 'L', kColumns, kNumbers, nullptr);
    failures += KLVcopyorder(env, lp, 2, kColumns, kColumns, nullptr);
    failures += KLVaddusercuts(env, lp, 1, 2, nullptr, "L", kBegin, kColumns, kNumbers, nullptr);
    failures +=
        KLVaddlazyconstraints(env, lp, 1, 2, nullptr, "L", kBegin, kColumns, kNumbers, nullptr);
    EXPECT_EQ(failures, 0);
  }
  ~FullProblem() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
  FullProblem(const FullProblem&) = delete;
  FullProblem& operator=(const FullProblem&) = delete;

  template <class T>
  static void say(std::string& text, int status, const std::vector<T>& values) {
    text += std::to_string(status) + ":";
    for (const T v : values) text += " " + std::to_string(v);
    text += "\n";
  }

  /// What the queries say, as one text.
  std::string answers() const {
    const int n = KLVgetnumcols(env, lp);
    std::string text = std::to_string(KLVgetprobtype(env, lp)) + " " + std::to_string(n) + " " +
                       std::to_string(KLVgetnumusercuts(env, lp)) + " " +
                       std::to_string(KLVgetnumlazyconstraints(env, lp)) + "\n";
    std::vector<char> types(n + 1), names(200);
    std::vector<int> index(20), begin(20), other(20);
    std::vector<double> value(20);
    std::vector<char*> pointers(20);
    int count = 0, surplus = 0;
    say(text, KLVgetctype(env, lp, types.data(), 0, n - 1), types);
    say(text, KLVgetub(env, lp, value.data(), 0, n - 1), value);
    const int sets = KLVgetnumsos(env, lp);
    types.assign(20, 0);
    const int status = KLVgetsos(env, lp, &count, types.data(), begin.data(), index.data(),
                                 value.data(), 20, &surplus, 0, sets - 1);
    say(text, status, types);
    say(text, sets, begin);
    say(text, count, index);
    say(text, 0, value);
    text += std::to_string(
                KLVgetsosname(env, lp, pointers.data(), names.data(), 200, &surplus, 0, sets - 1)) +
            "\n";
    for (int k = 0; k < KLVgetnumindconstrs(env, lp); ++k) {
      int column = 0, complemented = 0;
      double rhs = 0;
      char sense = 0;
      say(text,
          KLVgetindconstr(env, lp, &column, &complemented, &count, &rhs, &sense, index.data(),
                          value.data(), 20, &surplus, k),
          index);
      text += std::to_string(column) + std::to_string(complemented) + std::to_string(rhs) + sense;
      text += std::to_string(KLVgetindconstrname(env, lp, names.data(), 200, &surplus, k)) + "\n";
    }
    say(text, KLVgetorder(env, lp, &count, index.data(), begin.data(), other.data(), 20, &surplus),
        index);
    say(text, count, begin);
    return text;
  }

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
};

using Edit = std::function<int(KLVenv, KLVprob)>;

void expect_all_or_nothing(const char* what, const Edit& edit) {
  SCOPED_TRACE(what);
  const std::string before = FullProblem().answers();
  for_each_allocation_failure(
      [] { return std::make_unique<FullProblem>(); },
      [&](const std::unique_ptr<FullProblem>& p) { return edit(p->env, p->lp); },
      [&](const std::unique_ptr<FullProblem>& p) { EXPECT_EQ(p->answers(), before); },
      AllocationFaults{.may_keep_room = true});
}

TEST(DataFaults, Types) {
  expect_all_or_nothing("copyctype",
                        [](KLVenv env, KLVprob lp) { return KLVcopyctype(env, lp, "CCIN"); });
  expect_all_or_nothing(
      "chgctype", [](KLVenv env, KLVprob lp) { return KLVchgctype(env, lp, 4, kColumns, "CCIN"); });
  expect_all_or_nothing("chgprobtype",
                        [](KLVenv env, KLVprob lp) { return KLVchgprobtype(env, lp, 0); });
}

TEST(DataFaults, SetsIndicatorsOrdersAndCuts) {
  expect_all_or_nothing("addsos", [](KLVenv env, KLVprob lp) {
    return KLVaddsos(env, lp, 2, 4, "12", kBegin, kColumns, kNumbers, kNames);
  });
  expect_all_or_nothing("copysos", [](KLVenv env, KLVprob lp) {
    return KLVcopysos(env, lp, 2, 4, "12", kBegin, kColumns, kNumbers, kNames);
  });
  expect_all_or_nothing("delsetsos", [](KLVenv env, KLVprob lp) {
    int marks[] = {1};
    return KLVdelsetsos(env, lp, marks);
  });
  expect_all_or_nothing("addindconstr", [](KLVenv env, KLVprob lp) {
    return KLVaddindconstr(env, lp, 2, 1, 4, 3.0, 'G', kColumns, kNumbers, kNames[0]);
  });
  expect_all_or_nothing("delindconstrs",
                        [](KLVenv env, KLVprob lp) { return KLVdelindconstrs(env, lp, 0, 0); });
  expect_all_or_nothing("copyorder", [](KLVenv env, KLVprob lp) {
    return KLVcopyorder(env, lp, 4, kColumns, nullptr, nullptr);
  });
  expect_all_or_nothing("addusercuts", [](KLVenv env, KLVprob lp) {
    return KLVaddusercuts(env, lp, 2, 4, kNumbers, "LG", kBegin, kColumns, kNumbers, kNames);
  });
  expect_all_or_nothing("addlazyconstraints", [](KLVenv env, KLVprob lp) {
    return KLVaddlazyconstraints(env, lp, 2, 4, kNumbers, "LG", kBegin, kColumns, kNumbers, kNames);
  });
  expect_all_or_nothing("delcols",
                        [](KLVenv env, KLVprob lp) { return KLVdelcols(env, lp, 1, 2); });
}

}  // namespace
