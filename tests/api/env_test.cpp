// Environments: open, close, children, error texts, callbacks.
#include <regex>

#include "env_fixture.h"

namespace {

using Environment = EnvironmentTest;

TEST(Environments, CloseFreesEverythingAndForgetsTheHandle) {
  int status = -1;
  KLVenv env = KLVopenKELVO(&status);
  ASSERT_NE(env, nullptr);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(std::regex_match(KLVversion(env), std::regex("[0-9]+[.][0-9]+[.][0-9]+")));
  EXPECT_EQ(KLVEgetbigreal(env), 1e75);
  EXPECT_EQ(KLVEgetThreadNumber(env), 0);
  EXPECT_NE(KLVaddchannel(env), nullptr);
  KLVenv child = KLVparenv(env, &status);
  ASSERT_NE(child, nullptr);
  EXPECT_NE(KLVaddchannel(child), nullptr);
  EXPECT_EQ(KLVcloseKELVO(&env), 0);
  EXPECT_EQ(env, nullptr);
  EXPECT_EQ(KLVcloseKELVO(&env), 1002);
  EXPECT_EQ(KLVversion(nullptr), nullptr);
}

TEST_F(Environment, ChildrenHaveOneParentAndNoChildren) {
  int status = -1, pointee = 0;
  KLVenv other = KLVopenKELVO(&status);
  std::string other_errors;
  KLVchannel error = nullptr;
  EXPECT_EQ(KLVgetchannels(other, nullptr, nullptr, &error, nullptr), 0);
  EXPECT_EQ(KLVaddfuncdest(other, error, &other_errors, append), 0);
  EXPECT_EQ(KLVEsetJNI(env, &pointee), 0);
  KLVenv child = KLVparenv(env, &status);
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(KLVEgetJNI(child), &pointee);

  KLVenv grandchild = KLVparenv(child, &status);
  EXPECT_EQ(grandchild, nullptr);
  EXPECT_EQ(status, 1019);
  KLVenv copy = child;
  EXPECT_EQ(KLVcloseKELVO(&copy), 1021);
  EXPECT_EQ(copy, child);

  EXPECT_EQ(KLVfreeparenv(other, &child), 1003);
  EXPECT_EQ(other_errors, "KELVO Error  1003: Bad argument to Callable Library function.\n");
  EXPECT_EQ(errors, "");
  EXPECT_EQ(KLVfreeparenv(env, &child), 0);
  EXPECT_EQ(child, nullptr);
  EXPECT_EQ(KLVfreeparenv(env, &child), 0);
  EXPECT_EQ(KLVcloseKELVO(&other), 0);
}

TEST_F(Environment, NumberOfChildrenIsLimited) {
  int status = 0, made = 0;
  KLVenv last = nullptr;
  for (KLVenv child; (child = KLVparenv(env, &status)) != nullptr; last = child) {
    ASSERT_LT(++made, 100000);
  }
  EXPECT_EQ(status, 1020);
  EXPECT_EQ(errors, "KELVO Error  1020: Thread limit exceeded.\n");
  EXPECT_EQ(KLVfreeparenv(env, &last), 0);
  EXPECT_NE(KLVparenv(env, &status), nullptr);
}

TEST_F(Environment, TextsOfOfKnownAndUnknownCodes) {
  char buffer[1024] = "as before";
  EXPECT_EQ(KLVgeterrorstring(nullptr, 0, buffer), nullptr);
  EXPECT_EQ(KLVgeterrorstring(nullptr, 100000, buffer), nullptr);
  EXPECT_STREQ(buffer, "as before");
  EXPECT_EQ(KLVgeterrorstring(nullptr, 9999, buffer), nullptr);
  EXPECT_STREQ(buffer, "KELVO Error  9999: Unknown error code.\n");
  // 1001 and 1480 start at the same slot of the index.
  EXPECT_EQ(KLVgeterrorstring(env, 1001, buffer), buffer);
  EXPECT_STREQ(buffer, "KELVO Error  1001: Out of memory.\n");
  EXPECT_EQ(KLVgeterrorstring(env, 1480, buffer), buffer);
  EXPECT_STREQ(buffer, "KELVO Error  1480: Line %d: 'INTORG' found while reading integers.\n");
  EXPECT_EQ(KLVgeterrorstring(env, 3018, buffer), buffer);
  EXPECT_STREQ(buffer,
               "KELVO Error  3018: Magnitude of variable %.255s: %g exceeds\n"
               "      integer limit %d.\n");
  int found = 0;
  for (int code = 1; code < 100000; ++code) {
    if (KLVgeterrorstring(env, code, buffer) != nullptr) ++found;
  }
  EXPECT_EQ(found, 238);
}

struct Slot {
  const char* name;
  int (*set)(KLVenv, KLVcallback, void*);
  int (*get)(KLVenv, KLVcallback*, void**);
};

const Slot kSlots[] = {
    {"lp", KLVsetlpcallbackfunc, KLVgetlpcallbackfunc},
    {"net", KLVsetnetcallbackfunc, KLVgetnetcallbackfunc},
    {"tuning", KLVsettuningcallbackfunc, KLVgettuningcallbackfunc},
    {"info", KLVsetinfocallbackfunc, KLVgetinfocallbackfunc},
    {"mip", KLVsetmipcallbackfunc, KLVgetmipcallbackfunc},
};

TEST_F(Environment, EachKindOfCallbackHasItsSlotWhichDefaultsLeaveAloneAndChildrenCopy) {
  const KLVcallback function = [](KLVenv, void*, int, void*) { return 0; };
  int handles[5] = {0, 1, 2, 3, 4};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(kSlots[i].set(env, function, &handles[i]), 0);
  EXPECT_EQ(KLVsetdefaults(env), 0);
  int status = 0;
  KLVenv child = KLVparenv(env, &status);
  EXPECT_EQ(kSlots[4].set(env, nullptr, nullptr), 0);
  for (int i = 0; i < 5; ++i) {
    KLVcallback stored = nullptr;
    void* handle = nullptr;
    EXPECT_EQ(kSlots[i].get(child, &stored, &handle), 0);
    EXPECT_EQ(stored, function) << kSlots[i].name;
    EXPECT_EQ(handle, &handles[i]) << kSlots[i].name;
    EXPECT_EQ(kSlots[i].get(env, &stored, nullptr), 0);
    EXPECT_EQ(stored, i == 4 ? nullptr : function) << kSlots[i].name;
    EXPECT_EQ(kSlots[i].get(nullptr, &stored, nullptr), 1002);
    EXPECT_EQ(kSlots[i].set(nullptr, stored, nullptr), 1002);
  }
  EXPECT_EQ(KLVsetterminate(nullptr, nullptr), 1002);
  EXPECT_EQ(KLVsetterminate(env, nullptr), 0);
  EXPECT_EQ(errors, "");
}

}  // namespace
