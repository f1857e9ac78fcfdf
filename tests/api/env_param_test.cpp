// Parameters: kinds, bounds, defaults, names, what changed.
#include <cmath>
#include <cstring>
#include <limits>

#include "env_fixture.h"

namespace {

using Parameters = EnvironmentTest;

TEST_F(Parameters, BoundsAreKeptAndReported) {
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 3), 1015);
  EXPECT_EQ(take(errors), "KELVO Error  1015: Parameter value too big.\n");
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, -1), 1014);
  EXPECT_EQ(take(errors), "KELVO Error  1014: Parameter value too small.\n");
  EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 1);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 2), 0);
  EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 2);

  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_EPGAP, 1.5), 1015);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_EPGAP, -1e-9), 1014);
  EXPECT_EQ(get_double(KLV_PARAM_EPGAP), 1e-4);
  // Without bounds; a default below its own minimum; a NaN passes every bound.
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_OBJULIM, -5.0), 0);
  EXPECT_EQ(get_double(KLV_PARAM_OBJULIM), -5.0);
  EXPECT_EQ(get_double(KLV_PARAM_SINGTOL), 1e-13);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_SINGTOL, 1e-13), 1014);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_EPOPT, std::numeric_limits<double>::quiet_NaN()), 0);
  EXPECT_TRUE(std::isnan(get_double(KLV_PARAM_EPOPT)));
}

TEST_F(Parameters, WrongNumbersKindsAndPointers) {
  int kind = -1;
  double real = 0.0;
  char text[512] = "as before";
  for (int number : {-5, 0, 1000, 1011, 1500, 2135, 5999, 6000, 1 << 30}) {
    EXPECT_EQ(KLVsetintparam(env, number, 0), 1013) << number;
    EXPECT_EQ(KLVsetdblparam(env, number, 0.0), 1013) << number;
    EXPECT_EQ(KLVsetstrparam(env, number, "x"), 1013) << number;
    EXPECT_EQ(KLVgetintparam(env, number, &kind), 1013) << number;
    EXPECT_EQ(KLVinfodblparam(env, number, &real, &real, &real), 1013) << number;
  }
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_EPOPT, 0), 1013);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_WORKDIR, 0.0), 1013);
  EXPECT_EQ(KLVgetstrparam(env, KLV_PARAM_ADVIND, text), 1013);
  EXPECT_EQ(KLVgetintparam(env, KLV_PARAM_ADVIND, nullptr), 1004);
  EXPECT_EQ(KLVgetintparam(env, KLV_PARAM_EPOPT, nullptr), 1004);
  EXPECT_EQ(KLVgetparamnum(env, "KLV_PARAM_ADVIND", nullptr), 1004);
  EXPECT_STREQ(text, "as before");

  EXPECT_EQ(KLVgetparamtype(env, KLV_PARAM_ADVIND, &kind), 0);
  EXPECT_EQ(kind, KLV_PARAMTYPE_INT);
  EXPECT_EQ(KLVgetparamtype(env, KLV_PARAM_EPOPT, &kind), 0);
  EXPECT_EQ(kind, KLV_PARAMTYPE_DOUBLE);
  EXPECT_EQ(KLVgetparamtype(env, 1106, &kind), 0);
  EXPECT_EQ(kind, KLV_PARAMTYPE_STRING);
  // In the range of a group, but no parameter; then outside every group.
  EXPECT_EQ(KLVgetparamtype(env, 1011, &kind), 0);
  EXPECT_EQ(kind, KLV_PARAMTYPE_NONE);
  EXPECT_EQ(KLVgetparamname(env, 1011, text), 0);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(KLVgetparamtype(env, 1124, &kind), 1013);
  EXPECT_EQ(KLVgetparamname(env, 1124, text), 1013);
  EXPECT_EQ(KLVgetparamname(env, 1043, text), 0);
  EXPECT_STREQ(text, "");

  int number = 5;
  EXPECT_EQ(KLVgetparamnum(env, "KLV_PARAM_EPOPT", &number), 0);
  EXPECT_EQ(number, 1014);
  for (const char* unknown : {"klv_param_epopt", "", "KLV_PARAM_EPOPTX", "KLV_PARAM_EPOP"}) {
    EXPECT_EQ(KLVgetparamnum(env, unknown, &number), 1028) << unknown;
    EXPECT_EQ(number, -1);
  }
  EXPECT_EQ(KLVsetintparam(nullptr, KLV_PARAM_ADVIND, 0), 1002);
}

TEST_F(Parameters, TextsAndTheirDefaults) {
  char text[512];
  EXPECT_EQ(get_text(KLV_PARAM_WORKDIR), ".");
  EXPECT_EQ(get_text(1116), ".lp");
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "/somewhere else"), 0);
  EXPECT_EQ(get_text(KLV_PARAM_WORKDIR), "/somewhere else");
  EXPECT_EQ(KLVinfostrparam(env, KLV_PARAM_WORKDIR, text), 0);
  EXPECT_STREQ(text, ".");
  EXPECT_EQ(KLVinfostrparam(env, KLV_PARAM_WORKDIR, nullptr), 0);
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, std::string(2000, 'x').c_str()), 0);
  EXPECT_EQ(get_text(KLV_PARAM_WORKDIR), std::string(511, 'x'));
  EXPECT_EQ(get_text(1106), ".lp");
}

TEST_F(Parameters, DefaultsAreBackAfterSetdefaultsHiddenOnesIncluded) {
  int changed = 0;
  for (int number = 1001; number < 6000; ++number) {
    int kind = 0;
    if (number == KLV_PARAM_SCRIND || KLVgetparamtype(env, number, &kind) != 0) continue;
    if (kind == KLV_PARAMTYPE_INT) {
      int initial, min, max;
      ASSERT_EQ(KLVinfointparam(env, number, &initial, &min, &max), 0);
      EXPECT_EQ(get_int(number), initial) << number;
      EXPECT_TRUE(min <= initial && initial <= max) << number;
      if (max != initial && KLVsetintparam(env, number, max) == 0) ++changed;
    } else if (kind == KLV_PARAMTYPE_DOUBLE) {
      double initial, min, max;
      ASSERT_EQ(KLVinfodblparam(env, number, &initial, &min, &max), 0);
      EXPECT_EQ(get_double(number), initial) << number;
      if (KLVsetdblparam(env, number, max == min ? 0.5 : max) == 0) ++changed;
    }
  }
  EXPECT_GT(changed, 200);
  EXPECT_EQ(KLVsetdefaults(env), 0);
  for (int number = 1001; number < 6000; ++number) {
    int kind = 0, initial = 0;
    double real = 0.0;
    if (KLVgetparamtype(env, number, &kind) != 0) continue;
    if (kind == KLV_PARAMTYPE_INT) {
      EXPECT_EQ(KLVinfointparam(env, number, &initial, nullptr, nullptr), 0);
      EXPECT_EQ(get_int(number), initial) << number;
    } else if (kind == KLV_PARAMTYPE_DOUBLE) {
      EXPECT_EQ(KLVinfodblparam(env, number, &real, nullptr, nullptr), 0);
      EXPECT_EQ(get_double(number), real) << number;
    }
  }
}

TEST_F(Parameters, PolishingForATimeAndAfterAnEventExcludeEachOther) {
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHTIME, 10.0), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_POLISHAFTERNODE, 500), 1807);
  EXPECT_EQ(take(errors), "KELVO Error  1807: Incompatible parameters.\n");
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_POLISHAFTERNODE, 2100000000), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_POLISHAFTERINTSOL, 2099999999), 1807);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_POLISHAFTERINTSOL, 0), 1014);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHAFTEREPGAP, 0.0), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHAFTEREPGAP, 2.0), 1807);  // and out of range
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHAFTEREPGAP, -2.0), 1014);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHAFTERTIME, 1e74), 1807);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHAFTERTIME, 1e75), 0);

  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHTIME, 0.0), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_POLISHAFTERNODE, 210000000), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHTIME, 1.0), 0);  // that count is not in use
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHTIME, 0.0), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_POLISHAFTERNODE, 209999999), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_POLISHTIME, 1.0), 1807);
  EXPECT_EQ(get_double(KLV_PARAM_POLISHTIME), 0.0);
}

TEST_F(Parameters, ChangedPublicOnesAreListedInOrder) {
  int count = -1, surplus = -1, numbers[3] = {0, 0, 0};
  EXPECT_EQ(KLVgetchgparam(env, &count, nullptr, 0, &surplus), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(surplus, 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_BARORDER, 2), 0);
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "x"), 0);
  EXPECT_EQ(KLVsetintparam(env, 1053, 1), 0);  // hidden
  EXPECT_EQ(KLVgetchgparam(env, &count, nullptr, 0, &surplus), 1207);
  EXPECT_EQ(surplus, -2);
  EXPECT_EQ(take(errors), "");
  EXPECT_EQ(KLVgetchgparam(env, &count, numbers, 1, &surplus), 1207);
  EXPECT_EQ(take(errors), "KELVO Error  1207: Insufficient array length.\n");
  EXPECT_EQ(count, 1);
  EXPECT_EQ(surplus, -1);
  EXPECT_EQ(KLVgetchgparam(env, &count, numbers, 3, &surplus), 0);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(surplus, 1);
  EXPECT_EQ(numbers[0], KLV_PARAM_WORKDIR);
  EXPECT_EQ(numbers[1], KLV_PARAM_BARORDER);
  EXPECT_EQ(KLVgetchgparam(env, &count, numbers, -1, &surplus), 1003);
  EXPECT_EQ(KLVgetchgparam(env, nullptr, numbers, 3, &surplus), 1004);
}

TEST_F(Parameters, SettingsAreEchoedOnRequest) {
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 0), 0);
  EXPECT_EQ(take(results), "");
  EXPECT_EQ(KLVsetintparam(env, 1075, 1), 0);
  EXPECT_EQ(KLVsetdblparam(env, KLV_PARAM_EPOPT, 1e-7), 0);
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "w"), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 9), 1015);
  EXPECT_EQ(
      take(results),
      "Parameter 1075 set to 1.\nParameter 1014 set to 1e-07.\nParameter 1064 set to \"w\".\n");
}

TEST_F(Parameters, ThreadsGoUpToTheProcessors) {
  int max1067 = 0, max3016 = 0;
  EXPECT_EQ(KLVinfointparam(env, KLV_PARAM_THREADS, nullptr, nullptr, &max1067), 0);
  EXPECT_EQ(KLVinfointparam(env, 3016, nullptr, nullptr, &max3016), 0);
  EXPECT_GE(max1067, 1);
  EXPECT_EQ(max1067, max3016);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_THREADS, max1067), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_THREADS, max1067 + 1), 1015);
}

TEST_F(Parameters, AChildStartsWithTheParentsValuesAndThenGoesItsOwnWay) {
  int status = 0;
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 2), 0);
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "parent"), 0);
  KLVenv child = KLVparenv(env, &status);
  ASSERT_NE(child, nullptr);
  std::swap(env, child);
  EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 2);
  EXPECT_EQ(get_text(KLV_PARAM_WORKDIR), "parent");
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 0), 0);
  EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "child"), 0);
  std::swap(env, child);
  EXPECT_EQ(get_int(KLV_PARAM_ADVIND), 2);
  EXPECT_EQ(get_text(KLV_PARAM_WORKDIR), "parent");
}

TEST_F(Parameters, NamesAndMeaningsOfAll) {
  int public_ones = 0;
  for (int number = 1001; number < 6000; ++number) {
    char name[512], meaning[512];
    if (KLVgetparammeaning(env, number, meaning, nullptr) != 0) continue;
    ASSERT_EQ(KLVgetparamname(env, number, name), 0);
    EXPECT_EQ(name[0] == '\0', meaning[0] == '\0') << number;
    if (name[0] == '\0') continue;
    ++public_ones;
    int found = 0;
    EXPECT_EQ(KLVgetparamnum(env, name, &found), 0) << name;
    EXPECT_EQ(found, number) << name;
    EXPECT_LT(std::strlen(meaning), 80u) << name;
  }
  EXPECT_EQ(public_ones, 151);
  char meaning[512];
  int has_effect = -1;
  EXPECT_EQ(KLVgetparammeaning(env, KLV_PARAM_EPOPT, meaning, &has_effect), 0);
  EXPECT_STREQ(meaning, "optimality tolerance on reduced costs");
  EXPECT_EQ(has_effect, 1);
  EXPECT_EQ(KLVgetparammeaning(env, KLV_PARAM_BARITLIM, meaning, &has_effect), 0);
  EXPECT_EQ(has_effect, 0);
  EXPECT_EQ(KLVgetparammeaning(env, 1500, meaning, &has_effect), 1013);
  EXPECT_EQ(KLVgetparammeaning(env, KLV_PARAM_EPOPT, nullptr, &has_effect), 1004);
}

}  // namespace
