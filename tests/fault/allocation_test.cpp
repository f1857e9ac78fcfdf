// The harness itself: it accepts an operation that loses nothing and finds each kind of fault.
#include "fault/allocation.h"

#include <gtest/gtest-spi.h>

#include "base/containers.h"

namespace kelvo::test {
namespace {

struct Numbers {
  Vector<int> values{1, 2, 3};
};

/// Adds two numbers through two copies, all or nothing.
int append_two(Numbers& numbers) {
  try {
    Vector<int> longer = numbers.values;
    longer.push_back(4);
    numbers.values.swap(longer);
    return 0;
  } catch (const std::bad_alloc&) {
    return 1001;
  }
}

void expect_three(Numbers& numbers) {
  EXPECT_EQ(numbers.values.size(), 3u);
}

/// Runs a statement and returns how many test failures it reported.
template <class Statement>
int failures_of(Statement statement) {
  ::testing::TestPartResultArray results;
  {
    ::testing::ScopedFakeTestPartResultReporter reporter(
        ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
    statement();
  }
  return results.size();
}

template <class Run>
int failures_with(Run run, AllocationFaults options = {}) {
  return failures_of(
      [&] { for_each_allocation_failure([] { return Numbers(); }, run, expect_three, options); });
}

TEST(AllocationFaults, AcceptsAnOperationThatLosesNothing) {
  int tries = 0;
  for_each_allocation_failure([] { return Numbers(); },
                              [&](Numbers& numbers) {
                                ++tries;
                                return append_two(numbers);
                              },
                              expect_three);
  EXPECT_EQ(tries, 3);  // the copy fails, the growth fails, nothing fails
}

TEST(AllocationFaults, FindsEachKindOfFault) {
  const auto half_done = [](Numbers& numbers) {
    try {
      numbers.values.push_back(4);
      numbers.values.reserve(100);
      return 0;
    } catch (const std::bad_alloc&) {
      return 1001;
    }
  };
  EXPECT_GT(failures_with(half_done), 0);

  void* lost[3];
  int num_lost = 0;
  const auto leaking = [&](Numbers& numbers) {
    void* block = allocate(8);
    if (block == nullptr) return 1001;
    const int status = append_two(numbers);
    if (status != 0) {
      lost[num_lost++] = block;
    } else {
      release(block);
    }
    return status;
  };
  EXPECT_GT(failures_with(leaking), 0);
  while (num_lost > 0) release(lost[--num_lost]);

  const auto silent = [](Numbers& numbers) {
    (void)append_two(numbers);
    return 0;
  };
  EXPECT_GT(failures_with(silent), 0);
  EXPECT_EQ(failures_with(silent, {.may_survive = true}), 0);

  const auto always_refuses = [](Numbers&) {
    release(allocate(8));
    return 1001;
  };
  EXPECT_GT(failures_with(always_refuses), 0);
}

TEST(AllocationFaults, EndsWhenAnOperationNeverGetsThrough) {
  // Whatever k is, this operation asks for memory until a request fails.
  const auto insatiable = [](Numbers&) {
    while (void* block = allocate(8)) release(block);
    return 1001;
  };
  EXPECT_EQ(failures_with(insatiable, {.most_tries = 50}), 1);
}

}  // namespace
}  // namespace kelvo::test
