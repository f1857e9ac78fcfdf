#include "prob/solution.h"

#include <gtest/gtest.h>

#include <cstring>

#include "prob/model/model.h"
#include "prob/status_table.h"

namespace kelvo {
namespace {

Model three_rows() {
  Model model;
  model.num_rows = 3;
  model.num_cols = 2;
  model.objective = {1, 2};
  model.lower = {0, -1};
  model.upper = {4, 1e20};
  model.rhs = {3, 3, 3};
  model.row_sense = {'G', 'E', 'R'};
  model.range = {0, 0, -2};
  SparseMatrix columns;
  columns.num_major = 2;
  columns.num_minor = 3;
  columns.start = {0, 3, 6};
  columns.index = {0, 1, 2, 0, 1, 2};
  columns.value = {1, 1, 1, 1, 2, 3};
  model.matrix.assign(std::move(columns));
  return model;
}

TEST(Solution, ActivitiesSlacksAndInfeasibilities) {
  const Model model = three_rows();
  const double x[] = {5, -1.5};
  Vector<double> activity;
  compute_row_activities(model, x, activity);
  EXPECT_EQ(activity, (Vector<double>{3.5, 2, 0.5}));
  EXPECT_EQ(objective_value(model, x), 2.0);
  EXPECT_EQ(row_slack(model, 0, activity[0]), -0.5);
  EXPECT_EQ(row_slack(model, 1, activity[1]), 1.0);
  EXPECT_EQ(row_slack(model, 2, activity[2]), -2.5);  // below its bounds [-2, 0]
  EXPECT_EQ(row_infeasibility(model, 0, activity[0]), 0.0);
  EXPECT_EQ(row_infeasibility(model, 1, activity[1]), -1.0);
  EXPECT_EQ(row_infeasibility(model, 2, activity[2]), -0.5);
  EXPECT_EQ(column_infeasibility(model, 0, x[0]), 1.0);
  EXPECT_EQ(column_infeasibility(model, 1, x[1]), -0.5);
}

TEST(Solution, SemiContinuousColumnsMayBeZero) {
  Model model = three_rows();
  model.lower[0] = 2;
  EXPECT_EQ(column_infeasibility(model, 0, 0.0), -2.0);
  model.column_type = {'S', 'C'};
  EXPECT_EQ(column_infeasibility(model, 0, 0.0), 0.0);
  EXPECT_EQ(column_infeasibility(model, 0, 1.0), -1.0);
}

TEST(StatusTable, TextsByCode) {
  EXPECT_STREQ(find_status_text(1)->text, "optimal");
  EXPECT_STREQ(find_status_text(107)->text, "time limit exceeded");
  EXPECT_STREQ(find_status_text(107)->short_text, "time lim exc, feas");
  EXPECT_STREQ(find_status_text(132)->short_text, "iter limit, no sol");
  EXPECT_EQ(find_status_text(999), nullptr);
  EXPECT_EQ(find_status_text(-1), nullptr);
  std::size_t longest = 0;
  for (int code = 0; code < 200; ++code) {
    const StatusText* row = find_status_text(code);
    if (row != nullptr) longest = std::max(longest, std::strlen(row->text));
  }
  EXPECT_EQ(longest, 51u);
}

}  // namespace
}  // namespace kelvo
