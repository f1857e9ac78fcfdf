#include "base/memory.h"

#include <gtest/gtest.h>

#include <cstring>

#include "base/containers.h"

namespace kelvo {
namespace {

TEST(Memory, BlocksAreAlignedAndCounted) {
  const auto before = live_blocks();
  for (std::size_t bytes : {0u, 1u, 15u, 16u, 17u, 1000u}) {
    void* block = allocate(bytes);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u);
    std::memset(block, 0x5a, bytes);
    EXPECT_EQ(live_blocks(), before + 1);
    release(block);
  }
  EXPECT_EQ(live_blocks(), before);
}

TEST(Memory, ReallocateKeepsContents) {
  char* block = static_cast<char*>(allocate(10));
  std::strcpy(block, "contents");
  for (std::size_t bytes = 10; bytes < 500000; bytes *= 3) {
    block = static_cast<char*>(reallocate(block, bytes));
    ASSERT_STREQ(block, "contents");
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u);
  }
  release(block);
}

TEST(Memory, TheAskedForRequestFailsOnce) {
  const auto before = live_blocks();
  fail_allocation_after(1);
  Vector<int> first(3);
  EXPECT_FALSE(allocation_failed());
  EXPECT_THROW(Vector<int>(3), std::bad_alloc);
  EXPECT_TRUE(allocation_failed());
  EXPECT_NO_THROW(Vector<int>(3));
  fail_allocation_after(-1);
  EXPECT_EQ(live_blocks(), before + 1);
}

}  // namespace
}  // namespace kelvo
