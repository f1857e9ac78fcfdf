// Edits and queries of problems with each of their allocations failing in turn.
#include "fault/all_or_nothing.h"

namespace {

using kelvo::test::call;
using kelvo::test::expect_all_or_nothing;

const double kNumbers[] = {7, 8, 9, 10, 11, 12};
const int kBegin[] = {0, 2};
const int kPlaces[] = {0, 3, 1, 2};
const char* const kNames[] = {
    "a fairly long name, longer than the others", "q", "n2", "n3", "n4", "n5"};

/// Six rows and four columns, all named.
int fill_linear(KLVenv env, KLVprob lp) {
  const int begin[] = {0, 3, 6, 9}, count[] = {3, 3, 3, 3};
  const int rows[] = {0, 2, 4, 1, 3, 5, 0, 2, 4, 1, 3, 5};
  const double values[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  return KLVcopylpwnames(env, lp, 4, 6, 1, kNumbers, kNumbers, "LLRGEE", begin, count, rows, values,
                         kNumbers, kNumbers, kNumbers, kNames, kNames);
}

/// Four columns and one of everything.
int fill_everything(KLVenv env, KLVprob lp) {
  int failures = KLVnewcols(env, lp, 4, kNumbers, nullptr, kNumbers, "BIBC", nullptr);
  failures += KLVaddsos(env, lp, 1, 2, "1", kBegin, kPlaces, kNumbers, nullptr);
  failures += KLVaddindconstr(env, lp, 0, 0, 2, 1.0, 'L', kPlaces, kNumbers, nullptr);
  failures += KLVcopyorder(env, lp, 2, kPlaces, kPlaces, nullptr);
  failures += KLVaddusercuts(env, lp, 1, 2, nullptr, "L", kBegin, kPlaces, kNumbers, nullptr);
  failures +=
      KLVaddlazyconstraints(env, lp, 1, 2, nullptr, "L", kBegin, kPlaces, kNumbers, nullptr);
  failures += KLVcopyqpsep(env, lp, kNumbers);
  return failures + KLVaddqconstr(env, lp, 2, 2, 1.0, 'L', kPlaces, kNumbers, kPlaces, kPlaces,
                                  kNumbers, nullptr);
}

TEST(ProblemFaults, Edits) {
  static const int kRows[] = {1, 0}, kColumns[] = {2, 2}, kCount[] = {2, 2};
  expect_all_or_nothing(
      fill_linear,
      {{"copylp", call(KLVcopylpwnames, 2, 4, 1, kNumbers, kNumbers, "LREG", kBegin, kCount,
                       kPlaces, kNumbers, kNumbers, kNumbers, kNumbers, kNames, nullptr)},
       {"newrows", call(KLVnewrows, 2, kNumbers, "RR", kNumbers, kNames)},
       {"addrows",
        call(KLVaddrows, 2, 2, 4, kNumbers, "LG", kBegin, kPlaces, kNumbers, kNames, kNames)},
       {"newcols", call(KLVnewcols, 2, kNumbers, nullptr, nullptr, "BI", kNames)},
       {"addcols",
        call(KLVaddcols, 2, 4, kNumbers, kBegin, kPlaces, kNumbers, nullptr, nullptr, kNames)},
       {"chgcoef", call(KLVchgcoef, 0, 1, 5.0)},
       {"chgcoeflist", call(KLVchgcoeflist, 2, kRows, kColumns, kNumbers)},
       {"chgbds", call(KLVchgbds, 2, kColumns, "LU", kNumbers)},
       {"chgsense", call(KLVchgsense, 2, kRows, "RR")},
       {"chgrowname", call(KLVchgrowname, 2, kRows, kNames)},
       {"chgprobname", call(KLVchgprobname, kNames[0])},
       {"delcols", call(KLVdelcols, 1, 2)},
       {"delrows", call(KLVdelrows, 1, 2)},
       {"chgqpcoef", call(KLVchgqpcoef, 0, 1, 5.0)}});
}

TEST(ProblemFaults, EditsOfTheOtherKindsOfData) {
  static const int kFirst[] = {0, 1, 2, 2}, kCount[] = {1, 1, 0, 2}, kIndex[] = {1, 0, 3, 2};
  expect_all_or_nothing(
      fill_everything,
      {{"copyctype", call(KLVcopyctype, "CCIN")},
       {"chgctype", call(KLVchgctype, 4, kPlaces, "CCIN")},
       {"chgprobtype", call(KLVchgprobtype, 0)},
       {"addsos", call(KLVaddsos, 2, 4, "12", kBegin, kPlaces, kNumbers, kNames)},
       {"copysos", call(KLVcopysos, 2, 4, "12", kBegin, kPlaces, kNumbers, kNames)},
       {"delsetsos",
        [](KLVenv env, KLVprob lp) {
          int marks[] = {1};
          return KLVdelsetsos(env, lp, marks);
        }},
       {"addindconstr", call(KLVaddindconstr, 2, 1, 4, 3.0, 'G', kPlaces, kNumbers, kNames[0])},
       {"delindconstrs", call(KLVdelindconstrs, 0, 0)},
       {"copyorder", call(KLVcopyorder, 4, kPlaces, nullptr, nullptr)},
       {"addusercuts",
        call(KLVaddusercuts, 2, 4, kNumbers, "LG", kBegin, kPlaces, kNumbers, kNames)},
       {"addlazyconstraints",
        call(KLVaddlazyconstraints, 2, 4, kNumbers, "LG", kBegin, kPlaces, kNumbers, kNames)},
       {"delcols", call(KLVdelcols, 1, 2)},
       {"copyquad", call(KLVcopyquad, kFirst, kCount, kIndex, kNumbers)},
       {"copyqpsep", call(KLVcopyqpsep, kNumbers)},
       {"chgqpcoef", call(KLVchgqpcoef, 0, 3, 5.0)},
       {"addqconstr", call(KLVaddqconstr, 4, 4, 2.0, 'G', kPlaces, kNumbers, kPlaces, kPlaces,
                           kNumbers, kNames[0])},
       {"delqconstrs", call(KLVdelqconstrs, 0, 0)},
       {"getsosinfeas",
        [](KLVenv env, KLVprob lp) {
          double out;
          return KLVgetsosinfeas(env, lp, kNumbers, &out, 0, 0);
        }},
       {"qpindefcertificate",
        [](KLVenv env, KLVprob lp) {
          double x[4];
          return KLVqpindefcertificate(env, lp, x);
        },
        call(KLVchgobjsen, -1)}});
}

TEST(ProblemFaults, BasesAndNorms) {
  static const int kOther[] = {1, 0, 0}, kHead[] = {-1};
  expect_all_or_nothing(
      [](KLVenv env, KLVprob lp) {
        const int status[] = {0, 2, 1};
        int failures = KLVnewcols(env, lp, 2, kNumbers, nullptr, kNumbers, nullptr, nullptr);
        failures += KLVnewrows(env, lp, 1, kNumbers, "L", nullptr, nullptr);
        return failures + KLVcopybase(env, lp, status, status + 2);
      },
      {{"copybase", call(KLVcopybase, kOther, kOther + 2)},
       {"copypnorms", call(KLVcopypnorms, kNumbers, kNumbers, 2)},
       {"copydnorms", call(KLVcopydnorms, kNumbers, kHead, 1)}});
}

TEST(ProblemFaults, CopiesAndQueriesKeepNothing) {
  const auto made = [](KLVprob problem, int status) {
    EXPECT_EQ(problem == nullptr, status != 0);
    return status;
  };
  expect_all_or_nothing(fill_linear,
                        {{"createprob",
                          [&](KLVenv env, KLVprob) {
                            int status = -1;
                            const KLVprob problem = KLVcreateprob(env, &status, kNames[0]);
                            return made(problem, status);
                          }},
                         {"cloneprob",
                          [&](KLVenv env, KLVprob lp) {
                            int status = -1;
                            const KLVprob problem = KLVcloneprob(env, lp, &status);
                            return made(problem, status);
                          }},
                         {"getrowindex",
                          [](KLVenv env, KLVprob lp) {
                            int index = -1;
                            return KLVgetrowindex(env, lp, "n4", &index);
                          }},
                         {"getrows",
                          [](KLVenv env, KLVprob lp) {
                            int count = 0, surplus = 0, begin[3], index[20];
                            double value[20];
                            return KLVgetrows(env, lp, &count, begin, index, value, 20, &surplus, 1,
                                              3);
                          }}},
                        {});
}

/// Rows and coefficients that wait are merged by the next query; when that fails the query says so
/// and they go on waiting.
TEST(ProblemFaults, MergingWhatWaits) {
  double number = 0;
  const auto fill = [](KLVenv env, KLVprob lp) {
    const int rows[] = {0, 6, 7}, columns[] = {1, 2, 1};
    int failures = fill_linear(env, lp);
    failures +=
        KLVaddrows(env, lp, 0, 2, 4, kNumbers, "RG", kBegin, kPlaces, kNumbers, nullptr, kNames);
    return failures + KLVchgcoeflist(env, lp, 3, rows, columns, kNumbers);
  };
  expect_all_or_nothing(fill, {{"getcoef", call(KLVgetcoef, 0, 1, &number)}});
}

/// Thousands of rows, where the failure comes when most of the work is done.
TEST(ProblemFaults, LateFailuresInLargeProblems) {
  constexpr int kRows = 3000, kColumns = 40;
  std::vector<int> begin, index;
  std::vector<double> value;
  double number = 0;
  for (int i = 0; i < kRows; ++i) {
    begin.push_back(static_cast<int>(index.size()));
    index.push_back(i % kColumns);
    value.push_back(1.0 + i);
  }
  const auto add = [&](KLVenv env, KLVprob lp, int rows) {
    return KLVaddrows(env, lp, 0, rows, rows, nullptr, nullptr, begin.data(), index.data(),
                      value.data(), nullptr, nullptr);
  };
  const auto fill = [&](KLVenv env, KLVprob lp) {
    int failures = KLVnewcols(env, lp, kColumns, nullptr, nullptr, nullptr, nullptr, nullptr);
    failures += add(env, lp, kRows);
    return failures + KLVgetcoef(env, lp, 0, 0, &number);  // merges them
  };
  expect_all_or_nothing(
      fill, {{"merging a few rows more", call(KLVgetcoef, kRows, 0, &number),
              [&](KLVenv env, KLVprob lp) { return add(env, lp, 200); }},
             {"merging a list of coefficients", call(KLVgetcoef, 0, 0, &number),
              [&](KLVenv env, KLVprob lp) {
                std::vector<int> rows(kRows);
                for (int i = 0; i < kRows; ++i) rows[i] = kRows - 1 - i;
                return KLVchgcoeflist(env, lp, kRows, rows.data(), index.data(), value.data());
              }},
             {"as many again", [&](KLVenv env, KLVprob lp) { return add(env, lp, kRows); }}});
}

}  // namespace
