#include <cmath>
#include <limits>

#include "prob_fixture.h"

namespace {

using ProblemBuild = ProblemTest;

// Sums of counts beyond 32 bits are refused before anything is read or reserved.
TEST_F(ProblemBuild, CountsBeyondTheRangeOfIntegers) {
  constexpr int kMost = std::numeric_limits<int>::max();
  ASSERT_EQ(KLVnewrows(env, lp, 1, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(KLVnewcols(env, lp, 2, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(KLVnewrows(env, lp, kMost, nullptr, nullptr, nullptr, nullptr), 1012);
  EXPECT_EQ(KLVnewcols(env, lp, kMost - 1, nullptr, nullptr, nullptr, nullptr, nullptr), 1012);
  EXPECT_EQ(KLVaddcols(env, lp, kMost - 1, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr),
            1012);
  EXPECT_EQ(KLVaddrows(env, lp, kMost - 1, 1, 0, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr, nullptr),
            1012);
  EXPECT_EQ(KLVaddrows(env, lp, 0, kMost, 0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       nullptr),
            1012);
  // Columns that share their entries can have more of them than an array.
  const int begin[] = {0, 0}, count[] = {kMost, 1}, index[] = {0};
  const double zero[] = {0, 0}, value[] = {1};
  EXPECT_EQ(
      KLVcopylp(env, lp, 2, 1, 1, zero, zero, "L", begin, count, index, value, zero, zero, nullptr),
      1012);
  EXPECT_EQ(KLVgetnumrows(env, lp), 1);
  EXPECT_EQ(KLVgetnumcols(env, lp), 2);
}

TEST_F(ProblemBuild, ANewProblemIsAnEmptyMinimization) {
  EXPECT_EQ(KLVgetnumrows(env, lp), 0);
  EXPECT_EQ(KLVgetnumcols(env, lp), 0);
  EXPECT_EQ(KLVgetnumnz(env, lp), 0);
  EXPECT_EQ(KLVgetobjsen(env, lp), 1);
  EXPECT_EQ(KLVgetprobtype(env, lp), 0);
  int status = 0;
  EXPECT_EQ(KLVcreateprob(env, &status, nullptr), nullptr);
  EXPECT_EQ(status, 1004);
}

TEST_F(ProblemBuild, FreeingAndMembership) {
  KLVprob none = nullptr;
  EXPECT_EQ(KLVfreeprob(env, &none), 0);
  EXPECT_EQ(KLVfreeprob(env, nullptr), 1004);
  EXPECT_EQ(KLVgetnumrows(env, nullptr), 0);
  EXPECT_EQ(take(errors),
            "KELVO Error  1004: Null pointer for required data.\n"
            "KELVO Error  1009: No problem exists.\n");

  int status = 0;
  KLVenv other = KLVopenKELVO(&status);
  EXPECT_EQ(KLVchgobjsen(other, lp, -1), 1806);
  KLVprob left = KLVcreateprob(other, &status, "freed with its environment");
  EXPECT_NE(left, nullptr);
  EXPECT_EQ(KLVcloseKELVO(&other), 0);
  EXPECT_EQ(KLVgetnumrows(nullptr, lp), 0);

  // A problem made in a child belongs to the family and may be freed through any of it.
  KLVenv child = KLVparenv(env, &status);
  KLVprob childs = KLVcreateprob(child, &status, "child's");
  EXPECT_EQ(KLVchgobjsen(env, childs, -1), 0);
  EXPECT_EQ(KLVgetobjsen(child, childs), -1);
  EXPECT_EQ(KLVfreeprob(env, &childs), 0);
  EXPECT_EQ(childs, nullptr);
  EXPECT_EQ(KLVfreeparenv(env, &child), 0);
}

TEST_F(ProblemBuild, CopylpTakesColumnsInAnyOrderAndKeepsTheProblemName) {
  const double obj[] = {1, 2}, rhs[] = {5, 6}, rng[] = {9, -2}, lb[] = {0, 1}, ub[] = {4, 1e20};
  const int beg[] = {3, 0}, cnt[] = {2, 2}, ind[] = {1, 0, -7, 0, 1};
  const double val[] = {11, 12, 13, 14, 15};
  check_data();
  ASSERT_EQ(KLVcopylp(env, lp, 2, 2, -1, obj, rhs, "LR", beg, cnt, ind, val, lb, ub, rng), 0);
  const ModelImage expected{
      -1,     {1, 2},  {0, 1}, {4, 1e20},
      {5, 6}, {0, -2}, "LR",   {{{0, 0}, 14}, {{1, 0}, 15}, {{1, 1}, 11}, {{0, 1}, 12}},
      {},     {}};
  EXPECT_EQ(image(), expected);
  char name[8];
  int surplus = 0;
  EXPECT_EQ(KLVgetprobname(env, lp, name, 8, &surplus), 0);
  EXPECT_STREQ(name, "test");
  // A second load replaces everything.
  EXPECT_EQ(KLVcopylp(env, lp, 0, 0, 1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                      nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(KLVgetnumnz(env, lp), 0);
  EXPECT_EQ(KLVgetobjsen(env, lp), 1);
}

TEST_F(ProblemBuild, CopylpRefusesBadArraysAndKeepsTheModel) {
  load_small();
  check_data();
  const ModelImage before = image();
  const double two[] = {1, 1}, val[] = {1, 1, 1, 1};
  const int beg[] = {0, 2}, cnt[] = {2, 2}, ind[] = {0, 1, 0, 1};
  const auto copy = [&](const int* b, const int* c, const int* i, const char* sense,
                        const double* obj, int objsense = 1) {
    const int code =
        KLVcopylp(env, lp, 2, 2, objsense, obj, two, sense, b, c, i, val, two, two, nullptr);
    EXPECT_EQ(image(), before);
    return code;
  };
  const int overlap[] = {0, 1}, backwards[] = {2, 1}, negative[] = {-1, 0};
  const int large[] = {3, 0}, below[] = {-1, 2}, bad_row[] = {0, 1, 0, 2};
  const double nan[] = {1, std::nan("")};
  const double inf[] = {std::numeric_limits<double>::infinity(), 1};
  EXPECT_EQ(copy(overlap, cnt, ind, "LL", two), 1228);
  EXPECT_EQ(copy(backwards, cnt, ind, "LL", two), 1226);
  EXPECT_EQ(copy(negative, cnt, ind, "LL", two), 1226);
  EXPECT_EQ(copy(beg, large, ind, "LL", two), 1227);
  EXPECT_EQ(copy(beg, below, ind, "LL", two), 1227);
  take(errors);
  EXPECT_EQ(copy(beg, cnt, bad_row, "LL", two), 1203);
  EXPECT_EQ(take(errors), "KELVO Error  1203: Row index 2 out of range.\n");
  EXPECT_EQ(copy(beg, cnt, ind, "LX", two), 1215);
  EXPECT_EQ(take(errors), "KELVO Error  1215: Illegal sense entry 1.\n");
  EXPECT_EQ(copy(beg, cnt, ind, "LR", two), 1003);
  EXPECT_EQ(copy(beg, cnt, ind, "LL", two, 0), 1003);
  EXPECT_EQ(copy(beg, cnt, ind, "LL", nullptr), 1004);
  take(errors);
  EXPECT_EQ(copy(beg, cnt, ind, "LL", nan), 1225);
  EXPECT_EQ(take(errors),
            "KELVO Error  1225: Numeric entry 1 is not a double precison number (NAN).\n");
  EXPECT_EQ(copy(beg, cnt, ind, "LL", inf), 1233);
  EXPECT_EQ(take(errors),
            "KELVO Error  1233: Numeric entry 0 is larger than allowed maximum of 1.79769e+308.\n");
}

TEST_F(ProblemBuild, AppendedRowsAndColumnsTakeDefaults) {
  ASSERT_EQ(KLVnewcols(env, lp, 2, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(KLVnewrows(env, lp, 2, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(KLVgetnumrows(env, lp), 2) << "counted before any query merges them";
  EXPECT_EQ(image(), (ModelImage{1, {0, 0}, {0, 0}, {1e20, 1e20}, {0, 0}, {}, "EE", {}, {}, {}}));
  const double rhs[] = {3};
  const int beg[] = {0}, ind[] = {3, 0};
  const double val[] = {7, 8};
  const char* row[] = {"named"};
  ASSERT_EQ(KLVaddrows(env, lp, 2, 1, 2, rhs, "G", beg, ind, val, nullptr, row), 0);
  EXPECT_EQ(KLVgetnumnz(env, lp), 2);
  const int rows[] = {2, 1};
  ASSERT_EQ(KLVaddcols(env, lp, 1, 2, rhs, beg, rows, val, nullptr, nullptr, nullptr), 0);
  const ModelImage after = image();
  EXPECT_EQ(after.senses, "EEG");
  EXPECT_EQ(after.obj, (std::vector<double>{0, 0, 0, 0, 3}));
  EXPECT_EQ(after.entries, (std::map<std::pair<int, int>, double>{
                               {{2, 3}, 7}, {{2, 0}, 8}, {{2, 4}, 7}, {{1, 4}, 8}}));
  EXPECT_EQ(after.row_names, (std::vector<std::string>{"c1", "c2", "named"}));
  EXPECT_TRUE(after.col_names.empty());
  EXPECT_EQ(KLVgetprobtype(env, lp), 0);
  ASSERT_EQ(KLVnewcols(env, lp, 1, nullptr, nullptr, nullptr, "B", nullptr), 0);
  EXPECT_EQ(KLVgetprobtype(env, lp), 1);
}

TEST_F(ProblemBuild, AppendsAreCheckedBeforeAnythingHappens) {
  load_small();
  const ModelImage before = image();
  const int backwards[] = {1, 0}, beg[] = {0, 1}, bad[] = {0, 3}, good[] = {0, 1};
  const double val[] = {1, std::nan("")};
  const char* names[] = {"p", nullptr};
  take(errors);
  EXPECT_EQ(KLVnewrows(env, lp, -1, nullptr, nullptr, nullptr, nullptr), 1003);
  EXPECT_EQ(KLVnewrows(env, lp, 0, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(KLVaddrows(env, lp, 0, 2, 2, nullptr, nullptr, nullptr, good, val, nullptr, nullptr),
            1004);
  EXPECT_EQ(KLVaddrows(env, lp, 0, 2, 2, nullptr, nullptr, backwards, good, val, nullptr, nullptr),
            1226);
  EXPECT_EQ(KLVaddrows(env, lp, 0, 2, 2, nullptr, nullptr, beg, bad, val, nullptr, nullptr), 1201);
  EXPECT_EQ(KLVaddcols(env, lp, 2, 2, nullptr, beg, bad, val, nullptr, nullptr, nullptr), 1203);
  check_data();
  EXPECT_EQ(KLVaddcols(env, lp, 2, 2, nullptr, beg, good, val, nullptr, nullptr, nullptr), 1225);
  EXPECT_EQ(KLVnewcols(env, lp, 2, nullptr, nullptr, nullptr, nullptr, names), 1224);
  EXPECT_EQ(KLVnewcols(env, lp, 2, nullptr, nullptr, nullptr, "BX", nullptr), 3021);
  EXPECT_EQ(KLVnewrows(env, lp, 4, nullptr, "LGEX", nullptr, nullptr), 1215);
  EXPECT_EQ(image(), before);
  KLVsetintparam(env, KLV_PARAM_DATACHECK, 0);
  EXPECT_EQ(KLVnewrows(env, lp, 4, nullptr, "LGEX", nullptr, nullptr), 0);
  EXPECT_EQ(image().senses, "LERLGEX");
}

TEST_F(ProblemBuild, ACloneIsAnIndependentCopy) {
  load_small();
  ASSERT_EQ(KLVnewrows(env, lp, 1, nullptr, "G", nullptr, nullptr), 0);  // waits
  int status = -1;
  KLVprob copy = KLVcloneprob(env, lp, &status);
  ASSERT_EQ(status, 0);
  const ModelImage before = image();
  EXPECT_EQ(read_model(env, copy), before);
  EXPECT_EQ(KLVdelcols(env, copy, 0, 1), 0);
  EXPECT_EQ(image(), before);
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);
}

}  // namespace
