#include "lp/solve/conversion.h"

#include <gtest/gtest.h>

#include "lp/small_model.h"

namespace kelvo {
namespace {

using test::small_model;

Model mixed_rows() {
  Model model = small_model(-1, {3, -2, 0},
                            {{'L', 4, {1, 2, 0}},
                             {'G', -5, {0, 1, 1}},
                             {'E', 7, {1, 0, 1}},
                             {'R', 1, {1, 1, 1}, 2},
                             {'R', 1, {1, -1, 1}, -2},
                             {'L', 1e20, {1, 0, 0}}});
  model.lower[1] = -1e20;
  model.upper[2] = 9;
  return model;
}

TEST(Conversion, BoundsCostsAndInfinities) {
  const LpProblem lp = with_rows(make_lp(mixed_rows()));
  EXPECT_EQ(lp.cost, (Vector<double>{-3, 2, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(lp.lower, (Vector<double>{0, -kInf, 0, -4, -kInf, -7, -3, -1, -kInf}));
  EXPECT_EQ(lp.upper, (Vector<double>{kInf, kInf, 9, kInf, 5, -7, -1, 1, kInf}));
  EXPECT_EQ(lp.columns.num_nonzeros(), 13);
  EXPECT_EQ(lp.rows.start, (Vector<int>{0, 2, 4, 6, 9, 12, 13}));
}

TEST(Conversion, ZerosAndRepeatedEntries) {
  Model model = small_model(1, {1}, {{'L', 1, {2}}, {'L', 1, {3}}});
  // Column 0 holds row 1 twice and an explicit zero in row 0 beside its entry there.
  SparseMatrix columns;
  columns.num_major = 1;
  columns.num_minor = 2;
  columns.start = {0, 4};
  columns.index = {1, 0, 1, 0};
  columns.value = {3, 2, 4, 0};
  model.matrix.assign(std::move(columns));
  const LpProblem lp = make_lp(model);
  EXPECT_EQ(lp.columns.index, (Vector<int>{1, 0}));
  EXPECT_EQ(lp.columns.value, (Vector<double>{7, 2}));
}

TEST(Conversion, CopiesWhatHasChanged) {
  Model model = mixed_rows();
  SilentSink sink;
  WorkingLp working(make_lp(model), ScalingMethod::none, sink);
  const LpProblem& lp = working.lp();
  model.rhs[3] = 2;
  model.sense = 1;
  model.lower[0] = -7;
  model.upper[2] = 5;
  const int second = 2;
  ModelChanges changes{.structure = false,
                       .costs = false,
                       .column_bounds = true,
                       .row_limits = false,
                       .columns = &second,
                       .num_columns = 1};
  EXPECT_TRUE(copy_changes(model, changes, 1e-6, working));
  EXPECT_EQ(lp.upper[2], 5);
  EXPECT_EQ(lp.lower[0], 0);
  EXPECT_EQ(lp.lower[6], -3);
  EXPECT_EQ(lp.cost[0], -3);
  EXPECT_TRUE(copy_changes(model, {.structure = false}, 1e-6, working));
  EXPECT_EQ(lp.lower[0], -7);
  EXPECT_EQ(lp.lower[6], -4);
  EXPECT_EQ(lp.cost[0], 3);
  model.upper[2] = -1e-9;  // within the tolerance: closed
  EXPECT_TRUE(copy_changes(model, {.structure = false}, 1e-6, working));
  EXPECT_EQ(lp.lower[2], lp.upper[2]);
  model.upper[2] = -1;
  EXPECT_FALSE(copy_changes(model, {.structure = false}, 1e-6, working));
}

TEST(Conversion, StatusesOfSlacksAndLogicals) {
  const Model model = mixed_rows();
  StoredBasis basis;
  basis.present = true;
  basis.col_status = {kBasic, kFreeSuper, kAtUpper};
  Vector<int> status;
  // Nonbasic slacks of rows with one limit sit there under either code.
  for (const int code : {kAtLower, kAtUpper}) {
    basis.row_status = {code, code, code, kAtLower, kAtLower, kBasic};
    stored_to_lp_status(basis, model, status);
    EXPECT_EQ(status, (Vector<int>{kBasic, kFreeSuper, kAtUpper, kAtLower, kAtUpper, kAtLower,
                                   kAtUpper, kAtUpper, kBasic}));
  }
  // The activity of a ranged row at its upper end: the logical -ax is at its lower bound.
  basis.row_status = {kAtLower, kAtLower, kAtLower, kAtUpper, kAtLower, kBasic};
  stored_to_lp_status(basis, model, status);
  EXPECT_EQ(status[6], kAtLower);
  StoredBasis back;
  lp_to_stored_status(status, model, back);
  EXPECT_EQ(back.col_status, basis.col_status);
  EXPECT_EQ(back.row_status, basis.row_status);
}

}  // namespace
}  // namespace kelvo
