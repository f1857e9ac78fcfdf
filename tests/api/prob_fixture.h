// Problems in an open environment, for contract tests.
#pragma once

#include "env_fixture.h"
#include "problem_image.h"

/// The codes that calls must return, in order.
using Codes = std::vector<int>;

class ProblemTest : public EnvironmentTest {
 protected:
  ProblemTest() {
    int status = -1;
    lp = KLVcreateprob(env, &status, "test");
    EXPECT_EQ(status, 0);
  }
  ~ProblemTest() override { EXPECT_EQ(KLVfreeprob(env, &lp), 0); }

  ModelImage image() { return read_model(env, lp); }
  /// The values of a query of all columns, of all rows.
  template <class Query>
  std::vector<double> columns(Query query, KLVprob of = nullptr) {
    if (of == nullptr) of = lp;
    return numbers(query, env, of, KLVgetnumcols(env, of));
  }
  template <class Query>
  std::vector<double> rows(Query query, KLVprob of = nullptr) {
    if (of == nullptr) of = lp;
    return numbers(query, env, of, KLVgetnumrows(env, of));
  }
  double objective(KLVprob of = nullptr) {
    double value = 0.0;
    EXPECT_EQ(KLVgetobjval(env, of == nullptr ? lp : of, &value), 0);
    return value;
  }
  /// Solves a linear problem that has an optimum.
  double optimum(KLVprob solved) {
    EXPECT_EQ(KLVlpopt(env, solved), 0);
    EXPECT_EQ(KLVgetstat(env, solved), KLV_STATUS_OPTIMAL);
    return objective(solved);
  }
  KLVprob clone() {
    int status = -1;
    KLVprob copy = KLVcloneprob(env, lp, &status);
    EXPECT_EQ(status, 0);
    return copy;
  }
  /// min x1 + 2 x2 + 3 x3,  x1 + x2 <= 4,  x2 - x3 = 1,  2 <= x1 + 5 x3 <= 8,  named.
  void load_small() {
    const double obj[] = {1, 2, 3}, rhs[] = {4, 1, 2}, rng[] = {0, 0, 6};
    const int beg[] = {0, 2, 4}, cnt[] = {2, 2, 2}, ind[] = {0, 2, 0, 1, 1, 2};
    const double val[] = {1, 1, 1, 1, -1, 5}, lb[] = {0, 0, -1}, ub[] = {10, 1e20, 7};
    const char* cols[] = {"a", "b", "c"};
    const char* rows[] = {"first", "second", "third"};
    ASSERT_EQ(KLVcopylpwnames(env, lp, 3, 3, 1, obj, rhs, "LER", beg, cnt, ind, val, lb, ub, rng,
                              cols, rows),
              0);
  }
  void set(int parameter, int value) { ASSERT_EQ(KLVsetintparam(env, parameter, value), 0); }
  void set(int parameter, double value) { ASSERT_EQ(KLVsetdblparam(env, parameter, value), 0); }
  void check_data() { set(KLV_PARAM_DATACHECK, 1); }
  void change_bound(int column, char which, double value, KLVprob of = nullptr) {
    EXPECT_EQ(KLVchgbds(env, of == nullptr ? lp : of, 1, &column, &which, &value), 0);
  }
  void change_cost(int column, double value, KLVprob of = nullptr) {
    EXPECT_EQ(KLVchgobj(env, of == nullptr ? lp : of, 1, &column, &value), 0);
  }
  void change_rhs(int row, double value) { EXPECT_EQ(KLVchgrhs(env, lp, 1, &row, &value), 0); }

  KLVprob lp = nullptr;
};

/// max 3x + 2y,  x + y <= 4,  x + 3y <= 7,  0 <= x <= 3: optimum (3, 1), objective 11, the second
/// row with slack 1; duals 2 and 0, reduced costs 1 and 0.
class SmallLp : public ProblemTest {
 protected:
  SmallLp() { load(); }
  void load() {
    const double obj[] = {3, 2}, rhs[] = {4, 7}, values[] = {1, 1, 1, 3};
    const double lower[] = {0, 0}, upper[] = {3, 1e20};
    const int begin[] = {0, 2}, count[] = {2, 2}, rows[] = {0, 1, 0, 1};
    EXPECT_EQ(KLVcopylp(env, lp, 2, 2, -1, obj, rhs, "LL", begin, count, rows, values, lower, upper,
                        nullptr),
              0);
  }
  /// One more row with one entry 1.
  void add_row(int column, char sense, double rhs) {
    const int begin = 0;
    const double one = 1;
    EXPECT_EQ(KLVaddrows(env, lp, 0, 1, 1, &rhs, &sense, &begin, &column, &one, nullptr, nullptr),
              0);
  }
};
