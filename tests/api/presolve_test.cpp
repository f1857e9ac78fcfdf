// Presolve through the interface: what it says and what it leaves.
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

}  // namespace
