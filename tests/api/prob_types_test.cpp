// Column types read back.
#include "prob_fixture.h"

namespace {

using ColumnTypes = ProblemTest;

TEST_F(ColumnTypes, AreReadBackAndCounted) {
  ASSERT_EQ(KLVnewcols(env, lp, 6, nullptr, nullptr, nullptr, "CBBISN", nullptr), 0);
  std::string types(4, '?');
  EXPECT_EQ(KLVgetctype(env, lp, types.data(), 1, 4), 0);
  EXPECT_EQ(types, "BBIS");
  EXPECT_EQ(KLVgetnumbin(env, lp), 2);
  EXPECT_EQ(KLVgetnumint(env, lp), 1);
  EXPECT_EQ(KLVgetnumsemicont(env, lp), 1);
  EXPECT_EQ(KLVgetnumsemiint(env, lp), 1);
  EXPECT_EQ(KLVgetctype(env, lp, types.data(), 0, 6), 1200);
  EXPECT_EQ(KLVgetctype(env, lp, nullptr, 0, 1), 1004);
}

TEST_F(ColumnTypes, ALinearProgramHasNone) {
  ASSERT_EQ(KLVnewcols(env, lp, 2, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  char type = '?';
  EXPECT_EQ(KLVgetctype(env, lp, &type, 0, 0), 3003);
  EXPECT_EQ(take(errors), "KELVO Error  3003: Not a mixed-integer problem.\n");
  EXPECT_EQ(KLVgetnumbin(env, lp), 0);
  EXPECT_EQ(KLVgetnumbin(env, nullptr), 0);
}

}  // namespace
