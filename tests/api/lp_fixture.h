// A small linear problem in an environment of its own, for contract tests.
#pragma once

#include <gtest/gtest.h>
#include <kelvo.h>

#include <string>
#include <vector>

/// max 3x + 2y,  x + y <= 4,  x + 3y <= 7,  0 <= x <= 3: optimum (3, 1), objective 11, the second
/// row with slack 1; duals 2 and 0, reduced costs 1 and 0.
struct SmallLp {
  KLVenv env;
  KLVprob lp;
  std::string errors, warnings, log;

  SmallLp() {
    int status = -1;
    env = KLVopenKELVO(&status);
    EXPECT_EQ(status, 0);
    KLVchannel warning = nullptr, error = nullptr, log_channel = nullptr;
    EXPECT_EQ(KLVgetchannels(env, nullptr, &warning, &error, &log_channel), 0);
    EXPECT_EQ(KLVaddfuncdest(env, error, &errors, append), 0);
    EXPECT_EQ(KLVaddfuncdest(env, warning, &warnings, append), 0);
    EXPECT_EQ(KLVaddfuncdest(env, log_channel, &log, append), 0);
    lp = KLVcreateprob(env, &status, "small");
    EXPECT_EQ(status, 0);
    const double objective[] = {3, 2}, rhs[] = {4, 7}, values[] = {1, 1, 1, 3};
    const double lower[] = {0, 0}, upper[] = {3, 1e20};
    const int begin[] = {0, 2}, count[] = {2, 2}, rows[] = {0, 1, 0, 1};
    EXPECT_EQ(KLVcopylp(env, lp, 2, 2, -1, objective, rhs, "LL", begin, count, rows, values, lower,
                        upper, nullptr),
              0);
  }
  ~SmallLp() {
    EXPECT_EQ(KLVfreeprob(env, &lp), 0);
    EXPECT_EQ(KLVcloseKELVO(&env), 0);
  }
  SmallLp(const SmallLp&) = delete;
  SmallLp& operator=(const SmallLp&) = delete;

  static void append(void* handle, const char* text) { *static_cast<std::string*>(handle) += text; }

  double objective() const {
    double value = 0.0;
    EXPECT_EQ(KLVgetobjval(env, lp, &value), 0);
    return value;
  }
  std::vector<double> x() const {
    std::vector<double> values(2);
    EXPECT_EQ(KLVgetx(env, lp, values.data(), 0, 1), 0);
    return values;
  }
};
