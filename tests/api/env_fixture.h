// An open environment whose channels are collected in texts.
#pragma once

#include <gtest/gtest.h>
#include <kelvo.h>

#include <string>

class EnvironmentTest : public ::testing::Test {
 protected:
  EnvironmentTest() {
    int status = -1;
    env = KLVopenKELVO(&status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(KLVgetchannels(env, &results_channel, &warning_channel, &error_channel, &log_channel),
              0);
    collect(results_channel, results);
    collect(warning_channel, warnings);
    collect(error_channel, errors);
    collect(log_channel, log);
  }
  ~EnvironmentTest() override { EXPECT_EQ(KLVcloseKELVO(&env), 0); }

  /// Collects what a channel of env sends in a text.
  void collect(KLVchannel channel, std::string& text) {
    EXPECT_EQ(KLVaddfuncdest(env, channel, &text, append), 0);
  }
  /// What `text` has collected since the last time.
  static std::string take(std::string& text) {
    std::string taken;
    taken.swap(text);
    return taken;
  }
  static bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }
  static void append(void* handle, const char* text) { *static_cast<std::string*>(handle) += text; }

  int get_int(int number) {
    int value = -999;
    EXPECT_EQ(KLVgetintparam(env, number, &value), 0) << number;
    return value;
  }
  double get_double(int number) {
    double value = -999;
    EXPECT_EQ(KLVgetdblparam(env, number, &value), 0) << number;
    return value;
  }
  std::string get_text(int number) {
    char value[512] = "none";
    EXPECT_EQ(KLVgetstrparam(env, number, value), 0) << number;
    return value;
  }

  KLVenv env = nullptr;
  KLVchannel results_channel = nullptr, warning_channel = nullptr, error_channel = nullptr,
             log_channel = nullptr;
  std::string results, warnings, errors, log;
};
