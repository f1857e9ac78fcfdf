#include <cmath>

#include "prob_fixture.h"

namespace {

using ProblemChange = ProblemTest;

TEST_F(ProblemChange, SingleCoefficientsByPlace) {
  load_small();
  EXPECT_EQ(KLVchgcoef(env, lp, 0, 1, 9.0), 0);
  EXPECT_EQ(KLVchgcoef(env, lp, 1, 0, 6.0), 0);
  EXPECT_EQ(KLVchgcoef(env, lp, 2, 2, 0.0), 0);
  EXPECT_EQ(KLVchgcoef(env, lp, -1, 2, 8.0), 0);
  EXPECT_EQ(KLVchgcoef(env, lp, 0, -1, 40.0), 0);
  EXPECT_EQ(KLVchgcoef(env, lp, 2, -2, -3.0), 0);
  EXPECT_EQ(KLVgetnumnz(env, lp), 6);
  const ModelImage after = image();
  EXPECT_EQ(after.entries,
            (std::map<std::pair<int, int>, double>{
                {{0, 0}, 1}, {{2, 0}, 1}, {{1, 0}, 6}, {{0, 1}, 9}, {{1, 1}, 1}, {{1, 2}, -1}}));
  EXPECT_EQ(after.obj[2], 8.0);
  EXPECT_EQ(after.rhs[0], 40.0);
  EXPECT_EQ(after.rngval, (std::vector<double>{0, 0, -3}));

  EXPECT_EQ(KLVchgcoef(env, lp, -1, -1, 1.0), 1211);
  EXPECT_EQ(KLVchgcoef(env, lp, -1, -3, 1.0), 1211);
  EXPECT_EQ(KLVchgcoef(env, lp, 0, -2, 1.0), 1216);
  for (const auto& [i, j] : {std::pair(-2, 0), {3, 0}, {0, -3}, {0, 3}, {-1, 3}}) {
    EXPECT_EQ(KLVchgcoef(env, lp, i, j, 1.0), 1200) << i << " " << j;
  }
  EXPECT_EQ(image(), after);
}

TEST_F(ProblemChange, CoefficientListsLetTheLastOneWin) {
  load_small();
  const int rows[] = {0, 0, 1, 0, 2}, cols[] = {2, 2, 0, 2, 0};
  const double values[] = {1, 2, 3, 4, 0};
  EXPECT_EQ(KLVchgcoeflist(env, lp, 5, rows, cols, values), 0);
  double value = 0;
  EXPECT_EQ(KLVgetcoef(env, lp, 0, 2, &value), 0);
  EXPECT_EQ(value, 4.0);
  EXPECT_EQ(KLVgetnumnz(env, lp), 7);
  const int bad[] = {0, 0, 1, 0, 3};
  EXPECT_EQ(KLVchgcoeflist(env, lp, 5, bad, cols, values), 1203);
  EXPECT_EQ(KLVchgcoeflist(env, lp, 5, rows, bad, values), 1201);
  EXPECT_EQ(KLVchgcoeflist(env, lp, 5, rows, nullptr, values), 1004);
  EXPECT_EQ(KLVgetnumnz(env, lp), 7);
}

/// Coefficients wait for the next query: many rows, the same places more than once, in any order.
TEST_F(ProblemChange, CoefficientsThatWaitForManyRows) {
  constexpr int kRows = 300;
  ASSERT_EQ(KLVnewcols(env, lp, 3, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(KLVnewrows(env, lp, kRows, nullptr, nullptr, nullptr, nullptr), 0);
  std::map<std::pair<int, int>, double> expected;
  for (int k = 0; k < 4 * kRows; ++k) {
    const int row = k * 7 % kRows, column = k * 5 % 3;
    EXPECT_EQ(KLVchgcoef(env, lp, row, column, k % 11), 0);
    expected[{row, column}] = k % 11;
  }
  std::erase_if(expected, [](const auto& entry) { return entry.second == 0.0; });
  EXPECT_EQ(image().entries, expected);
}

TEST_F(ProblemChange, BoundsFollowTheirThresholds) {
  load_small();
  const auto change = [&](char code, double value) {
    const int column = 0;
    EXPECT_EQ(KLVchgbds(env, lp, 1, &column, &code, &value), 0);
    const ModelImage now = image();
    return std::pair(now.lb[0], now.ub[0]);
  };
  EXPECT_EQ(change('L', 1e18), std::pair(0.0, 10.0));
  EXPECT_EQ(take(warnings), "Warning:  Infinity lower bound ignored.\n");
  EXPECT_EQ(change('U', -1e17), std::pair(0.0, 10.0));
  EXPECT_EQ(take(warnings), "Warning:  -Infinity upper bound ignored.\n");
  EXPECT_EQ(change('U', 1e18), std::pair(0.0, 1e20));
  EXPECT_EQ(change('L', -1e17), std::pair(-1e20, 1e20));
  EXPECT_EQ(change('B', 9e16), std::pair(9e16, 9e16));
  EXPECT_EQ(change('B', 5e-11), std::pair(0.0, 0.0));
  EXPECT_EQ(change('B', -1e-10), std::pair(-1e-10, -1e-10));
  EXPECT_EQ(change('x', 3.0), std::pair(-1e-10, -1e-10));
  EXPECT_EQ(change('B', 1e17), std::pair(-1e-10, 1e20));
  EXPECT_EQ(take(warnings), "Warning:  Infinity lower bound ignored.\n");

  check_data();
  const int columns[] = {0, 1, 3};
  const double values[] = {1, 2, 3};
  const ModelImage before = image();
  EXPECT_EQ(KLVchgbds(env, lp, 3, columns, "LLL", values), 1201);
  EXPECT_EQ(KLVchgbds(env, lp, 2, columns, "Lx", values), 1229);
  EXPECT_EQ(take(errors),
            "KELVO Error  1201: Column index 3 out of range.\n"
            "KELVO Error  1229: Illegal bound change indicator entry 1.\n");
  EXPECT_EQ(KLVtightenbds(env, lp, -1, columns, "L", values), 1003);
  EXPECT_EQ(KLVtightenbds(env, lp, 1, columns, nullptr, values), 1004);
  EXPECT_EQ(image(), before);
  EXPECT_EQ(KLVtightenbds(env, lp, 2, columns, "UL", values), 0);
  EXPECT_EQ(image().ub[0], 1.0);
  EXPECT_EQ(image().lb[1], 2.0);
}

TEST_F(ProblemChange, SensesAndRanges) {
  const double rhs[] = {1, 2, 3};
  ASSERT_EQ(KLVnewrows(env, lp, 3, rhs, "LGE", nullptr, nullptr), 0);
  const int rows[] = {0, 2};
  const double ranges[] = {4, -5};
  double out[3];
  EXPECT_EQ(KLVgetrngval(env, lp, out, 0, 2), 1216);
  EXPECT_EQ(KLVchgrngval(env, lp, 2, rows, ranges), 1216) << "no ranged row";
  EXPECT_EQ(KLVchgsense(env, lp, 2, rows, "RR"), 0);
  EXPECT_EQ(image().rngval, (std::vector<double>{0, 0, 0}));
  EXPECT_EQ(KLVchgrngval(env, lp, 2, rows, ranges), 0);
  EXPECT_EQ(image().rngval, (std::vector<double>{4, 0, -5}));
  EXPECT_EQ(KLVchgsense(env, lp, 1, rows, "L"), 0);
  EXPECT_EQ(image().rngval, (std::vector<double>{0, 0, -5}));
  EXPECT_EQ(image().senses, "LGR");
  // New rows join the ranges.
  EXPECT_EQ(KLVnewrows(env, lp, 2, rhs, "RL", ranges, nullptr), 0);
  EXPECT_EQ(image().rngval, (std::vector<double>{0, 0, -5, 4, 0}));
}

TEST_F(ProblemChange, ObjectiveAndItsSense) {
  load_small();
  const int columns[] = {2, 0, 2};
  const double values[] = {7, 8, 9};
  EXPECT_EQ(KLVchgobj(env, lp, 3, columns, values), 0);
  EXPECT_EQ(image().obj, (std::vector<double>{8, 2, 9}));
  EXPECT_EQ(KLVchgobjsen(env, lp, -5), 0);
  EXPECT_EQ(KLVgetobjsen(env, lp), -1);
  EXPECT_EQ(KLVchgobjsen(env, lp, 0), 0);
  EXPECT_EQ(KLVgetobjsen(env, lp), 1);
  check_data();
  EXPECT_EQ(KLVchgobjsen(env, lp, 0), 1003);
}

TEST_F(ProblemChange, DeletingRenumbers) {
  load_small();
  int marks[] = {0, 1, 0};
  EXPECT_EQ(KLVdelsetcols(env, lp, marks), 0);
  EXPECT_EQ(std::vector<int>(marks, marks + 3), (std::vector<int>{0, -1, 1}));
  EXPECT_EQ(KLVdelrows(env, lp, 0, 0), 0);
  const ModelImage expected{1,
                            {1, 3},
                            {0, -1},
                            {10, 7},
                            {1, 2},
                            {0, 6},
                            "ER",
                            {{{1, 0}, 1}, {{0, 1}, -1}, {{1, 1}, 5}},
                            {"second", "third"},
                            {"a", "c"}};
  EXPECT_EQ(image(), expected);
  take(errors);
  EXPECT_EQ(KLVdelrows(env, lp, -1, 2), 1200);
  EXPECT_EQ(take(errors),
            "KELVO Error  1205: KLVdelrows: 'begin' value -1 is less than 0.\n"
            "KELVO Error  1206: KLVdelrows: 'end' value 2 is greater than 1.\n"
            "KELVO Error  1200: Index is outside range of valid values.\n");
  EXPECT_EQ(KLVdelcols(env, lp, 2, 1), 0) << "an empty range";
  EXPECT_EQ(KLVdelsetrows(env, lp, nullptr), 1004);
  EXPECT_EQ(image(), expected);
  int keep[] = {0, 2};
  EXPECT_EQ(KLVdelsetrows(env, lp, keep), 0);
  EXPECT_EQ(keep[1], 1);
  EXPECT_EQ(image(), expected);
}

TEST_F(ProblemChange, CleanupRemovesWhatIsSmall) {
  load_small();
  KLVchgcoef(env, lp, 0, 0, 1e-9);
  KLVchgcoef(env, lp, -1, 1, -1e-9);
  KLVchgcoef(env, lp, 1, -1, 1e-9);
  EXPECT_EQ(KLVcleanup(env, lp, 1e-8), 0);
  const ModelImage after = image();
  EXPECT_EQ(after.entries.count({0, 0}), 0u);
  EXPECT_EQ(after.entries.size(), 5u);
  EXPECT_EQ(after.obj, (std::vector<double>{1, 0, 3}));
  EXPECT_EQ(after.rhs, (std::vector<double>{4, 0, 2}));
}

}  // namespace
