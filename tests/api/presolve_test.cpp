// Presolve through the interface: what it says and what it leaves.
#include <cstdio>

#include "lp_fixture.h"

namespace {

/// The small problem with an ear on the results channel.
struct TalkingLp : SmallLp {
  std::string said;

  TalkingLp() { EXPECT_EQ(KLVaddfuncdest(env, results(), &said, append), 0); }
  ~TalkingLp() { EXPECT_EQ(KLVdelfuncdest(env, results(), &said, append), 0); }

  KLVchannel results() const {
    KLVchannel channel = nullptr;
    EXPECT_EQ(KLVgetchannels(env, &channel, nullptr, nullptr, nullptr), 0);
    return channel;
  }
  /// What was said up to the time, which is different each time.
  std::string take() {
    const std::string text = said.substr(0, said.find("Presolve time = "));
    EXPECT_NE(text.size(), said.size());
    said.clear();
    return text;
  }
};

TEST(PresolveMessages, Summary) {
  TalkingLp p;
  // Nothing to reduce as it stands; y <= 1 as a row makes it trivial.
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(p.take(), "Tried aggregator 1 time.\nNo LP presolve or aggregator reductions.\n");
  const double rhs = 1, one = 1;
  const int begin = 0, column = 1;
  EXPECT_EQ(KLVaddrows(p.env, p.lp, 0, 1, 1, &rhs, "L", &begin, &column, &one, nullptr, nullptr),
            0);
  EXPECT_EQ(KLVsetintparam(p.env, KLV_PARAM_ADVIND, 0), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(p.take(),
            "Tried aggregator 1 time.\nLP Presolve eliminated 3 rows and 2 columns.\n"
            "All rows and columns eliminated.\n");
  EXPECT_NEAR(p.objective(), 11.0, 1e-9);
  EXPECT_EQ(p.x(), (std::vector<double>{3, 1}));
  double pi[3], dj[2];
  ASSERT_EQ(KLVgetpi(p.env, p.lp, pi, 0, 2), 0);
  ASSERT_EQ(KLVgetdj(p.env, p.lp, dj, 0, 1), 0);
  EXPECT_EQ(std::vector<double>(pi, pi + 3), (std::vector<double>{0, 0, 2}));
  EXPECT_EQ(std::vector<double>(dj, dj + 2), (std::vector<double>{3, 0}));

  EXPECT_EQ(KLVsetintparam(p.env, KLV_PARAM_AGGIND, 0), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(p.take().find("Tried aggregator"), std::string::npos);

  EXPECT_EQ(KLVsetintparam(p.env, KLV_PARAM_REDUCE, 0), 0);
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(p.take(), "No LP presolve or aggregator reductions.\n");

  EXPECT_EQ(KLVsetintparam(p.env, KLV_PARAM_PREIND, 0), 0);
  p.said.clear();
  ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
  EXPECT_EQ(p.said.find("resolve"), std::string::npos);
}

TEST(PresolveMessages, WhatIsWrongWithTheModel) {
  struct Case {
    const char* what;
    int status;
    void (*spoil)(SmallLp&);
    const char* text;
  };
  const Case cases[] = {
      {"empty row", KLV_STATUS_INFEASIBLE,
       [](SmallLp& p) {
         const double rhs = 5;
         EXPECT_EQ(KLVnewrows(p.env, p.lp, 1, &rhs, "E", nullptr, nullptr), 0);
       },
       "Infeasibility row 'c3':  0 == 5.\n"},
      {"empty column", KLV_STATUS_INFEASIBLE_OR_UNBOUNDED,
       [](SmallLp& p) {
         const double cost = 1;
         EXPECT_EQ(KLVnewcols(p.env, p.lp, 1, &cost, nullptr, nullptr, nullptr, nullptr), 0);
       },
       "Dual infeasible due to empty column 'x3'.\n"},
      {"singleton row", KLV_STATUS_INFEASIBLE,
       [](SmallLp& p) {
         const double rhs = 8, one = 1;
         const int begin = 0, column = 0;
         EXPECT_EQ(
             KLVaddrows(p.env, p.lp, 0, 1, 1, &rhs, "G", &begin, &column, &one, nullptr, nullptr),
             0);
       },
       "Bound infeasibility column 'x1'.\n"},
      {"bounds of a row", KLV_STATUS_INFEASIBLE,
       [](SmallLp& p) {
         const double rhs = -1;
         const int row = 0;
         EXPECT_EQ(KLVchgrhs(p.env, p.lp, 1, &row, &rhs), 0);
       },
       "Implied bounds make row 'c1' infeasible.\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    TalkingLp p;
    c.spoil(p);
    ASSERT_EQ(KLVlpopt(p.env, p.lp), 0);
    EXPECT_EQ(KLVgetstat(p.env, p.lp), c.status);
    EXPECT_NE(p.take().find(c.text), std::string::npos) << p.said;
    double x[3];
    EXPECT_EQ(KLVgetx(p.env, p.lp, x, 0, 1), 1217);
  }
}

/// min x + 2y + 3z + w,  x + y + z + w >= 3,  y + 2z - w >= 1,  x - y = 1,  w fixed at 1,
/// z in [0, 4], the others >= 0.
class PresolvedProblem : public ::testing::Test {
 protected:
  PresolvedProblem() {
    int status = 0;
    env = KLVopenKELVO(&status);
    lp = KLVcreateprob(env, &status, "whole");
    const double obj[] = {1, 2, 3, 1}, rhs[] = {3, 1, 1};
    const int beg[] = {0, 2, 5, 7}, cnt[] = {2, 3, 2, 2}, ind[] = {0, 2, 0, 1, 2, 0, 1, 0, 1};
    const double val[] = {1, 1, 1, 1, -1, 1, 2, 1, -1};
    const double lb[] = {0, 0, 0, 1}, ub[] = {1e20, 1e20, 4, 1};
    EXPECT_EQ(KLVcopylp(env, lp, 4, 3, 1, obj, rhs, "GGE", beg, cnt, ind, val, lb, ub, nullptr), 0);
    // The forms are only interesting while something is left.
    EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_REDUCE, 1), 0);
  }
  ~PresolvedProblem() override {
    EXPECT_EQ(KLVfreeprob(env, &lp), 0);
    EXPECT_EQ(KLVcloseKELVO(&env), 0);
  }

  KLVenv env = nullptr;
  KLVprob lp = nullptr;
};

TEST_F(PresolvedProblem, ValuesGoBothWays) {
  double x[4] = {}, pi[3], prex[4], prepi[3], back[4];
  EXPECT_EQ(KLVcrushx(env, lp, x, prex), 1103);
  ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
  KLVprob reduced = nullptr;
  EXPECT_EQ(KLVgetredlp(env, lp, nullptr), 1004);
  ASSERT_EQ(KLVgetredlp(env, lp, &reduced), 0);
  ASSERT_NE(reduced, nullptr);
  const int columns = KLVgetnumcols(env, reduced);
  EXPECT_LT(columns, 4);
  int prestat = -1, pcstat[4], prstat[3], ocstat[4], orstat[3];
  ASSERT_EQ(KLVgetprestat(env, lp, &prestat, pcstat, prstat, ocstat, orstat), 0);
  EXPECT_EQ(prestat, 1);
  EXPECT_EQ(pcstat[3], -1);
  EXPECT_EQ(prstat[2], -4);
  for (int k = 0; k < columns; ++k) EXPECT_EQ(pcstat[ocstat[k]], k);

  // The optimum of the whole problem, from a problem of its own, through the reduced one and back.
  int status = 0;
  KLVprob copy = KLVcloneprob(env, lp, &status);
  double objective = 0.0;
  ASSERT_EQ(KLVlpopt(env, copy), 0);
  ASSERT_EQ(KLVgetobjval(env, copy, &objective), 0);
  ASSERT_EQ(KLVgetx(env, copy, x, 0, 3), 0);
  ASSERT_EQ(KLVgetpi(env, copy, pi, 0, 2), 0);
  ASSERT_EQ(KLVcrushx(env, lp, x, prex), 0);
  ASSERT_EQ(KLVuncrushx(env, lp, back, prex), 0);
  for (int j = 0; j < 4; ++j) EXPECT_NEAR(back[j], x[j], 1e-9);
  ASSERT_EQ(KLVcrushpi(env, lp, pi, prepi), 0);
  ASSERT_EQ(KLVuncrushpi(env, lp, back, prepi), 0);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(back[i], pi[i], 1e-9);

  // The objective as a form has the same value at the crushed point.
  const int all[] = {0, 1, 2, 3};
  const double cost[] = {1, 2, 3, 1};
  int length = 0, indices[4];
  double offset = 0.0, values[4];
  ASSERT_EQ(KLVcrushform(env, lp, 4, all, cost, &length, &offset, indices, values), 0);
  double value = offset;
  for (int k = 0; k < length; ++k) value += values[k] * prex[indices[k]];
  EXPECT_NEAR(value, objective, 1e-9);
  const int fixed = 3;
  ASSERT_EQ(KLVcrushform(env, lp, 1, &fixed, cost, &length, &offset, indices, values), 0);
  EXPECT_EQ(length, 0);
  EXPECT_EQ(offset, 1.0);
  const int beyond = 4;
  EXPECT_EQ(KLVcrushform(env, lp, 1, &beyond, cost, &length, &offset, indices, values), 1201);

  double dj[4], slack[3];
  ASSERT_EQ(KLVdjfrompi(env, lp, pi, dj), 0);
  EXPECT_NEAR(dj[0], 1 - pi[0] - pi[2], 1e-9);
  ASSERT_EQ(KLVslackfromx(env, lp, x, slack), 0);
  EXPECT_NEAR(slack[1], 1 - (x[1] + 2 * x[2] - x[3]), 1e-9);
  EXPECT_EQ(KLVqpdjfrompi(env, lp, pi, x, dj), 5004);
  EXPECT_EQ(KLVfreeprob(env, &copy), 0);
}

TEST_F(PresolvedProblem, ProtectionAndChanges) {
  const int kept[] = {0, 1, 2, 3};
  ASSERT_EQ(KLVcopyprotected(env, lp, 4, kept), 0);
  ASSERT_EQ(KLVpresolve(env, lp, 1), 0);
  KLVprob reduced = nullptr;
  ASSERT_EQ(KLVgetredlp(env, lp, &reduced), 0);
  ASSERT_NE(reduced, nullptr);
  EXPECT_EQ(KLVgetnumcols(env, reduced), 4);
  // Column 2 goes, the marks of the others move along; any change frees the presolved problem.
  ASSERT_EQ(KLVdelcols(env, lp, 2, 2), 0);
  ASSERT_EQ(KLVgetredlp(env, lp, &reduced), 0);
  EXPECT_EQ(reduced, nullptr);
  ASSERT_EQ(KLVpresolve(env, lp, 1), 0);
  ASSERT_EQ(KLVgetredlp(env, lp, &reduced), 0);
  EXPECT_EQ(KLVgetnumcols(env, reduced), 3);
  ASSERT_EQ(KLVfreepresolve(env, lp), 0);
  ASSERT_EQ(KLVgetredlp(env, lp, &reduced), 0);
  EXPECT_EQ(reduced, nullptr);
  const int bad = 3;
  EXPECT_EQ(KLVcopyprotected(env, lp, 1, &bad), 1201);
}

TEST_F(PresolvedProblem, BoundsAlone) {
  double lower[4], upper[4];
  int rows[3];
  ASSERT_EQ(KLVbasicpresolve(env, lp, lower, upper, rows), 0);
  EXPECT_NEAR(lower[0], 1.0, 1e-12);  // x = 1 + y
  EXPECT_EQ(upper[0], 1e20);
  EXPECT_EQ(rows[0], 0);
  const int columns[] = {0, 1};
  const double low[] = {0, 5};
  const double high[] = {1, 6};
  ASSERT_EQ(KLVchgbds(env, lp, 2, columns, "LL", low), 0);
  ASSERT_EQ(KLVchgbds(env, lp, 2, columns, "UU", high), 0);
  EXPECT_EQ(KLVbasicpresolve(env, lp, lower, upper, rows), 1117);
}

TEST_F(PresolvedProblem, Files) {
  double offset = 0.0;
  EXPECT_EQ(KLVpreslvwrite(env, lp, "unused.lp", &offset), 1103);
  ASSERT_EQ(KLVpresolve(env, lp, 2), 0);
  EXPECT_EQ(KLVpreslvwrite(env, lp, nullptr, &offset), 1421);
  const std::string path = testing::TempDir() + "kelvo_presolved.pre";
  ASSERT_EQ(KLVpreslvwrite(env, lp, path.c_str(), &offset), 0);
  int status = 0;
  KLVprob again = KLVcreateprob(env, &status, "again");
  ASSERT_EQ(KLVreadcopyprob(env, again, path.c_str(), "MPS"), 0);
  double whole = 0.0, part = 0.0;
  ASSERT_EQ(KLVlpopt(env, again), 0);
  ASSERT_EQ(KLVgetobjval(env, again, &part), 0);
  ASSERT_EQ(KLVlpopt(env, lp), 0);
  ASSERT_EQ(KLVgetobjval(env, lp, &whole), 0);
  EXPECT_NEAR(part + offset, whole, 1e-9);
  EXPECT_EQ(KLVfreeprob(env, &again), 0);
  std::remove(path.c_str());
}

}  // namespace
