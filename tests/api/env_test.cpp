// Environments: open, close, children, error texts.
#include <gtest/gtest.h>
#include <kelvo.h>

#include <cstring>
#include <regex>
#include <string>

namespace {

void collect(void* handle, const char* text) {
  *static_cast<std::string*>(handle) += text;
}

/// An open environment that collects what goes to its error channel.
struct Env {
  KLVenv env;
  std::string errors;
  Env() {
    int status = -1;
    env = KLVopenKELVO(&status);
    EXPECT_EQ(status, 0);
    KLVchannel error = nullptr;
    EXPECT_EQ(KLVgetchannels(env, nullptr, nullptr, &error, nullptr), 0);
    EXPECT_EQ(KLVaddfuncdest(env, error, &errors, collect), 0);
  }
  ~Env() { EXPECT_EQ(KLVcloseKELVO(&env), 0); }
};

TEST(Environment, CloseFreesEverythingAndForgetsTheHandle) {
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

TEST(Environment, ChildrenHaveOneParentAndNoChildren) {
  Env a, b;
  int status = -1, pointee = 0;
  EXPECT_EQ(KLVEsetJNI(a.env, &pointee), 0);
  KLVenv child = KLVparenv(a.env, &status);
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(KLVEgetJNI(child), &pointee);

  KLVenv grandchild = KLVparenv(child, &status);
  EXPECT_EQ(grandchild, nullptr);
  EXPECT_EQ(status, 1019);
  KLVenv copy = child;
  EXPECT_EQ(KLVcloseKELVO(&copy), 1021);
  EXPECT_EQ(copy, child);

  EXPECT_EQ(KLVfreeparenv(b.env, &child), 1003);
  EXPECT_EQ(b.errors, "KELVO Error  1003: Bad argument to Callable Library function.\n");
  EXPECT_EQ(a.errors, "");
  EXPECT_EQ(KLVfreeparenv(a.env, &child), 0);
  EXPECT_EQ(child, nullptr);
  EXPECT_EQ(KLVfreeparenv(a.env, &child), 0);
}

TEST(Environment, NumberOfChildrenIsLimited) {
  Env a;
  int status = 0, made = 0;
  KLVenv last = nullptr;
  for (KLVenv child; (child = KLVparenv(a.env, &status)) != nullptr; last = child) {
    ASSERT_LT(++made, 100000);
  }
  EXPECT_EQ(status, 1020);
  EXPECT_EQ(a.errors, "KELVO Error  1020: Thread limit exceeded.\n");
  EXPECT_EQ(KLVfreeparenv(a.env, &last), 0);
  EXPECT_NE(KLVparenv(a.env, &status), nullptr);
}

TEST(ErrorTexts, LinesOfKnownAndUnknownCodes) {
  char buffer[1024] = "as before";
  EXPECT_EQ(KLVgeterrorstring(nullptr, 0, buffer), nullptr);
  EXPECT_EQ(KLVgeterrorstring(nullptr, 100000, buffer), nullptr);
  EXPECT_STREQ(buffer, "as before");
  EXPECT_EQ(KLVgeterrorstring(nullptr, 9999, buffer), nullptr);
  EXPECT_STREQ(buffer, "KELVO Error  9999: Unknown error code.\n");
  Env a;
  // 1001 and 1480 start at the same slot of the index.
  EXPECT_EQ(KLVgeterrorstring(a.env, 1001, buffer), buffer);
  EXPECT_STREQ(buffer, "KELVO Error  1001: Out of memory.\n");
  EXPECT_EQ(KLVgeterrorstring(a.env, 1480, buffer), buffer);
  EXPECT_STREQ(buffer, "KELVO Error  1480: Line %d: 'INTORG' found while reading integers.\n");
  EXPECT_EQ(KLVgeterrorstring(a.env, 3018, buffer), buffer);
  EXPECT_STREQ(buffer,
               "KELVO Error  3018: Magnitude of variable %.255s: %g exceeds\n"
               "      integer limit %d.\n");
  int found = 0;
  for (int code = 1; code < 100000; ++code) {
    if (KLVgeterrorstring(a.env, code, buffer) != nullptr) ++found;
  }
  EXPECT_EQ(found, 238);
}

}  // namespace
