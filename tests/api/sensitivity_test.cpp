// Sensitivity: every number is moved to just inside and just outside its range and the problem
// solved again from its basis. Inside, no iteration is needed; outside, the basis is not optimal.
#include "random_lp.h"

namespace {

struct SaRange {
  double low, high;
};

class SensitivityTest : public RandomLpTest {
 protected:
  /// What is moved: a cost 'c', a right-hand side 'r', a lower 'L' or an upper bound 'U'.
  void set_number(char kind, int index, double value) {
    if (kind == 'c') {
      change_cost(index, value);
    } else if (kind == 'r') {
      change_rhs(index, value);
    } else {
      change_bound(index, kind, value);
    }
  }
  /// Whether the basis stays optimal with the number changed; everything is put back.
  bool stays_optimal(char kind, int index, double old_value, double value) {
    set_number(kind, index, value);
    KLVprob trial = clone();
    // The method that counts an iteration for whatever is wrong.
    EXPECT_EQ(kind == 'c' ? KLVprimopt(env, trial) : KLVdualopt(env, trial), 0);
    const bool stays = KLVgetstat(env, trial) == KLV_STATUS_OPTIMAL && KLVgetitcnt(env, trial) == 0;
    EXPECT_EQ(KLVfreeprob(env, &trial), 0);
    set_number(kind, index, old_value);
    return stays;
  }

  void probe(char kind, int index, double value, const SaRange& range) {
    SCOPED_TRACE(::testing::Message() << kind << " " << index << " = " << value << " in ["
                                      << range.low << ", " << range.high << "]");
    EXPECT_LE(range.low, value + 1e-6 * (1 + std::fabs(value)));
    EXPECT_GE(range.high, value - 1e-6 * (1 + std::fabs(value)));
    EXPECT_GE(range.low, -kNone);
    EXPECT_LE(range.high, kNone);
    if (range.low == range.high) {
      for (const double step : {-1e-2, 1e-2}) {
        EXPECT_FALSE(stays_optimal(kind, index, value, value + step * (1 + std::fabs(value))));
      }
      return;
    }
    for (const double limit : {range.low, range.high}) {
      const double outward = limit == range.low ? -1 : 1;
      if (std::fabs(limit) == kNone) {
        EXPECT_TRUE(stays_optimal(kind, index, value, value + outward * 1e3)) << "without limit";
        continue;
      }
      ++limits_probed_;
      const double inside = limit + 1e-3 * (value - limit);
      if (std::fabs(value - limit) > 1e-9) {
        EXPECT_TRUE(stays_optimal(kind, index, value, inside)) << "inside at " << inside;
      }
      const double outside = limit + outward * 1e-2 * (1 + std::fabs(limit));
      EXPECT_FALSE(stays_optimal(kind, index, value, outside)) << "outside at " << outside;
    }
  }

  void probe_everything() {
    const int m = data.m, n = data.n;
    std::vector<double> low(n), high(n), rhs_low(m), rhs_high(m), bounds[4];
    for (auto& array : bounds) array.resize(n);
    ASSERT_EQ(KLVobjsa(env, lp, 0, n - 1, low.data(), high.data()), 0);
    ASSERT_EQ(KLVrhssa(env, lp, 0, m - 1, rhs_low.data(), rhs_high.data()), 0);
    ASSERT_EQ(KLVboundsa(env, lp, 0, n - 1, bounds[0].data(), bounds[1].data(), bounds[2].data(),
                         bounds[3].data()),
              0);
    for (int i = 0; i < m; ++i) probe('r', i, data.rhs[i], {rhs_low[i], rhs_high[i]});
    for (int j = 0; j < n; ++j) {
      probe('c', j, data.obj[j], {low[j], high[j]});
      if (data.lb[j] == data.ub[j]) continue;  // only one of the bounds can be probed at a time
      if (data.lb[j] > -kNone) probe('L', j, data.lb[j], {bounds[0][j], bounds[1][j]});
      if (data.ub[j] < kNone) probe('U', j, data.ub[j], {bounds[2][j], bounds[3][j]});
    }
  }

  int limits_probed_ = 0;
};

TEST_F(SensitivityTest, EveryNumberInsideAndOutside) {
  for (unsigned seed = 0; seed < 45; ++seed) {
    SCOPED_TRACE(seed);
    load(100 + seed, {.m = 6, .n = 8, .wide_scales = seed % 3 == 1, .degenerate = seed % 3 == 2});
    ASSERT_EQ(seed % 2 ? KLVdualopt(env, lp) : KLVprimopt(env, lp), 0);
    ASSERT_EQ(KLVgetstat(env, lp), KLV_STATUS_OPTIMAL);
    probe_everything();
    if (HasFailure()) return;
  }
  EXPECT_GT(limits_probed_, 500);
}

/// min -2x - y - z,  x + y <= 4 (row 0),  x <= 3,  0 <= y <= 5,  z fixed at 2.
class KnownRanges : public ProblemTest {
 protected:
  KnownRanges() {
    const double obj[] = {-2, -1, -1}, rhs[] = {4}, lower[] = {0, 0, 2}, upper[] = {3, 5, 2};
    const int begin[] = {0, 1, 2}, count[] = {1, 1, 0}, index[] = {0, 0};
    const double values[] = {1, 1};
    EXPECT_EQ(KLVcopylp(env, lp, 3, 1, 1, obj, rhs, "L", begin, count, index, values, lower, upper,
                        nullptr),
              0);
  }
};

TEST_F(KnownRanges, AllKindsAtOnceAndByThemselves) {
  using Three = std::vector<double>;
  ASSERT_EQ(KLVdualopt(env, lp), 0);  // x = 3 at its bound, y = 1 basic, pi = -1
  Three low(3), high(3), bounds[4] = {Three(3), Three(3), Three(3), Three(3)};
  double row_low, row_high, one_low, one_high;
  ASSERT_EQ(KLVErangesa(env, lp, 0, 2, 0, 0, low.data(), high.data(), &row_low, &row_high,
                        bounds[0].data(), bounds[1].data(), bounds[2].data(), bounds[3].data()),
            0);
  EXPECT_EQ(low, (Three{-kNone, -2, -kNone}));
  EXPECT_EQ(high, (Three{-1, 0, kNone}));
  EXPECT_EQ(row_low, 3.0);
  EXPECT_EQ(row_high, 8.0);
  // x is at its upper bound, y is basic at 1, and z, whose cost pulls it up, at its upper bound
  // too.
  EXPECT_EQ(bounds[0], (Three{-kNone, -kNone, -kNone}));
  EXPECT_EQ(bounds[1], (Three{3, 1, 2}));
  EXPECT_EQ(bounds[2], (Three{0, 1, 2}));
  EXPECT_EQ(bounds[3], (Three{4, kNone, kNone}));
  ASSERT_EQ(KLVobjsa(env, lp, 1, 1, &one_low, &one_high), 0);
  EXPECT_EQ(one_low, low[1]);
  EXPECT_EQ(one_high, high[1]);
  ASSERT_EQ(KLVboundsa(env, lp, 0, 0, nullptr, nullptr, &one_low, nullptr), 0);
  EXPECT_EQ(one_low, 0.0);
  // The other sign of the cost of the fixed column: it is at its lower bound.
  change_cost(2, 1);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  ASSERT_EQ(KLVboundsa(env, lp, 2, 2, &one_low, &one_high, nullptr, nullptr), 0);
  EXPECT_EQ(one_low, -kNone);
  EXPECT_EQ(one_high, 2.0);
}

TEST_F(KnownRanges, Checks) {
  double low[3], high[3];
  EXPECT_EQ(KLVobjsa(env, nullptr, 0, 0, nullptr, high), 1004);
  EXPECT_EQ(KLVobjsa(env, nullptr, 0, 0, low, high), 1009);
  EXPECT_EQ(KLVobjsa(nullptr, lp, 0, 0, low, nullptr), 1002);
  EXPECT_EQ(KLVrhssa(env, lp, 0, 0, low, nullptr), 1004);
  EXPECT_EQ(KLVErangesa(env, lp, 0, 0, 0, 0, low, nullptr, nullptr, nullptr, nullptr, nullptr,
                        nullptr, nullptr),
            1004);
  EXPECT_EQ(KLVobjsa(env, lp, 0, 0, low, high), 1217);
  set(KLV_PARAM_ITLIM, 0);
  set(KLV_PARAM_PREIND, 0);  // it would solve the model by itself
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  EXPECT_EQ(KLVboundsa(env, lp, 5, 9, low, high, low, high), 1260);
  set(KLV_PARAM_ITLIM, 2100000000);
  ASSERT_EQ(KLVdualopt(env, lp), 0);
  for (const auto& [begin, end] : {std::pair(-1, 0), {0, 3}, {2, 1}}) {
    EXPECT_EQ(KLVobjsa(env, lp, begin, end, low, high), 1200);
  }
  EXPECT_EQ(KLVrhssa(env, lp, 0, 1, low, high), 1200);
  EXPECT_EQ(KLVboundsa(env, lp, 1, 0, low, high, low, high), 1200);
  EXPECT_TRUE(contains(errors, "KLVobjsa: 'begin' value -1 is less than 0")) << errors;
}

}  // namespace
