// The stop check: when the clock is read, and whom it asks.
#include "env/stop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "env/environment.h"
#include "env/params/param_numbers.h"

namespace kelvo {
namespace {

TEST(TimeLimit, ReadsTheClockOftenAtFirstAndThenRarely) {
  int readings = 0;
  TimeLimit limit(100.0, 10.0);
  const auto call = [&](double now) {
    return limit.expired([&] {
      ++readings;
      return now;
    });
  };
  for (int i = 0; i < 99; ++i) EXPECT_FALSE(call(100.0));
  EXPECT_EQ(readings, 99);
  for (int i = 100; i < 3000; ++i) EXPECT_FALSE(call(100.0));
  EXPECT_EQ(readings, 99 + 2);  // the calls 1000 and 2000
  EXPECT_TRUE(call(110.5));     // call 3000
}

TEST(TimeLimit, SlowCallsAreFoundOut) {
  // Each call takes 0.03 seconds, so that from call 100 on about every fourth reads the clock.
  double now = 0.0;
  int readings = 0;
  TimeLimit limit(now, 30.0);
  int calls = 0;
  const auto read = [&] {
    ++readings;
    return now;
  };
  while (!limit.expired(read)) {
    now += 0.03;
    ASSERT_LT(++calls, 2000);
  }
  EXPECT_GT(readings, 300);
  EXPECT_LT(readings, 400);
  EXPECT_LT(now, 30.0 + 5 * 0.03);
}

TEST(TimeLimit, WhatHasExpiredStaysExpired) {
  TimeLimit limit(100.0, 10.0);
  for (int i = 0; i < 999; ++i) EXPECT_FALSE(limit.expired([] { return 100.0; }));
  EXPECT_TRUE(limit.expired([] { return 110.5; }));
  EXPECT_TRUE(limit.expired([] { return 110.5; })) << "asked again at once";
}

TEST(TimeLimit, TheDeadlineItselfHasNotPassedAndMayBeMoved) {
  TimeLimit limit(5.0, 1.0);
  EXPECT_FALSE(limit.expired([] { return 6.0; }));
  EXPECT_TRUE(limit.expired([] { return 6.1; }));
  limit.reset(2.0);
  EXPECT_FALSE(limit.expired([] { return 6.9; }));
  EXPECT_TRUE(limit.expired([] { return 7.1; }));
}

TEST(StopCheck, TimeLimitsNestAndExistOnlyWithALimit) {
  Environment env;
  env.time_limit_begin();
  EXPECT_EQ(env.check_stop(), 0);
  env.time_limit_end();
  ASSERT_TRUE(env.settings().set_double(param::TILIM, 0.0).ok());
  EXPECT_EQ(env.check_stop(), 0);
  {
    TimeLimitScope outer(env);
    {
      TimeLimitScope inner(env);
      EXPECT_EQ(env.stop_check().check(), StopReason::time_limit);
    }
    EXPECT_EQ(env.check_stop(), kStopTimeLimit);
    env.time_limit_reset(1000.0);
    EXPECT_EQ(env.check_stop(), 0);
  }
  env.time_limit_reset(0.0);
  EXPECT_EQ(env.check_stop(), 0) << "the limit went with the outer one";
}

TEST(StopCheck, WorkersStandUnderTheirParentsLimitFlagAndHook) {
  Environment env;
  Environment& worker = *env.add_worker(3);
  EXPECT_EQ(worker.check_stop(), 0);
  int flag = 0;
  env.settings().terminate_flag = &flag;
  EXPECT_EQ(worker.check_stop(), 0);
  flag = 7;
  EXPECT_EQ(worker.check_stop(), kStopUserAbort);
  flag = 0;

  env.stop_hook = [](klv_env*, int zero) { return zero == 0 ? 99 : 1; };
  EXPECT_EQ(worker.check_stop(), 99);
  // A hook answers for everything above it, whatever it says.
  worker.stop_hook = [](klv_env*, int) { return 0; };
  EXPECT_EQ(worker.check_stop(), 0);

  ASSERT_TRUE(env.settings().set_double(param::TILIM, 0.0).ok());
  TimeLimitScope scope(env);
  EXPECT_EQ(worker.check_stop(), kStopTimeLimit);
}

TEST(StopCheck, AnotherThreadSetsTheFlag) {
  Environment env;
  int flag = 0;
  env.settings().terminate_flag = &flag;
  Environment* const workers[] = {env.add_worker(1), env.add_worker(2)};
  ASSERT_TRUE(env.settings().set_double(param::TILIM, 1e6).ok());
  TimeLimitScope scope(env);
  int answers[2] = {0, 0};
  {
    std::thread first([&] {
      while ((answers[0] = workers[0]->check_stop()) == 0) {
      }
    });
    std::thread second([&] {
      while ((answers[1] = workers[1]->check_stop()) == 0) {
      }
    });
    std::atomic_ref<int>(flag).store(1);
    first.join();
    second.join();
  }
  EXPECT_EQ(answers[0], kStopUserAbort);
  EXPECT_EQ(answers[1], kStopUserAbort);
}

}  // namespace
}  // namespace kelvo
