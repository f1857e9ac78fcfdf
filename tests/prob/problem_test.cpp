// What the C interface alone cannot show: data of the other kinds, the stored basis, what edits
// make stale, and views.
#include "prob/problem.h"

#include <gtest/gtest.h>
#include <kelvo.h>

#include <string>

#include "api/frame/problem_frame.h"

namespace kelvo {
namespace {

class ProblemObject : public ::testing::Test {
 protected:
  ProblemObject() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "object");
    problem = to_problem(lp);
    const auto collect = [](void* text, const char* message) {
      *static_cast<std::string*>(text) += message;
    };
    KLVchannel warning_channel = nullptr;
    KLVgetchannels(env, nullptr, &warning_channel, nullptr, nullptr);
    KLVaddfuncdest(env, warning_channel, &warnings, collect);
  }
  ~ProblemObject() override { KLVcloseKELVO(&env); }

  /// Four columns and two rows: x0 + x1 <= 1, x2 - x3 >= 0; x1 unbounded below, x2 free.
  void load() {
    const double lower[] = {0, -1e20, -1e20, 0}, upper[] = {1, 1, 1e20, 1};
    const int begin[] = {0, 2}, columns[] = {0, 1, 2, 3};
    const double values[] = {1, 1, 1, -1}, rhs[] = {1, 0};
    ASSERT_EQ(KLVnewcols(env, lp, 4, nullptr, lower, upper, nullptr, nullptr), 0);
    ASSERT_EQ(KLVaddrows(env, lp, 0, 2, 4, rhs, "LG", begin, columns, values, nullptr, nullptr), 0);
    problem->merge_pending();
  }

  class Sentinel final : public Attachment {};
  /// Makes it look as if an optimizer had run.
  void pretend_solved() {
    problem->solution_status = kOptimal;
    problem->solution.has_primal = true;
    problem->solution.x.assign(problem->num_cols(), 1.0);
    problem->basis.present = true;
    problem->basis.col_status.assign(problem->num_cols(), kAtLowerStatus);
    problem->basis.row_status.assign(problem->num_rows(), kBasicStatus);
    problem->working_lp = make_owned<Sentinel>();
  }

  static constexpr int kAtLowerStatus = 0;
  static constexpr int kBasicStatus = 1;
  static constexpr int kAtUpperStatus = 2;
  static constexpr int kFreeStatus = 3;

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
  Problem* problem = nullptr;
  std::string warnings;
};

TEST_F(ProblemObject, DeletingColumnsKeepsAllKindsOfDataInStep) {
  load();
  problem->edit_model(ChangeKind::model_replaced, [](Model& model) {
    // Q has the entries (0,0), (0,3), (3,0), (2,2).
    model.quadratic.num_major = model.quadratic.num_minor = 4;
    model.quadratic.start = {0, 2, 2, 3, 4};
    model.quadratic.index = {0, 3, 2, 0};
    model.quadratic.value = {1, 2, 3, 2};
    QuadraticConstraint constraint;
    constraint.linear_index = {1, 2};
    constraint.linear_value = {5, 6};
    constraint.quad_row = {0, 1, 3};
    constraint.quad_col = {3, 1, 3};
    constraint.quad_value = {7, 8, 9};
    model.quadratic_constraints.push_back(constraint);
    model.sos.type = {'1', '2'};
    model.sos.members.num_major = 2;
    model.sos.members.start = {0, 2, 4};
    model.sos.members.index = {0, 1, 1, 3};
    model.sos.members.value = {1, 2, 3, 4};
    IndicatorConstraints& indicators = model.indicators;
    indicators.column = {1, 3};
    indicators.complemented = {0, 1};
    indicators.relation = {1, 3};
    indicators.rows.rhs = {10, 20};
    indicators.rows.sense = {'L', 'G'};
    indicators.rows.rows.num_major = 2;
    indicators.rows.rows.start = {0, 1, 3};
    indicators.rows.rows.index = {0, 1, 2};
    indicators.rows.rows.value = {1, 2, 3};
    indicators.rows.names.append("first");
    indicators.rows.names.append("second");
    model.user_cuts.rhs = {1};
    model.user_cuts.sense = {'L'};
    model.user_cuts.rows.num_major = 1;
    model.user_cuts.rows.start = {0, 1};
    model.user_cuts.rows.index = {0};
    model.user_cuts.rows.value = {1};
    model.column_type = {'B', 'B', 'C', 'B'};
  });
  ASSERT_EQ(KLVdelcols(env, lp, 1, 1), 0);
  EXPECT_EQ(warnings, "Warning:  User cuts freed during column deletion.\n");

  const Model& model = problem->model();
  EXPECT_EQ(model.quadratic.num_major, 3);
  EXPECT_EQ(model.quadratic.start, (Vector<int>{0, 2, 3, 4}));
  EXPECT_EQ(model.quadratic.index, (Vector<int>{0, 2, 1, 0}));
  const QuadraticConstraint& constraint = model.quadratic_constraints[0];
  EXPECT_EQ(constraint.linear_index, (Vector<int>{1}));
  EXPECT_EQ(constraint.linear_value, (Vector<double>{6}));
  EXPECT_EQ(constraint.quad_row, (Vector<int>{0, 2}));
  EXPECT_EQ(constraint.quad_col, (Vector<int>{2, 2}));
  EXPECT_EQ(model.sos.members.start, (Vector<int>{0, 1, 2}));
  EXPECT_EQ(model.sos.members.index, (Vector<int>{0, 2}));
  EXPECT_EQ(model.sos.members.value, (Vector<double>{1, 4}));
  EXPECT_EQ(model.indicators.size(), 1) << "the one whose binary column went is gone";
  EXPECT_EQ(model.indicators.column, (Vector<int>{2}));
  EXPECT_EQ(model.indicators.complemented, (Vector<char>{1}));
  EXPECT_EQ(model.indicators.relation, (Vector<int>{3}));
  EXPECT_EQ(model.indicators.rows.rhs, (Vector<double>{20}));
  EXPECT_EQ(model.indicators.rows.rows.index, (Vector<int>{1}));
  EXPECT_STREQ(model.indicators.rows.names[0], "second");
  EXPECT_EQ(model.user_cuts.size(), 0);
  EXPECT_EQ(model.column_type, (Vector<char>{'B', 'C', 'B'}));

  // New columns join types and quadratic terms.
  ASSERT_EQ(KLVnewcols(env, lp, 1, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(model.quadratic.num_major, 4);
  EXPECT_EQ(model.quadratic.start, (Vector<int>{0, 2, 3, 4, 4}));
  EXPECT_EQ(model.column_type, (Vector<char>{'B', 'C', 'B', 'C'}));
}

TEST_F(ProblemObject, TheBasisFollowsAddedAndDeletedRowsAndColumns) {
  load();
  pretend_solved();
  problem->basis.col_status = {0, 2, 1, 0};
  problem->basis.row_status = {1, 0};
  const double lower[] = {0, -1e20, -1e20}, upper[] = {1, 1, 1e20};
  ASSERT_EQ(KLVnewrows(env, lp, 1, nullptr, nullptr, nullptr, nullptr), 0);
  ASSERT_EQ(KLVnewcols(env, lp, 3, nullptr, lower, upper, nullptr, nullptr), 0);
  problem->merge_pending();
  EXPECT_EQ(problem->basis.row_status, (Vector<int>{1, 0, kBasicStatus}));
  EXPECT_EQ(problem->basis.col_status,
            (Vector<int>{0, 2, 1, 0, kAtLowerStatus, kAtUpperStatus, kFreeStatus}));
  ASSERT_EQ(KLVdelcols(env, lp, 0, 1), 0);
  ASSERT_EQ(KLVdelrows(env, lp, 0, 0), 0);
  EXPECT_TRUE(problem->basis.present);
  EXPECT_EQ(problem->basis.row_status, (Vector<int>{0, kBasicStatus}));
  EXPECT_EQ(problem->basis.col_status, (Vector<int>{1, 0, 0, 2, 3}));
  problem->replace_model(Model());
  EXPECT_FALSE(problem->basis.present);
}

TEST_F(ProblemObject, EditsDiscardWhatTheyMakeStale) {
  load();
  const int row = 0;
  const double number = 3.0;
  const char* name = "renamed";
  struct Case {
    const char* what;
    int (*edit)(KLVenv, KLVprob, const int*, const double*, const char**);
    bool keeps_solution, keeps_working_lp;
  };
  const Case cases[] = {
      {"objective",
       [](KLVenv e, KLVprob p, const int* i, const double* v, const char**) {
         return KLVchgobj(e, p, 1, i, v);
       },
       false, true},
      {"right-hand side",
       [](KLVenv e, KLVprob p, const int* i, const double* v, const char**) {
         return KLVchgrhs(e, p, 1, i, v);
       },
       false, true},
      {"bound",
       [](KLVenv e, KLVprob p, const int* i, const double* v, const char**) {
         return KLVchgbds(e, p, 1, i, "U", v);
       },
       false, true},
      {"sense",
       [](KLVenv e, KLVprob p, const int* i, const double*, const char**) {
         return KLVchgsense(e, p, 1, i, "E");
       },
       false, true},
      {"objective sense",
       [](KLVenv e, KLVprob p, const int*, const double*, const char**) {
         return KLVchgobjsen(e, p, -1);
       },
       false, true},
      {"the same objective sense",
       [](KLVenv e, KLVprob p, const int*, const double*, const char**) {
         return KLVchgobjsen(e, p, -1);
       },
       true, true},
      {"coefficient",
       [](KLVenv e, KLVprob p, const int*, const double*, const char**) {
         return KLVchgcoef(e, p, 0, 0, 5.0);
       },
       false, false},
      {"new row",
       [](KLVenv e, KLVprob p, const int*, const double* v, const char**) {
         return KLVnewrows(e, p, 1, v, "L", nullptr, nullptr);
       },
       false, false},
      {"no new row",
       [](KLVenv e, KLVprob p, const int*, const double* v, const char**) {
         return KLVnewrows(e, p, 0, v, "L", nullptr, nullptr);
       },
       true, true},
      {"names",
       [](KLVenv e, KLVprob p, const int* i, const double*, const char** n) {
         return KLVchgrowname(e, p, 1, i, n);
       },
       true, true},
      {"a refused change",
       [](KLVenv e, KLVprob p, const int*, const double*, const char**) {
         return KLVchgcoef(e, p, -2, 0, 1.0) == 1200 ? 0 : -1;
       },
       true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    pretend_solved();
    const Revisions before = problem->revisions();
    ASSERT_EQ(c.edit(env, lp, &row, &number, &name), 0);
    EXPECT_EQ(problem->solution_status, c.keeps_solution ? kOptimal : kNoSolution);
    EXPECT_EQ(problem->solution.has_primal, c.keeps_solution);
    EXPECT_EQ(problem->working_lp != nullptr, c.keeps_working_lp);
    EXPECT_TRUE(problem->basis.present);
    EXPECT_EQ(problem->revisions() == before, c.keeps_solution);
  }
}

TEST_F(ProblemObject, ViewsAreFollowedByQueriesAndRefusedByChanges) {
  load();
  int status = -1;
  KLVprob view = KLVcreateprob(env, &status, "view");
  to_problem(view)->set_type(kTypeFixedMilp);
  EXPECT_EQ(KLVgetnumcols(env, view), 0);
  double value = 0;
  EXPECT_EQ(KLVgetcoef(env, view, 0, 0, &value), 1009) << "it shows nothing yet";

  to_problem(view)->view_target = problem->clone();
  const double rhs[] = {7};
  to_problem(view)->view_target->add_rows({1, rhs});  // waits in the target
  EXPECT_EQ(KLVgetprobtype(env, view), 3);
  EXPECT_EQ(KLVgetnumcols(env, view), 4);
  EXPECT_EQ(KLVgetnumrows(env, view), 3);
  EXPECT_EQ(KLVgetcoef(env, view, 2, -1, &value), 0);
  EXPECT_EQ(value, 7.0);
  EXPECT_EQ(KLVchgobjsen(env, view, -1), 1023);
  EXPECT_EQ(KLVfreeprob(env, &view), 0);
}

TEST_F(ProblemObject, AReplacedModelSetsTheType) {
  Model model;
  model.num_cols = 1;
  model.objective = model.lower = model.upper = {1};
  model.matrix.append_columns(1, nullptr, 0, nullptr, nullptr);
  Model typed = model;
  typed.column_type = {'I'};
  Model quadratic = typed;
  quadratic.quadratic.num_major = quadratic.quadratic.num_minor = 1;
  quadratic.quadratic.start = {0, 1};
  quadratic.quadratic.index = {0};
  quadratic.quadratic.value = {2};
  ASSERT_EQ(KLVnewrows(env, lp, 3, nullptr, nullptr, nullptr, nullptr), 0);
  replace_model(*problem, std::move(model));
  EXPECT_EQ(KLVgetnumrows(env, lp), 0) << "waiting rows belonged to the old model";
  EXPECT_EQ(KLVgetprobtype(env, lp), 0);
  replace_model(*problem, std::move(typed));
  EXPECT_EQ(KLVgetprobtype(env, lp), 1);
  replace_model(*problem, std::move(quadratic));
  EXPECT_EQ(KLVgetprobtype(env, lp), 7);
}

}  // namespace
}  // namespace kelvo
