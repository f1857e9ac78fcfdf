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

TEST(NameIndex, NamesOfEveryLengthStayApart) {
  NameStore names;
  NameIndex index;
  for (int length = 0; length <= 40; ++length) {
    for (const char* pattern : {"a", "ab", "\x80\xff"}) {
      std::string name;
      while (static_cast<int>(name.size()) < length) name += pattern;
      name.resize(static_cast<std::size_t>(length));
      if (length < 2 && pattern[1] != '\0') continue;
      if (length == 0) continue;
      ASSERT_EQ(index.insert(name, names.size(), names), names.size()) << name;
      names.append(name);
    }
  }
  for (int i = 0; i < names.size(); ++i) ASSERT_EQ(index.find(names.view(i), names), i);
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
  bool grown_in_vain = false;
  for (int i = 0; i < 100; ++i) {
    const std::string name = std::to_string(i) + (i % 2 == 0 ? "" : " with a longer name");
    bool failed = false;
    fail_allocation_after(0);
    try {
      ASSERT_EQ(index.insert(name, i, names), i);
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    fail_allocation_after(-1);
    if (failed) {
      ASSERT_EQ(index.insert(name, i, names), i);
    }
    grown_in_vain = grown_in_vain || failed;
    names.append(name);
    for (int k = 0; k <= i; ++k) ASSERT_EQ(index.find(names.view(k), names), k);
  }
  EXPECT_TRUE(grown_in_vain);
  EXPECT_EQ(index.size(), 100);
}

}  // namespace
}  // namespace kelvo
