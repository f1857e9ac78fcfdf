// What the C interface alone cannot show: data of the other kinds, the stored basis, what edits
// make stale, and views.
#include "prob/problem.h"

#include <gtest/gtest.h>
#include <kelvo.h>

#include <string>

#include "api/frame/problem_frame.h"
#include "lp/solve/conversion.h"

namespace kelvo {
namespace {

class ProblemObject : public ::testing::Test {
 protected:
  ProblemObject() {
    int status = -1;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "object");
    problem = to_problem(lp);
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

  /// Makes it look as if an optimizer had run.
  void pretend_solved() {
    problem->solution_status = kOptimal;
    problem->solution.has_primal = true;
    problem->solution.x.assign(problem->num_cols(), 1.0);
    problem->basis.present = true;
    problem->basis.col_status.assign(problem->num_cols(), kAtLowerStatus);
    problem->basis.row_status.assign(problem->num_rows(), kBasicStatus);
    problem->merge_pending();
    SilentSink sink;
    problem->working_lp.put(
        make_owned<WorkingLp>(make_lp(problem->model()), ScalingMethod::none, sink));
  }

  static constexpr int kAtLowerStatus = 0;
  static constexpr int kBasicStatus = 1;
  static constexpr int kAtUpperStatus = 2;
  static constexpr int kFreeStatus = 3;

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
  Problem* problem = nullptr;
};

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
  static const int kRow[] = {0};
  static const double kNumber[] = {3.0};
  static const char* const kName[] = {"renamed"};
  struct Case {
    const char* what;
    int (*edit)(KLVenv, KLVprob);
    bool keeps_solution, keeps_working_lp;
  };
  const auto sense = [](KLVenv e, KLVprob p) { return KLVchgobjsen(e, p, -1); };
  const Case cases[] = {
      {"cost", [](KLVenv e, KLVprob p) { return KLVchgobj(e, p, 1, kRow, kNumber); }, false, true},
      {"rhs", [](KLVenv e, KLVprob p) { return KLVchgrhs(e, p, 1, kRow, kNumber); }, false, true},
      {"bound", [](KLVenv e, KLVprob p) { return KLVchgbds(e, p, 1, kRow, "U", kNumber); }, false,
       true},
      {"sense", [](KLVenv e, KLVprob p) { return KLVchgsense(e, p, 1, kRow, "R"); }, false, true},
      {"range", [](KLVenv e, KLVprob p) { return KLVchgrngval(e, p, 1, kRow, kNumber); }, false,
       true},
      {"objective sense", sense, false, true},
      {"the same objective sense", sense, true, true},
      {"coefficient", [](KLVenv e, KLVprob p) { return KLVchgcoef(e, p, 0, 0, 5.0); }, false,
       false},
      {"new row",
       [](KLVenv e, KLVprob p) { return KLVnewrows(e, p, 1, kNumber, "L", nullptr, nullptr); },
       false, false},
      {"no new row",
       [](KLVenv e, KLVprob p) { return KLVnewrows(e, p, 0, kNumber, "L", nullptr, nullptr); },
       true, true},
      {"names", [](KLVenv e, KLVprob p) { return KLVchgrowname(e, p, 1, kRow, kName); }, true,
       true},
      {"a refused change", [](KLVenv e, KLVprob p) { return KLVchgcoef(e, p, -2, 0, 1.0) - 1200; },
       true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    pretend_solved();
    const Revisions before = problem->revisions();
    ASSERT_EQ(c.edit(env, lp), 0);
    EXPECT_EQ(problem->solution_status, c.keeps_solution ? kOptimal : kNoSolution);
    EXPECT_EQ(problem->solution.has_primal, c.keeps_solution);
    EXPECT_EQ(problem->working_lp.get() != nullptr, c.keeps_working_lp);
    EXPECT_TRUE(problem->basis.present);
    EXPECT_EQ(problem->revisions() == before, c.keeps_solution);
  }
}

TEST_F(ProblemObject, ChangedBoundsAreListed) {
  load();
  const Revisions start = problem->revisions();
  EXPECT_FALSE(problem->changes_since(start).any());
  const int second = 1, third = 2;
  const double one = 1.0;
  ASSERT_EQ(KLVchgbds(env, lp, 1, &second, "U", &one), 0);
  const Revisions middle = problem->revisions();
  ASSERT_EQ(KLVchgbds(env, lp, 1, &third, "U", &one), 0);
  ModelChanges changes = problem->changes_since(middle);
  EXPECT_TRUE(changes.column_bounds && !changes.costs && !changes.structure);
  ASSERT_EQ(changes.num_columns, 1);
  EXPECT_EQ(changes.columns[0], 2);
  changes = problem->changes_since(start);
  ASSERT_EQ(changes.num_columns, 2);
  EXPECT_EQ(changes.columns[0], 1);
  // A list that has grown too long is dropped: any column may have changed.
  for (int k = 0; k < 1000; ++k) ASSERT_EQ(KLVchgbds(env, lp, 1, &third, "U", &one), 0);
  changes = problem->changes_since(start);
  EXPECT_TRUE(changes.column_bounds);
  EXPECT_EQ(changes.columns, nullptr);
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
