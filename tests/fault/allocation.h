// The k-th allocation fails: does anything get lost?
//
// for_each_allocation_failure() makes the first, the second, the third, ... request for memory of
// an operation fail, until the operation gets through without a failure. Every failed try must
//
//   - return 1001,
//   - leave as many live blocks behind as there were before it,
//   - leave the object answering as before, which the caller's `check` verifies,
//   - leave nothing behind once the object is gone.
//
// `prepare` makes a fresh object for every try (a record with a destructor that frees it), `run`
// performs the operation on it and returns its status, `check` looks at the object after a failed
// try, with memory available again:
//
//   for_each_allocation_failure([] { return SmallProblem(); },
//                               [](SmallProblem& p) { return KLVaddrows(p.env, p.lp, ...); },
//                               [](SmallProblem& p) { EXPECT_EQ(KLVgetnumrows(p.env, p.lp), 2); });
//
// The count of requests is that of the whole process, so no other thread may run meanwhile.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "base/memory.h"

namespace kelvo::test {

struct AllocationFaults {
  /// The operation counts as endless when so many tries have not brought it through.
  std::int64_t most_tries = 100000;
  /// Tries 0, step, 2 step, ...: for operations with very many requests.
  std::int64_t step = 1;
  /// The operation may get through (status 0) in spite of a failed request, for example by doing
  /// without a table that only makes it faster. `check` is not called after such a try.
  bool may_survive = false;
  /// A failed try may keep room that it made (a container that grew) until the object is freed.
  bool may_keep_room = false;
};

/// Switches the failure off on every path out of a scope.
class AllocationFailureScope {
 public:
  explicit AllocationFailureScope(std::int64_t successes) { fail_allocation_after(successes); }
  ~AllocationFailureScope() { fail_allocation_after(-1); }
  AllocationFailureScope(const AllocationFailureScope&) = delete;
  AllocationFailureScope& operator=(const AllocationFailureScope&) = delete;
};

template <class Prepare, class Run, class Check>
void for_each_allocation_failure(Prepare prepare, Run run, Check check,
                                 AllocationFaults options = {}) {
  constexpr int kOutOfMemory = 1001;
  for (std::int64_t k = 0;; k += options.step) {
    SCOPED_TRACE(::testing::Message() << "allocation " << k << " fails");
    if (k / options.step >= options.most_tries) {
      ADD_FAILURE() << "no end after " << options.most_tries << " tries";
      return;
    }
    const std::int64_t blocks_outside = live_blocks();
    bool failed = false;
    {
      auto object = prepare();
      const std::int64_t blocks_before = live_blocks();
      int status = 0;
      {
        AllocationFailureScope scope(k);
        status = run(object);
        failed = allocation_failed();
      }
      if (!failed) {
        EXPECT_EQ(status, 0) << "the operation fails although it got all the memory it wanted";
      } else if (status == 0 && options.may_survive) {
        // It found a way around.
      } else {
        EXPECT_EQ(status, kOutOfMemory);
        if (!options.may_keep_room) {
          EXPECT_EQ(live_blocks(), blocks_before) << "blocks left behind by the failed try";
        }
        check(object);
      }
    }
    EXPECT_EQ(live_blocks(), blocks_outside) << "blocks left behind after the object was freed";
    if (!failed || ::testing::Test::HasFailure()) return;
  }
}

}  // namespace kelvo::test
