// Small random mixed-integer problems of every kind of data against enumeration.
//
// The reference tries every value of every integer column and every way in which semi-continuous
// columns and sets can be satisfied, and solves the linear problem that is left.
#include <gtest/gtest.h>

#include <optional>

#include "random_lp.h"

namespace {

struct DenseIndicator {
  int column, complemented;
  std::vector<double> row;
  double rhs;
  char sense;
};

struct DenseSet {
  char type;
  std::vector<int> members;
};

struct DenseMip {
  DenseLp lp;
  std::string types;
  std::vector<DenseSet> sets;
  std::vector<DenseIndicator> indicators;
};

class Draw {
 public:
  explicit Draw(unsigned seed) : generator_(seed) {}
  int below(int k) { return static_cast<int>(generator_() % static_cast<unsigned>(k)); }
  int between(int low, int high) { return low + below(high - low + 1); }

 private:
  std::mt19937 generator_;
};

std::vector<double> random_row(Draw& draw, int n, int size) {
  std::vector<double> row(n, 0.0);
  for (double& entry : row) {
    if (draw.below(3) != 0) entry = draw.between(-size, size);
  }
  return row;
}

DenseMip random_mip(unsigned seed) {
  Draw draw(seed);
  DenseMip mip;
  DenseLp& lp = mip.lp;
  lp.n = draw.between(3, 6);
  lp.m = draw.between(1, 4);
  lp.sense = draw.below(2) ? 1 : -1;
  const bool mixed = draw.below(4) != 0;
  for (int j = 0; j < lp.n; ++j) {
    const char type = mixed ? "BBIICSN"[draw.below(7)] : "BBI"[draw.below(3)];
    mip.types += type;
    const int low = draw.between(-2, 1);
    switch (type) {
      case 'B':
        lp.lb.push_back(0.0);
        lp.ub.push_back(1.0);
        break;
      case 'S':
      case 'N':
        lp.lb.push_back(draw.between(1, 2));
        lp.ub.push_back(lp.lb.back() + draw.between(0, 2));
        break;
      case 'I':
        lp.lb.push_back(low + draw.below(2) * 0.5);
        lp.ub.push_back(low + draw.between(1, 3) + draw.below(2) * 0.25);
        break;
      default:
        lp.lb.push_back(low);
        lp.ub.push_back(low + draw.between(1, 4));
    }
    lp.obj.push_back(draw.below(5) == 0 ? 0.0 : draw.between(-9, 9));
  }
  lp.rng.assign(lp.m, 0.0);
  for (int i = 0; i < lp.m; ++i) {
    lp.a.push_back(random_row(draw, lp.n, 7));
    lp.senses += "LGLGER"[draw.below(6)];
    lp.rhs.push_back(draw.between(-6, 9));
    if (lp.senses.back() == 'R') lp.rng[i] = draw.between(-4, 4);
    // A column with a large coefficient, as models switch rows on and off.
    if (draw.below(4) == 0) lp.a[i][draw.below(lp.n)] = draw.below(2) ? 1000.0 : -1000.0;
  }
  for (int k = draw.below(6) == 0 ? draw.between(1, 2) : 0; k > 0; --k) {
    DenseSet set{draw.below(2) ? '1' : '2', {}};
    for (int j = 0; j < lp.n; ++j) {
      if (draw.below(3) != 0) set.members.push_back(j);
    }
    if (!set.members.empty()) mip.sets.push_back(set);
  }
  for (int k = draw.below(4) == 0 ? draw.between(1, 2) : 0; k > 0; --k) {
    const std::size_t column = mip.types.find('B');
    if (column == std::string::npos) break;
    mip.indicators.push_back({static_cast<int>(column), draw.below(2), random_row(draw, lp.n, 5),
                              static_cast<double>(draw.between(-4, 6)), "LGE"[draw.below(3)]});
  }
  return mip;
}

class MipRandom : public ProblemTest {
 protected:
  ~MipRandom() override {
    if (reference_ != nullptr) {
      EXPECT_EQ(KLVfreeprob(env, &reference_), 0);
    }
  }

  void load(const DenseMip& mip) {
    mip.lp.load(env, lp);
    ASSERT_EQ(KLVcopyctype(env, lp, mip.types.c_str()), 0);
    for (const DenseSet& set : mip.sets) {
      const int begin = 0;
      std::vector<double> weights;
      for (std::size_t k = 0; k < set.members.size(); ++k) weights.push_back(1.0 + k);
      ASSERT_EQ(KLVaddsos(env, lp, 1, static_cast<int>(set.members.size()), &set.type, &begin,
                          set.members.data(), weights.data(), nullptr),
                0);
    }
    for (const DenseIndicator& indicator : mip.indicators) {
      std::vector<int> index;
      std::vector<double> value;
      for (int j = 0; j < mip.lp.n; ++j) {
        if (indicator.row[j] == 0.0) continue;
        index.push_back(j);
        value.push_back(indicator.row[j]);
      }
      ASSERT_EQ(KLVaddindconstr(env, lp, indicator.column, indicator.complemented,
                                static_cast<int>(index.size()), indicator.rhs, indicator.sense,
                                index.data(), value.data(), nullptr),
                0);
    }
  }

  std::optional<double> enumerate(const DenseMip& mip) {
    best_.reset();
    choose(mip, mip.lp, 0);
    return best_;
  }

 private:
  /// All values of column j and those after it; then ways to satisfy the sets.
  void choose(const DenseMip& mip, const DenseLp& fixed, int j) {
    if (j == mip.lp.n) return choose_set(mip, fixed, 0);
    const char type = mip.types[j];
    DenseLp next = fixed;
    const auto fix = [&](double value) {
      next.lb[j] = next.ub[j] = value;
      choose(mip, next, j + 1);
    };
    if (type == 'C') return choose(mip, fixed, j + 1);
    if (type == 'S' || type == 'N') fix(0.0);
    if (type == 'S') {
      next = fixed;
      return choose(mip, next, j + 1);
    }
    for (double v = std::ceil(mip.lp.lb[j]); v <= mip.lp.ub[j]; v += 1.0) fix(v);
  }

  void choose_set(const DenseMip& mip, const DenseLp& fixed, std::size_t s) {
    if (s == mip.sets.size()) return solve(mip, fixed);
    const DenseSet& set = mip.sets[s];
    const std::size_t keep = set.type == '1' ? 1 : 2;
    for (std::size_t first = 0; first == 0 || first + keep <= set.members.size(); ++first) {
      DenseLp next = fixed;
      bool possible = true;
      for (std::size_t k = 0; k < set.members.size(); ++k) {
        if (k >= first && k < first + keep) continue;
        const int j = set.members[k];
        possible &= next.lb[j] <= 0.0 && next.ub[j] >= 0.0;
        next.lb[j] = next.ub[j] = 0.0;
      }
      if (possible) choose_set(mip, next, s + 1);
    }
  }

  void solve(const DenseMip& mip, DenseLp rest) {
    for (const DenseIndicator& indicator : mip.indicators) {
      if ((rest.lb[indicator.column] != 0.0) == (indicator.complemented != 0)) continue;
      ++rest.m;
      rest.a.push_back(indicator.row);
      rest.senses += indicator.sense;
      rest.rhs.push_back(indicator.rhs);
      rest.rng.push_back(0.0);
    }
    double objective = 0.0;
    if (mip.types.find_first_of("CS") == std::string::npos) {
      if (!holds(rest)) return;
      for (int j = 0; j < rest.n; ++j) objective += rest.obj[j] * rest.lb[j];
    } else {
      rest.load(env, reference());
      ASSERT_EQ(KLVlpopt(env, reference()), 0);
      if (KLVgetstat(env, reference()) != KLV_STATUS_OPTIMAL) return;
      ASSERT_EQ(KLVgetobjval(env, reference(), &objective), 0);
    }
    if (!best_ || rest.sense * objective < rest.sense * *best_) best_ = objective;
  }

  static bool holds(const DenseLp& fixed) {
    for (int i = 0; i < fixed.m; ++i) {
      double activity = 0.0;
      for (int j = 0; j < fixed.n; ++j) activity += fixed.a[i][j] * fixed.lb[j];
      const double rhs = fixed.rhs[i];
      const double other = fixed.senses[i] == 'R' ? rhs + fixed.rng[i] : rhs;
      if (fixed.senses[i] != 'G' && activity > std::max(rhs, other) + 1e-9) return false;
      if (fixed.senses[i] != 'L' && activity < std::min(rhs, other) - 1e-9) return false;
    }
    return true;
  }

  KLVprob reference() {
    if (reference_ == nullptr) {
      int status = 0;
      reference_ = KLVcreateprob(env, &status, "reference");
    }
    return reference_;
  }

  std::optional<double> best_;
  KLVprob reference_ = nullptr;
};

/// A setting of the parameters that changes the path and never the answer.
struct Variation {
  int parameter, value;
};
constexpr Variation kVariations[] = {
    {KLV_PARAM_PREIND, 0},     {KLV_PARAM_VARSEL, -1},    {KLV_PARAM_VARSEL, 1},
    {KLV_PARAM_VARSEL, 2},     {KLV_PARAM_VARSEL, 3},     {KLV_PARAM_VARSEL, 4},
    {KLV_PARAM_NODESEL, 0},    {KLV_PARAM_NODESEL, 2},    {KLV_PARAM_NODESEL, 3},
    {KLV_PARAM_BRDIR, -1},     {KLV_PARAM_BRDIR, 1},      {KLV_PARAM_MIPEMPHASIS, 1},
    {KLV_PARAM_MIPSEARCH, 1},  {KLV_PARAM_DIVETYPE, 3},   {KLV_PARAM_MIPORDTYPE, 1},
    {KLV_PARAM_MIPORDTYPE, 2}, {KLV_PARAM_MIPORDTYPE, 3}, {KLV_PARAM_STARTALG, 1}};

TEST_F(MipRandom, AgreesWithEnumeration) {
  set(KLV_PARAM_EPGAP, 0.0);
  set(KLV_PARAM_EPAGAP, 0.0);
  constexpr unsigned kModels = 600;
  for (unsigned seed = 1; seed <= kModels; ++seed) {
    const Variation& variation = kVariations[seed % std::size(kVariations)];
    SCOPED_TRACE("seed " + std::to_string(seed) + ", parameter " +
                 std::to_string(variation.parameter) + " = " + std::to_string(variation.value));
    const DenseMip mip = random_mip(seed);
    const std::optional<double> expected = enumerate(mip);
    load(mip);
    int before = 0;
    ASSERT_EQ(KLVgetintparam(env, variation.parameter, &before), 0);
    set(variation.parameter, variation.value);
    ASSERT_EQ(KLVmipopt(env, lp), 0);
    set(variation.parameter, before);
    ASSERT_EQ(KLVgetstat(env, lp), expected ? KLV_STATUS_MIP_OPTIMAL : KLV_STATUS_MIP_INFEASIBLE);
    if (!expected) continue;
    EXPECT_NEAR(objective(), *expected, 1e-6 * (1.0 + std::fabs(*expected)));
    double bound = 0.0;
    ASSERT_EQ(KLVgetbestobjval(env, lp, &bound), 0);
    EXPECT_NEAR(bound, *expected, 1e-6 * (1.0 + std::fabs(*expected)));
  }
}

}  // namespace
