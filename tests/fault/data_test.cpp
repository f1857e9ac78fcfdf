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
    failures += KLVcopyqpsep(env, lp, kNumbers);
    failures += KLVaddqconstr(env, lp, 2, 2, 1.0, 'L', kColumns, kNumbers, kColumns, kColumns,
                              kNumbers, nullptr);
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
    say(text,
        KLVgetquad(env, lp, &count, begin.data(), index.data(), value.data(), 20, &surplus, 0,
                   n - 1),
        index);
    say(text, count, value);
    for (int k = 0; k < KLVgetnumqconstrs(env, lp); ++k) {
      int terms = 0, other_surplus = 0;
      double rhs = 0;
      char sense = 0;
      say(text,
          KLVgetqconstr(env, lp, &count, &terms, &rhs, &sense, index.data(), value.data(), 20,
                        &surplus, begin.data(), other.data(), value.data(), 20, &other_surplus, k),
          index);
      say(text, terms, begin);
      say(text, count, value);
      text += std::to_string(KLVgetqconstrname(env, lp, names.data(), 200, &surplus, k)) + "\n";
    }
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

TEST(DataFaults, QuadraticData) {
  const int begin[] = {0, 1, 2, 2}, count[] = {1, 1, 0, 2}, rows[] = {1, 0, 3, 2};
  expect_all_or_nothing("copyquad", [&](KLVenv env, KLVprob lp) {
    return KLVcopyquad(env, lp, begin, count, rows, kNumbers);
  });
  expect_all_or_nothing("copyqpsep",
                        [](KLVenv env, KLVprob lp) { return KLVcopyqpsep(env, lp, kNumbers); });
  expect_all_or_nothing("chgqpcoef",
                        [](KLVenv env, KLVprob lp) { return KLVchgqpcoef(env, lp, 0, 3, 5.0); });
  expect_all_or_nothing("addqconstr", [](KLVenv env, KLVprob lp) {
    return KLVaddqconstr(env, lp, 4, 4, 2.0, 'G', kColumns, kNumbers, kColumns, kColumns, kNumbers,
                         kNames[0]);
  });
  expect_all_or_nothing("delqconstrs",
                        [](KLVenv env, KLVprob lp) { return KLVdelqconstrs(env, lp, 0, 0); });
}

/// A problem with linear data alone: the first coefficient, bases and norms.
struct PlainProblem {
  PlainProblem() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "plain");
    EXPECT_EQ(KLVnewcols(env, lp, 2, kNumbers, nullptr, kNumbers, nullptr, nullptr), 0);
    EXPECT_EQ(KLVnewrows(env, lp, 1, kNumbers, "L", nullptr, nullptr), 0);
    EXPECT_EQ(KLVcopybase(env, lp, kStatus, kStatus + 2), 0);
  }
  ~PlainProblem() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
  PlainProblem(const PlainProblem&) = delete;
  PlainProblem& operator=(const PlainProblem&) = delete;

  void expect_unchanged() const {
    int columns[2], row;
    EXPECT_EQ(KLVgetprobtype(env, lp), 0);
    EXPECT_EQ(KLVgetbase(env, lp, columns, &row), 0);
    EXPECT_EQ(columns[0], 0);
    EXPECT_EQ(columns[1], 2);
    EXPECT_EQ(row, 1);
  }

  static constexpr int kStatus[] = {0, 2, 1};
  KLVenv env = nullptr;
  KLVprob lp = nullptr;
};

TEST(DataFaults, BasesNormsAndTheFirstQuadraticCoefficient) {
  static const int kOther[] = {1, 0, 0};
  static const int kHead[] = {-1};
  const std::pair<const char*, Edit> edits[] = {
      {"chgqpcoef", [](KLVenv env, KLVprob lp) { return KLVchgqpcoef(env, lp, 0, 1, 5.0); }},
      {"copybase", [](KLVenv env, KLVprob lp) { return KLVcopybase(env, lp, kOther, kOther + 2); }},
      {"copypnorms",
       [](KLVenv env, KLVprob lp) { return KLVcopypnorms(env, lp, kNumbers, kNumbers, 2); }},
      {"copydnorms",
       [](KLVenv env, KLVprob lp) { return KLVcopydnorms(env, lp, kNumbers, kHead, 1); }}};
  for (const auto& [what, edit] : edits) {
    SCOPED_TRACE(what);
    for_each_allocation_failure(
        [] { return std::make_unique<PlainProblem>(); },
        [&edit = edit](const std::unique_ptr<PlainProblem>& p) { return edit(p->env, p->lp); },
        [](const std::unique_ptr<PlainProblem>& p) { p->expect_unchanged(); },
        AllocationFaults{.may_keep_room = true});
  }
}

TEST(DataFaults, Queries) {
  const auto expect_clean = [](const char* what, const Edit& query) {
    SCOPED_TRACE(what);
    for_each_allocation_failure(
        [] { return std::make_unique<FullProblem>(); },
        [&](const std::unique_ptr<FullProblem>& p) { return query(p->env, p->lp); },
        [](const std::unique_ptr<FullProblem>&) {}, AllocationFaults{.may_keep_room = true});
  };
  expect_clean("getsosinfeas", [](KLVenv env, KLVprob lp) {
    double out;
    return KLVgetsosinfeas(env, lp, kNumbers, &out, 0, 0);
  });
  expect_clean("qpindefcertificate", [](KLVenv env, KLVprob lp) {
    double x[4];
    const int code = KLVchgobjsen(env, lp, -1);
    return code != 0 ? code : KLVqpindefcertificate(env, lp, x);
  });
}

}  // namespace
