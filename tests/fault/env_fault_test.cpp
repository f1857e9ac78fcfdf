// The k-th allocation fails inside functions of the environment.
#include <gtest/gtest.h>
#include <kelvo.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "fault/allocation.h"

namespace {

using kelvo::test::AllocationFaults;
using kelvo::test::for_each_allocation_failure;

struct OpenEnv {
  KLVenv env = nullptr;
  KLVchannel log = nullptr;
  OpenEnv() {
    int status = 0;
    env = KLVopenKELVO(&status);
    EXPECT_EQ(KLVgetchannels(env, nullptr, nullptr, nullptr, &log), 0);
  }
  OpenEnv(const OpenEnv&) = delete;
  OpenEnv& operator=(const OpenEnv&) = delete;
  ~OpenEnv() {
    if (env != nullptr) {
      EXPECT_EQ(KLVcloseKELVO(&env), 0);
    }
  }
  int get(int number) const {
    int value = -1;
    EXPECT_EQ(KLVgetintparam(env, number, &value), 0);
    return value;
  }
};

/// A call on an open environment, `Env` at the start of each try.
template <class Env = OpenEnv, class Run, class Check>
void sweep(Run run, Check check, AllocationFaults options = {}) {
  for_each_allocation_failure([] { return Env(); }, run, check, options);
}

// Room made for one more destination may stay with a channel.
const AllocationFaults kMayKeepRoom = {.may_keep_room = true};

TEST(EnvironmentFaults, Open) {
  struct Handle {
    KLVenv env = nullptr;
    ~Handle() {
      if (env != nullptr) {
        EXPECT_EQ(KLVcloseKELVO(&env), 0);
      }
    }
  };
  for_each_allocation_failure([] { return Handle(); },
                              [](Handle& handle) {
                                int status = 0;
                                handle.env = KLVopenKELVO(&status);
                                EXPECT_EQ(handle.env == nullptr, status != 0);
                                return status;
                              },
                              [](Handle&) {});
}

TEST(EnvironmentFaults, ChildrenAndChannels) {
  sweep(
      [](OpenEnv& e) {
        int status = 0;
        KLVparenv(e.env, &status);
        return status;
      },
      [](OpenEnv& e) { EXPECT_NE(KLVversion(e.env), nullptr); });
  sweep([](OpenEnv& e) { return KLVaddchannel(e.env) ? 0 : 1001; },
        [](OpenEnv& e) { EXPECT_NE(KLVaddchannel(e.env), nullptr); });
}

TEST(EnvironmentFaults, Destinations) {
  const auto drop = [](void*, const char*) {};
  sweep([&](OpenEnv& e) { return KLVaddfuncdest(e.env, e.log, &e, drop); },
        [&](OpenEnv& e) { EXPECT_EQ(KLVdelfuncdest(e.env, e.log, &e, drop), 1053); });
  sweep([](OpenEnv& e) { return KLVaddfpdest(e.env, e.log, stderr); },
        [](OpenEnv& e) { EXPECT_EQ(KLVdelfpdest(e.env, e.log, stderr), 1052); });
  sweep([](OpenEnv& e) { return KLVsetlogfile(e.env, stderr); },
        [](OpenEnv& e) {
          FILE* file = stderr;
          EXPECT_EQ(KLVgetlogfile(e.env, &file), 0);
          EXPECT_EQ(file, nullptr);
          EXPECT_EQ(KLVdelfpdest(e.env, e.log, stderr), 1052);
        },
        kMayKeepRoom);
}

TEST(EnvironmentFaults, ScreenOutputIsAllOrNothing) {
  sweep([](OpenEnv& e) { return KLVsetintparam(e.env, KLV_PARAM_SCRIND, 1); },
        [](OpenEnv& e) {
          EXPECT_EQ(e.get(KLV_PARAM_SCRIND), 0);
          KLVchannel results = nullptr;
          EXPECT_EQ(KLVgetchannels(e.env, &results, nullptr, nullptr, nullptr), 0);
          EXPECT_EQ(KLVdelfpdest(e.env, results, stdout), 1052);
        },
        kMayKeepRoom);
}

TEST(EnvironmentFaults, ParameterFiles) {
  struct ChangedEnv : OpenEnv {
    ChangedEnv() {
      EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 2), 0);
      EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_SCRIND, 1), 0);
      EXPECT_EQ(KLVsetstrparam(env, KLV_PARAM_WORKDIR, "a directory with a long name"), 0);
    }
  };
  const std::string file =
      ::testing::TempDir() + "kelvo_fault_" + std::to_string(getpid()) + ".prm";
  sweep<ChangedEnv>([&](ChangedEnv& e) { return KLVwriteparam(e.env, file.c_str()); },
                    [](ChangedEnv& e) { EXPECT_EQ(e.get(KLV_PARAM_ADVIND), 2); });
  sweep([&](OpenEnv& e) { return KLVreadcopyparam(e.env, file.c_str()); },
        [](OpenEnv& e) {
          EXPECT_EQ(e.get(KLV_PARAM_ADVIND), 1);
          EXPECT_EQ(e.get(KLV_PARAM_SCRIND), 0);
        },
        kMayKeepRoom);
  std::remove(file.c_str());
}

}  // namespace
