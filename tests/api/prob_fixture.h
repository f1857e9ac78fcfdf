// A problem in an open environment, and a model read back through the query functions.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "env_fixture.h"

/// Everything the query functions say about the linear part of a problem.
struct ModelImage {
  int sense = 0;
  std::vector<double> obj, lb, ub, rhs, rngval;
  std::string senses;
  std::map<std::pair<int, int>, double> entries;  // (row, column)
  std::vector<std::string> row_names, col_names;

  bool operator==(const ModelImage&) const = default;
};

inline std::vector<std::string> read_names(KLVenv env, KLVprob lp, bool rows) {
  const int n = rows ? KLVgetnumrows(env, lp) : KLVgetnumcols(env, lp);
  const auto get = rows ? KLVgetrowname : KLVgetcolname;
  std::vector<std::string> names;
  int surplus = 0;
  if (get(env, lp, nullptr, nullptr, 0, &surplus, 0, n - 1) != 1207) return names;
  std::vector<char*> pointers(n);
  std::vector<char> store(-surplus);
  EXPECT_EQ(get(env, lp, pointers.data(), store.data(), -surplus, &surplus, 0, n - 1), 0);
  EXPECT_EQ(surplus, 0);
  for (const char* name : pointers) names.emplace_back(name);
  return names;
}

inline ModelImage read_model(KLVenv env, KLVprob lp) {
  ModelImage image;
  const int m = KLVgetnumrows(env, lp);
  const int n = KLVgetnumcols(env, lp);
  image.sense = KLVgetobjsen(env, lp);
  for (auto [values, get] : {std::pair(&image.obj, &KLVgetobj), std::pair(&image.lb, &KLVgetlb),
                             std::pair(&image.ub, &KLVgetub)}) {
    values->resize(n + 1);
    EXPECT_EQ(get(env, lp, values->data(), 0, n - 1), 0);
    values->resize(n);
  }
  image.rhs.resize(m + 1);
  EXPECT_EQ(KLVgetrhs(env, lp, image.rhs.data(), 0, m - 1), 0);
  image.rhs.resize(m);
  image.senses.resize(m + 1);
  EXPECT_EQ(KLVgetsense(env, lp, image.senses.data(), 0, m - 1), 0);
  image.senses.resize(m);
  image.rngval.resize(m + 1);
  const int ranges = KLVgetrngval(env, lp, image.rngval.data(), 0, m - 1);
  EXPECT_TRUE(ranges == 0 || ranges == 1216);
  image.rngval.resize(ranges == 0 ? m : 0);

  const int space = KLVgetnumnz(env, lp);
  std::vector<int> begin(n + 1), index(space + 1);
  std::vector<double> value(space + 1);
  int count = -1, surplus = -1;
  EXPECT_EQ(KLVgetcols(env, lp, &count, begin.data(), index.data(), value.data(), space + 1,
                       &surplus, 0, n - 1),
            0);
  EXPECT_EQ(count, space);
  begin[n] = count;
  for (int j = 0; j < n; ++j) {
    for (int p = begin[j]; p < begin[j + 1]; ++p) image.entries[{index[p], j}] = value[p];
  }
  EXPECT_EQ(static_cast<int>(image.entries.size()), count) << "an entry stands twice";
  image.row_names = read_names(env, lp, true);
  image.col_names = read_names(env, lp, false);
  return image;
}

class ProblemTest : public EnvironmentTest {
 protected:
  ProblemTest() {
    int status = -1;
    lp = KLVcreateprob(env, &status, "test");
    EXPECT_EQ(status, 0);
  }
  ~ProblemTest() override { EXPECT_EQ(KLVfreeprob(env, &lp), 0); }

  ModelImage image() { return read_model(env, lp); }
  /// Solves a linear problem that has an optimum.
  double optimum(KLVprob solved) {
    EXPECT_EQ(KLVlpopt(env, solved), 0);
    EXPECT_EQ(KLVgetstat(env, solved), KLV_STATUS_OPTIMAL);
    double objective = 0.0;
    EXPECT_EQ(KLVgetobjval(env, solved, &objective), 0);
    return objective;
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
  void check_data() { ASSERT_EQ(KLVsetintparam(env, KLV_PARAM_DATACHECK, 1), 0); }

  KLVprob lp = nullptr;
};
