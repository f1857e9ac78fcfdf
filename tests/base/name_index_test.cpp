#include "base/name_index.h"

#include <gtest/gtest.h>

#include <string>

#include "base/name_store.h"

namespace kelvo {
namespace {

TEST(NameIndex, FindsTheFirstOfEqualNames) {
  NameStore names;
  for (const char* name : {"x", "y", "x", "", "a rather long name", "y"}) names.append(name);
  NameIndex index;
  EXPECT_EQ(index.find("x", names), NameIndex::kNone);
  index.build(names, names.size());
  EXPECT_EQ(index.size(), 4);
  EXPECT_EQ(index.find("x", names), 0);
  EXPECT_EQ(index.find("y", names), 1);
  EXPECT_EQ(index.find("", names), 3);
  EXPECT_EQ(index.find("a rather long name", names), 4);
  EXPECT_EQ(index.find("a rather long nam", names), NameIndex::kNone);
  EXPECT_EQ(index.insert("x", 6, names), 0);
  EXPECT_EQ(index.insert("z", 6, names), 6);
  index.clear();
  EXPECT_EQ(index.find("x", names), NameIndex::kNone);
}

TEST(NameIndex, ManySimilarNamesAllStayApart) {
  NameStore names;
  NameIndex index;
  constexpr int kCount = 50000;
  for (int i = 0; i < kCount; ++i) {
    const std::string name = "variable_with_a_common_stem#" + std::to_string(i);
    ASSERT_EQ(index.insert(name, i, names), i);
    names.append(name);
  }
  for (int i = 0; i < kCount; ++i) ASSERT_EQ(index.find(names.view(i), names), i);
  EXPECT_EQ(index.find("variable_with_a_common_stem#50000", names), NameIndex::kNone);
}

TEST(NameIndex, AFailedGrowthLosesNothing) {
  NameStore names;
  NameIndex index;
  for (int i = 0; i < 8; ++i) {
    index.insert(std::to_string(i), i, names);
    names.append(std::to_string(i));
  }
  fail_allocation_after(0);
  EXPECT_THROW(index.insert("8", 8, names), std::bad_alloc);
  fail_allocation_after(-1);
  EXPECT_EQ(index.size(), 8);
  for (int i = 0; i < 8; ++i) EXPECT_EQ(index.find(names.view(i), names), i);
  EXPECT_EQ(index.insert("8", 8, names), 8);
}

}  // namespace
}  // namespace kelvo
