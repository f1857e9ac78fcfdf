// Message channels, screen output, the log file, and the parameter file named in the environment.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "env_fixture.h"

namespace {

/// A file for messages, read back as a text.
class TextFile {
 public:
  TextFile() : file_(std::tmpfile()) {}
  ~TextFile() { std::fclose(file_); }
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;
  operator FILE*() const { return file_; }
  std::string text() const {
    std::fflush(file_);
    std::rewind(file_);
    char buffer[8192];
    const std::size_t length = std::fread(buffer, 1, sizeof buffer, file_);
    std::fseek(file_, 0, SEEK_END);
    return std::string(buffer, length);
  }

 private:
  FILE* file_;
};

std::string captured_screen() {
  return ::testing::internal::GetCapturedStdout();
}

class Channels : public EnvironmentTest {};

TEST_F(Channels, MessagesGoToEveryDestinationTheLatestFirst) {
  KLVchannel channel = KLVaddchannel(env);
  ASSERT_NE(channel, nullptr);
  EXPECT_EQ(KLVmsg(channel, "%d rows", 12), 7);  // nobody listens
  std::string order;
  const auto first = [](void* handle, const char* text) {
    *static_cast<std::string*>(handle) += std::string("first:") + text;
  };
  const auto second = [](void* handle, const char* text) {
    *static_cast<std::string*>(handle) += std::string("second:") + text;
  };
  TextFile file;
  EXPECT_EQ(KLVaddfuncdest(env, channel, &order, first), 0);
  EXPECT_EQ(KLVaddfuncdest(env, channel, &order, second), 0);
  EXPECT_EQ(KLVaddfpdest(env, channel, file), 0);
  EXPECT_EQ(KLVmsg(channel, "%s=%d;", "x", 3), 4);
  EXPECT_EQ(KLVmsgstr(channel, "100%;"), 5);
  EXPECT_EQ(order, "second:x=3;first:x=3;second:100%;first:100%;");
  EXPECT_EQ(file.text(), "x=3;100%;");
  EXPECT_EQ(KLVmsg(nullptr, "dropped %d", 1), 9);

  KLVdisconnectchannel(env, channel);
  EXPECT_EQ(KLVmsgstr(channel, "unheard"), 7);
  EXPECT_EQ(file.text(), "x=3;100%;");
  KLVdelchannel(env, &channel);
  EXPECT_EQ(channel, nullptr);
  KLVdelchannel(env, &channel);
  // The standard channels cannot be deleted.
  KLVchannel standard = log_channel;
  KLVdelchannel(env, &standard);
  EXPECT_EQ(standard, log_channel);
  KLVmsgstr(log_channel, "still there");
  EXPECT_EQ(log, "still there");
}

/// A listener that detaches destinations, or all of them, while it is called.
struct Detacher {
  KLVenv env;
  KLVchannel channel;
  int calls = 0;
  bool disconnects = false;
  static void hear(void* handle, const char*) {
    auto* const self = static_cast<Detacher*>(handle);
    ++self->calls;
    if (self->disconnects) {
      KLVdisconnectchannel(self->env, self->channel);
    } else {
      while (KLVdelfuncdest(self->env, self->channel, handle, hear) == 0) {
      }
    }
  }
};

TEST_F(Channels, AListenerMayDetachItselfAndOthersWhileItIsCalled) {
  for (const bool disconnects : {false, true}) {
    std::string heard;
    KLVchannel channel = KLVaddchannel(env);
    Detacher detacher{env, channel, 0, disconnects};
    for (int k = 0; k < 2; ++k) {
      EXPECT_EQ(KLVaddfuncdest(env, channel, &detacher, Detacher::hear), 0);
      collect(channel, heard);
      EXPECT_EQ(KLVaddfuncdest(env, channel, &detacher, Detacher::hear), 0);
    }
    KLVmsgstr(channel, "once;");
    EXPECT_EQ(detacher.calls, 1);
    EXPECT_EQ(heard.empty(), disconnects);
    KLVmsgstr(channel, "twice;");
    EXPECT_EQ(detacher.calls, 1);
    KLVdelchannel(env, &channel);
  }
}

TEST_F(Channels, AMessageIsHeardOnceWhoeverIsDetachedMeanwhile) {
  struct Remover {
    KLVenv env;
    KLVchannel channel;
    std::string first = {}, late = {};
    int calls = 0;
    static void hear(void* handle, const char*) {
      auto* const self = static_cast<Remover*>(handle);
      ++self->calls;
      KLVdelfuncdest(self->env, self->channel, &self->first, append);
      KLVaddfuncdest(self->env, self->channel, &self->late, append);
    }
  };
  KLVchannel channel = KLVaddchannel(env);
  Remover remover{env, channel};
  std::string second;
  collect(channel, remover.first);
  collect(channel, second);
  EXPECT_EQ(KLVaddfuncdest(env, channel, &remover, Remover::hear), 0);
  KLVmsgstr(channel, "text;");
  EXPECT_EQ(remover.calls, 1);
  EXPECT_EQ(second, "text;");
  EXPECT_EQ(remover.first + remover.late, "");
}

TEST_F(Channels, LongMessagesAreCut) {
  const std::string line(5000, 'y');
  EXPECT_EQ(KLVmsg(log_channel, "%s", line.c_str()), 1023);
  EXPECT_EQ(take(log), line.substr(0, 1023));
  EXPECT_EQ(KLVmsgstr(log_channel, line.c_str()), 1023);
  EXPECT_EQ(log, line.substr(0, 1023));
}

TEST_F(Channels, AttachingAndDetachingAnswerWithoutPrinting) {
  TextFile file;
  const auto function = [](void*, const char*) {};
  int handle = 0, other = 0;
  EXPECT_EQ(KLVaddfpdest(env, nullptr, file), 1051);
  EXPECT_EQ(KLVaddfpdest(env, log_channel, nullptr), 1052);
  EXPECT_EQ(KLVdelfpdest(env, nullptr, file), 1051);
  EXPECT_EQ(KLVdelfpdest(env, log_channel, file), 1052);
  EXPECT_EQ(KLVaddfuncdest(env, nullptr, &handle, function), 1051);
  EXPECT_EQ(KLVaddfuncdest(env, log_channel, &handle, nullptr), 1053);
  EXPECT_EQ(KLVaddfuncdest(env, log_channel, &handle, function), 0);
  EXPECT_EQ(KLVdelfuncdest(env, log_channel, &other, function), 1053);
  EXPECT_EQ(KLVdelfuncdest(env, log_channel, &handle, function), 0);
  EXPECT_EQ(KLVdelfuncdest(env, log_channel, &handle, function), 1053);
  EXPECT_EQ(KLVaddfpdest(nullptr, log_channel, file), 1002);
  EXPECT_EQ(KLVflushchannel(nullptr, log_channel), 1002);
  EXPECT_EQ(KLVflushchannel(env, nullptr), 0);
  EXPECT_EQ(KLVflushstdchannels(env), 0);
  EXPECT_EQ(errors, "");

  EXPECT_EQ(KLVaddfpdest(env, log_channel, file), 0);
  EXPECT_EQ(KLVaddfpdest(env, log_channel, file), 0);
  KLVmsgstr(log_channel, "twice.");
  EXPECT_EQ(KLVdelfpdest(env, log_channel, file), 0);
  KLVmsgstr(log_channel, "once.");
  EXPECT_EQ(KLVdelfpdest(env, log_channel, file), 0);
  KLVmsgstr(log_channel, "never.");
  EXPECT_EQ(file.text(), "twice.twice.once.");
}

TEST_F(Channels, ScreenOutputGoesToThreeChannelsOnce) {
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_SCRIND, 1), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_SCRIND, 1), 0);
  KLVmsgstr(results_channel, "results\n");
  KLVmsgstr(warning_channel, "warning\n");
  KLVmsgstr(error_channel, "error\n");
  KLVmsgstr(log_channel, "log\n");
  EXPECT_EQ(KLVdelfpdest(env, warning_channel, stdout), 0);
  EXPECT_EQ(KLVdelfpdest(env, warning_channel, stdout), 1052);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_SCRIND, 0), 0);
  KLVmsgstr(results_channel, "silent\n");
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_SCRIND, 1), 0);
  EXPECT_EQ(KLVsetdefaults(env), 0);
  KLVmsgstr(error_channel, "silent\n");
  EXPECT_EQ(captured_screen(), "results\nwarning\nerror\n");
}

TEST_F(Channels, TheLogFileMirrorsAllFour) {
  TextFile first, second;
  FILE* current = nullptr;
  EXPECT_EQ(KLVgetlogfile(env, &current), 0);
  EXPECT_EQ(current, nullptr);
  EXPECT_EQ(KLVsetlogfile(env, first), 0);
  EXPECT_EQ(KLVsetintparam(env, KLV_PARAM_ADVIND, 9), 1015);
  KLVmsgstr(log_channel, "log\n");
  EXPECT_EQ(KLVsetlogfile(env, second), 0);
  EXPECT_EQ(KLVgetlogfile(env, &current), 0);
  EXPECT_EQ(current, static_cast<FILE*>(second));
  KLVmsgstr(warning_channel, "warning\n");
  KLVmsgstr(results_channel, "results\n");

  // A child knows the file but does not write to it.
  int status = 0;
  KLVenv child = KLVparenv(env, &status);
  FILE* inherited = nullptr;
  EXPECT_EQ(KLVgetlogfile(child, &inherited), 0);
  EXPECT_EQ(inherited, current);
  EXPECT_EQ(KLVsetintparam(child, KLV_PARAM_ADVIND, 9), 1015);

  EXPECT_EQ(KLVsetlogfile(env, nullptr), 0);
  KLVmsgstr(log_channel, "unheard\n");
  EXPECT_EQ(first.text(), "KELVO Error  1015: Parameter value too big.\nlog\n");
  EXPECT_EQ(second.text(), "warning\nresults\n");
  EXPECT_EQ(KLVgetlogfile(env, nullptr), 1004);
}

TEST(OverrideFile, AMissingFileDoesNotKeepTheEnvironmentFromOpening) {
  ASSERT_EQ(setenv("ZEPH_KELVO_PARAMETER_FILE", "/no such directory/settings.prm", 1), 0);
  ::testing::internal::CaptureStdout();
  int status = -1;
  KLVenv env = KLVopenKELVO(&status);
  unsetenv("ZEPH_KELVO_PARAMETER_FILE");
  EXPECT_EQ(captured_screen(),
            "Reading override parameter file '/no such directory/settings.prm' failed.\n");
  EXPECT_EQ(status, 0);
  int screen = -1, count = -1, surplus = -1;
  EXPECT_EQ(KLVgetintparam(env, KLV_PARAM_SCRIND, &screen), 0);
  EXPECT_EQ(screen, 0);
  EXPECT_EQ(KLVgetchgparam(env, &count, nullptr, 0, &surplus), 0);
  EXPECT_EQ(KLVcloseKELVO(&env), 0);
}

}  // namespace
