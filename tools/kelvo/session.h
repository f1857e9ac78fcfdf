// An environment and a problem for the length of the command, and what the library said about them.
#pragma once

#include <cstdio>
#include <string>

#include "kelvo.h"

namespace kelvo::command {

/// The library's version text.
std::string library_version();

/// Owns the environment and the problem or network. The library's error lines are collected, so
/// that a failure is told in one line by whoever knows what was attempted.
class Session {
 public:
  /// Opens an environment. Throws Failure.
  Session();
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  KLVenv env() const { return env_; }
  KLVprob problem() const { return problem_; }
  KLVnet network() const { return network_; }

  /// Sends the library's log, results and warnings to a stream of the caller's.
  void show_on(std::FILE* stream);
  /// Copies everything that is said into a file; throws Failure when it cannot be written.
  void open_log(const std::string& path);

  /// Reads a model into a new problem. Throws Failure.
  void read(const std::string& path);
  /// Reads a network file into a new network. Throws Failure.
  void read_network(const std::string& path);

  /// Sends a text to the results channel, so that screen and log file both get it.
  void say(const std::string& text);

  /// Throws Failure "what: the library's own words" when the status is not 0.
  void check(int status, const std::string& what);
  /// The error lines collected since the last call, in one line without the codes' decoration.
  std::string take_errors();

 private:
  static void collect(void* session, const char* text);

  KLVenv env_ = nullptr;
  KLVprob problem_ = nullptr;
  KLVnet network_ = nullptr;
  KLVchannel results_ = nullptr;
  KLVchannel warnings_ = nullptr;
  KLVchannel errors_ = nullptr;
  KLVchannel log_ = nullptr;
  std::FILE* log_file_ = nullptr;
  std::string said_;  // error lines not yet told
};

}  // namespace kelvo::command
